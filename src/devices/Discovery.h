#ifndef SALTMARROW_DEVICES_DISCOVERY_H
#define SALTMARROW_DEVICES_DISCOVERY_H

#include <optional>
#include <string>
#include <string_view>

#include "devices/DeviceHost.h"
#include "devices/DriveOptions.h"

namespace saltmarrow {

// Scans for drives and adds a record for each. True if a drive was found.
bool scanbus(DeviceState &state, const DeviceHost &host);

// Driver and option word from a dt-lookup output.
struct DriverEntry {
    std::string Driver;
    std::string DriverOptions;
};
DriverEntry parseDriverLookup(std::string_view output);

// The log text with the drive's line marked " (Raw Driver Recommended)".
std::string markRawDriver(std::string logText, std::string_view deviceName);

// Fills empty drivers from the driver table and asks every drive what it is.
void getDrivers(DeviceState &state, const DeviceHost &host);

// Device index of a list text or address; 0 when it matches nothing.
short getDeviceIndex(const DeviceState &state, std::string_view address, const platform::DeviceForms &layer);

// The list text of a drive for the layer the SPTI box chose.
const std::string &fullName(const DeviceState &state, const DeviceInfo &device);
const std::string &deviceID(const DeviceState &state, const DeviceInfo &device);

// Rebuilds both lists for the chosen layer, keeping the selections where
// they still exist (steps 4 to 8 of a layer switch).
void fillDeviceLists(const DeviceState &state, DeviceLists &lists);

// The SPTI box was clicked; chkUseSPTI already holds the new value.
void chkUseSPTI_Click(DeviceState &state, const DeviceHost &host, bool formLoaded, DeviceLists &lists);

// The writer list's selection changed: loads the panel from the drive's
// options and rebuilds the speed list. statusPanel2 is sbStatusBar's
// second panel.
void cmbWriterDevice_Click(DeviceState &state, WritePanel &panel, OptionsMemory &memory,
                           const platform::DeviceForms &layer, std::string &statusPanel2);

// Start-up: scan and fill the reader list (when cdrdao exists), then show
// the active layer's scan output in the log.
void startupScanDevices(DeviceState &state, const DeviceHost &host, bool cdrdaoExists, DeviceLists &lists);
// Start-up, after the settings: configure the drives, fill the writer list
// and select the writer the settings named (its key; empty for none).
void startupConfigureDevices(DeviceState &state, const DeviceHost &host, DeviceLists &lists,
                             const std::string &writerKey);

}  // namespace saltmarrow

#endif
