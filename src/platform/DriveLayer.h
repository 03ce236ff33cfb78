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

// The drive-access layer: the only place that knows how a drive is addressed
// and how the scan prints it. Everything above it handles addresses as opaque
// texts obtained here.
class DriveLayer {
public:
    virtual ~DriveLayer() = default;

    // True where the tools know an SPTI layer beside ASPI; without it the
    // SPTI box stays off and a single scan lists every drive.
    virtual bool hasSPTILayer() const = 0;
    // Arguments behind the cdrdao path that scan one access layer.
    virtual std::string scanArguments(bool useSPTI) const = 0;
    // The lines of a scan output from the first device line to the end, or
    // none when no device line is found. Empty lines are kept.
    virtual std::vector<std::string> deviceLines(std::string_view scanOutput) const = 0;
    // The message key for a scan output that cannot list drives, or none
    // when the output goes on to be read.
    virtual std::optional<std::string_view> scanProblem(std::string_view scanOutput) const = 0;
    // The scan reached a working access layer.
    virtual bool layerLoaded(std::string_view scanOutput) const = 0;
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
    // True where cdrdao drive-info reports the medium, the feature words and
    // the speeds itself; otherwise capabilities() and the disc queries tell.
    virtual bool driveInfoReportsAll() const = 0;
    // What the system knows of the drive at address; none if nothing.
    virtual std::optional<DriveCapabilities> capabilities(std::string_view address) const = 0;
    // Whether a disc is in the drive, if the system can tell without a tool.
    virtual std::optional<bool> discPresent(std::string_view address) const = 0;
};

// SCSI pass-through addressing as the Windows builds of the tools know it:
// "b,t,l" with one digit per field, behind "ASPI:"/"SPTI:", locked with "LOCK:".
class WindowsDriveLayer final : public DriveLayer {
public:
    bool hasSPTILayer() const override { return true; }
    std::string scanArguments(bool useSPTI) const override;
    std::vector<std::string> deviceLines(std::string_view scanOutput) const override;
    std::optional<std::string_view> scanProblem(std::string_view scanOutput) const override;
    bool layerLoaded(std::string_view scanOutput) const override;
    ScannedDrive parseScanLine(std::string_view line) const override;
    std::string addressOf(std::string_view listText) const override;
    std::optional<std::string> wellFormedAddress(std::string_view text) const override;
    std::string cdrdaoDevice(std::string_view address, bool useSPTI, bool lockDevice) const override;
    std::string dvdDevice(std::string_view address, bool useSPTI, bool plainAddress) const override;
    bool driveInfoReportsAll() const override { return true; }
    std::optional<DriveCapabilities> capabilities(std::string_view) const override { return std::nullopt; }
    std::optional<bool> discPresent(std::string_view) const override { return std::nullopt; }
};

// Drives as Linux names them: the device path ("/dev/sr0") is the address
// for cdrdao, wodim, icedax and mkisofs alike. Debian's cdrdao scans once,
// prints "<path> : <vendor>, <model>, <revision>" per drive and has no
// drive report of media or feature words; the kernel's CD-ROM table
// (kernelInfo, normally /proc/sys/dev/cdrom/info) tells what each drive
// reads and writes.
class LinuxDriveLayer final : public DriveLayer {
public:
    explicit LinuxDriveLayer(std::string kernelInfo = "/proc/sys/dev/cdrom/info");

    bool hasSPTILayer() const override { return false; }
    std::string scanArguments(bool useSPTI) const override;
    std::vector<std::string> deviceLines(std::string_view scanOutput) const override;
    std::optional<std::string_view> scanProblem(std::string_view scanOutput) const override;
    bool layerLoaded(std::string_view scanOutput) const override;
    ScannedDrive parseScanLine(std::string_view line) const override;
    std::string addressOf(std::string_view listText) const override;
    std::optional<std::string> wellFormedAddress(std::string_view text) const override;
    std::string cdrdaoDevice(std::string_view address, bool useSPTI, bool lockDevice) const override;
    std::string dvdDevice(std::string_view address, bool useSPTI, bool plainAddress) const override;
    bool driveInfoReportsAll() const override { return false; }
    std::optional<DriveCapabilities> capabilities(std::string_view address) const override;
    std::optional<bool> discPresent(std::string_view address) const override;

private:
    std::string kernelInfo_;
};

// The capabilities of the drive named driveName ("sr0") in the text of the
// kernel's CD-ROM table; none if the table has no column for it.
std::optional<DriveCapabilities> parseKernelCdromInfo(std::string_view table, std::string_view driveName);

// The layer the program runs on: the one of this platform unless another
// was chosen (the tests choose the layer their fake drive speaks for).
const DriveLayer &driveLayer();
// Chooses the layer; null goes back to the platform's own.
void setDriveLayer(const DriveLayer *layer);

}  // namespace saltmarrow::platform

#endif
