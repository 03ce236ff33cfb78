#ifndef SALTMARROW_DEVICES_DEVICEINFOTEXT_H
#define SALTMARROW_DEVICES_DEVICEINFOTEXT_H

#include <array>
#include <string>
#include <string_view>

#include "devices/DeviceInfo.h"

namespace saltmarrow {

// What frmDeviceInfo shows on its "Device" tab.
struct DeviceTab {
    std::string caption;
    std::string lblBufferValue;
    std::string lblFirmwareValue;
    std::string lblDriverValue;
    std::string lblTypeValue;
    std::array<bool, 9> chkReadFeature{};
    std::array<bool, 9> chkWriteFeature{};
};
DeviceTab ShowDeviceInfo(const DeviceInfo &device);

// "DVD-ROM", "DVD-R", "DVD-RW", "DVD+R", "DVD+RW": no CD query for these.
bool isDVDMediaType(std::string_view mediaType);

// The query of the "Media" tab stops the tool at once on these lines.
bool mediaInfoStopsAt(std::string_view line);

// What the "Media" tab shows, from the disk-info output (empty for a DVD).
struct MediaTab {
    std::array<bool, 3> chkMedia{};  // rewritable, blank, appendable
    std::string lblCapacityValue;
    std::string lblManufacturerValue;
    std::string lblTOCTypeValue;
    std::string lblSessionsValue;
    std::string lblTracksValue;
    std::string lblWriteSpeedValue;  // the form cuts it to fit, with "..."
};
MediaTab MediaInfo(const DeviceInfo &device, std::string_view diskInfoOutput, double discFreeBytes);

}  // namespace saltmarrow

#endif
