#include "extract/ExtractNames.h"

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "extract/ExtractDisc.h"
#include "support/mdlFunctions.h"

namespace saltmarrow {

namespace fs = std::filesystem;

namespace {

bool isSeparator(char c) {
    return c == '/' || c == '\\';
}

std::vector<std::string> pieces(std::string_view path) {
    std::vector<std::string> out(1);
    for (char c : path)
        if (isSeparator(c))
            out.emplace_back();
        else
            out.back() += c;
    return out;
}

bool inside(const fs::path &base, const fs::path &path) {
    const fs::path b = base.lexically_normal(), p = path.lexically_normal();
    auto [baseEnd, at] = std::mismatch(b.begin(), b.end(), p.begin(), p.end());
    // A base that ends in a separator leaves one empty element behind.
    return (baseEnd == b.end() || (std::next(baseEnd) == b.end() && baseEnd->empty())) && at != p.end();
}

}  // namespace

std::string replaceMarkers(std::string_view text, std::span<const Marker> markers) {
    std::string out;
    for (std::size_t i = 0; i < text.size();) {
        const auto hit = std::find_if(markers.begin(), markers.end(), [&](const Marker &m) {
            return text.substr(i, m.first.size()) == m.first;
        });
        if (hit == markers.end()) {
            out += text[i++];
        } else {
            out += hit->second;
            i += hit->first.size();
        }
    }
    return out;
}

std::string pathValue(std::string_view name) {
    return vb::Replace(vb::Replace(cleanName(name), "/", "-"), "\\", "");
}

std::optional<std::string_view> templateProblem(std::string_view pattern) {
    const std::vector<std::string> parts = pieces(vb::Trim(pattern));
    if (vb::Trim(parts.back()).empty()) return "msgExtractNoTemplate";
    const bool drive = parts.front().size() == 2 && parts.front()[1] == ':';
    if (parts.front().empty() || drive || std::count(parts.begin(), parts.end(), ".."))
        return "msgExtractTemplateOutside";
    return std::nullopt;
}

std::vector<std::string> fillTemplate(std::string_view pattern, const NameValues &v) {
    // %5 is the track's album here, where the tags take the track's artist:
    // files named by it have always been sorted so, and that stays.
    const Marker markers[] = {{"%1", pathValue(v.artist)},
                              {"%2", pathValue(v.album)},
                              {"%3", v.number},
                              {"%4", pathValue(v.title)},
                              {"%5", pathValue(v.trackAlbum)}};
    std::vector<std::string> out;
    for (const std::string &piece : pieces(pattern)) {
        std::string filled = replaceMarkers(piece, markers);
        // A name of dots alone would be no name but a way up.
        if (filled.find_first_not_of('.') == std::string::npos)
            std::replace(filled.begin(), filled.end(), '.', '_');
        if (!filled.empty()) out.push_back(std::move(filled));
    }
    if (out.empty()) out.push_back(v.number);
    return out;
}

std::optional<std::string> prepareTarget(const std::string &base, const std::vector<std::string> &parts,
                                         const std::string &extension, std::string &failed) {
    std::error_code ec;
    fs::path folder(base);
    fs::create_directories(folder, ec);
    for (std::size_t i = 0; i + 1 < parts.size(); ++i) {
        folder /= parts[i];
        if (!fs::is_directory(folder, ec)) fs::create_directory(folder, ec);
        if (ec || !fs::is_directory(folder, ec)) {
            failed = folder.string();
            return std::nullopt;
        }
    }
    const fs::path target = folder / parts.back();
    failed = folder.string();
    if (!inside(base, target)) return std::nullopt;
    // A file made and taken away again tells a folder that cannot be written
    // to; one that is there already is the tool's to replace or keep.
    const fs::path file = target.string() + "." + extension;
    if (!fs::exists(file, ec)) {
        if (!std::ofstream(file)) return std::nullopt;
        fs::remove(file, ec);
    }
    failed.clear();
    return target.string();
}

}  // namespace saltmarrow
