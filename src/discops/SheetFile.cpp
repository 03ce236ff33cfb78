#include "discops/SheetFile.h"

#include <filesystem>
#include <system_error>
#include <utility>

#include "support/AtomicFile.h"
#include "support/RuntimeError.h"
#include "support/mdlFunctions.h"

namespace saltmarrow::discops {

namespace fs = std::filesystem;

namespace {
constexpr int kPathFileAccessError = 75;
}  // namespace

SheetReader::SheetReader(const std::string &path) {
    std::error_code ec;
    auto status = fs::status(path, ec);
    if (ec || !fs::exists(status)) raiseError(err::FileNotFound);
    if (!fs::is_regular_file(status)) throw RuntimeError(kPathFileAccessError, "Path/File access error");
    in_.open(path, std::ios::binary);
    if (!in_) raiseError(err::PermissionDenied);
}

bool SheetReader::next(std::string &line) {
    if (!havePending_) {
        if (!std::getline(in_, pending_)) return false;
        // cdrdao stumbles over a byte order mark; the sheet is read as if it had none.
        if (std::exchange(first_, false) && pending_.rfind("\xEF\xBB\xBF", 0) == 0) {
            pending_.erase(0, 3);
            byteOrderMark_ = true;
        }
        // CR LF ends the piece; a CR that is left inside is a line end of its own.
        if (!pending_.empty() && pending_.back() == '\r') pending_.pop_back();
        pendingAt_ = 0;
        havePending_ = true;
    }
    std::size_t cr = pending_.find('\r', pendingAt_);
    if (cr == std::string::npos) {
        line.assign(pending_, pendingAt_);
        havePending_ = false;
    } else {
        line.assign(pending_, pendingAt_, cr - pendingAt_);
        pendingAt_ = cr + 1;
    }
    return true;
}

void writeSheet(const std::string &path, std::string_view text) {
    std::error_code ec;
    if (fs::is_directory(path, ec)) throw RuntimeError(kPathFileAccessError, "Path/File access error");
    replaceFileAtomically(path, text);
}

std::string parentFolder(std::string_view path) {
    std::size_t slash = path.find_last_of('/');
    if (slash == std::string_view::npos) return {};
    if (slash == 0) return "/";
    return std::string(path.substr(0, slash));
}

std::string fileNamePart(std::string_view path) {
    std::size_t sep = path.find_last_of("/\\");
    return std::string(sep == std::string_view::npos ? path : path.substr(sep + 1));
}

std::string baseName(std::string_view path) {
    std::string name = fileNamePart(path);
    std::size_t dot = name.find_last_of('.');
    if (dot == std::string::npos || dot == 0) return name;
    return name.substr(0, dot);
}

std::string resolvePath(std::string_view path, std::string_view base) {
    fs::path p{std::string(path)};
    if (p.is_relative()) {
        fs::path b{std::string(base)};
        if (b.empty()) {
            std::error_code ec;
            b = fs::current_path(ec);
        }
        p = b / p;
    }
    std::string out = p.lexically_normal().string();
    // "folder/" keeps no trailing separator, except the root itself.
    if (out.size() > 1 && out.back() == '/') out.pop_back();
    return out;
}

bool isRegularFile(const std::string &path) {
    std::error_code ec;
    return !path.empty() && fs::is_regular_file(path, ec);
}

bool sameFile(const std::string &a, const std::string &b) {
    std::error_code ec;
    if (fs::exists(a, ec) && fs::exists(b, ec)) {
        bool same = fs::equivalent(a, b, ec);
        return !ec && same;
    }
    auto ca = fs::weakly_canonical(a, ec);
    if (ec) return false;
    auto cb = fs::weakly_canonical(b, ec);
    return !ec && ca == cb;
}

std::optional<std::string> findInFolder(const std::string &folder, std::string_view name) {
    if (name.empty()) return std::nullopt;
    std::string exact = resolvePath(name, folder);
    if (parentFolder(exact) != resolvePath(".", folder)) return std::nullopt;  // "..", "."
    if (isRegularFile(exact)) return exact;
    std::error_code ec;
    for (fs::directory_iterator it(folder, ec), end; !ec && it != end; it.increment(ec)) {
        std::string entry = it->path().filename().string();
        if (vb::equalsText(entry, name) && isRegularFile(it->path().string())) return it->path().string();
    }
    return std::nullopt;
}

std::string longName(std::string_view path, std::string_view base) {
    if (path.empty()) return {};
    std::string full = resolvePath(path, base);
    std::error_code ec;
    return fs::exists(full, ec) ? full : std::string();
}

}  // namespace saltmarrow::discops
