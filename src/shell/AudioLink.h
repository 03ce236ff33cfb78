#ifndef SALTMARROW_SHELL_AUDIOLINK_H
#define SALTMARROW_SHELL_AUDIOLINK_H

#include <string>

#include "audio/AudioHost.h"

namespace saltmarrow {

class frmMain;

// mnuAudioCD: the audio project window, made (in the user's language) the
// first time and shown again afterwards.
void showAudioCD(frmMain &main);

// The main form as the audio project window sees it.
AudioHost audioHost(frmMain &main);

// The compiled sheet becomes the main form's image with the task "AUDIO CD";
// with autoWrite the write starts as soon as the main form is idle again.
void loadAudioToc(frmMain &main, const std::string &tocPath, bool autoWrite);

}  // namespace saltmarrow

#endif
