#ifndef SALTMARROW_SUPPORT_MDLFUNCTIONS_H
#define SALTMARROW_SUPPORT_MDLFUNCTIONS_H

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// The string and number helpers that the whole program leans on. Positions are
// 1-based and 0 means "not found", as everywhere in the program's own texts;
// "text compare" folds ASCII case. Every ad-hoc index calculation goes through
// these so that an off-by-one lives in one tested place only.
namespace saltmarrow::vb {

enum class Compare { Binary, Text };

// Position of needle in haystack at or after start, or 0.
std::size_t InStr(std::size_t start, std::string_view haystack, std::string_view needle,
                  Compare compare = Compare::Binary);
inline std::size_t InStr(std::string_view haystack, std::string_view needle,
                         Compare compare = Compare::Binary) {
    return InStr(1, haystack, needle, compare);
}
// Position of the last needle that ends at or before start (0: whole text).
std::size_t InStrRev(std::string_view haystack, std::string_view needle, std::size_t start = 0,
                     Compare compare = Compare::Binary);

// Mid with a 1-based start; start 0 raises error 5, a start past the end gives "".
std::string Mid(std::string_view text, std::size_t start);
std::string Mid(std::string_view text, std::size_t start, std::size_t length);
std::string Left(std::string_view text, std::size_t length);
std::string Right(std::string_view text, std::size_t length);

std::string Replace(std::string_view text, std::string_view find, std::string_view with,
                    Compare compare = Compare::Binary);

std::string Trim(std::string_view text);  // blanks only, as the runtime does
std::string LTrim(std::string_view text);
std::string RTrim(std::string_view text);
std::string UCase(std::string_view text);  // ASCII letters; other bytes untouched
std::string LCase(std::string_view text);
bool equalsText(std::string_view a, std::string_view b);  // text compare of two whole texts

// Split at every delimiter; an empty text gives an empty list.
std::vector<std::string> Split(std::string_view text, std::string_view delimiter);
std::string Join(const std::vector<std::string> &parts, std::string_view delimiter);

// Lenient numeric value: leading number of the text, blanks ignored, 0 if none.
// Reads "&H" hexadecimal and "&O" octal too.
double Val(std::string_view text);
// Strict conversions that raise error 13 (type mismatch) on text that is not a
// number and error 6 (overflow) out of range. CLng and CInt round half to even.
double CDbl(std::string_view text);
std::int32_t CLng(std::string_view text);
std::int16_t CInt(std::string_view text);
std::int32_t CLng(double value);
bool IsNumeric(std::string_view text);
// A boolean as the settings file holds it: "True", or a number other than 0.
bool settingIsTrue(std::string_view value);

}  // namespace saltmarrow::vb

#endif
