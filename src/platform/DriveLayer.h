#ifndef SALTMARROW_PLATFORM_DRIVELAYER_H
#define SALTMARROW_PLATFORM_DRIVELAYER_H

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace saltmarrow::platform {

// One drive as a line of the tool's scan names it.
struct ScannedDrive {
    std::string address;     // what the tools take as the drive's address
    std::string fullName;    // list text: address, ": ", vendor and model
    std::string deviceName;  // vendor and model, the drive's identity across runs
};

// The drive-access layer: the only place that knows how a drive is addressed
// and how the scan prints it. Everything above it handles addresses as opaque
// texts obtained here.
class DriveLayer {
public:
    virtual ~DriveLayer() = default;

    // Arguments behind the cdrdao path that scan one access layer.
    virtual std::string scanArguments(bool useSPTI) const = 0;
    // The lines of a scan output from the first device line to the end, or
    // none when no device line is found. Empty lines are kept.
    virtual std::vector<std::string> deviceLines(std::string_view scanOutput) const = 0;
    // One (non-empty) device line, with the firmware field dropped.
    virtual ScannedDrive parseScanLine(std::string_view line) const = 0;
    // The address a list text stands for.
    virtual std::string addressOf(std::string_view listText) const = 0;
    // The address a text holds, if it is a well-formed one.
    virtual std::optional<std::string> wellFormedAddress(std::string_view text) const = 0;
    // The value of cdrdao's --device (and --source-device) for a drive.
    virtual std::string cdrdaoDevice(std::string_view address, bool useSPTI, bool lockDevice) const = 0;
    // The value of the DVD writer's dev= for a drive.
    virtual std::string dvdDevice(std::string_view address, bool useSPTI, bool plainAddress) const = 0;
};

// SCSI pass-through addressing as the Windows builds of the tools know it:
// "b,t,l" with one digit per field, behind "ASPI:"/"SPTI:", locked with "LOCK:".
class WindowsDriveLayer final : public DriveLayer {
public:
    std::string scanArguments(bool useSPTI) const override;
    std::vector<std::string> deviceLines(std::string_view scanOutput) const override;
    ScannedDrive parseScanLine(std::string_view line) const override;
    std::string addressOf(std::string_view listText) const override;
    std::optional<std::string> wellFormedAddress(std::string_view text) const override;
    std::string cdrdaoDevice(std::string_view address, bool useSPTI, bool lockDevice) const override;
    std::string dvdDevice(std::string_view address, bool useSPTI, bool plainAddress) const override;
};

// The layer the program runs on.
const DriveLayer &driveLayer();

}  // namespace saltmarrow::platform

#endif
