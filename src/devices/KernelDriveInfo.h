#ifndef SALTMARROW_DEVICES_KERNELDRIVEINFO_H
#define SALTMARROW_DEVICES_KERNELDRIVEINFO_H

#include <string>
#include <string_view>

#include "devices/DeviceHost.h"
#include "platform/DriveLayer.h"

namespace saltmarrow {

// Drive queries where cdrdao's drive-info names no medium and no feature
// words (Debian's cdrdao): the features come from the system's table of
// drives, the speeds from drive-info's "Maximum writing speed", the medium
// from dvd+rw-mediainfo for DVDs and from cdrdao disk-info for CDs. The
// record ends up with the same words as where drive-info tells it all.

// Top speed in x from the kB/s of "Maximum writing speed: ", counted in CD
// steps (176.4 kB/s) or DVD steps (1385 kB/s); 0 when the line is missing.
long topWriteSpeed(std::string_view driveInfoOutput, bool dvd);
// The medium "dvd+rw-mediainfo" reports: "DVD+R", "DVD-RW", ...; "n/a" for
// an empty drive; empty when the disc is no DVD or the output says nothing.
std::string dvdMediumType(std::string_view mediaInfoOutput);
// The room left on a DVD: the last "Free Blocks: N*2KB" dvd+rw-mediainfo
// reports, in blocks of 2048 bytes; 0 when it says none.
long dvdFreeBlocks(std::string_view mediaInfoOutput);
// The medium "cdrdao disk-info" reports: "CD-RW", "CD-R" or "CD-ROM";
// "n/a" when it read no disc.
std::string cdMediumType(std::string_view diskInfoOutput);

// What a drive missing from the system's table is taken to be: a CD drive
// that writes if drive-info gives it a writing speed, and may hold a DVD.
platform::DriveCapabilities guessedCapabilities(std::string_view driveInfoOutput);

// Fills the record from what the system and drive-info said, with media the
// medium text ("n/a" or empty for none).
void readKernelDriveInfo(DeviceInfo &device, const platform::DriveCapabilities &caps,
                         std::string_view driveInfoOutput, const std::string &media);

// The medium in the drive at address, asking as few tools as it can.
std::string queryMedium(const DeviceHost &host, const DeviceInfo &device, const std::string &address,
                        const platform::DriveCapabilities &caps);

}  // namespace saltmarrow

#endif
