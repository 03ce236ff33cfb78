#include "support/mdlFunctions.h"

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>

#include "support/RuntimeError.h"

namespace saltmarrow::vb {

namespace {

char foldCase(char c) {
    return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c;
}

bool sameAt(std::string_view text, std::size_t pos, std::string_view needle, Compare compare) {
    if (compare == Compare::Binary) return text.compare(pos, needle.size(), needle) == 0;
    for (std::size_t i = 0; i < needle.size(); ++i)
        if (foldCase(text[pos + i]) != foldCase(needle[i])) return false;
    return true;
}

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

// Parses a decimal number (sign, digits, one point, exponent with E or D) that
// fills the whole of text. Returns false if text is anything else.
bool parseDecimal(std::string_view text, double &value) {
    std::size_t i = 0;
    std::string clean;
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) clean += text[i++];
    bool digits = false;
    bool point = false;
    for (; i < text.size(); ++i) {
        char c = text[i];
        if (c >= '0' && c <= '9') {
            clean += c;
            digits = true;
        } else if (c == '.' && !point) {
            clean += c;
            point = true;
        } else {
            break;
        }
    }
    if (!digits) return false;
    if (i < text.size() && (text[i] == 'e' || text[i] == 'E' || text[i] == 'd' || text[i] == 'D')) {
        clean += 'e';
        ++i;
        if (i < text.size() && (text[i] == '+' || text[i] == '-')) clean += text[i++];
        bool expDigits = false;
        for (; i < text.size() && text[i] >= '0' && text[i] <= '9'; ++i) {
            clean += text[i];
            expDigits = true;
        }
        if (!expDigits) return false;
    }
    if (i != text.size()) return false;
    value = std::strtod(clean.c_str(), nullptr);
    return true;
}

bool parseRadix(std::string_view text, double &value) {
    if (text.size() < 3 || text[0] != '&') return false;
    int radix = 0;
    if (text[1] == 'H' || text[1] == 'h')
        radix = 16;
    else if (text[1] == 'O' || text[1] == 'o')
        radix = 8;
    else
        return false;
    std::string digits(text.substr(2));
    char *end = nullptr;
    unsigned long long v = std::strtoull(digits.c_str(), &end, radix);
    if (end == digits.c_str() || *end != '\0') return false;
    value = static_cast<double>(v);
    return true;
}

double roundHalfEven(double v) {
    return std::nearbyint(v);
}

}  // namespace

std::size_t InStr(std::size_t start, std::string_view haystack, std::string_view needle, Compare compare) {
    if (start == 0) raiseError(err::InvalidProcedureCall);
    if (haystack.empty()) return 0;
    if (start > haystack.size()) return 0;
    if (needle.empty()) return start;
    if (needle.size() > haystack.size()) return 0;
    for (std::size_t pos = start - 1; pos + needle.size() <= haystack.size(); ++pos)
        if (sameAt(haystack, pos, needle, compare)) return pos + 1;
    return 0;
}

std::size_t InStrRev(std::string_view haystack, std::string_view needle, std::size_t start, Compare compare) {
    if (haystack.empty()) return 0;
    if (start == 0) start = haystack.size();
    if (start > haystack.size()) return 0;
    if (needle.empty()) return start;
    if (needle.size() > start) return 0;
    for (std::size_t pos = start - needle.size() + 1; pos-- > 0;)
        if (sameAt(haystack, pos, needle, compare)) return pos + 1;
    return 0;
}

std::string Mid(std::string_view text, std::size_t start) {
    if (start == 0) raiseError(err::InvalidProcedureCall);
    if (start > text.size()) return {};
    return std::string(text.substr(start - 1));
}

std::string Mid(std::string_view text, std::size_t start, std::size_t length) {
    if (start == 0) raiseError(err::InvalidProcedureCall);
    if (start > text.size()) return {};
    return std::string(text.substr(start - 1, length));
}

std::string Left(std::string_view text, std::size_t length) {
    return std::string(text.substr(0, length));
}

std::string Right(std::string_view text, std::size_t length) {
    if (length >= text.size()) return std::string(text);
    return std::string(text.substr(text.size() - length));
}

