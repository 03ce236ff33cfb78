#include "data/FolderObjects.h"

#include <cmath>

namespace saltmarrow::data {

namespace {

// Length of the valid UTF-8 sequence at text[i], or 0.
std::size_t utf8Length(std::string_view text, std::size_t i) {
    const auto byte = [&](std::size_t k) { return static_cast<unsigned char>(text[k]); };
    const unsigned char c = byte(i);
    std::size_t n = 0;
    unsigned char low = 0x80, high = 0xBF;  // range of the second byte
    if (c >= 0xC2 && c <= 0xDF) {
        n = 2;
    } else if (c >= 0xE0 && c <= 0xEF) {
        n = 3;
        if (c == 0xE0) low = 0xA0;
        if (c == 0xED) high = 0x9F;  // no surrogates
    } else if (c >= 0xF0 && c <= 0xF4) {
        n = 4;
        if (c == 0xF0) low = 0x90;
        if (c == 0xF4) high = 0x8F;
    } else {
        return 0;
    }
    if (i + n > text.size()) return 0;
    if (byte(i + 1) < low || byte(i + 1) > high) return 0;
    for (std::size_t k = 2; k < n; ++k)
        if ((byte(i + k) & 0xC0) != 0x80) return 0;
    return n;
}

unsigned char foldCase(unsigned char c) {
    return c >= 'a' && c <= 'z' ? static_cast<unsigned char>(c - 32) : c;
}

}  // namespace

std::string fileNameCheck(std::string_view name) {
    std::string out;
    out.reserve(name.size());
    for (std::size_t i = 0; i < name.size();) {
        const auto c = static_cast<unsigned char>(name[i]);
        if (c < 0x80) {
            // Only ";" goes: "=" is kept on purpose, the path list escapes it.
            out += c == ';' || c == '\\' || c == '/' ? '_' : static_cast<char>(c);
            ++i;
        } else if (const std::size_t n = utf8Length(name, i)) {
            out.append(name.substr(i, n));
            i += n;
        } else {
            out += '_';
            ++i;
        }
    }
    return out;
}

bool hasLineBreak(std::string_view name) {
    return name.find_first_of("\r\n") != std::string_view::npos;
}

std::string_view lastElement(std::string_view key) {
    const auto p = key.rfind('\\');
    return p == std::string_view::npos ? key : key.substr(p + 1);
}

std::string_view parentKey(std::string_view key) {
    const auto p = key.rfind('\\');
    return p == std::string_view::npos ? std::string_view() : key.substr(0, p);
}

std::string_view pathLeaf(std::string_view path) {
    while (path.size() > 1 && path.back() == '/') path.remove_suffix(1);
    const auto p = path.rfind('/');
    return p == std::string_view::npos || path == "/" ? path : path.substr(p + 1);
}

std::string pathParent(std::string_view path) {
    while (path.size() > 1 && path.back() == '/') path.remove_suffix(1);
    const auto p = path.rfind('/');
    if (p == std::string_view::npos || path == "/") return {};
    return p == 0 ? std::string("/") : std::string(path.substr(0, p));
}

std::string joinPath(std::string_view folder, std::string_view name) {
    std::string out(folder);
    if (out.empty()) return std::string(name);
    if (out.back() != '/') out += '/';
    out.append(name);
    return out;
}

bool isDriveRoot(std::string_view path) {
    return !path.empty() && path.find_first_not_of('/') == std::string_view::npos;
}

std::string formatSize(double bytes, std::string_view separator) {
    const long long whole = std::llround(bytes);
    std::string digits = std::to_string(whole < 0 ? -whole : whole);
    std::string out;
    for (std::size_t i = 0; i < digits.size(); ++i) {
        if (i > 0 && (digits.size() - i) % 3 == 0) out.append(separator);
        out += digits[i];
    }
    return whole < 0 ? "-" + out : out;
}

bool listsBefore(bool aFolder, std::string_view a, bool bFolder, std::string_view b) {
    if (aFolder != bFolder) return aFolder;
    const std::size_t n = std::min(a.size(), b.size());
    for (std::size_t i = 0; i < n; ++i) {
        const auto ca = foldCase(static_cast<unsigned char>(a[i]));
        const auto cb = foldCase(static_cast<unsigned char>(b[i]));
        if (ca != cb) return ca < cb;
    }
    if (a.size() != b.size()) return a.size() < b.size();
    return a < b;
}

}  // namespace saltmarrow::data
