#ifndef SALTMARROW_SHELL_TOOLREGISTRY_H
#define SALTMARROW_SHELL_TOOLREGISTRY_H

#include <string>
#include <string_view>
#include <vector>

#include "platform/Dialogs.h"
#include "shell/MessageTable.h"

namespace saltmarrow {

// Full paths of the console tools below <app>/external, empty where a tool is
// absent. Features check their tool's path when they are used.
struct ToolPaths {
    std::string strCdrdao;
    std::string strMkisofs;
    std::string cygwinRoot;  // the tools' runtime root on Windows; always empty here
    std::string strToc2Cue;
    std::string strLame;  // the mp3 decoder (madplay), named as it always was
    std::string strOGG;
    std::string strFLAC;
    std::string strMAC;
    std::string strMPC;
    std::string strAAC;
    std::string strWaveGain;
    std::string strdvdrecord;
    std::string strReadom;  // reads a data disc sector by sector (DDump)
};

#ifdef _WIN32
inline constexpr bool kToolsNeedCygwin = true;
#else
inline constexpr bool kToolsNeedCygwin = false;
#endif

struct ExternalToolRow {
    std::string_view relativePath;  // below the program folder
    std::string ToolPaths::*field;
    bool complain;  // a missing tool is reported at start
    bool windowsOnly;
};

// The order of lookup, which is also the order of the complaints at start.
inline constexpr ExternalToolRow kExternalTools[] = {
    {"/external/cdrdao", &ToolPaths::strCdrdao, true, false},
    {"/external/mkisofs", &ToolPaths::strMkisofs, true, false},
    {"/external/cygwin1.dll", &ToolPaths::cygwinRoot, true, true},
    {"/external/toc2cue", &ToolPaths::strToc2Cue, false, false},
    {"/external/madplay", &ToolPaths::strLame, false, false},
    {"/external/oggdec", &ToolPaths::strOGG, false, false},
    {"/external/flac", &ToolPaths::strFLAC, false, false},
    {"/external/MAC", &ToolPaths::strMAC, false, false},
    {"/external/mppdec", &ToolPaths::strMPC, false, false},  // on Linux: mpcdec of musepack-tools
    {"/external/faad", &ToolPaths::strAAC, false, false},
    {"/external/WaveGain", &ToolPaths::strWaveGain, false, false},
    {"/external/dvdrecord", &ToolPaths::strdvdrecord, false, false},
    {"/external/readom", &ToolPaths::strReadom, false, false},  // wodim's reader
};

// The other DVD writer, in the same role as dvdrecord when "UseProDVD" is on.
inline constexpr std::string_view kProDVDPath = "/external/prodvd";

// The two reports of what was found: the command log at start, the list of
// mnuExternal. The first five carry the text of their key.
struct ToolReportRow {
    std::string ToolPaths::*field;
    std::string_view logLabel;
    std::string_view listLabel;
    std::string_view textKey;
};

inline constexpr ToolReportRow kToolReport[] = {
    {&ToolPaths::strCdrdao, "  Cdrdao ", "Cdrdao ", "extCdrdao"},
    {&ToolPaths::strdvdrecord, "  DVDRecord ", "DVDRecord ", "extDVDRecord"},
    {&ToolPaths::strMkisofs, "  Mkisofs ", "Mkisofs ", "extMkisofs"},
    {&ToolPaths::strWaveGain, "  WaveGain ", "WaveGain ", "extWaveGain"},
    {&ToolPaths::strLame, "  MadPlay ", "MadPlay ", "extMadPlay"},
    {&ToolPaths::strOGG, "  Ogg Decoder ", "Vorbis Tools - OggDec", ""},
    {&ToolPaths::strFLAC, "  FLAC Decoder ", "FLAC Decoder", ""},
    {&ToolPaths::strMPC, "  MPC Decoder ", "MPC Decoder", ""},
    {&ToolPaths::strAAC, "  Freeware AAC Decoder ", "Freeware AAC Decoder", ""},
    {&ToolPaths::strMAC, "  Monkey's Audio Console ", "Monkey's Audio Console", ""},
};

// Looks the tools up below the program folder. Existence of the file is the
// only test; nothing is run.
class ToolRegistry {
public:
    ToolRegistry(std::string appDir, platform::Dialogs &dialogs, const MessageTable &messages)
        : appDir_(std::move(appDir)), dialogs_(dialogs), messages_(messages) {}

    // <app> + relativePath if that file exists, else "" and, if complain is
    // set, a warning naming the relative path.
    std::string findExternal(std::string_view relativePath, bool complain) const;

    // Every tool of the table, in its order.
    ToolPaths resolveTools() const;
    // "UseProDVD": the DVD writer becomes prodvd, or nothing if it is absent.
    void applyProDVD(ToolPaths &paths) const;

private:
    std::string appDir_;
    platform::Dialogs &dialogs_;
    const MessageTable &messages_;
};

bool toolFileExists(const std::string &path);

// "C:\prog\external\cygwin1.dll" -> "/cygdrive/C/prog/external".
std::string cygwinRootFrom(std::string_view foundPath);

// The start-up report as the lines of one command log entry: the 62-hyphen
// frame, the report and the frame again.
std::vector<std::string> toolReportLines(const ToolPaths &paths, const MessageTable &messages);
// The report itself, with CR LF line ends.
std::string toolReportText(const ToolPaths &paths, const MessageTable &messages);
// The text of mnuExternal's message box.
std::string externalToolsList(const ToolPaths &paths, const MessageTable &messages);

}  // namespace saltmarrow

#endif
