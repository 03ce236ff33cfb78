#ifndef SALTMARROW_PLATFORM_LINUXDRIVELAYER_H
#define SALTMARROW_PLATFORM_LINUXDRIVELAYER_H

#include "platform/DriveLayer.h"

namespace saltmarrow::platform {

// Drives as Linux names them: the device path ("/dev/sr0") is the address
// for cdrdao, wodim, icedax and mkisofs alike. Debian's cdrdao scans once,
// prints "<path> : <vendor>, <model>, <revision>" per drive and has no
// drive report of media or feature words; the kernel's CD-ROM table
// (kernelInfo, normally /proc/sys/dev/cdrom/info) tells what each drive
// reads and writes.
class LinuxDriveLayer : public DriveLayer {
public:
    explicit LinuxDriveLayer(std::string kernelInfo = "/proc/sys/dev/cdrom/info");

    std::string addressOf(std::string_view listText) const override;
    std::optional<std::string> wellFormedAddress(std::string_view text) const override;
    std::string cdrdaoDevice(std::string_view address, bool useSPTI, bool lockDevice) const override;
    std::string dvdDevice(std::string_view address, bool useSPTI, bool plainAddress) const override;
    bool hasSPTILayer() const override { return false; }
    std::string scanArguments() const override { return " scanbus"; }
    std::vector<std::string> deviceLines(std::string_view scanOutput) const override;
    std::optional<std::string_view> scanProblem(std::string_view scanOutput) const override;
    ScannedDrive parseScanLine(std::string_view line) const override;
    bool driveInfoReportsAll() const override { return false; }
    std::optional<DriveCapabilities> capabilities(std::string_view address) const override;
    std::optional<bool> discPresent(std::string_view address) const override;

private:
    std::string kernelInfo_;
};

// The capabilities of the drive named driveName ("sr0") in the text of the
// kernel's CD-ROM table; none if the table has no column for it.
std::optional<DriveCapabilities> parseKernelCdromInfo(std::string_view table, std::string_view driveName);

}  // namespace saltmarrow::platform

#endif
