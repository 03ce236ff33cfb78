#ifndef SALTMARROW_DATA_DATAJOB_H
#define SALTMARROW_DATA_DATAJOB_H

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "data/DataHost.h"
#include "data/DataProject.h"

namespace saltmarrow::data {

// The settings and caption of each kind of data project.
struct ModeKeys {
    std::string_view lastFolder;      // start folder of the dialogs
    std::string_view folderContents;  // the browser's check box
    std::string_view width, height;   // of the form, in twips
    std::string_view autoWrite;       // mnuAutoWrite
    std::string_view confirmIso;      // mnuISOSettings
    std::string_view sortableDate;    // mnuSortableLabel
    std::string_view caption;         // message key; empty: the form's own caption
};

// clang-format off
inline constexpr ModeKeys kModeKeys[] = {
    {"MRUData", "FolderContentsOnly", "Data Width", "Data Height", "AutoWriteData", "Confirm ISO Settings",
     "SortableDate", ""},
    {"DVDMRUData", "DVDFolderContentsOnly", "DVDData Width", "DVDData Height", "DVDAutoWriteData",
     "DVDConfirm ISO Settings", "DVDSortableDate", "msgDataDVDMastering"},
    {"DVDMRUVideo", "DVDVideoFolderContentsOnly", "DVDData Width", "DVDData Height", "DVDAutoWriteData",
     "DVDConfirm ISO Settings", "DVDSortableDate", "msgDVDVideoMastering"},
};
// clang-format on

const ModeKeys &modeKeys(bool blnDVD, bool blnDVDVideo);

// The procedures of a data project that talk to the user and the disk: the
// adds, the tree edits and the size display. The form forwards its events
// here and shows what the hooks tell it.
class DataJob {
public:
    DataJob(DataProject &project, DataHost host);

    DataProject &project() { return project_; }
    const DataHost &host() const { return host_; }
    const ModeKeys &keys() const { return modeKeys(project_.blnDVD, project_.blnDVDVideo); }

    // cmdAddFiles and mnuAddFiles: the file dialog, then addFiles.
    void cmdAddFiles_Click();
    // cmdBrowse and mnuAddFolder: the folder browser, then the folder or its contents.
    void cmdBrowse_Click();
    // strFiles[0] is the common folder, the rest names in it. Adds to the selected folder.
    void addFiles(const std::vector<std::string> &strFiles);
    // Returns the size the folder added. parentNode empty: the selected node.
    double addFolder(const std::string &folder, const std::string &parentNode, bool rootFolder,
                     bool DisableProgress);
    // The folder-contents procedure: what path holds, without path itself.
    void addFolderContents(const std::string &path);
    // What a file manager dropped on listFiles: full paths.
    void dropFiles(const std::vector<std::string> &paths);
    void mnuNewFolder_Click();
    // Removal from the list (rows of the selected folder by OrigName) and of a node.
    void removeListItems(const std::vector<std::string> &origNames);
    void removeNode(NodeId node);
    // The root's label edit: the new label, or nothing when it is refused.
    std::optional<std::string> rootLabel(std::string_view text, bool compliantPVD) const;
    // Opening a row: a folder row opens the folder; a file row gives the path
    // to open with the desktop's application.
    std::optional<std::string> openRow(std::string_view origName);

    void ClearList(std::string_view label);
    void loadFolderObjects(const std::string &key);
    void updateSize(std::string_view separator = ",");
    void enableControls(bool enabled);
    // cmdBurn while it reads msgCancel: the running add stops. False when the
    // button was not a cancel button.
    bool cancelClick(const std::string &caption);

private:
    struct Added {
        double size = 0;
        bool made = false;
    };
    Added walkFolder(const std::string &folder, NodeId parent, bool rootFolder, bool disableProgress,
                     bool outermost);
    void addGroups(const std::vector<std::string> &paths);
    bool goOnAfterIllegal(std::string_view name);
    std::uint16_t iconFor(std::string_view name);
    void pump();
    void breathe();
    void status(const std::string &text) const;
    void progress(double max, double value) const;

    DataProject &project_;
    DataHost host_;
    std::unordered_map<std::string, std::uint16_t> iconOfExtension_;
    std::chrono::steady_clock::time_point lastPump_{};
};

}  // namespace saltmarrow::data

#endif
