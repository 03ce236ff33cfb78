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
    std::string firmware;    // the revision, where the scan line gives one the program keeps
};

// What a drive says it reads and writes, as the feature words of the drive
// report ("CD-R CD-RW DVD-ROM "), when the platform knows it apart from cdrdao.
struct DriveCapabilities {
    std::string readFeatures;
    std::string writeFeatures;
    bool writesDVD = false;  // speeds are counted in DVD steps
    bool readsDVD = false;   // a DVD may be in it
};

// How the tools name a drive on their command lines. Everything above the
// platform handles addresses as opaque texts obtained here.
class DeviceForms {
public:
    virtual ~DeviceForms() = default;
    // The address a list text stands for.
    virtual std::string addressOf(std::string_view listText) const = 0;
    // The address a text holds, if it is a well-formed one.
    virtual std::optional<std::string> wellFormedAddress(std::string_view text) const = 0;
    // The value of cdrdao's --device (and --source-device) for a drive.
    virtual std::string cdrdaoDevice(std::string_view address, bool useSPTI, bool lockDevice) const = 0;
    // The value of the DVD writer's dev= for a drive.
    virtual std::string dvdDevice(std::string_view address, bool useSPTI, bool plainAddress) const = 0;
};

// The drive-access layer: how the drives are found and what the system
// knows of them besides the tools.
class DriveLayer : public DeviceForms {
public:
    // True where the tools know an SPTI layer beside ASPI; without it the
    // SPTI box stays off.
    virtual bool hasSPTILayer() const = 0;
    // Arguments behind the cdrdao path that scan for drives.
    virtual std::string scanArguments() const = 0;
    // The device lines of a scan output.
    virtual std::vector<std::string> deviceLines(std::string_view scanOutput) const = 0;
    // The message key for a scan output that cannot list drives, or none
    // when the output goes on to be read.
    virtual std::optional<std::string_view> scanProblem(std::string_view scanOutput) const = 0;
    // One device line, with the firmware field dropped.
    virtual ScannedDrive parseScanLine(std::string_view line) const = 0;
    // True where cdrdao drive-info reports the medium, the feature words and
    // the speeds itself; otherwise capabilities() and the disc queries tell.
    virtual bool driveInfoReportsAll() const = 0;
    // What the system knows of the drive at address; none if nothing.
    virtual std::optional<DriveCapabilities> capabilities(std::string_view address) const = 0;
    // Whether a disc is in the drive, if the system can tell without a tool.
    virtual std::optional<bool> discPresent(std::string_view address) const = 0;
};

}  // namespace saltmarrow::platform

#endif
