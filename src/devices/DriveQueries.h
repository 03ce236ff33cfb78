#ifndef SALTMARROW_DEVICES_DRIVEQUERIES_H
#define SALTMARROW_DEVICES_DRIVEQUERIES_H

#include <functional>
#include <string>
#include <string_view>

#include "devices/DeviceHost.h"
#include "devices/DriveOptions.h"

namespace saltmarrow {

// "24x,20x,...,1x" from the drive's top speed text; empty for "0".
std::string speedLadder(std::string_view topSpeed);
// The drive's own list behind "Available Write Speeds: ", read as the
// program always has (see the definition).
std::string reportedSpeeds(std::string_view speedsText);
// Fills the record from a drive-info output whose media text is media.
void readDriveInfo(DeviceInfo &device, std::string_view output, const std::string &media);

// Asks the drive at index what it is and what is in it.
void updateDriveInfo(DeviceState &state, const DeviceHost &host, short index, bool skipNoMedia, bool force);

// The status refresh: asks every writer again and rebuilds the speed list.
void updateMediaInfo(DeviceState &state, const DeviceHost &host, WritePanel &panel, OptionsMemory &memory,
                     std::string &statusPanel2, bool autoRefresh, bool refreshList, bool showInfo);

// What discStatus needs of the rest of the program.
struct DiscStatusContext {
    std::string writer;          // cmbWriterDevice's text; empty: none chosen
    std::string deviceFragment;  // the writer's device and driver arguments
    bool chkMulti = false;       // frmISOSettings: a data disc is to be added to
    // Shows frmEraseCD modally; returns eraseCancelled.
    std::function<bool()> offerErase;
};

// Status character, NUL, blocks, NUL, rewritable flag; see the table of
// status characters beside the definition. Empty when no writer is chosen.
std::string discStatus(const DeviceHost &host, const DiscStatusContext &context);

// The three fields of a discStatus result.
struct DiscStatusResult {
    char status = 0;
    long blocks = 0;
    int rewritable = 0;
};
DiscStatusResult splitDiscStatus(std::string_view result);

}  // namespace saltmarrow

#endif
