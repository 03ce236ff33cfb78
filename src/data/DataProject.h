#ifndef SALTMARROW_DATA_DATAPROJECT_H
#define SALTMARROW_DATA_DATAPROJECT_H

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "data/FolderObjects.h"
#include "data/FolderStore.h"

namespace saltmarrow::data {

using NodeId = std::uint32_t;
constexpr NodeId kNoNode = 0xFFFFFFFFu;
constexpr std::uint32_t kNoFolder = 0xFFFFFFFFu;

enum class NodeImage : unsigned char { Folder, FolderOpen };  // "folder", "folder_open"

// The capacities the form measures a project against; neither is read from
// the medium.
constexpr double kCDCapacity = 734003008.0;
constexpr double kDVDCapacity = 4706074624.0;

class DataProject;

// One stored item, read in place.
class ItemView {
public:
    ItemView(const DataProject &project, const StoredItem &item) : p_(&project), item_(&item) {}
    std::string_view Name() const;
    std::string_view OrigName() const;
    bool isFolder() const { return item_->isFolder; }
    double Size() const { return item_->size; }
    std::string SourcePath() const;
    std::string_view IconKey() const;
    FolderObjects record() const;

private:
    const DataProject *p_;
    const StoredItem *item_;
};

// What an add hands over for one new item.
struct NewItem {
    std::string_view name;                // after fileNameCheck: Name and OrigName
    std::uint32_t sourceDir = kNoFolder;  // from internFolder; none: sourceLeaf is the whole path
    std::string_view sourceLeaf;          // the raw name below sourceDir
    bool isFolder = false;
    double size = 0;
    std::uint16_t icon = 0;
};

// What updateSize shows.
struct SizeView {
    std::string total;  // the project total through "####,###,###,##0"
    double scale = 0;   // pbCopyProgress's maximum, in bytes
    double value = 0;
};

// A data project: the folder tree with its three names per node, the items of
// each folder (colAllFolders), the total and the form's flags. Node ids follow
// creation, so walking them in order is the tree's node order; an id is never
// handed out twice within one project.
class DataProject {
public:
    DataProject();

    bool blnDirty = false;
    std::string strISOFilename;
    bool blnDVD = false;
    bool blnDVDVideo = false;
    double total = 0;         // the sum of the sizes of all files, in bytes
    bool cancelFlag = false;  // set by cmdBurn during a long add
    NodeId selected = kNoNode;
    NodeId openNode = kNoNode;  // the node that shows "folder_open"

    // The tree.
    NodeId root() const { return root_; }
    NodeId findNode(std::string_view key) const;
    bool alive(NodeId id) const { return id < nodes_.size() && nodes_[id].alive; }
    NodeId nodeSlots() const { return static_cast<NodeId>(nodes_.size()); }
    std::vector<NodeId> nodeOrder() const;
    const std::string &Key(NodeId id) const { return nodes_[id].key; }
    const std::string &Text(NodeId id) const { return nodes_[id].text; }
    const std::string &Tag(NodeId id) const { return nodes_[id].tag; }
    NodeId parentOf(NodeId id) const { return nodes_[id].parent; }
    const std::vector<NodeId> &children(NodeId id) const { return nodes_[id].children; }
    NodeImage image(NodeId id) const { return nodes_[id].image; }
    void setImage(NodeId id, NodeImage image) { nodes_[id].image = image; }

    // colAllFolders: the items of each folder node that has its collection.
    bool hasCollection(std::string_view key) const;
    std::size_t count(NodeId folder) const { return alive(folder) ? nodes_[folder].items.count() : 0; }
    std::vector<ItemView> items(NodeId folder) const;  // in collection order
    std::optional<ItemView> item(NodeId folder, std::string_view origName) const;
    // The items of a folder as listFiles shows them (folders first, by name),
    // by their positions in the collection. A position stays valid while
    // items are added; a removal compacts the folder.
    std::vector<std::uint32_t> sortedPositions(NodeId folder) const;
    std::optional<ItemView> itemAt(NodeId folder, std::uint32_t position) const;

    // Building blocks of the adds.
    NodeId addNode(NodeId parent, std::string_view text, NodeImage image = NodeImage::Folder);
    void linkCollection(NodeId id) { nodes_[id].linked = true; }
    void dropNode(NodeId id);  // a node that never got content
    bool addItem(NodeId folder, const NewItem &item);
    void reserveItems(NodeId folder, std::size_t n) { nodes_[folder].items.reserve(n); }
    std::uint32_t internFolder(const std::string &path);
    std::uint16_t internIcon(std::string_view key);
    // Adds delta to the record of each folder from `from` up to the root's
    // children; a missing record is passed over.
    void walkUp(NodeId from, double delta);

    // The procedures of the tree.
    // New Folder: `wanted`, else `wanted(1)`, `wanted(2)`, ... below parent;
    // with no parent the root, named `wanted` whatever its form.
    NodeId newFolder(NodeId parent, std::string_view wanted);
    // Renames in the list and in the tree. False: the name was refused.
    bool renameItem(NodeId folder, std::string_view origName, std::string_view text);
    bool renameNode(NodeId id, std::string_view text);
    void ReTagChildren(NodeId parent, std::string_view oldPath, std::string_view newPath);
    void RemoveChildren(NodeId parent);
    void removeItems(NodeId folder, const std::vector<std::string> &origNames);
    // False for the root, which has no record to remove.
    bool removeNode(NodeId id);
    // An empty project with its root; DVD-Video gets VIDEO_TS and AUDIO_TS.
    void ClearList(std::string_view label);
    SizeView sizeView(std::string_view separator = ",") const;

    std::size_t memoryBytes() const;

private:
    friend class ItemView;
    struct Node {
        std::string key, text, tag;
        NodeId parent = kNoNode;
        std::vector<NodeId> children;
        FolderCollection items;
        bool alive = true;
        bool linked = false;  // its collection stands in colAllFolders
        NodeImage image = NodeImage::Folder;
    };
    StoredItem *storedItem(NodeId folder, std::string_view origName);
    std::string checkedName(std::string_view text) const;
    bool nameTaken(NodeId folder, std::string_view name, std::string_view except) const;
    void retitle(NodeId id, const std::string &name);
    void killNode(NodeId id);

    std::vector<Node> nodes_;
    std::unordered_map<std::string, NodeId> byKey_;
    NodeId root_ = kNoNode;
    NamePool pool_;
    std::vector<std::string> folders_;
    std::unordered_map<std::string, std::uint32_t> folderIds_;
    std::vector<std::string> icons_;
    std::unordered_map<std::string, std::uint16_t> iconIds_;
};

}  // namespace saltmarrow::data

#endif
