#include "shell/ToolRegistry.h"

#include <filesystem>

#include "support/mdlFunctions.h"

namespace saltmarrow {

namespace {
constexpr std::string_view kCrLf = "\r\n";
constexpr std::string_view kFrame = "--------------------------------------------------------------";
}  // namespace

bool toolFileExists(const std::string &path) {
    std::error_code ec;
    return !path.empty() && std::filesystem::is_regular_file(path, ec);
}

std::string ToolRegistry::findExternal(std::string_view relativePath, bool complain) const {
    std::string path = appDir_ + std::string(relativePath);
    if (toolFileExists(path)) return path;
    if (complain)
        dialogs_.MsgBoxOverMe(messages_.format("msgNotFound", relativePath), platform::mb::Exclamation, "");
    return {};
}

ToolPaths ToolRegistry::resolveTools() const {
    ToolPaths paths;
    for (const auto &tool : kExternalTools) {
        if (tool.windowsOnly && !kToolsNeedCygwin) continue;
        std::string found = findExternal(tool.relativePath, tool.complain);
        if (tool.field == &ToolPaths::cygwinRoot && !found.empty()) found = cygwinRootFrom(found);
        paths.*tool.field = found;
    }
    return paths;
}

void ToolRegistry::applyProDVD(ToolPaths &paths) const {
    paths.strdvdrecord = findExternal(kProDVDPath, false);
}

std::string cygwinRootFrom(std::string_view foundPath) {
    std::string p = vb::Replace(vb::Replace(foundPath, ":", ""), "\\", "/");
    std::size_t slash = vb::InStrRev(p, "/");
    return "/cygdrive/" + (slash ? vb::Left(p, slash - 1) : std::string());
}

std::string toolReportText(const ToolPaths &paths, const MessageTable &messages) {
    std::string list;
    for (const auto &row : kToolReport) {
        if (!toolFileExists(paths.*row.field)) continue;
        list += kCrLf;
        list += row.logLabel;
        if (!row.textKey.empty()) list += messages.text(row.textKey);
    }
    if (list.empty()) return messages.text("msgNoExternalTools");
    return "  saltmarrow found the following external tools:" + std::string(kCrLf) + std::string(kCrLf) +
           std::string(kCrLf) + list;
}

std::vector<std::string> toolReportLines(const ToolPaths &paths, const MessageTable &messages) {
    std::string entry = std::string(kFrame) + std::string(kCrLf) + std::string(kCrLf) +
                        toolReportText(paths, messages) + std::string(kCrLf) + std::string(kCrLf) +
                        std::string(kFrame);
    return vb::Split(entry, kCrLf);
}

std::string externalToolsList(const ToolPaths &paths, const MessageTable &messages) {
    std::string list;
    for (const auto &row : kToolReport) {
        if (!toolFileExists(paths.*row.field)) continue;
        if (!list.empty()) list += kCrLf;
        list += row.listLabel;
        if (!row.textKey.empty()) list += messages.text(row.textKey);
    }
    return list.empty() ? messages.text("msgNoExternalTools") : list;
}

}  // namespace saltmarrow
