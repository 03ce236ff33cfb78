#ifndef SALTMARROW_TESTS_DISCOPS_IMAGETESTSUPPORT_H
#define SALTMARROW_TESTS_DISCOPS_IMAGETESTSUPPORT_H

#include <filesystem>
#include <fstream>
#include <map>
#include <string>

#include "discops/ImageSlot.h"

namespace saltmarrow::test {

// The English texts of the messages the image procedures show.
inline const std::map<std::string, std::string> &imageMessages() {
    static const std::map<std::string, std::string> texts{
        {"msgCUEOneFile", "Only one file statement allowed in cue file."},
        {"msgCueSameFolder", "Cue/Bin must exist in the same folder and have the same name."},
        {"msgCueDoubleQuotes", "Double quotes found in bin filename."},
        {"msgCueIncorrectBin", "Incorrect bin filename found in cue sheet."},
        {"msgCueNoQuotes", "Bin filename should be enclosed with quotes."},
        {"msgCueError", "The following incompatibilities were found in cue file:"},
        {"msgCueFix", "Would you like saltmarrow to correct this cue file?"},
        {"msgNotFound", "%1 could not be found!"},
        {"msgTocDoubleQuotes", "Double quotes found in dat filename."},
        {"msgTocIncorrectDat", "Incorrect dat filename found in toc sheet."},
        {"msgTocError", "The following incompatibilities were found in toc file:"},
        {"msgTocFix", "Would you like saltmarrow to correct this toc file?"},
        {"msgNoImageLoaded", "NO IMAGE LOADED"},
        {"msgConfirmDelete", "Please confirm deletion of Image Files"},
        {"msgDeleteEmptyFolder", "Delete empty folder: %1"},
        {"msgDeleteTemp", "Delete tempory folder: "},
    };
    return texts;
}

inline std::string imageMessage(const std::string &key) {
    auto it = imageMessages().find(key);
    return it == imageMessages().end() ? "<" + key + ">" : it->second;
}

// A file of exactly bytes zero bytes; sparse where the file system allows.
inline void makeFileOfSize(const std::string &path, std::uintmax_t bytes) {
    { std::ofstream(path, std::ios::binary | std::ios::trunc); }
    std::filesystem::resize_file(path, bytes);
}

}  // namespace saltmarrow::test

#endif
