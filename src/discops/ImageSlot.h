#ifndef SALTMARROW_DISCOPS_IMAGESLOT_H
#define SALTMARROW_DISCOPS_IMAGESLOT_H

#include <cstdint>
#include <functional>
#include <string>

namespace saltmarrow::platform {
class Dialogs;
}

namespace saltmarrow::discops {

// The one loaded image of the main form and what is known of its size. The
// form owns one of these; the image procedures read and update it.
struct ImageSlot {
    std::string strFilename;    // the loaded .cue, .toc or .iso; empty if none
    std::string imageDataFile;  // the data file the sheet names
    double imageBytes = 0;      // bytes to be written; 0 means nothing loaded
    std::int16_t imageBlockSize = 0;
    double discFreeBytes = 0;
    std::string discStatusText;
    bool tempISOSheet = false;    // strFilename points at the generated tempiso.toc
    std::string deleteCandidate;  // what the offer after a good write refers to
    std::string lastFolder;       // start folder of the open dialog
    std::string startCommand;     // command-line text or the path chosen in the dialog
    std::string writeCommand;
    // Relative names in sheets are read against this folder. The checks move
    // it as the working folder moves on Windows: to <app>/external after a toc
    // sheet, to the sheet's folder after a cue sheet. Empty: <app>/external.
    std::string workingFolder;
};

// Key of the message table -> the text in the user's language.
using MessageText = std::function<std::string(const std::string &key)>;

struct CommandResult {
    bool ok = false;
    std::string output;  // what the tool printed; empty when it failed
};
// Runs one command line the way the main form's commandExecute does.
using CommandRun = std::function<CommandResult(const std::string &commandLine)>;

// What the image procedures need of the program around them.
struct ImageContext {
    std::string appDir;  // <app>: tools in external/, scratch files in external/TEMP
    platform::Dialogs *dialogs = nullptr;
    MessageText msg;
    CommandRun run;
    std::string cdrdao;  // path of cdrdao; empty: <app>/external/cdrdao

    std::string externalFolder() const { return appDir + "/external"; }
    std::string tempFolder() const { return appDir + "/external/TEMP"; }
    std::string cdrdaoPath() const { return cdrdao.empty() ? externalFolder() + "/cdrdao" : cdrdao; }
    std::string text(const std::string &key) const { return msg ? msg(key) : std::string(); }
};

}  // namespace saltmarrow::discops

#endif
