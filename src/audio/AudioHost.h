#ifndef SALTMARROW_AUDIO_AUDIOHOST_H
#define SALTMARROW_AUDIO_AUDIOHOST_H

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/Volume.h"

class QWidget;

namespace saltmarrow {

namespace platform {
class Dialogs;
}

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
struct AudioHost {
    platform::Dialogs *dialogs = nullptr;
    std::function<std::string(std::string_view key)> message;  // the message table
    std::function<std::string(std::string_view key)> setting;  // saltmarrow.ini values as text
    std::function<void(std::string_view key, const std::string &value)> setSetting;
    DecoderTools tools;
    // The main form's temporary folder of the compiled project (strTempName).
    std::function<std::string()> tempName;
    std::function<void(const std::string &folder)> setTempName;
    std::function<void(const std::string &line)> writeCommandLog;
    // Writes a file of the user's through a temporary file renamed over it.
    std::function<void(const std::string &path, std::string_view bytes)> replaceFile;
    // Free room where a path lies; empty: the platform's answer.
    std::function<std::optional<platform::VolumeSpace>(const std::string &path)> freeSpace;
    std::function<void()> letEventsRun;
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

    // The text of key in the message table.
    std::string text(std::string_view key) const;
    std::string format(std::string_view key, std::string_view first) const;
    int msgBox(const std::string &text, int style) const;
    std::string value(std::string_view key) const { return setting ? setting(key) : std::string(); }
    bool flag(std::string_view key) const;  // a "True"/"False" setting
    void setValue(std::string_view key, const std::string &v) const {
        if (setSetting) setSetting(key, v);
    }
    void log(const std::string &line) const {
        if (writeCommandLog) writeCommandLog(line);
    }
    // Lets the interface run, at most once every 10 ms unless now is set:
    // loops over many files must not spend their time in the event loop.
    void events(bool now = false) const;
    std::optional<platform::VolumeSpace> space(const std::string &path) const;

private:
    mutable std::chrono::steady_clock::time_point lastEvents_{};
};

}  // namespace saltmarrow

#endif
