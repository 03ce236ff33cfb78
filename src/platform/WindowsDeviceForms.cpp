#include "platform/WindowsDeviceForms.h"

#include "support/mdlFunctions.h"

namespace saltmarrow::platform {

std::string WindowsDeviceForms::addressOf(std::string_view listText) const {
    return vb::Left(listText, 5);
}

std::optional<std::string> WindowsDeviceForms::wellFormedAddress(std::string_view text) const {
    std::string address = vb::Left(text, 5);
    if (address.size() == 5 && address[1] == ',' && address[3] == ',') return address;
    return std::nullopt;
}

std::string WindowsDeviceForms::cdrdaoDevice(std::string_view address, bool useSPTI, bool lockDevice) const {
    return std::string(useSPTI ? "SPTI" : "ASPI") + (lockDevice ? "LOCK:" : ":") + std::string(address);
}

std::string WindowsDeviceForms::dvdDevice(std::string_view address, bool useSPTI, bool plainAddress) const {
    if (plainAddress) return std::string(address);
    return (useSPTI ? "SPTILOCK:" : "ASPILOCK:") + std::string(address);
}

}  // namespace saltmarrow::platform
