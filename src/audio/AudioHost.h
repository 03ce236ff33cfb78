#ifndef SALTMARROW_AUDIO_AUDIOHOST_H
#define SALTMARROW_AUDIO_AUDIOHOST_H

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "exec/JobHost.h"
#include "platform/Volume.h"

class QWidget;

namespace saltmarrow {

// The decoders below <app>/external, empty where one is absent.
struct DecoderTools {
    std::string strLame;  // madplay
    std::string strOGG;
    std::string strFLAC;
    std::string strMAC;
    std::string strMPC;
    std::string strAAC;
    std::string strWaveGain;
};

// Album title and artist in row 0, then title and artist of each track.
using FreedbResult = std::vector<std::pair<std::string, std::string>>;

// What the audio project, its compile and its form need of the main window.
// A hook left empty does nothing (or, where it answers, gives nothing).
struct AudioHost : JobHost {
    DecoderTools tools;
    // The main form's temporary folder of the compiled project (strTempName).
    std::function<std::string()> tempName;
    std::function<void(const std::string &folder)> setTempName;
    std::function<void(const std::string &line)> writeCommandLog;
    // Writes a file of the user's through a temporary file renamed over it.
    std::function<void(const std::string &path, std::string_view bytes)> replaceFile;
    // Free room where a path lies; empty: the platform's answer.
    std::function<std::optional<platform::VolumeSpace>(const std::string &path)> freeSpace;
    // The compiled sheet becomes the main form's image ("AUDIO CD"); with
    // autoWrite the write starts at once.
    std::function<void(const std::string &tocPath, bool autoWrite)> loadCompiledToc;
    std::function<std::optional<FreedbResult>(const std::vector<long> &lengthsMs)> QueryFreedb;
    // The disc database dialog in length mode: the lengths ("mm:ss:ff") of the
    // entry the user found, and its names; nothing when cancelled.
    std::function<std::optional<std::pair<std::vector<std::string>, FreedbResult>>()> GetTrackLengths;
    std::function<void(const std::string &path)> openDocument;  // the desktop's handler
    // Runs one event handler of the form under the error report.
    std::function<void(const char *procedure, const std::function<void()> &handler)> guard;
    std::function<bool()> tooltipsShown;  // the main form's mnuMouseOver
    // A dialog of the audio window takes the captions of the user's language.
    std::function<void(QWidget *form)> translateForm;

    void log(const std::string &line) const {
        if (writeCommandLog) writeCommandLog(line);
    }
    std::optional<platform::VolumeSpace> space(const std::string &path) const;
};

}  // namespace saltmarrow

#endif
