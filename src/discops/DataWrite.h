#ifndef SALTMARROW_DISCOPS_DATAWRITE_H
#define SALTMARROW_DISCOPS_DATAWRITE_H

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "devices/DeviceHost.h"
#include "discops/Fragments.h"
#include "discops/ImageSlot.h"

namespace saltmarrow::discops {

// What a data project leaves on the main window for its write.
struct DataDisc {
    std::string isoCommand;  // the mkisofs arguments
    bool largeFile = false;  // a file of 4 GiB or more, which only UDF shows whole
};

// The main window as cmdWrite finds it for a data disc or an ISO on a DVD.
struct DataWriteClick {
    bool dvd = false;  // "DATA DVD" (or "WRITE DVD"), else "DATA CD"
    WritePanel panel;
    FragmentSettings settings;
    short availableInterfaces = 0;
    bool confirmWrite = false;                 // mnuConfirmWrite
    bool chkMulti = false, chkImport = false;  // frmISOSettings
    DataDisc disc;
    std::string mkisofs;     // strMkisofs
    std::string dvdTool;     // dvdToolPath
    std::string tempFolder;  // <app>/external/TEMP
};

// What the data write asks of the main window besides the device procedures.
struct DataWriteHost {
    std::function<void(bool enable)> enableControls;
    std::function<WritePanel()> refreshMedia;  // updateMediaInfo; the panel after it
    std::function<bool()> offerErase;          // frmEraseCD; true: cancelled
    std::function<void()> clearLog;            // frmLog's text
    std::function<void(int max)> setProgressMax;
    std::function<void(const std::string &command)> writeFrame;
};

// The room on the DVD in the writer: dvd+rw-mediainfo's free blocks times
// 2048, 0 when it tells none (the write may still go on).
double dvdRoom(const DataWriteClick &click, const DeviceHost &deviceHost);
// The size of the stream from a -print-size run: "Total extents scheduled to
// be written = N" up to its line end.
std::optional<double> totalExtents(std::string_view output);
// mkisofs.toc for a stream of that many extents, filled up to the 4 seconds
// cdrdao takes at least.
std::string mkisofsToc(double extents, bool multiSession);

// cmdWrite for "DATA CD" and "DATA DVD": the room, the disc's state, the dry
// run of mkisofs, the confirmation, then mkisofs piped into the writer.
void writeDataCD(const DataWriteClick &click, DeviceState &devices, const DeviceHost &deviceHost,
                 ImageSlot &slot, const DataWriteHost &host);
// cmdWrite for "WRITE DVD": the loaded ISO onto a DVD.
void writeDVDImage(const DataWriteClick &click, DeviceState &devices, const DeviceHost &deviceHost,
                   ImageSlot &slot, const DataWriteHost &host);

}  // namespace saltmarrow::discops

#endif
