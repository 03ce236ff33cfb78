#include "audio/MediaFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "support/RuntimeError.h"

namespace saltmarrow {

namespace {
constexpr int kBadFileNumber = 52;
constexpr int kBadRecordNumber = 63;
}  // namespace

MediaFile::MediaFile(const std::string &path) {
    fd_ = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    struct stat st {};
    if (fd_ >= 0) {
        if (::fstat(fd_, &st) != 0 || !S_ISREG(st.st_mode)) {
            ::close(fd_);
            fd_ = -1;
            return;
        }
    } else if (::stat(path.c_str(), &st) != 0 || !S_ISREG(st.st_mode)) {
        return;
    }
    exists_ = true;
    length_ = static_cast<std::int64_t>(st.st_size);
}

MediaFile::~MediaFile() {
    if (fd_ >= 0) ::close(fd_);
}

std::size_t MediaFile::preadAll(std::int64_t offset, std::size_t count, char *out) const {
    std::size_t done = 0;
    while (done < count) {
        const ssize_t got = ::pread(fd_, out + done, count - done, static_cast<off_t>(offset + done));
        if (got < 0 && errno == EINTR) continue;
        if (got <= 0) break;
        done += static_cast<std::size_t>(got);
    }
    return done;
}

const MediaFile::Block &MediaFile::blockFor(std::int64_t offset) {
    ++uses_;
    for (Block &b : blocks_) {
        if (b.start >= 0 && offset >= b.start &&
            offset < b.start + static_cast<std::int64_t>(b.bytes.size())) {
            b.lastUse = uses_;
            return b;
        }
    }
    Block &victim = blocks_[0].lastUse <= blocks_[1].lastUse ? blocks_[0] : blocks_[1];
    // Blocks start on block boundaries, except that a read near the end pulls
    // in the whole last block, so the tag at the tail and the backwards page
    // search share one read.
    const auto head = static_cast<std::int64_t>(kHeadBlock);
    const auto block = static_cast<std::int64_t>(kBlock);
    std::int64_t start = 0;
    std::int64_t size = head;
    if (offset >= head || offset >= length_ - block) {
        size = block;
        start =
            offset >= length_ - block ? std::max<std::int64_t>(0, length_ - block) : offset - offset % block;
    }
    victim.bytes.resize(static_cast<std::size_t>(std::min(size, length_ - start)));
    victim.bytes.resize(preadAll(start, victim.bytes.size(), victim.bytes.data()));
    victim.start = victim.bytes.empty() ? -1 : start;
    victim.lastUse = uses_;
    return victim;
}

void MediaFile::fill(std::int64_t offset, std::size_t count, char *out) {
    const std::int64_t end = std::min(offset + static_cast<std::int64_t>(count), length_);
    if (count > kBlock) {
        if (offset < end) preadAll(offset, static_cast<std::size_t>(end - offset), out);
        return;
    }
    while (offset < end) {
        const Block &b = blockFor(offset);
        if (b.start < 0) return;  // the file shrank under us: the rest stays zero
        const auto from = static_cast<std::size_t>(offset - b.start);
        const auto n = std::min<std::size_t>(b.bytes.size() - from, static_cast<std::size_t>(end - offset));
        std::memcpy(out, b.bytes.data() + from, n);
        out += n;
        offset += static_cast<std::int64_t>(n);
    }
}

std::string MediaFile::read(std::int64_t position, std::size_t count) {
    if (fd_ < 0) raiseError(kBadFileNumber);
    if (position < 1) raiseError(kBadRecordNumber);
    std::string out(count, '\0');
    if (position <= length_) fill(position - 1, count, out.data());
    return out;
}

unsigned char MediaFile::byteAt(std::int64_t position) {
    return static_cast<unsigned char>(read(position, 1)[0]);
}

std::int64_t MediaFile::find(std::string_view pattern, std::int64_t from, std::size_t step) {
    if (pattern.empty() || step < pattern.size()) return 0;
    const std::int64_t overlap = static_cast<std::int64_t>(pattern.size()) - 1;
    for (std::int64_t pos = std::max<std::int64_t>(from, 1); pos + overlap <= length_;
         pos += static_cast<std::int64_t>(step) - overlap) {
        const std::int64_t n = std::min<std::int64_t>(static_cast<std::int64_t>(step), length_ - pos + 1);
        const std::string chunk = read(pos, static_cast<std::size_t>(n));
        const std::size_t at = chunk.find(pattern);
        if (at != std::string::npos) return pos + static_cast<std::int64_t>(at);
        if (pos + n > length_) break;
    }
    return 0;
}

std::int64_t MediaFile::findLast(std::string_view pattern) {
    if (pattern.empty()) return 0;
    const auto block = static_cast<std::int64_t>(kBlock);
    const std::int64_t overlap = static_cast<std::int64_t>(pattern.size()) - 1;
    // end is the 1-based position just past the window under search.
    for (std::int64_t end = length_ + 1; end - 1 >= static_cast<std::int64_t>(pattern.size());
         end -= block - overlap) {
        const std::int64_t start = std::max<std::int64_t>(1, end - block);
        const std::string chunk = read(start, static_cast<std::size_t>(end - start));
        for (std::size_t at = chunk.size() - pattern.size() + 1; at-- > 0;)
            if (chunk[at] == pattern[0] && std::string_view(chunk).compare(at, pattern.size(), pattern) == 0)
                return start + static_cast<std::int64_t>(at);
        if (start == 1) break;
    }
    return 0;
}

}  // namespace saltmarrow
