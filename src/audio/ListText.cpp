#include "audio/ListText.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <vector>

#include "discops/SheetFile.h"
#include "support/mdlFunctions.h"

namespace saltmarrow {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kChunk = 1 << 16;
// No list line comes near this; a longer one is binary data and is dropped.
constexpr std::size_t kLongestLine = std::size_t{4} << 20;
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

// One byte at a time through the rules of UTF-8: the lead byte says how many
// continuation bytes follow, and a few lead bytes narrow the range of the first.
struct Utf8Check {
    int need = 0;
    unsigned char low = 0x80, high = 0xBF;

    bool step(unsigned char c) {
        if (need > 0) {
            if (c < low || c > high) return false;
            low = 0x80;
            high = 0xBF;
            --need;
            return true;
        }
        if (c < 0x80) return true;
        if (c >= 0xC2 && c <= 0xDF) {
            need = 1;
        } else if (c >= 0xE0 && c <= 0xEF) {
            need = 2;
            if (c == 0xE0) low = 0xA0;   // no overlong forms
            if (c == 0xED) high = 0x9F;  // no surrogates
        } else if (c >= 0xF0 && c <= 0xF4) {
            need = 3;
            if (c == 0xF0) low = 0x90;
            if (c == 0xF4) high = 0x8F;  // nothing above U+10FFFF
        } else {
            return false;
        }
        return true;
    }
};

bool isUtf8(std::ifstream &in) {
    Utf8Check check;
    std::vector<char> buffer(kChunk);
    while (in) {
        in.read(buffer.data(), static_cast<std::streamsize>(buffer.size()));
        for (std::streamsize i = 0; i < in.gcount(); ++i)
            if (!check.step(static_cast<unsigned char>(buffer[static_cast<std::size_t>(i)]))) return false;
    }
    return check.need == 0;
}

std::string latin1ToUtf8(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    for (const char c : text) {
        const auto u = static_cast<unsigned char>(c);
        if (u < 0x80) {
            out += c;
        } else {
            out += static_cast<char>(0xC0 | (u >> 6));
            out += static_cast<char>(0x80 | (u & 0x3F));
        }
    }
    return out;
}

}  // namespace

bool readListLines(const std::string &path, const std::function<void(const std::string &line)> &line) {
    std::error_code ec;
    if (!fs::is_regular_file(path, ec)) return false;
    std::ifstream in(path, std::ios::binary);
    if (!in) return false;
    const bool utf8 = isUtf8(in);
    in.clear();
    in.seekg(0);

    std::string current;
    bool first = true, tooLong = false, afterCr = false;
    const auto emit = [&] {
        if (first && current.starts_with(kByteOrderMark)) current.erase(0, kByteOrderMark.size());
        if (!tooLong) line(utf8 ? current : latin1ToUtf8(current));
        first = tooLong = false;
        current.clear();
    };
    std::vector<char> buffer(kChunk);
    while (in) {
        in.read(buffer.data(), static_cast<std::streamsize>(buffer.size()));
        for (std::streamsize i = 0; i < in.gcount(); ++i) {
            const char c = buffer[static_cast<std::size_t>(i)];
            if (afterCr && c == '\n') {
                afterCr = false;
                continue;
            }
            afterCr = c == '\r';
            if (c == '\r' || c == '\n')
                emit();
            else if (current.size() < kLongestLine)
                current += c;
            else
                tooLong = true;
        }
    }
    if (!current.empty() || tooLong) emit();
    return true;
}

std::optional<std::int64_t> framesOfTime(std::string_view text) {
    const auto parts = vb::Split(vb::Trim(text), ":");
    if (parts.size() != 3 || parts[0].size() > 4 || parts[1].size() > 2 || parts[2].size() > 2)
        return std::nullopt;
    std::int64_t fields[3] = {};
    for (int i = 0; i < 3; ++i) {
        const std::string &p = parts[static_cast<std::size_t>(i)];
        if (p.empty() || p.find_first_not_of("0123456789") != std::string::npos) return std::nullopt;
        fields[i] = std::stoll(p);
    }
    if (fields[1] >= 60 || fields[2] >= 75) return std::nullopt;
    return (fields[0] * 60 + fields[1]) * 75 + fields[2];
}

std::string timeOfFrames(std::int64_t frames) {
    char text[48];
    std::snprintf(text, sizeof text, "%02lld:%02lld:%02lld", static_cast<long long>(frames / 75 / 60),
                  static_cast<long long>(frames / 75 % 60), static_cast<long long>(frames % 75));
    return text;
}

std::string longPathName(const std::string &path) {
    return discops::longName(path, {});
}

ListPaths::ListPaths(const std::string &listPath)
    : folder_(discops::parentFolder(discops::resolvePath(listPath, {}))) {}

std::optional<std::string> ListPaths::find(const std::string &named) {
    // A NUL would end the name early on its way to the system.
    if (named.find('\0') != std::string::npos) return std::nullopt;
    const std::string asNamed = longPathName(discops::resolvePath(named, folder_));
    if (discops::isRegularFile(asNamed)) return asNamed;

    const std::string name = discops::fileNamePart(named);
    if (name.empty() || name == "." || name == "..") return std::nullopt;
    std::string found = discops::resolvePath(name, folder_);
    if (!discops::isRegularFile(found)) {
        if (!byLowerName_) {
            byLowerName_.emplace();
            std::error_code ec;
            for (fs::directory_iterator it(folder_, ec), end; !ec && it != end; it.increment(ec)) {
                std::error_code kind;
                if (it->is_regular_file(kind))
                    byLowerName_->emplace(vb::LCase(it->path().filename().string()), it->path().string());
            }
        }
        const auto it = byLowerName_->find(vb::LCase(name));
        if (it == byLowerName_->end()) return std::nullopt;
        found = it->second;
    }
    repaired = true;
    return found;
}

}  // namespace saltmarrow
