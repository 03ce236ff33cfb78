#ifndef SALTMARROW_AUDIO_BITSTRING_H
#define SALTMARROW_AUDIO_BITSTRING_H

#include <cstdint>
#include <string>
#include <string_view>

namespace saltmarrow {

// Bytes as a text of "0" and "1" digits, 8 to a byte, most significant bit
// first. Without keepLeadingZeros the leading zeros of the whole text are left
// out (all zeros give ""), so digit positions only line up with bit positions
// when the first byte has its top bit set, as an MPEG frame header does.
std::string bytesToBinary(std::string_view bytes, bool keepLeadingZeros = false);

// The value of a text of "0" and "1" digits ("" is 0). Anything else raises
// error 13, a value above the 32-bit range raises error 6.
std::int32_t binaryToLong(std::string_view digits);

}  // namespace saltmarrow

#endif
