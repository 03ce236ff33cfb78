#ifndef SALTMARROW_PLATFORM_WINDOWSDEVICEFORMS_H
#define SALTMARROW_PLATFORM_WINDOWSDEVICEFORMS_H

#include "platform/DriveLayer.h"

namespace saltmarrow::platform {

// SCSI pass-through addresses as the Windows builds of the tools take them:
// "b,t,l" with one digit per field, behind "ASPI:"/"SPTI:", locked with
// "LOCK:". Only the forms of the command lines are kept; no drive is found
// this way.
class WindowsDeviceForms final : public DeviceForms {
public:
    std::string addressOf(std::string_view listText) const override;
    std::optional<std::string> wellFormedAddress(std::string_view text) const override;
    std::string cdrdaoDevice(std::string_view address, bool useSPTI, bool lockDevice) const override;
    std::string dvdDevice(std::string_view address, bool useSPTI, bool plainAddress) const override;
};

}  // namespace saltmarrow::platform

#endif
