#ifndef SALTMARROW_DISCOPS_IMAGELOAD_H
#define SALTMARROW_DISCOPS_IMAGELOAD_H

#include <string>

#include "discops/ImageSlot.h"
#include "discops/SheetCheck.h"
#include "exec/Mode.h"
#include "platform/Dialogs.h"

namespace saltmarrow::discops {

// What parseCommand reads of the main form besides the image slot.
struct ParseCommandInput {
    bool cmdWriteEnabled = true;
    bool formLoaded = false;
    std::string commandLine;  // the program's own command line
    bool chkCheckCUE = false;
    std::string discSizeText;  // the disc size text of the mode, shown behind "MB / "
};

// What the form shows after a load.
struct ParseCommandResult {
    bool ran = false;     // false: cmdWrite was disabled and nothing happened
    bool loaded = false;  // the slot holds an image of known size
    std::string panel1;   // first panel of sbStatusBar
    std::string txtStatus;
    Mode mode = Mode::None;   // for ChangeCurrentMode: WriteCD once an image is loaded
    bool startWrite = false;  // "-w" on the command line: the form calls cmdWrite_Click
    CheckImageResult check;   // what checkImage found, when it ran
};

// Loads slot.startCommand ("-i <file>", "-w <file>" or a bare path) into the
// image slot: checks the sheet, finds the block size and the bytes to write.
ParseCommandResult parseCommand(ImageSlot &slot, const ParseCommandInput &input, const ImageContext &ctx);

// The open dialog of File > Load. False when the user cancelled; otherwise the
// chosen file is in slot.startCommand and parseCommand loads it.
bool chooseImage(ImageSlot &slot, platform::Dialogs &dialogs);
platform::FileRequest imageOpenRequest(const std::string &lastFolder);

// The folder relative names in sheets are read against just now.
std::string currentFolder(const ImageSlot &slot, const ImageContext &ctx);

// The first count characters of a UTF-8 text, and its length in characters:
// labels are cut between characters, never inside one.
std::string leftChars(std::string_view text, std::size_t count);
std::size_t charCount(std::string_view text);

}  // namespace saltmarrow::discops

#endif
