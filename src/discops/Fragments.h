#ifndef SALTMARROW_DISCOPS_FRAGMENTS_H
#define SALTMARROW_DISCOPS_FRAGMENTS_H

#include <initializer_list>
#include <string>
#include <string_view>

#include "devices/DriveOptions.h"

namespace saltmarrow {

namespace platform {
class DeviceForms;
}

// Settings and switches the fragments read besides the panels.
struct FragmentSettings {
    int chkUseSPTI = 0;
    bool UseDriverTable = true;
    short verbosity = 2;
    bool UseProDVD = false;
};

// What the fragments take of a drive's record.
struct FragmentDrive {
    std::string Driver;
    std::string DriverOptions;
    std::string ASPIDeviceID;  // the ProDVD tool's address
};
inline FragmentDrive fragmentDrive(const DeviceInfo &device) {
    return {device.Driver, device.DriverOptions, device.ASPIDeviceID};
}

// Bitwise OR of hexadecimal option words, in upper-case digits without padding.
std::string hexOr(std::initializer_list<std::string_view> words);

// " --device <dev> --driver <name>:0x<word> " for the writer.
std::string writeDevice(const WritePanel &panel, const FragmentSettings &settings,
                        const FragmentDrive &writer, bool &useRaw, bool isDataDisc, bool lockDevice,
                        const platform::DeviceForms &layer);
// The same for the reader, or as " --source-device ... --source-driver ... ".
std::string readDevice(const ReadPanel &panel, const FragmentSettings &settings, const FragmentDrive &reader,
                       bool asSource, bool lockDevice, const platform::DeviceForms &layer);
std::string WriteOptions(const WritePanel &panel, const FragmentSettings &settings);
std::string ReadOptions(const ReadPanel &panel);
// The DVD writer's arguments; no trailing blank.
std::string writeDVDCommand(const WritePanel &panel, const FragmentSettings &settings,
                            const FragmentDrive &writer, bool &useRaw, bool isDataDisc, bool plainAddress,
                            const platform::DeviceForms &layer);

}  // namespace saltmarrow

#endif
