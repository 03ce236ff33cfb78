#ifndef SALTMARROW_DATA_FOLDERSTORE_H
#define SALTMARROW_DATA_FOLDERSTORE_H

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace saltmarrow::data {

// The storage under a data project, sized for a million items: names live
// once in a pool of large blocks, an item is a small fixed record that refers
// to them, and each folder finds its items by name through an open-addressing
// index of 32-bit slots. Nothing here knows what the items mean.

class NamePool {
public:
    using Ref = std::uint32_t;
    static constexpr Ref kNone = 0xFFFFFFFFu;

    Ref add(std::string_view text);
    std::string_view get(Ref ref) const;
    void clear();
    std::size_t capacityBytes() const { return blocks_.size() * kBlockSize; }

private:
    static constexpr std::size_t kBlockBits = 20;
    static constexpr std::size_t kBlockSize = std::size_t{1} << kBlockBits;
    std::vector<std::unique_ptr<char[]>> blocks_;
    std::size_t used_ = kBlockSize;  // of the last block; full before the first
};

struct StoredItem {
    double size = 0;
    NamePool::Ref origName = NamePool::kNone;
    NamePool::Ref name = NamePool::kNone;
    NamePool::Ref source = NamePool::kNone;  // the leaf below sourceDir, or a whole path
    std::uint32_t sourceDir = 0xFFFFFFFFu;   // an interned folder; none: source stands alone
    std::uint16_t icon = 0;
    bool isFolder = false;
    bool dead = false;
};

// One folder's items in the order they were added, keyed by OrigName.
class FolderCollection {
public:
    static constexpr std::uint32_t kNotFound = 0xFFFFFFFFu;

    // Position of the live item with that OrigName, or kNotFound.
    std::uint32_t find(const NamePool &pool, std::string_view origName) const;
    // Adds the item unless its OrigName is taken; false on a clash.
    bool insert(const NamePool &pool, const StoredItem &item);
    void remove(std::uint32_t position);
    // Drops dead items; positions change.
    void compact(const NamePool &pool);
    void reserve(std::size_t n) { items_.reserve(items_.size() + n); }

    std::size_t count() const { return live_; }
    // Positions run over dead items too; skip those.
    std::size_t positions() const { return items_.size(); }
    const StoredItem &at(std::uint32_t position) const { return items_[position]; }
    StoredItem &at(std::uint32_t position) { return items_[position]; }
    std::size_t memoryBytes() const;

private:
    void rebuild(const NamePool &pool, std::size_t slotCount);
    std::vector<StoredItem> items_;
    std::vector<std::uint32_t> slots_;  // position + 1; 0 is an empty slot
    std::uint32_t live_ = 0;
};

}  // namespace saltmarrow::data

#endif
