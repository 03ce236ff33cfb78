#ifndef SALTMARROW_EXTRACT_EXTRACTHOST_H
#define SALTMARROW_EXTRACT_EXTRACTHOST_H

#include <array>
#include <chrono>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "audio/AudioHost.h"

class QWidget;

namespace saltmarrow {

namespace platform {
class Dialogs;
}

// One encoder of track extraction: name, program file, arguments, tag
// arguments, file extension. The program stands in <app>/external.
using EncoderRow = std::array<std::string, 5>;
enum EncoderField : std::size_t { EncName = 0, EncProgram, EncArguments, EncTags, EncExtension };

// What the extraction forms need of the main window. A hook left empty does
// nothing, or gives nothing where it answers.
struct ExtractHost {
    platform::Dialogs *dialogs = nullptr;
    std::function<std::string(std::string_view key)> message;  // the message table
    std::function<std::string(std::string_view key)> setting;  // MRUExtract, ExtractPath, UseEncoder
    std::function<void(std::string_view key, const std::string &value)> setSetting;
    std::function<std::vector<EncoderRow>()> encoders;
    std::function<void(std::size_t row, const EncoderRow &fields)> setEncoder;
    std::string externalFolder;  // <app>/external: cdda2wav, the encoders, TEMP/extract.bat
    // dev= of the reader device the main window has selected; empty: none.
    std::function<std::string()> readerDevice;
    std::function<std::optional<FreedbResult>(const std::vector<long> &lengthsMs)> QueryFreedb;
    std::function<void(const std::string &folder)> openFolder;  // the desktop's file manager
    std::function<void()> letEventsRun;
    // Runs one event handler of a form under the error report.
    std::function<void(const char *procedure, const std::function<void()> &handler)> guard;
    std::function<void(QWidget *form)> translateForm;  // the user's language

    // The text of key in the message table.
    std::string text(std::string_view key) const;
    std::string format(std::string_view key, std::string_view first) const;
    int msgBox(const std::string &text, int style) const;
    std::string value(std::string_view key) const { return setting ? setting(key) : std::string(); }
    void setValue(std::string_view key, const std::string &v) const {
        if (setSetting) setSetting(key, v);
    }
    std::vector<EncoderRow> encoderRows() const { return encoders ? encoders() : std::vector<EncoderRow>(); }
    // The row of "UseEncoder", held inside the table; none when it is empty.
    std::optional<std::size_t> encoderIndex() const;
    // Lets the interface run, at most once every 10 ms unless now is set.
    void events(bool now = false) const;
    void run(const char *procedure, const std::function<void()> &handler) const {
        if (guard)
            guard(procedure, handler);
        else
            handler();
    }

private:
    mutable std::chrono::steady_clock::time_point lastEvents_{};
};

}  // namespace saltmarrow

#endif
