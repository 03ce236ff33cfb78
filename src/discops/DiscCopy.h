#ifndef SALTMARROW_DISCOPS_DISCCOPY_H
#define SALTMARROW_DISCOPS_DISCCOPY_H

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "devices/DeviceHost.h"
#include "discops/Fragments.h"
#include "exec/OutputInterpreter.h"

// The jobs of the read/copy and tools menus that drive the drives directly:
// the copy on the fly, the read of a disc to an image, the dump of a data
// disc sector by sector, and the unlock of a writer.
namespace saltmarrow::discops {

// The main form's panels and switches as these jobs read them.
struct DiscJobPanels {
    WritePanel write;  // cmbWriterDevice names the writer
    ReadPanel read;    // cmbReaderDevice names the reader
    FragmentSettings settings;
    bool confirmWrite = false;  // mnuConfirmWrite
};

struct DiscJobTools {
    std::string cdrdao, toc2cue, readom;
};

// What the jobs ask of the main form besides what the drive procedures ask.
struct DiscJobHost {
    const DeviceHost *device = nullptr;  // runs, modes, status line, log, messages, dialogs
    DeviceState *devices = nullptr;
    InterpreterState *reading = nullptr;  // what the reading of a tool's lines found
    bool *writeCancelled = nullptr;       // the Cancel button was pressed during the job
    bool *writeFailed = nullptr;
    DiscJobTools tools;
    std::string tempFolder;  // <app>/external/TEMP
    std::function<int(const std::string &text, int style, const std::string &title)> box;  // MsgBoxOverMe
    std::function<std::string()> totalOutput;  // objDOS.totalOutput of the last command
    std::function<void(bool enable)> enableControls;
    std::function<void()> openSettings;  // showSettings(true)
    std::function<bool()> settingsShown;
    std::function<void()> autoHideSettings;
    std::function<std::string()> lastReadFolder;
    std::function<void(const std::string &folder)> setLastReadFolder;
    std::function<std::string()> discStatus;  // of the writer, with the erase offer
    std::function<bool(const std::string &command)> readcd;
    std::function<void(const std::string &command)> writeFrame;
    std::function<void(const std::string &image)> loadImage;  // startCommand, parseCommand
    std::function<void(const std::string &line)> appendLog;
};

// The size of the disc in the reader as its table of contents gives it.
struct TocSize {
    bool known = false;
    double readBytes = 0;      // at 2352 bytes a block
    bool discHasData = false;  // a data track
    bool discHasAudio = false;
};
// What the table of contents that read-toc prints says of the disc.
TocSize tocSizeOf(double discBytes, std::string_view totalOutput);

// The files of a read: the sheet read-cd writes, the one the user keeps,
// and the data file. A data disc keeps a cue sheet and a .bin, any other a
// .toc and a .dat.
struct ReadTargets {
    std::string toc, sheet, data;
};
ReadTargets readTargets(std::string_view chosen, bool discHasData);

// toc2cue has made the cue sheet: by the phrase of its older versions, or
// by Debian's with a clean exit.
bool tocConverted(const ToolRun &run);

// ReadTOC: the size of the disc in the reader, through read-toc into info.toc.
TocSize ReadTOC(const DiscJobHost &host, const DiscJobPanels &panels);

// copyDisc, once cmdWrite_Click has checked the writer and its medium.
void copyDisc(const DiscJobHost &host, const DiscJobPanels &panels);

// mnuReadCD_Click with setupReadCd: the disc in the reader to a toc or cue image.
void mnuReadCD_Click(const DiscJobHost &host, const DiscJobPanels &panels);

// mnuDDump_Click: a data CD or DVD sector by sector into an ISO image.
void mnuDDump_Click(const DiscJobHost &host, const DiscJobPanels &panels);

// mnuResetWriter_Click: unlocks the writer.
void mnuResetWriter_Click(const DiscJobHost &host, const DiscJobPanels &panels);

}  // namespace saltmarrow::discops

#endif
