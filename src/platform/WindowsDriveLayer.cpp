#include "platform/DriveLayer.h"
#include "support/mdlFunctions.h"

namespace saltmarrow::platform {

using namespace vb;

namespace {

enum class ScanTest { Empty, Contains, ShorterThan };

struct ScanClass {
    ScanTest test;
    std::string_view phrase;
    std::size_t length;
    std::string_view key;
};

// Outputs that cannot list drives, in the order they are tested.
constexpr ScanClass kScanClasses[] = {
    {ScanTest::Empty, "", 0, "msgCdrdaoFail"},
    {ScanTest::Contains, "Can not load ASPI driver", 0, "msgNoASPILayer"},
    {ScanTest::Contains, "Can not load ASPI or SPTI driver!", 0, "msgNoASPILayer"},
    {ScanTest::Contains, "Could not find any host adapters", 0, "msgNoHostAdapters"},
    {ScanTest::ShorterThan, "", 210, "msgNoDevicesFound"},
};

}  // namespace

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

std::optional<std::string_view> WindowsDriveLayer::scanProblem(std::string_view output) const {
    for (const ScanClass &row : kScanClasses) {
        bool hit = false;
        switch (row.test) {
            case ScanTest::Empty:
                hit = output.empty();
                break;
            case ScanTest::Contains:
                hit = InStr(output, row.phrase, Compare::Text) != 0;
                break;
            case ScanTest::ShorterThan:
                hit = output.size() < row.length;
                break;
        }
        if (hit) return row.key;
    }
    return std::nullopt;
}

bool WindowsDriveLayer::layerLoaded(std::string_view output) const {
    return InStr(output, "OK!") != 0;  // the tool's word for a layer that loaded
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

}  // namespace saltmarrow::platform
