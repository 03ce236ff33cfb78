#include "data/VolumeLabel.h"

#include <cctype>
#include <cstdio>

#include "support/mdlFunctions.h"

namespace saltmarrow::data {

namespace {

std::string digitsOf(const std::string &text) {
    std::string out;
    for (const char c : text)
        if (std::isdigit(static_cast<unsigned char>(c))) out += c;
    return out;
}

std::string twoDigits(int n) {
    char buf[8];
    std::snprintf(buf, sizeof buf, "%02d", n % 100);
    return buf;
}

}  // namespace

std::string defaultVolumeLabel(bool sortable, const LabelTime &t) {
    if (sortable)
        return twoDigits(t.year) + twoDigits(t.month) + twoDigits(t.day) + "_" + twoDigits(t.hour) +
               twoDigits(t.minute);
    const std::string date = vb::Replace(t.shortDate, std::to_string(t.year), twoDigits(t.year));
    return digitsOf(date) + "_" + digitsOf(t.shortTime);
}

}  // namespace saltmarrow::data
