#include "data/FolderStore.h"

#include <cstring>
#include <functional>

#include "support/RuntimeError.h"

namespace saltmarrow::data {

namespace {

std::size_t hashOf(std::string_view text) {
    return std::hash<std::string_view>{}(text);
}

// A length before each name: one byte up to 127, more for longer ones.
std::size_t writeLength(char *out, std::size_t length) {
    std::size_t n = 0;
    do {
        auto b = static_cast<unsigned char>(length & 0x7F);
        length >>= 7;
        if (length) b |= 0x80;
        out[n++] = static_cast<char>(b);
    } while (length);
    return n;
}

}  // namespace

NamePool::Ref NamePool::add(std::string_view text) {
    const std::size_t need = text.size() + 5;
    if (need > kBlockSize) throw RuntimeError(7, "Out of memory");
    if (used_ + need > kBlockSize) {
        if (blocks_.size() >= (std::size_t{1} << (32 - kBlockBits))) throw RuntimeError(7, "Out of memory");
        blocks_.push_back(std::make_unique<char[]>(kBlockSize));
        used_ = 0;
    }
    const std::size_t block = blocks_.size() - 1;
    const auto ref = static_cast<Ref>((block << kBlockBits) | used_);
    char *out = blocks_.back().get() + used_;
    const std::size_t head = writeLength(out, text.size());
    if (!text.empty()) std::memcpy(out + head, text.data(), text.size());
    used_ += head + text.size();
    return ref;
}

std::string_view NamePool::get(Ref ref) const {
    if (ref == kNone) return {};
    const char *p = blocks_[ref >> kBlockBits].get() + (ref & (kBlockSize - 1));
    std::size_t length = 0;
    int shift = 0;
    unsigned char b = 0;
    do {
        b = static_cast<unsigned char>(*p++);
        length |= static_cast<std::size_t>(b & 0x7F) << shift;
        shift += 7;
    } while (b & 0x80);
    return {p, length};
}

void NamePool::clear() {
    blocks_.clear();
    used_ = kBlockSize;
}

std::uint32_t FolderCollection::find(const NamePool &pool, std::string_view origName) const {
    if (slots_.empty()) return kNotFound;
    const std::size_t mask = slots_.size() - 1;
    for (std::size_t i = hashOf(origName) & mask;; i = (i + 1) & mask) {
        const std::uint32_t slot = slots_[i];
        if (slot == 0) return kNotFound;
        const StoredItem &item = items_[slot - 1];
        if (!item.dead && pool.get(item.origName) == origName) return slot - 1;
    }
}

bool FolderCollection::insert(const NamePool &pool, const StoredItem &item) {
    const std::string_view key = pool.get(item.origName);
    if (find(pool, key) != kNotFound) return false;
    // Dead items keep their slots until the next rebuild, so they count.
    if ((items_.size() + 1) * 2 > slots_.size()) {
        if (items_.size() >= 2 * std::size_t{live_} + 16) {
            rebuild(pool, slots_.size());  // mostly dead: compact first
        }
        std::size_t want = 16;
        while (want < (items_.size() + 1) * 2) want *= 2;
        if (want != slots_.size()) rebuild(pool, want);
    }
    items_.push_back(item);
    ++live_;
    const std::size_t mask = slots_.size() - 1;
    std::size_t i = hashOf(key) & mask;
    while (slots_[i] != 0) i = (i + 1) & mask;
    slots_[i] = static_cast<std::uint32_t>(items_.size());
    return true;
}

void FolderCollection::remove(std::uint32_t position) {
    if (position >= items_.size() || items_[position].dead) return;
    items_[position].dead = true;
    --live_;
}

void FolderCollection::compact(const NamePool &pool) {
    if (live_ != items_.size()) rebuild(pool, slots_.size());
}

void FolderCollection::rebuild(const NamePool &pool, std::size_t slotCount) {
    std::erase_if(items_, [](const StoredItem &item) { return item.dead; });
    slots_.assign(slotCount, 0);
    const std::size_t mask = slotCount - 1;
    for (std::size_t p = 0; p < items_.size(); ++p) {
        std::size_t i = hashOf(pool.get(items_[p].origName)) & mask;
        while (slots_[i] != 0) i = (i + 1) & mask;
        slots_[i] = static_cast<std::uint32_t>(p + 1);
    }
}

std::size_t FolderCollection::memoryBytes() const {
    return items_.capacity() * sizeof(StoredItem) + slots_.capacity() * sizeof(std::uint32_t);
}

}  // namespace saltmarrow::data
