#include "audio/BitString.h"

#include <limits>

#include "support/RuntimeError.h"

namespace saltmarrow {

std::string bytesToBinary(std::string_view bytes, bool keepLeadingZeros) {
    std::string digits;
    digits.reserve(bytes.size() * 8);
    for (char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        for (int bit = 7; bit >= 0; --bit) digits += ((byte >> bit) & 1) ? '1' : '0';
    }
    if (keepLeadingZeros) return digits;
    const std::size_t first = digits.find('1');
    return first == std::string::npos ? std::string() : digits.substr(first);
}

std::int32_t binaryToLong(std::string_view digits) {
    std::int64_t value = 0;
    for (char c : digits) {
        if (c != '0' && c != '1') raiseError(err::TypeMismatch);
        value = value * 2 + (c - '0');
        if (value > std::numeric_limits<std::int32_t>::max()) raiseError(err::Overflow);
    }
    return static_cast<std::int32_t>(value);
}

}  // namespace saltmarrow
