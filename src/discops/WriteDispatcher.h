#ifndef SALTMARROW_DISCOPS_WRITEDISPATCHER_H
#define SALTMARROW_DISCOPS_WRITEDISPATCHER_H

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "devices/DeviceHost.h"
#include "devices/DriveQueries.h"
#include "discops/Fragments.h"
#include "discops/ImageSlot.h"
#include "exec/Mode.h"

namespace saltmarrow::discops {

// A message box the form shows for the dispatcher, and what it leaves
// behind. An empty key ends the click without a word: the tool has said why.
struct Refusal {
    std::string key;            // message table key of the box
    int style = 0;              // its style
    std::string statusKey;      // txtStatus afterwards, if any
    bool openSettings = false;  // the settings area opens so that a writer can be chosen
};

// The medium in the writer against the task. An ISO onto a DVD becomes a
// DVD write; a medium the program does not know passes.
struct MediumDecision {
    std::optional<Refusal> refusal;
    Mode mode = Mode::None;  // the task from here on
};
MediumDecision mediumFitsTask(Mode mode, std::string_view mediaType, std::string_view image);

// Only a blank disc takes an image; a disc that could not be read at all
// ends the click silently.
std::optional<Refusal> discRefusal(const DiscStatusResult &disc);

// The figures of the confirmation box: image and free room in whole MB.
std::string confirmationText(const MessageText &msg, double imageBytes, double discFreeBytes);

// The write of one image as the form runs it.
struct WritePlan {
    std::string command;      // cdrdao write of the sheet
    std::string commandFile;  // command.bat, which holds command
    std::string sheet;        // the sheet cdrdao reads
    std::string folder;       // where it runs: the sheet's own folder
};
WritePlan planImageWrite(const std::string &cdrdao, const std::string &deviceAndOptions,
                         const std::string &sheet, const std::string &externalFolder);

// The main form when cmdWrite is pressed.
struct WriteClick {
    bool cancelling = false;  // the button reads msgCancel: this click cancels
    Mode mode = Mode::None;
    WritePanel panel;  // cmbWriterDevice names the writer
    FragmentSettings settings;
    bool confirmWrite = false;  // mnuConfirmWrite
};

// What the dispatcher asks of the form: it asks, shows and runs.
struct WriteHost {
    std::function<int(const std::string &text, int style)> box;  // MsgBoxOverMe
    std::function<void(const std::string &text)> status;         // txtStatus
    std::function<void()> killInstantly;                         // the running tool
    bool *writeCancelled = nullptr;
    std::function<void()> openSettings;  // showSettings(true) if closed
    std::function<void()> chooseImage;   // mnuLoad_Click
    std::function<void(bool enable)> enableControls;
    std::function<void()> autoHideSettings;
    // updateMediaInfo; the write panel as it stands after it (the speed list follows the disc).
    std::function<WritePanel()> refreshMedia;
    std::function<bool()> offerErase;  // frmEraseCD over a used rewritable disc; true: cancelled
    // The jobs of other forms; empty where this build has none.
    std::function<void()> copyDisc, writeDataCD, writeDVDImage;
    std::function<void(const WritePlan &plan)> write;  // the write frame around the plan
};

// cmdWrite_Click: cancel, writer chosen, something loaded, medium, blank
// disc, size, confirmation, then the write. The mode, the controls and an
// ISO's place in the slot are as they were when it returns.
void cmdWrite_Click(const WriteClick &click, DeviceState &devices, const DeviceHost &deviceHost,
                    ImageSlot &slot, const ImageContext &ctx, WriteHost &host);

}  // namespace saltmarrow::discops

#endif
