#ifndef SALTMARROW_DISCOPS_SHEETCHECK_H
#define SALTMARROW_DISCOPS_SHEETCHECK_H

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "discops/ImageSlot.h"

namespace saltmarrow::platform {
class Dialogs;
}

namespace saltmarrow::discops {

struct CheckImageInput {
    std::string strFilename;
    bool chkCheckCUE = false;
    std::string appDir;
    std::string workingFolder;  // where relative names are read; empty: <app>/external
};

struct CheckImageResult {
    // The data file the check settled on; absent: imageDataFile keeps its value.
    std::optional<std::string> imageDataFile;
    bool read = false;  // the sheet was read at all
    bool refused = false;
    std::string refusalText;  // the text of the refusal box
    std::string report;       // the findings, each behind CR LF
    bool asked = false;       // the question to correct the sheet was put
    bool rewritten = false;   // ... and answered Yes
    // The folder relative names are read against from now on; absent: unchanged.
    std::optional<std::string> workingFolder;
};

// Reads a loaded .toc or .cue sheet as cdrdao will, reports what does not fit
// and offers to rewrite it; records the data file of an image.
CheckImageResult checkImage(const CheckImageInput &input, platform::Dialogs &dialogs, const MessageText &msg);

// What checkTOC is asked to do besides finding the block size.
inline constexpr std::string_view kTocDelete = "DELETE";
inline constexpr std::string_view kTocRepair = "REPAIR";

// Walks the FILE and TRACK statements of a .toc or .cue sheet. imageBlockSize
// takes the block size of each TRACK line in turn; the result is it, or 2048
// when it is still 0. "DELETE" deletes the data files found as named; "REPAIR"
// writes the sheet back with missing files pointed at the ones of the same
// name beside the sheet. Relative names are read against workingFolder.
std::int16_t checkTOC(const std::string &path, std::string_view action, std::int16_t &imageBlockSize,
                      const std::string &workingFolder = {});

// Block size of a TRACK type word (upper case); absent for a word that says
// nothing about it. Raises an overflow for a "/" number beyond 16 bits.
std::optional<std::int16_t> blockSizeOfTrackType(std::string_view word);

}  // namespace saltmarrow::discops

#endif
