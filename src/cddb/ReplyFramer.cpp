#include "cddb/ReplyFramer.h"

namespace saltmarrow::cddb {

bool ReplyFramer::push(std::string_view bytes, std::string &complete) {
    pending_.append(bytes);
    std::size_t start = 0;
    for (std::size_t end; (end = pending_.find('\n', start)) != std::string::npos; start = end + 1) {
        std::string_view text(pending_.data() + start, end - start);
        if (!text.empty() && text.back() == '\r') text.remove_suffix(1);
        line(text, complete);
    }
    pending_.erase(0, start);
    if (pending_.size() + list_.size() <= kLimit) return true;
    clear();
    return false;
}

void ReplyFramer::line(std::string_view text, std::string &complete) {
    if (!inList_) {
        const bool list =
            text.size() >= 3 && text[0] == '2' && text[1] == '1' && text[2] >= '0' && text[2] <= '9';
        if (!list) {
            complete.append(text).append("\r\n");
            return;
        }
        inList_ = true;
    }
    list_.append(text).append("\r\n");
    if (text == ".") {
        complete += list_;
        list_.clear();
        inList_ = false;
    }
}

std::string ReplyFramer::finish() {
    std::string complete;
    if (!inList_ && !pending_.empty()) line(pending_, complete);
    clear();
    return complete;
}

void ReplyFramer::clear() {
    pending_.clear();
    list_.clear();
    inList_ = false;
}

namespace {

// Length of the UTF-8 sequence at the front of s, or 0 if it is not a valid
// one (overlong forms, surrogates and values past U+10FFFF included).
std::size_t utf8Sequence(std::string_view s) {
    const auto b = [&](std::size_t i) { return static_cast<unsigned char>(s[i]); };
    const unsigned char c = b(0);
    if (c < 0x80) return 1;
    std::size_t n;
    unsigned char low = 0x80, high = 0xBF;
    if (c >= 0xC2 && c <= 0xDF) {
        n = 2;
    } else if (c >= 0xE0 && c <= 0xEF) {
        n = 3;
        if (c == 0xE0) low = 0xA0;
        if (c == 0xED) high = 0x9F;
    } else if (c >= 0xF0 && c <= 0xF4) {
        n = 4;
        if (c == 0xF0) low = 0x90;
        if (c == 0xF4) high = 0x8F;
    } else {
        return 0;
    }
    if (s.size() < n || b(1) < low || b(1) > high) return 0;
    for (std::size_t i = 2; i < n; ++i)
        if (b(i) < 0x80 || b(i) > 0xBF) return 0;
    return n;
}

}  // namespace

std::string wireText(std::string_view bytes) {
    for (std::size_t i = 0, n; i < bytes.size(); i += n)
        if ((n = utf8Sequence(bytes.substr(i))) == 0) {
            std::string text;
            text.reserve(bytes.size() * 2);
            for (unsigned char c : bytes) {
                if (c < 0x80) {
                    text += static_cast<char>(c);
                } else {
                    text += static_cast<char>(0xC0 | (c >> 6));
                    text += static_cast<char>(0x80 | (c & 0x3F));
                }
            }
            return text;
        }
    return std::string(bytes);
}

}  // namespace saltmarrow::cddb