std::string Replace(std::string_view text, std::string_view find, std::string_view with, Compare compare) {
    if (find.empty()) return std::string(text);
    std::string out;
    out.reserve(text.size());
    std::size_t pos = 0;
    while (pos < text.size()) {
        if (pos + find.size() <= text.size() && sameAt(text, pos, find, compare)) {
            out += with;
            pos += find.size();
        } else {
            out += text[pos++];
        }
    }
    return out;
}

std::string LTrim(std::string_view text) {
    std::size_t i = 0;
    while (i < text.size() && text[i] == ' ') ++i;
    return std::string(text.substr(i));
}

std::string RTrim(std::string_view text) {
    std::size_t n = text.size();
    while (n > 0 && text[n - 1] == ' ') --n;
    return std::string(text.substr(0, n));
}

std::string Trim(std::string_view text) {
    return LTrim(RTrim(text));
}

std::string UCase(std::string_view text) {
    std::string out(text);
    for (char &c : out)
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    return out;
}

std::string LCase(std::string_view text) {
    std::string out(text);
    for (char &c : out) c = foldCase(c);
    return out;
}

bool equalsText(std::string_view a, std::string_view b) {
    return a.size() == b.size() && sameAt(a, 0, b, Compare::Text);
}

std::vector<std::string> Split(std::string_view text, std::string_view delimiter) {
    std::vector<std::string> parts;
    if (text.empty()) return parts;
    if (delimiter.empty()) {
        parts.emplace_back(text);
        return parts;
    }
    std::size_t from = 0;
    for (;;) {
        std::size_t at = text.find(delimiter, from);
        if (at == std::string_view::npos) {
            parts.emplace_back(text.substr(from));
            return parts;
        }
        parts.emplace_back(text.substr(from, at - from));
        from = at + delimiter.size();
    }
}

std::string Join(const std::vector<std::string> &parts, std::string_view delimiter) {
    std::string out;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        if (i) out += delimiter;
        out += parts[i];
    }
    return out;
}

double Val(std::string_view text) {
    // The runtime drops blanks, tabs and line feeds anywhere before reading.
    std::string s;
    for (char c : text)
        if (!isBlank(c)) s += c;
    if (s.size() >= 2 && s[0] == '&') {
        int radix = (s[1] == 'H' || s[1] == 'h') ? 16 : (s[1] == 'O' || s[1] == 'o') ? 8 : 0;
        if (radix == 0) return 0;
        std::size_t n = 2;
        while (n < s.size() && s[n] != 0 &&
               std::strchr(radix == 16 ? "0123456789abcdefABCDEF" : "01234567", s[n]))
            ++n;
        if (n == 2) return 0;
        return static_cast<double>(std::strtoull(s.substr(2, n - 2).c_str(), nullptr, radix));
    }
    // Take the longest leading piece that reads as a decimal number.
    for (std::size_t n = s.size(); n > 0; --n) {
        double v = 0;
        if (parseDecimal(std::string_view(s).substr(0, n), v)) return v;
    }
    return 0;
}

double CDbl(std::string_view text) {
    std::string t;
    for (char c : text)
        if (c != ' ' && c != '\t') t += c;
    double v = 0;
    if (t.empty() || !(parseDecimal(t, v) || parseRadix(t, v))) raiseError(err::TypeMismatch);
    if (!std::isfinite(v)) raiseError(err::Overflow);
    return v;
}

std::int32_t CLng(double value) {
    double r = roundHalfEven(value);
    if (!(r >= std::numeric_limits<std::int32_t>::min() && r <= std::numeric_limits<std::int32_t>::max()))
        raiseError(err::Overflow);
    return static_cast<std::int32_t>(r);
}

std::int32_t CLng(std::string_view text) {
    return CLng(CDbl(text));
}

std::int16_t CInt(std::string_view text) {
    double r = roundHalfEven(CDbl(text));
    if (!(r >= -32768 && r <= 32767)) raiseError(err::Overflow);
    return static_cast<std::int16_t>(r);
}

bool IsNumeric(std::string_view text) {
    std::string t;
    for (char c : text)
        if (c != ' ' && c != '\t') t += c;
    double v = 0;
    return !t.empty() && (parseDecimal(t, v) || parseRadix(t, v));
}

bool settingIsTrue(std::string_view value) {
    const std::string v = Trim(value);
    return equalsText(v, "True") || (IsNumeric(v) && Val(v) != 0);
}

}  // namespace saltmarrow::vb
