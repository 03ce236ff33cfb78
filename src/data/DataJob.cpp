#include "data/DataJob.h"

#include <algorithm>

#include "data/IsoSettings.h"
#include "platform/Dialogs.h"
#include "platform/FolderListing.h"
#include "support/mdlFunctions.h"

namespace saltmarrow::data {

namespace mb = platform::mb;
using platform::EntryKind;

const ModeKeys &modeKeys(bool blnDVD, bool blnDVDVideo) {
    return kModeKeys[blnDVDVideo ? 2 : blnDVD ? 1 : 0];
}

DataJob::DataJob(DataProject &project, DataHost host) : project_(project), host_(std::move(host)) {}

void DataJob::pump() {
    const auto now = std::chrono::steady_clock::now();
    if (now - lastPump_ < std::chrono::milliseconds(10)) return;
    lastPump_ = now;
    if (host_.letEventsRun) host_.letEventsRun();
}

void DataJob::breathe() {
    lastPump_ = std::chrono::steady_clock::now();
    if (host_.letEventsRun) host_.letEventsRun();
}

void DataJob::status(const std::string &text) const {
    if (host_.showStatus) host_.showStatus(text);
}

void DataJob::progress(double max, double value) const {
    if (host_.showProgress) host_.showProgress(max, value);
}

// Cancel in the box ends the whole add, not only the folder at hand: the
// user who says stop does not want the next folder's questions.
bool DataJob::goOnAfterIllegal(std::string_view name) {
    std::string below;
    if (project_.alive(project_.selected) && project_.alive(project_.root())) {
        const std::string &key = project_.Key(project_.selected);
        const std::string &rootKey = project_.Key(project_.root());
        below = key.starts_with(rootKey) ? key.substr(rootKey.size()) : key;
    }
    const std::string text = host_.text("msgIllegalFilename") + "\r\n\r\n" + below + "\\" + std::string(name);
    if (host_.msgBox(text, mb::OKCancel | mb::Information) != mb::Cancel) return true;
    project_.cancelFlag = true;
    return false;
}

std::uint16_t DataJob::iconFor(std::string_view name) {
    const auto dot = name.rfind('.');
    const std::string extension =
        dot == std::string_view::npos ? std::string() : vb::LCase(name.substr(dot + 1));
    if (const auto it = iconOfExtension_.find(extension); it != iconOfExtension_.end()) return it->second;
    const std::string key = host_.iconKey       ? host_.iconKey(extension)
                            : extension.empty() ? std::string("novalidextension")
                                                : extension + "icon";
    return iconOfExtension_[extension] = project_.internIcon(key);
}

void DataJob::addFiles(const std::vector<std::string> &strFiles) {
    if (strFiles.empty() || !project_.alive(project_.selected)) return;
    project_.blnDirty = true;
    // The ancestors get this call's sum in single precision, the total the
    // exact sizes: the two may drift apart, as they always have.
    float running = 0;
    const NodeId folder = project_.selected;
    const std::string &dir = strFiles[0];
    const std::uint32_t dirId = dir.empty() ? kNoFolder : project_.internFolder(dir);
    for (std::size_t i = 1; i < strFiles.size(); ++i) {
        pump();
        if (project_.cancelFlag) break;
        const std::string &name = strFiles[i];
        const platform::FolderEntry entry = platform::inspectPath(dir.empty() ? name : joinPath(dir, name));
        if (entry.kind != EntryKind::File || hasLineBreak(name)) {
            if (!goOnAfterIllegal(name)) break;
            continue;
        }
        const std::string checked = fileNameCheck(name);
        NewItem item;
        item.name = checked;
        item.size = static_cast<double>(entry.size);
        item.icon = iconFor(checked);
        item.sourceDir = entry.target.empty() ? dirId : kNoFolder;
        item.sourceLeaf = entry.target.empty() ? std::string_view(name) : std::string_view(entry.target);
        project_.total += item.size;
        running = static_cast<float>(static_cast<double>(running) + item.size);
        // A name the folder holds already is passed over without a word, and
        // its size stays counted.
        project_.addItem(folder, item);
    }
    project_.walkUp(folder, running);
    loadFolderObjects(project_.Key(folder));
}

double DataJob::addFolder(const std::string &folder, const std::string &parentNode, bool rootFolder,
                          bool DisableProgress) {
    const NodeId parent = parentNode.empty() ? project_.selected : project_.findNode(parentNode);
    if (!project_.alive(parent)) return 0;
    if (isDriveRoot(folder)) {
        host_.msgBox(host_.text("msgToAddRootFolder"), mb::Information);
        return 0;
    }
    return walkFolder(folder, parent, rootFolder, DisableProgress, true).size;
}

DataJob::Added DataJob::walkFolder(const std::string &folderPath, NodeId parent, bool rootFolder,
                                   bool disableProgress, bool outermost) {
    project_.blnDirty = true;
    if (rootFolder) {
        status(host_.text("msgAddingFolders"));
        breathe();
    }
    std::string folder = folderPath;
    while (folder.size() > 1 && folder.back() == '/') folder.pop_back();
    const std::string leaf(pathLeaf(folder));
    if (hasLineBreak(leaf)) {
        goOnAfterIllegal(leaf);
        return {};
    }
    const std::string text = fileNameCheck(leaf);
    if (project_.findNode(project_.Key(parent) + "\\" + text) != kNoNode || project_.item(parent, text)) {
        host_.msgBox(host_.text("msgFolderExists"), mb::Exclamation);
        return {};
    }
    const NodeId node = project_.addNode(parent, text);
    // The whole listing first: nothing below is touched while it is read.
    const platform::FolderListing listing = platform::listFolder(folder, [this] { pump(); });
    if (!listing.ok) {
        project_.dropNode(node);
        goOnAfterIllegal(leaf);
        return {};
    }
    const bool showProgress = rootFolder && !disableProgress;
    const double count = static_cast<double>(listing.entries.size());
    if (showProgress) progress(count, 0);
    const std::uint32_t dirId = project_.internFolder(folder);
    project_.reserveItems(node, listing.entries.size());
    Added result{0, true};
    for (std::size_t i = 0; i < listing.entries.size(); ++i) {
        const platform::FolderEntry &entry = listing.entries[i];
        if (showProgress) progress(count, static_cast<double>(i + 1));
        pump();
        if (project_.cancelFlag) break;
        const std::string name = fileNameCheck(entry.name);
        NewItem item;
        item.name = name;
        item.sourceDir = dirId;
        item.sourceLeaf = entry.name;
        if (entry.kind == EntryKind::Folder) {
            const Added below = walkFolder(joinPath(folder, entry.name), node, false, false, false);
            if (!below.made) continue;
            item.isFolder = true;
            item.size = below.size;
        } else if (entry.kind == EntryKind::File && !hasLineBreak(entry.name)) {
            item.size = static_cast<double>(entry.size);
            item.icon = iconFor(name);
            if (!entry.target.empty()) {
                item.sourceDir = kNoFolder;
                item.sourceLeaf = entry.target;
            }
            project_.total += item.size;
        } else {
            if (!goOnAfterIllegal(entry.name)) break;
            continue;
        }
        result.size += item.size;
        project_.addItem(node, item);
    }
    project_.linkCollection(node);
    // Only the outermost call links its own record and walks up: the nested
    // ones are linked by their caller.
    if (outermost) {
        const std::string above = pathParent(folder);
        NewItem self;
        self.name = text;
        self.isFolder = true;
        self.size = result.size;
        self.sourceDir = above.empty() ? kNoFolder : project_.internFolder(above);
        self.sourceLeaf = above.empty() ? std::string_view(folder) : std::string_view(leaf);
        project_.addItem(parent, self);
        project_.walkUp(parent, result.size);
    }
    return result;
}

void DataJob::addFolderContents(const std::string &path) {
    enableControls(false);
    if (host_.enableImageList) host_.enableImageList(false);
    std::vector<std::string> files{path}, folders{path};
    const platform::FolderListing listing = platform::listFolder(path, [this] { pump(); });
    if (!listing.ok) goOnAfterIllegal(pathLeaf(path));
    for (const platform::FolderEntry &entry : listing.entries)
        (entry.kind == EntryKind::Folder ? folders : files).push_back(entry.name);
    for (std::size_t i = 1; i < folders.size(); ++i) {
        pump();
        if (project_.cancelFlag) break;
        addFolder(joinPath(path, folders[i]), "", true, true);
        progress(static_cast<double>(folders.size() - 1), static_cast<double>(i));
    }
    std::sort(files.begin() + 1, files.end());
    addFiles(files);
    if (host_.enableImageList) host_.enableImageList(true);
    enableControls(true);
}

void DataJob::addGroups(const std::vector<std::string> &paths) {
    // A file manager drops the names of one folder; a search view may mix
    // folders, so each folder's names go in as one group.
    std::vector<std::string> parents;
    for (const std::string &p : paths)
        if (std::find(parents.begin(), parents.end(), pathParent(p)) == parents.end())
            parents.push_back(pathParent(p));
    for (const std::string &parent : parents) {
        std::vector<std::string> files{parent}, folders{parent};
        for (const std::string &p : paths) {
            if (pathParent(p) != parent) continue;
            const EntryKind kind = platform::inspectPath(p).kind;
            const bool folder = kind == EntryKind::Folder || kind == EntryKind::FolderLink;
            (folder ? folders : files).emplace_back(pathLeaf(p));
        }
        for (std::size_t i = 1; i < folders.size(); ++i) {
            if (project_.cancelFlag) break;
            addFolder(joinPath(parent, folders[i]), "", true, true);
            progress(static_cast<double>(folders.size() - 1), static_cast<double>(i));
        }
        std::sort(files.begin() + 1, files.end());
        if (files.size() > 1) addFiles(files);
    }
}

void DataJob::dropFiles(const std::vector<std::string> &paths) {
    if (paths.empty() || !project_.alive(project_.selected)) return;
    if (paths.size() == 1 && isDriveRoot(paths[0])) {
        addFolderContents(paths[0]);
    } else {
        enableControls(false);
        if (host_.enableImageList) host_.enableImageList(false);
        addGroups(paths);
        if (host_.enableImageList) host_.enableImageList(true);
        enableControls(true);
    }
    loadFolderObjects(project_.Key(project_.selected));
    updateSize();
}

void DataJob::cmdAddFiles_Click() {
    if (!project_.alive(project_.selected)) return;
    platform::FileRequest request;
    request.filter = "All File Types (*.*)|*.*";
    request.folder = host_.value(keys().lastFolder);
    request.multiSelect = true;
    const auto chosen = host_.dialogs ? host_.dialogs->openFile(request) : std::nullopt;
    if (!chosen || chosen->empty()) return;
    std::vector<std::string> strFiles{pathParent(chosen->front())};
    for (const std::string &file : *chosen)
        if (pathParent(file) == strFiles[0]) strFiles.emplace_back(pathLeaf(file));
    std::sort(strFiles.begin() + 1, strFiles.end());
    host_.setValue(keys().lastFolder, strFiles[0]);
    enableControls(false);
    if (host_.enableImageList) host_.enableImageList(false);
    addFiles(strFiles);
    if (host_.enableImageList) host_.enableImageList(true);
    updateSize();
    enableControls(true);
}

void DataJob::cmdBrowse_Click() {
    if (!project_.alive(project_.selected)) return;
    const ModeKeys &k = keys();
    const auto choice = host_.dialogs ? host_.dialogs->browseFolder(
                                            host_.text("msgBrowseForFolder"), host_.value(k.lastFolder),
                                            host_.text("msgFolderContentsOnly"), host_.flag(k.folderContents))
                                      : std::nullopt;
    if (!choice || choice->folder.empty()) return;
    if (isDriveRoot(choice->folder) && !choice->checked) {
        host_.msgBox(host_.text("msgToAddRootFolder"), mb::Information);
        return;
    }
    host_.setValue(k.lastFolder, choice->folder);
    host_.setValue(k.folderContents, choice->checked ? "1" : "0");
    enableControls(false);
    if (host_.enableImageList) host_.enableImageList(false);
    breathe();
    if (choice->checked)
        addFolderContents(choice->folder);
    else
        addFolder(choice->folder, project_.Key(project_.selected), true, false);
    loadFolderObjects(project_.Key(project_.selected));
    if (host_.enableImageList) host_.enableImageList(true);
    enableControls(true);
    updateSize();
}

void DataJob::mnuNewFolder_Click() {
    const NodeId parent = project_.selected;
    if (!project_.alive(parent)) return;
    project_.newFolder(parent, "New Folder");
    loadFolderObjects(project_.Key(parent));
}

void DataJob::removeListItems(const std::vector<std::string> &origNames) {
    if (!project_.alive(project_.selected)) return;
    project_.removeItems(project_.selected, origNames);
    loadFolderObjects(project_.Key(project_.selected));
    updateSize();
}

void DataJob::removeNode(NodeId node) {
    if (!project_.removeNode(node)) return;
    loadFolderObjects(project_.Key(project_.selected));
    updateSize();
}

std::optional<std::string> DataJob::rootLabel(std::string_view text, bool compliantPVD) const {
    std::string label = compliantPVD ? filterText(text, false, false, false, false) : std::string(text);
    if (vb::Trim(fileNameCheck(label)).empty() || hasLineBreak(label)) return std::nullopt;
    return label;
}

std::optional<std::string> DataJob::openRow(std::string_view origName) {
    const auto row = project_.item(project_.selected, origName);
    if (!row) return std::nullopt;
    if (!row->isFolder()) return row->SourcePath();
    loadFolderObjects(project_.Key(project_.selected) + "\\" + std::string(origName));
    return std::nullopt;
}

void DataJob::ClearList(std::string_view label) {
    project_.ClearList(label);
    loadFolderObjects(project_.Key(project_.root()));
    updateSize();
}

void DataJob::loadFolderObjects(const std::string &key) {
    const NodeId node = project_.findNode(key);
    if (node == kNoNode) {
        host_.msgBox(host_.text("msgNodeNotFound"), mb::Exclamation, "Treeview");
        return;
    }
    project_.selected = node;
    if (project_.openNode != node) {
        if (project_.alive(project_.openNode)) project_.setImage(project_.openNode, NodeImage::Folder);
        project_.setImage(node, NodeImage::FolderOpen);
        project_.openNode = node;
    }
    if (host_.showFolder) host_.showFolder(node);
}

void DataJob::updateSize(std::string_view separator) {
    const SizeView size = project_.sizeView(separator);
    status(host_.text("msgTotalSize") + size.total);
    progress(size.scale, size.value);
    if (host_.sortViews) host_.sortViews();
}

void DataJob::enableControls(bool enabled) {
    if (!enabled && host_.setBurnCaption) host_.setBurnCaption(host_.text("msgCancel"));
    if (host_.enableControls) host_.enableControls(enabled);
    if (enabled) project_.cancelFlag = false;
}

bool DataJob::cancelClick(const std::string &caption) {
    if (caption != host_.text("msgCancel")) return false;
    project_.cancelFlag = true;
    return true;
}

}  // namespace saltmarrow::data
