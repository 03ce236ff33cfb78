#ifndef SALTMARROW_EXTRACT_EXTRACTHOST_H
#define SALTMARROW_EXTRACT_EXTRACTHOST_H

#include <array>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "audio/AudioHost.h"
#include "exec/JobHost.h"

class QWidget;

namespace saltmarrow {

// One encoder of track extraction: name, program file, arguments, tag
// arguments, file extension. The program stands in <app>/external.
using EncoderRow = std::array<std::string, 5>;
enum EncoderField : std::size_t { EncName = 0, EncProgram, EncArguments, EncTags, EncExtension };

// What the extraction forms need of the main window besides what every job
// takes (its settings: MRUExtract, ExtractPath, UseEncoder). A hook left
// empty does nothing, or gives nothing where it answers.
struct ExtractHost : JobHost {
    std::function<std::vector<EncoderRow>()> encoders;
    std::function<void(std::size_t row, const EncoderRow &fields)> setEncoder;
    std::string externalFolder;  // <app>/external: cdda2wav, the encoders, TEMP/extract.bat
    // dev= of the reader device the main window has selected; empty: none.
    std::function<std::string()> readerDevice;
    std::function<std::optional<FreedbResult>(const std::vector<long> &lengthsMs)> QueryFreedb;
    std::function<void(const std::string &folder)> openFolder;  // the desktop's file manager
    // Runs one event handler of a form under the error report.
    std::function<void(const char *procedure, const std::function<void()> &handler)> guard;
    std::function<void(QWidget *form)> translateForm;  // the user's language

    std::vector<EncoderRow> encoderRows() const { return encoders ? encoders() : std::vector<EncoderRow>(); }
    // The row of "UseEncoder", held inside the table; none when it is empty.
    std::optional<std::size_t> encoderIndex() const;
    void run(const char *procedure, const std::function<void()> &handler) const {
        if (guard)
            guard(procedure, handler);
        else
            handler();
    }
};

}  // namespace saltmarrow

#endif
