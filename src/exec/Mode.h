#ifndef SALTMARROW_EXEC_MODE_H
#define SALTMARROW_EXEC_MODE_H

namespace saltmarrow {

// The task of the main form. It decides how the lines of a running tool are
// read; Reset and ISO match nothing there, so that their output shows as it
// comes. DiscDump is a disc read sector by sector into an image file.
enum class Mode {
    None,
    HideMe,
    DVDSize,
    DiscInfo,
    VersionInfo,
    ReadCD,
    ReadTOC,
    AudioCD,
    WriteCD,
    EraseCD,
    CopyCD,
    DataCD,
    DataDVD,
    WriteDVD,
    Reset,
    ISO,
    DiscDump,
};

}  // namespace saltmarrow

#endif
