#ifndef SALTMARROW_SHELL_WRITEFRAME_H
#define SALTMARROW_SHELL_WRITEFRAME_H

#include <string>

#include "exec/Mode.h"

namespace saltmarrow {

// What the write frame does once the tool has ended. The outcome is read from
// the interpreter's flags only, never from the tool's exit code.
struct WriteOutcomeInput {
    bool writeSucceeded = false;
    bool writeFailed = false;
    bool writeCancelled = false;
    bool confirmWrite = false;  // mnuConfirmWrite
    bool deleteImages = false;  // chkDelImage
    Mode mode = Mode::None;     // currentMode
    long elapsedSeconds = 0;
};

struct WriteOutcome {
    std::string statusKey;    // message key for txtStatus
    std::string elapsedText;  // filled in %1 of msgWriteSuccess
    bool restoreFromTray = false;
    bool playAsterisk = false;    // stands in for the message box
    bool showMessageBox = false;  // the status text again, style 64
    bool setSpeedPanel = false;   // third status bar panel takes cmbSpeed's text
    bool offerDelete = false;     // deleteImage
};

struct TimeWords {
    std::string hrs = "hrs", mins = "mins", secs = "secs";
};

WriteOutcome decideWriteOutcome(const WriteOutcomeInput &in, const TimeWords &words = {});

// The modes in which the caption and the tray tip carry the progress.
bool isWriteMode(Mode mode);

// "42% saltmarrow": the caption while a write mode runs.
std::string progressCaption(int value, int max, const std::string &product);

}  // namespace saltmarrow

#endif
