#ifndef SALTMARROW_AUDIO_MEDIAFILE_H
#define SALTMARROW_AUDIO_MEDIAFILE_H

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace saltmarrow {

// An audio file opened for the header readers: positioned reads, 1-based like
// every position the readers talk about, served from two small cached blocks
// so that the head, the tail and the byte walks cost a handful of system calls
// rather than one per field. Bytes past the end of the file read as zeros,
// the way a fixed-size read past the end leaves its buffer; the walks stop at
// the real end.
class MediaFile {
public:
    static constexpr std::size_t kBlock = 4096;
    // The first block is larger: the Vorbis header pages, with their
    // codebooks, mostly end a little after 4 KiB.
    static constexpr std::size_t kHeadBlock = 8192;

    explicit MediaFile(const std::string &path);
    ~MediaFile();
    MediaFile(const MediaFile &) = delete;
    MediaFile &operator=(const MediaFile &) = delete;

    // A regular file of that name is there (it may still be unreadable).
    bool exists() const { return exists_; }
    bool isOpen() const { return fd_ >= 0; }
    std::int64_t length() const { return length_; }

    // count bytes from position on, always count of them. A closed file or a
    // position below 1 raises a run-time error.
    std::string read(std::int64_t position, std::size_t count);
    unsigned char byteAt(std::int64_t position);

    // Position of the first pattern that starts at or after from, reading
    // step bytes at a time; 0 if there is none before the end of the file.
    std::int64_t find(std::string_view pattern, std::int64_t from, std::size_t step = kBlock);
    // Position of the last pattern in the file, reading backwards from its
    // end a block at a time; 0 if there is none.
    std::int64_t findLast(std::string_view pattern);

private:
    struct Block {
        std::int64_t start = -1;  // 0-based offset of bytes[0]; -1 while empty
        std::string bytes;        // only what the file really holds
        std::uint64_t lastUse = 0;
    };

    // Copies the file's bytes [offset, offset + count) into out, which the
    // caller has zero-filled; offset is 0-based.
    void fill(std::int64_t offset, std::size_t count, char *out);
    const Block &blockFor(std::int64_t offset);
    std::size_t preadAll(std::int64_t offset, std::size_t count, char *out) const;

    int fd_ = -1;
    bool exists_ = false;
    std::int64_t length_ = 0;
    std::array<Block, 2> blocks_;
    std::uint64_t uses_ = 0;
};

}  // namespace saltmarrow

#endif
