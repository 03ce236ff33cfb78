#include "devices/KernelDriveInfo.h"

#include <cmath>

#include "devices/DriveQueries.h"
#include "platform/CommandLine.h"
#include "support/mdlFunctions.h"

namespace saltmarrow {

using namespace vb;

namespace {

constexpr std::string_view kMaxWriteSpeed = "Maximum writing speed: ";  // "%d kB/s"
constexpr std::string_view kBurnProof = "BurnProof supported: yes";
constexpr std::string_view kMountedMedia = "Mounted Media:";  // " %Xh, %s"
constexpr std::string_view kNoMedia = "no media mounted";
constexpr std::string_view kFreeBlocks = "Free Blocks:";  // " %u*2KB", one line per track
constexpr std::string_view kDiscRead = "That data below may not reflect";
constexpr double kCDStep = 176.4;
constexpr double kDVDStep = 1385.0;

// The rest of the line that key starts, or none.
std::optional<std::string> lineBehind(std::string_view output, std::string_view key) {
    const std::size_t at = output.find(key);
    if (at == std::string_view::npos) return std::nullopt;
    std::string_view rest = output.substr(at + key.size());
    rest = rest.substr(0, rest.find_first_of("\r\n"));
    return Trim(rest);
}

}  // namespace

long topWriteSpeed(std::string_view driveInfoOutput, bool dvd) {
    const std::optional<std::string> speed = lineBehind(driveInfoOutput, kMaxWriteSpeed);
    if (!speed) return 0;
    const double kbs = Val(*speed);
    if (kbs <= 0) return 0;
    return std::lround(kbs / (dvd ? kDVDStep : kCDStep));
}

std::string dvdMediumType(std::string_view mediaInfoOutput) {
    if (mediaInfoOutput.find(kNoMedia) != std::string_view::npos) return "n/a";
    const std::optional<std::string> mounted = lineBehind(mediaInfoOutput, kMountedMedia);
    if (!mounted) return {};
    // "1Bh, DVD+R", "11h, DVD-R Sequential", "13h, DVD-RW Restricted Overwrite"
    const std::size_t comma = mounted->find(", ");
    if (comma == std::string::npos) return {};
    const std::string profile = mounted->substr(comma + 2);
    const std::string type = profile.substr(0, profile.find(' '));
    return Left(type, 3) == "DVD" ? type : std::string();
}

long dvdFreeBlocks(std::string_view mediaInfoOutput) {
    const std::size_t at = mediaInfoOutput.rfind(kFreeBlocks);
    if (at == std::string_view::npos) return 0;
    return static_cast<long>(Val(mediaInfoOutput.substr(at + kFreeBlocks.size())));
}

std::string cdMediumType(std::string_view diskInfoOutput) {
    if (diskInfoOutput.find(kDiscRead) == std::string_view::npos) return "n/a";
    if (lineBehind(diskInfoOutput, "CD-RW                :").value_or("") == "yes") return "CD-RW";
    // A recordable disc carries its maker in the ATIP; a pressed one has none.
    const std::string maker = lineBehind(diskInfoOutput, "CD-R medium          :").value_or("n/a");
    return maker.empty() || maker == "n/a" ? "CD-ROM" : "CD-R";
}

platform::DriveCapabilities guessedCapabilities(std::string_view driveInfoOutput) {
    platform::DriveCapabilities caps;
    caps.readFeatures = "CD-R CD-RW CD-ROM ";
    if (topWriteSpeed(driveInfoOutput, false) > 0) caps.writeFeatures = "CD-R CD-RW ";
    caps.readsDVD = true;
    return caps;
}

void readKernelDriveInfo(DeviceInfo &device, const platform::DriveCapabilities &caps,
                         std::string_view driveInfoOutput, const std::string &media) {
    device.MediaInserted = media != "n/a" && !media.empty();
    if (device.MediaInserted) device.LastMediaType = media;
    device.ReadFeatures = caps.readFeatures;
    device.WriteFeatures = caps.writeFeatures;
    device.OtherFeatures = driveInfoOutput.find(kBurnProof) != std::string_view::npos ? "BURN-Proof " : "";
    device.BufferProtection = !device.OtherFeatures.empty();
    const long top = caps.writeFeatures.empty() ? 0 : topWriteSpeed(driveInfoOutput, caps.writesDVD);
    device.WriteSpeeds = speedLadder(std::to_string(top));
    device.isWriter = !device.WriteSpeeds.empty();
    device.isWriterKnown = true;
}

std::string queryMedium(const DeviceHost &host, const DeviceInfo &device, const std::string &address,
                        const platform::DriveCapabilities &caps) {
    const platform::DriveLayer &layer = host.driveLayer();
    // The drive itself says when it is empty, and then no tool needs to wait for it.
    if (layer.discPresent(address) == false) return "n/a";
    if (caps.readsDVD && !host.mediaInfoTool.empty()) {
        std::string argument = " ";
        argument += platform::quoteArgument(address, platform::Quoting::WhenNeeded);
        const std::string dvd = dvdMediumType(host.executeTool(host.mediaInfoTool, argument).output);
        if (!dvd.empty()) return dvd;
    }
    const std::string driver = device.Driver.empty() ? std::string() : " --driver " + device.Driver;
    return cdMediumType(host.execute(" disk-info --device " +
                                     platform::quoteArgument(layer.cdrdaoDevice(address, false, false),
                                                             platform::Quoting::WhenNeeded) +
                                     driver)
                            .output);
}

}  // namespace saltmarrow
