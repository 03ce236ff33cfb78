#include "platform/DriveLayer.h"
#include "support/mdlFunctions.h"

namespace saltmarrow::platform {

using namespace vb;

std::string WindowsDriveLayer::scanArguments(bool useSPTI) const {
    return useSPTI ? " scanbus --spti" : " scanbus";
}

std::vector<std::string> WindowsDriveLayer::deviceLines(std::string_view scanOutput) const {
    // A device line starts with "b,t,l: ": two commas two apart and ": " two
    // behind the second. The list runs from the line break before the first
    // such address to the end of the output.
    std::size_t c1 = 0;
    for (;;) {
        c1 = InStr(c1 + 1, scanOutput, ",");
        if (c1 == 0) return {};
        const std::size_t c2 = InStr(c1 + 1, scanOutput, ",");
        if (c2 == 0) return {};
        const std::size_t p = InStr(c2, scanOutput, ": ");
        if (c2 == c1 + 2 && p == c2 + 2) {
            const std::size_t cr = InStrRev(scanOutput, "\r", c1);
            if (cr != 0) return Split(Mid(scanOutput, cr), "\r\n");
        }
    }
}

ScannedDrive WindowsDriveLayer::parseScanLine(std::string_view line) const {
    std::string text(line);
    if (const std::size_t comma = InStrRev(text, ","); comma != 0) text = Left(text, comma - 1);  // firmware
    const std::size_t bar = InStr(text, "|");
    ScannedDrive drive;
    drive.fullName = Mid(text, bar + 1);
    drive.deviceName = Mid(text, InStrRev(text, ": ") + 2);
    drive.address = Mid(text, bar + 1, 5);
    return drive;
}

std::string WindowsDriveLayer::addressOf(std::string_view listText) const {
    return Left(listText, 5);
}

std::optional<std::string> WindowsDriveLayer::wellFormedAddress(std::string_view text) const {
    std::string address = Left(text, 5);
    if (address.size() == 5 && address[1] == ',' && address[3] == ',') return address;
    return std::nullopt;
}

std::string WindowsDriveLayer::cdrdaoDevice(std::string_view address, bool useSPTI, bool lockDevice) const {
    std::string device = useSPTI ? "SPTI" : "ASPI";
    device += lockDevice ? "LOCK:" : ":";
    device += address;
    return device;
}

std::string WindowsDriveLayer::dvdDevice(std::string_view address, bool useSPTI, bool plainAddress) const {
    if (plainAddress) return std::string(address);
    return (useSPTI ? "SPTILOCK:" : "ASPILOCK:") + std::string(address);
}

const DriveLayer &driveLayer() {
    static const WindowsDriveLayer layer;
    return layer;
}

}  // namespace saltmarrow::platform
