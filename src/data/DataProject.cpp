#include "data/DataProject.h"

#include <algorithm>

#include "support/mdlFunctions.h"

namespace saltmarrow::data {

std::string_view ItemView::Name() const {
    return p_->pool_.get(item_->name);
}

std::string_view ItemView::OrigName() const {
    return p_->pool_.get(item_->origName);
}

std::string ItemView::SourcePath() const {
    const std::string_view leaf = p_->pool_.get(item_->source);
    if (item_->sourceDir == kNoFolder) return std::string(leaf);
    return joinPath(p_->folders_[item_->sourceDir], leaf);
}

std::string_view ItemView::IconKey() const {
    return p_->icons_[item_->icon];
}

FolderObjects ItemView::record() const {
    FolderObjects r;
    r.Name = Name();
    r.OrigName = OrigName();
    r.isFolder = isFolder();
    r.Size = Size();
    r.SourcePath = SourcePath();
    r.IconKey = IconKey();
    return r;
}

DataProject::DataProject() {
    internIcon("folder");
}

NodeId DataProject::findNode(std::string_view key) const {
    const auto it = byKey_.find(std::string(key));
    return it == byKey_.end() ? kNoNode : it->second;
}

std::vector<NodeId> DataProject::nodeOrder() const {
    std::vector<NodeId> order;
    for (NodeId id = 0; id < nodes_.size(); ++id)
        if (nodes_[id].alive) order.push_back(id);
    return order;
}

bool DataProject::hasCollection(std::string_view key) const {
    const NodeId id = findNode(key);
    return id != kNoNode && nodes_[id].linked;
}

std::vector<ItemView> DataProject::items(NodeId folder) const {
    std::vector<ItemView> out;
    if (!alive(folder)) return out;
    const FolderCollection &c = nodes_[folder].items;
    out.reserve(c.count());
    for (std::uint32_t p = 0; p < c.positions(); ++p)
        if (!c.at(p).dead) out.emplace_back(*this, c.at(p));
    return out;
}

std::optional<ItemView> DataProject::item(NodeId folder, std::string_view origName) const {
    if (!alive(folder)) return std::nullopt;
    const FolderCollection &c = nodes_[folder].items;
    const std::uint32_t p = c.find(pool_, origName);
    if (p == FolderCollection::kNotFound) return std::nullopt;
    return ItemView(*this, c.at(p));
}

std::vector<std::uint32_t> DataProject::sortedPositions(NodeId folder) const {
    std::vector<std::uint32_t> out;
    if (!alive(folder)) return out;
    const FolderCollection &c = nodes_[folder].items;
    out.reserve(c.count());
    for (std::uint32_t p = 0; p < c.positions(); ++p)
        if (!c.at(p).dead) out.push_back(p);
    std::sort(out.begin(), out.end(), [&](std::uint32_t a, std::uint32_t b) {
        const StoredItem &x = c.at(a), &y = c.at(b);
        return listsBefore(x.isFolder, pool_.get(x.name), y.isFolder, pool_.get(y.name));
    });
    return out;
}

std::optional<ItemView> DataProject::itemAt(NodeId folder, std::uint32_t position) const {
    if (!alive(folder)) return std::nullopt;
    const FolderCollection &c = nodes_[folder].items;
    if (position >= c.positions() || c.at(position).dead) return std::nullopt;
    return ItemView(*this, c.at(position));
}

NodeId DataProject::addNode(NodeId parent, std::string_view text, NodeImage image) {
    const auto id = static_cast<NodeId>(nodes_.size());
    Node &n = nodes_.emplace_back();
    n.text = text;
    n.key = parent == kNoNode ? n.text : nodes_[parent].key + "\\" + n.text;
    n.tag = parent == kNoNode ? n.text : nodes_[parent].tag + "\\" + n.text;
    n.parent = parent;
    n.image = image;
    if (parent != kNoNode) nodes_[parent].children.push_back(id);
    byKey_[n.key] = id;
    return id;
}

void DataProject::killNode(NodeId id) {
    Node &n = nodes_[id];
    if (!n.alive) return;
    byKey_.erase(n.key);
    n.alive = false;
    n.linked = false;
    n.items = FolderCollection();
    n.children.clear();
    if (selected == id) selected = n.parent;
    if (openNode == id) openNode = kNoNode;
}

void DataProject::dropNode(NodeId id) {
    const NodeId parent = nodes_[id].parent;
    if (parent != kNoNode) std::erase(nodes_[parent].children, id);
    RemoveChildren(id);
    killNode(id);
}

bool DataProject::addItem(NodeId folder, const NewItem &item) {
    FolderCollection &c = nodes_[folder].items;
    if (c.find(pool_, item.name) != FolderCollection::kNotFound) return false;
    StoredItem s;
    s.origName = pool_.add(item.name);
    s.name = s.origName;
    if (item.sourceLeaf == item.name)
        s.source = s.origName;
    else if (!item.sourceLeaf.empty())
        s.source = pool_.add(item.sourceLeaf);
    s.sourceDir = item.sourceDir;
    s.size = item.size;
    s.icon = item.icon;
    s.isFolder = item.isFolder;
    return c.insert(pool_, s);
}

std::uint32_t DataProject::internFolder(const std::string &path) {
    const auto [it, added] = folderIds_.try_emplace(path, static_cast<std::uint32_t>(folders_.size()));
    if (added) folders_.push_back(path);
    return it->second;
}

std::uint16_t DataProject::internIcon(std::string_view key) {
    const auto [it, added] =
        iconIds_.try_emplace(std::string(key), static_cast<std::uint16_t>(icons_.size()));
    if (added) icons_.emplace_back(key);
    return it->second;
}

StoredItem *DataProject::storedItem(NodeId folder, std::string_view origName) {
    if (!alive(folder)) return nullptr;
    FolderCollection &c = nodes_[folder].items;
    const std::uint32_t p = c.find(pool_, origName);
    return p == FolderCollection::kNotFound ? nullptr : &c.at(p);
}

void DataProject::walkUp(NodeId from, double delta) {
    for (NodeId n = from; n != kNoNode && nodes_[n].parent != kNoNode; n = nodes_[n].parent)
        if (StoredItem *record = storedItem(nodes_[n].parent, lastElement(nodes_[n].key)))
            record->size += delta;
}

NodeId DataProject::newFolder(NodeId parent, std::string_view wanted) {
    if (parent == kNoNode) {
        root_ = addNode(kNoNode, wanted, NodeImage::FolderOpen);
        linkCollection(root_);
        selected = openNode = root_;
        return root_;
    }
    std::string text(wanted);
    for (int n = 1; findNode(nodes_[parent].key + "\\" + text) != kNoNode || item(parent, text); ++n)
        text = std::string(wanted) + "(" + std::to_string(n) + ")";
    const NodeId id = addNode(parent, text);
    linkCollection(id);
    NewItem record;
    record.name = text;
    record.isFolder = true;
    addItem(parent, record);
    return id;
}

std::string DataProject::checkedName(std::string_view text) const {
    std::string name = fileNameCheck(text);
    if (vb::Trim(name).empty() || hasLineBreak(name)) return {};
    return name;
}

bool DataProject::nameTaken(NodeId folder, std::string_view name, std::string_view except) const {
    for (const ItemView &v : items(folder))
        if (v.Name() == name && v.OrigName() != except) return true;
    return false;
}

void DataProject::retitle(NodeId id, const std::string &name) {
    const std::string oldTag = nodes_[id].tag;
    const std::string newTag = nodes_[nodes_[id].parent].tag + "\\" + name;
    nodes_[id].text = name;
    nodes_[id].tag = newTag;
    ReTagChildren(id, oldTag, newTag);
}

bool DataProject::renameItem(NodeId folder, std::string_view origName, std::string_view text) {
    const std::string name = checkedName(text);
    StoredItem *record = storedItem(folder, origName);
    if (name.empty() || !record || nameTaken(folder, name, origName)) return false;
    if (record->isFolder)
        if (const NodeId node = findNode(nodes_[folder].key + "\\" + std::string(origName)); node != kNoNode)
            retitle(node, name);
    record->name = pool_.add(name);
    return true;
}

bool DataProject::renameNode(NodeId id, std::string_view text) {
    if (!alive(id)) return false;
    if (id == root_) {
        if (checkedName(text).empty()) return false;
        nodes_[id].text = text;
        return true;
    }
    const std::string name = checkedName(text);
    const NodeId parent = nodes_[id].parent;
    const std::string_view origName = lastElement(nodes_[id].key);
    if (name.empty() || nameTaken(parent, name, origName)) return false;
    retitle(id, name);
    if (StoredItem *record = storedItem(parent, origName)) record->name = pool_.add(name);
    return true;
}

void DataProject::ReTagChildren(NodeId parent, std::string_view oldPath, std::string_view newPath) {
    for (const NodeId child : nodes_[parent].children) {
        std::string &tag = nodes_[child].tag;
        if (tag.starts_with(oldPath)) tag = std::string(newPath) + tag.substr(oldPath.size());
        if (!nodes_[child].children.empty()) ReTagChildren(child, oldPath, newPath);
    }
}

void DataProject::RemoveChildren(NodeId parent) {
    for (const NodeId child : nodes_[parent].children) {
        if (!nodes_[child].children.empty()) RemoveChildren(child);
        killNode(child);
    }
    nodes_[parent].children.clear();
}

void DataProject::removeItems(NodeId folder, const std::vector<std::string> &origNames) {
    for (const std::string &name : origNames) {
        StoredItem *record = storedItem(folder, name);
        if (!record) continue;
        // Sizes go back through single precision, as they came up the tree.
        const float size = static_cast<float>(record->size);
        total -= size;
        walkUp(folder, -static_cast<double>(size));
        if (record->isFolder)
            if (const NodeId node = findNode(nodes_[folder].key + "\\" + name); node != kNoNode)
                dropNode(node);
        FolderCollection &c = nodes_[folder].items;
        c.remove(c.find(pool_, name));
    }
    nodes_[folder].items.compact(pool_);
}

bool DataProject::removeNode(NodeId id) {
    if (!alive(id) || nodes_[id].parent == kNoNode) return false;
    const NodeId parent = nodes_[id].parent;
    const std::string origName(lastElement(nodes_[id].key));
    StoredItem *record = storedItem(parent, origName);
    if (!record) return false;
    const float size = static_cast<float>(record->size);
    total -= size;
    walkUp(id, -static_cast<double>(size));
    FolderCollection &c = nodes_[parent].items;
    c.remove(c.find(pool_, origName));
    c.compact(pool_);
    dropNode(id);
    return true;
}

void DataProject::ClearList(std::string_view label) {
    nodes_.clear();
    byKey_.clear();
    pool_.clear();
    folders_.clear();
    folderIds_.clear();
    blnDirty = false;
    total = 0;
    cancelFlag = false;
    selected = openNode = root_ = kNoNode;
    newFolder(kNoNode, label);
    if (blnDVDVideo) {
        newFolder(root_, "VIDEO_TS");
        newFolder(root_, "AUDIO_TS");
    }
}

SizeView DataProject::sizeView(std::string_view separator) const {
    SizeView v;
    v.total = formatSize(total, separator);
    v.scale = blnDVD ? kDVDCapacity : kCDCapacity;
    v.value = total >= v.scale ? v.scale : std::max(total, 0.0);
    return v;
}

std::size_t DataProject::memoryBytes() const {
    std::size_t bytes = pool_.capacityBytes() + nodes_.capacity() * sizeof(Node);
    for (const Node &n : nodes_)
        bytes += n.items.memoryBytes() + n.key.capacity() + n.text.capacity() + n.tag.capacity() +
                 n.children.capacity() * sizeof(NodeId);
    return bytes;
}

}  // namespace saltmarrow::data
