#ifndef SALTMARROW_DEVICES_DRIVEOPTIONS_H
#define SALTMARROW_DEVICES_DRIVEOPTIONS_H

#include <string>
#include <string_view>
#include <vector>

#include "devices/DeviceInfo.h"

namespace saltmarrow {

// The items of cmbBuffers, by ListIndex.
inline constexpr std::string_view kBufferSizes[] = {"32", "64", "128", "256", "512", "1024"};

// The write panel of the main form as its controls stand. Check boxes hold
// their value (ticked at 1); combos their ListIndex and text.
struct WritePanel {
    int cmbWriterDeviceIndex = -1;
    std::string cmbWriterDevice;
    std::vector<std::string> cmbSpeedItems;
    int cmbSpeedIndex = -1;
    std::string cmbSpeed;
    int cmbBuffersIndex = 3;
    std::string cmbBuffers = "256";
    int ChkWriteDriverRaw = 0;
    int chkWriteCDText = 0;
    int chkBurnProof = 1;
    int chkEject = 1;
    int chkForce = 0;
    int chkOverburn = 0;
    int chkMultiSession = 0;
    int chkSimulate = 0;
};

// The read panel.
struct ReadPanel {
    int cmbReaderDeviceIndex = -1;
    std::string cmbReaderDevice;
    int cmbParanoiaIndex = 0;  // 0..3
    int cmbSubsIndex = 0;      // 0..2
    int chkReadRaw = 0;
    int chkReadCDText = 0;
    int chkSwapAudio = 0;
    int chkSimpleTOC = 0;
};

// What the option strings keep between the panel's events.
struct OptionsMemory {
    bool combiningOptions = false;  // guard against the panel's own click events
    int savedSpeedIndex = 0;
    std::string savedSpeedText;
};

inline constexpr std::string_view kDefaultWriterOptions = "3000110000";
inline constexpr std::string_view kDefaultReaderOptions = "000000";

// Moves the write panel to (load false) or from (load true) the writer's
// WriterOptions. writer is the drive of the selected list entry; nothing
// happens without a selection or while the guard is set.
void combineWriteOptions(bool load, WritePanel &panel, DeviceInfo *writer, OptionsMemory &memory);
void combineReadOptions(bool load, ReadPanel &panel, DeviceInfo *reader, OptionsMemory &memory);

}  // namespace saltmarrow

#endif
