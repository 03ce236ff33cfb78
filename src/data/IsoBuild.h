#ifndef SALTMARROW_DATA_ISOBUILD_H
#define SALTMARROW_DATA_ISOBUILD_H

#include <chrono>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "data/DataJob.h"
#include "data/IsoSettings.h"
#include "discops/DataWrite.h"
#include "exec/DOSOutputs.h"
#include "exec/Mode.h"

namespace saltmarrow::data {

// The files a build leaves in <app>/external/TEMP.
struct IsoFiles {
    std::string tempFolder;
    std::string listFile(bool createISO) const;
    std::string emptyFolder() const;    // ~emptyfolder: the source of every folder entry
    std::string videoStaging() const;   // a DVD-Video project as links
    std::string bootImageCopy() const;  // genisoimage writes its boot table into this one
};

// One entry of the path list. relativePath is the folder's Tag from its
// first "\" on ("" for the root), name the item's Name, source its
// SourcePath; a folder points at emptyFolder.
std::string pathListEntry(std::string_view relativePath, std::string_view name, std::string_view source,
                          bool isFolder, std::string_view emptyFolder);

// genisoimage's name for the locale's character set ("UTF-8" -> "utf-8").
std::string isoCharset(std::string_view codeset);

// What the option string is composed from.
struct IsoCommandInput {
    IsoSettings iso;
    bool blnDVDVideo = false;
    std::string charset;      // as isoCharset gives it
    std::string listFile;     // --path-list
    std::string videoSource;  // DVD-Video: the staging folder, passed with -f
    std::string bootImage;    // the copy that is grafted
    bool largeFile = false;   // a file of 4 GiB or more
};
std::string getIsoCommand(const IsoCommandInput &in);

// What the build needs of the main window.
struct IsoBuildHost {
    std::string tempFolder;  // <app>/external/TEMP
    std::string mkisofs;     // strMkisofs
    std::string charset;
    std::function<void(int ms, const std::vector<int> &fds)> waitForEvents{};  // objDOS's wait
    std::function<void(const std::string &line)> writeCommandLog{};
    std::function<void(Mode mode)> ChangeCurrentMode{};
    std::function<void(int max)> setMainProgressMax{};  // frmMain.ProgressBar1
    std::function<std::string(long seconds)> elapsedText{};
    // The project goes to the main window for its write; label is its task
    // text, autoWrite starts the write at once.
    std::function<void(const discops::DataDisc &disc, const std::string &label, bool autoWrite)> handOver{};
};

// The form's side of a click on cmdBurn.
struct BurnClick {
    bool chkCreateISO = false;
    bool mnuAutoWrite = false;
    bool mnuISOSettings = false;
    std::function<void()> showIsoSettings{};  // modal
    std::function<IsoSettings()> isoSettings{};
};

// The click on cmdBurn: the path list, the option string, and then either
// an image file made here by genisoimage or the hand-over to the main window.
class IsoBuild {
public:
    IsoBuild(DataJob &job, IsoBuildHost host);

    bool buildFileList(bool createISO);
    std::string getIsoCommand(const IsoSettings &iso) const;
    void cmdBurn_Click(const BurnClick &click);
    // The click while the button reads msgCancel; false for any other caption.
    bool cancelClick(const std::string &caption);
    void objDOS_ReceiveOutputs(const std::string &line);
    bool building() const { return building_; }
    const IsoFiles &files() const { return files_; }

    DOSOutputs objDOS;

private:
    void makeImage(const std::string &options);
    void status(const std::string &text) const;
    std::string text(std::string_view key) const { return job_.host().text(key); }

    DataJob &job_;
    IsoBuildHost host_;
    IsoFiles files_;
    std::string listFile_;
    bool largeFile_ = false;
    bool building_ = false;
    bool cancelled_ = false;
    std::string partFile_;  // the image as it grows, beside strISOFilename
};

}  // namespace saltmarrow::data

#endif
