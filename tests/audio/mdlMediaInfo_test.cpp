// Header readers against hand-made files: the cases no encoder writes.
#include "audio/mdlMediaInfo.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cmath>
#include <string>
#include <vector>

#include "audio/BitString.h"
#include "audio/GenreTable.h"
#include "support/RuntimeError.h"
#include "testlib/TestSupport.h"

using namespace saltmarrow;
using saltmarrow::test::TempDir;
using saltmarrow::test::writeFile;

namespace {

std::string bytes(std::initializer_list<int> values) {
    std::string out;
    for (int v : values) out += static_cast<char>(v);
    return out;
}

std::string padded(std::string text, std::size_t width, char fill = '\0') {
    text.resize(width, fill);
    return text;
}

std::string le32(std::uint32_t v) {
    return bytes({int(v & 0xFF), int(v >> 8 & 0xFF), int(v >> 16 & 0xFF), int(v >> 24)});
}
std::string le16(std::uint16_t v) {
    return bytes({v & 0xFF, v >> 8});
}
std::string be24(std::uint32_t v) {
    return bytes({int(v >> 16 & 0xFF), int(v >> 8 & 0xFF), int(v & 0xFF)});
}

std::string id3v1(const std::string &title, const std::string &artist, const std::string &album,
                  const std::string &year, const std::string &comment, int genre) {
    return "TAG" + padded(title, 30) + padded(artist, 30) + padded(album, 30) + padded(year, 4) +
           padded(comment, 30) + bytes({genre});
}

// A version 2.3 frame: name, 4 size bytes, 2 flag bytes, encoding byte, text.
std::string frame3(const std::string &name, const std::string &text, int formatFlags = 0) {
    const std::uint32_t size = static_cast<std::uint32_t>(text.size() + 1);
    return name + bytes({int(size >> 24), int(size >> 16 & 0xFF), int(size >> 8 & 0xFF), int(size & 0xFF)}) +
           bytes({0, formatFlags, 0}) + text;
}

// A version 2.2 frame: name, 3 size bytes, encoding byte, text.
std::string frame2(const std::string &name, const std::string &text) {
    return name + be24(static_cast<std::uint32_t>(text.size() + 1)) + bytes({0}) + text;
}

// The tag header with a correct synchsafe size (the first byte stays 0 for
// the small tags here).
std::string id3v2(int version, const std::string &frames) {
    const std::size_t n = frames.size();
    return "ID3" +
           bytes(
               {version, 0, 0, int(n >> 21 & 0x7F), int(n >> 14 & 0x7F), int(n >> 7 & 0x7F), int(n & 0x7F)}) +
           frames;
}

// An MPEG 1 layer III frame header: 128 kbit/s, 44100 Hz, joint stereo.
const std::string kFrame128 = bytes({0xFF, 0xFB, 0x90, 0x64});

// A stream that is long enough for the MPEG reader: header and zeros.
std::string mpegStream(const std::string &header = kFrame128, std::size_t length = 4180) {
    return padded(header, length);
}

std::string xingFrame(std::uint32_t frames, std::size_t xingOffset = 36) {
    std::string f =
        padded(kFrame128, xingOffset) + "Xing" + bytes({0, 0, 0, 0x0F}) +
        bytes({int(frames >> 24), int(frames >> 16 & 0xFF), int(frames >> 8 & 0xFF), int(frames & 0xFF)});
    return padded(f, 417);
}

class MediaInfoFiles : public ::testing::Test {
protected:
    std::string make(const std::string &name, const std::string &content) {
        const std::string path = dir.file(name);
        writeFile(path, content);
        return path;
    }
    TempDir dir;
};

// ---------------------------------------------------------------------------

TEST_F(MediaInfoFiles, MissingFilesFoldersAndUnknownExtensions) {
    const MediaFileInfo missing = readMediaInfo(dir.file("nothing.mp3"));
    EXPECT_EQ(missing.FileName, "");
    EXPECT_EQ(missing.Millisecs, 0);
    EXPECT_EQ(missing.DataLength, 0);

    EXPECT_EQ(readMediaInfo(dir.path()).FileName, "") << "a folder is no file";

    // Readers are chosen by the extension alone; others get only their name.
    const std::string stream = id3v1("Title", "", "", "", "", 17);
    const std::string txt = make("song.mp3.txt", mpegStream() + stream);
    const MediaFileInfo other = readMediaInfo(txt);
    EXPECT_EQ(other.FileName, txt);
    EXPECT_EQ(other.Title, "");
    EXPECT_EQ(other.Frequency, 0);
    EXPECT_EQ(readMediaInfo(make("noext", mpegStream())).Frequency, 0);
    EXPECT_EQ(readMediaInfo(make("song.mpc", mpegStream())).Frequency, 0);

    const MediaFileInfo mixedCase = readMediaInfo(make("Song.Mp3", mpegStream() + stream));
    EXPECT_EQ(mixedCase.Title, "Title");
    EXPECT_EQ(mixedCase.Frequency, 44100);
    EXPECT_EQ(readMediaInfo(make("song.MP2", mpegStream())).Frequency, 44100);
}

TEST_F(MediaInfoFiles, ID3v1FieldsFromTheTail) {
    const std::string tail = id3v1(padded("Blank padded", 30, ' '), "Artist\0\0", "Blanks before NULs  ",
                                   "1987", "Hello, World! 42: a-b.c", 17);
    const std::string content = mpegStream() + tail;
    const MediaFileInfo info = readMediaInfo(make("v1.mp3", content));
    EXPECT_EQ(info.Title, "Blank padded");
    EXPECT_EQ(info.Artist, "Artist");
    // Trailing blanks go first and the NULs after, so blanks before the NUL
    // padding stay.
    EXPECT_EQ(info.Album, "Blanks before NULs  ");
    EXPECT_EQ(info.Year, "1987");
    // Codes 0 to 47 are dropped from comments, digits and ':' (58) are not.
    EXPECT_EQ(info.Comments, "HelloWorld42:abc");
    EXPECT_EQ(info.Genre, "Rock");
    EXPECT_EQ(info.TrackNumber, 0) << "ID3v1 has no track number here";
    EXPECT_EQ(info.DataLength, static_cast<double>(content.size() - 128));
    EXPECT_EQ(info.Millisecs, std::lround(info.DataLength * 8 / 128));
}

TEST_F(MediaInfoFiles, GenreNumbersThroughTheTable) {
    struct {
        int byte;
        const char *genre;
    } cases[] = {{0, "Blues"}, {51, "Techno-Indistrial"}, {125, "Dance Hall"}, {126, ""}, {255, ""}};
    for (const auto &c : cases) {
        const MediaFileInfo info =
            readMediaInfo(make("g.mp3", mpegStream() + id3v1("", "", "", "", "", c.byte)));
        EXPECT_EQ(info.Genre, c.genre) << "genre byte " << c.byte;
    }
}

TEST_F(MediaInfoFiles, ShortFilesAreLeftAlone) {
    const MediaFileInfo tiny = readMediaInfo(make("tiny.mp3", kFrame128 + "TAG"));
    EXPECT_EQ(tiny.DataLength, 0);
    EXPECT_EQ(tiny.Frequency, 0);

    // 128 bytes are enough for the tag, 256 are needed for the stream.
    const std::string shortStream = padded(kFrame128, 100) + id3v1("Short", "", "", "", "", 1);
    const MediaFileInfo info = readMediaInfo(make("short.mp3", shortStream));
    EXPECT_EQ(info.Title, "Short");
    EXPECT_EQ(info.Genre, "Classic Rock");
    EXPECT_EQ(info.DataLength, 100);
    EXPECT_EQ(info.Frequency, 0);
    EXPECT_EQ(info.Bitrate, 0);
}

TEST_F(MediaInfoFiles, ID3v2FramesWinOverID3v1) {
    const std::string frames = frame3("TIT2", "New Title") + frame3("TPE1", "New Artist") +
                               frame3("TALB", "") + frame3("TYER", "2024") + frame3("TCON", "(17)Rock") +
                               frame3("TRCK", "5/12");
    const std::string tag = id3v2(3, frames);
    const std::string tail = id3v1("Old Title", "Old Artist", "Old Album", "1999", "note", 9);
    const std::string content = tag + mpegStream() + tail;
    const MediaFileInfo info = readMediaInfo(make("both.mp3", content));
    EXPECT_EQ(info.Title, "New Title");
    EXPECT_EQ(info.Artist, "New Artist");
    EXPECT_EQ(info.Album, "Old Album") << "an empty frame keeps the ID3v1 text";
    EXPECT_EQ(info.Year, "2024");
    EXPECT_EQ(info.Genre, "Rock");
    EXPECT_EQ(info.TrackNumber, 5);
    EXPECT_EQ(info.Comments, "note");
    // Both tags are taken off; the tag's own 10-byte header is not.
    EXPECT_EQ(info.DataLength, static_cast<double>(content.size() - 128 - frames.size()));
    EXPECT_EQ(info.Frequency, 44100);
}

TEST_F(MediaInfoFiles, GenreTextsOfID3v2) {
    struct {
        const char *tcon;
        int v1;
        const char *genre;
    } cases[] = {
        {"(17)Rock", 255, "Rock"},
        {"(9)Anything", 255, "Anything"},  // the text after ")", not the number
        {"(17)", 9, "Metal"},              // nothing after ")": the ID3v1 genre, through the table
        {"(17)", 255, ""},
        {"13", 255, "Pop"},
        {"Synthwave", 0, "Synthwave"},
        {"(abc", 0, "(abc"},
        {"", 2, "Country"},
    };
    for (const auto &c : cases) {
        const std::string content =
            id3v2(3, frame3("TCON", c.tcon)) + mpegStream() + id3v1("", "", "", "", "", c.v1);
        EXPECT_EQ(readMediaInfo(make("genre.mp3", content)).Genre, c.genre) << c.tcon;
    }
}

TEST_F(MediaInfoFiles, TagSizeWithItsFirstByteSetIsTooBig) {
    // 1 x 20917152 is more than the file: the reader stops with ID3v1 values,
    // before the genre lookup.
    std::string tag = id3v2(3, frame3("TIT2", "Unseen"));
    tag[6] = 1;
    const std::string content = tag + mpegStream() + id3v1("From v1", "", "", "", "", 17);
    const MediaFileInfo info = readMediaInfo(make("big.mp3", content));
    EXPECT_EQ(info.Title, "From v1");
    EXPECT_EQ(info.Genre, "17");
    EXPECT_EQ(info.DataLength, static_cast<double>(content.size() - 128));
    EXPECT_EQ(info.Frequency, 44100) << "the MPEG reader runs all the same";
}

TEST_F(MediaInfoFiles, TagSizeFactorOnAFileLargeEnoughForIt) {
    // A sparse file longer than 20917152 bytes: the size is taken with the
    // factor as it stands and comes out 20917152 - 2097152 bytes too big.
    std::string tag = id3v2(3, frame3("TIT2", "Big tag"));
    tag[6] = 1;
    const std::string path = make("huge.mp3", tag);
    const off_t length = 21'000'000;
    ASSERT_EQ(::truncate(path.c_str(), length), 0);
    const MediaFileInfo info = readMediaInfo(path);
    const double size = 20917152.0 + static_cast<double>(frame3("TIT2", "Big tag").size());
    EXPECT_EQ(info.DataLength, static_cast<double>(length) - size);
    EXPECT_EQ(info.Title, "Big tag");
}

TEST_F(MediaInfoFiles, FramesFoundByPlainSearch) {
    // The first "TIT2" anywhere in the tag is taken, even inside another
    // frame's text: here a comment that happens to hold one.
    const std::string fake = "xTIT2" + bytes({0, 0, 0, 5, 0, 0, 0}) + "Fake";
    const std::string frames = frame3("COMM", fake) + frame3("TIT2", "Real");
    EXPECT_EQ(readMediaInfo(make("first.mp3", id3v2(3, frames) + mpegStream())).Title, "Fake");

    // Only the lowest size byte counts: 0x0105 bytes read as 4.
    std::string longFrame = frame3("TIT2", std::string(260, 'a'));
    EXPECT_EQ(readMediaInfo(make("long.mp3", id3v2(3, longFrame) + mpegStream())).Title, "aaaa");

    // The encoding byte is passed over, not understood: UTF-16 text stays bytes.
    const std::string utf16 = bytes({0xFF, 0xFE}) + std::string("H\0i\0", 4);
    std::string frame = frame3("TPE1", utf16);
    frame[10] = 1;
    EXPECT_EQ(readMediaInfo(make("utf16.mp3", id3v2(3, frame) + mpegStream())).Artist, utf16);
}

TEST_F(MediaInfoFiles, CompressedAndEncryptedFramesAreSkipped) {
    struct {
        int flags;
        const char *title;
    } cases[] = {{0x80, "v1"}, {0x40, "v1"}, {0xC0, "v1"}, {0x20, "Grouped"}, {0x00, "Grouped"}};
    for (const auto &c : cases) {
        const std::string content =
            id3v2(3, frame3("TIT2", "Grouped", c.flags)) + mpegStream() + id3v1("v1", "", "", "", "", 0);
        EXPECT_EQ(readMediaInfo(make("flags.mp3", content)).Title, c.title) << "flags " << c.flags;
    }
}

TEST_F(MediaInfoFiles, VersionTwoTags) {
    const std::string frames = frame2("TT2", "Old Style") + frame2("TOA", "Someone") +
                               frame2("TAL", "Record") + frame2("TYE", "1980") + frame2("TCO", "(8)") +
                               frame2("TRK", "4");
    const std::string content = id3v2(2, frames) + mpegStream() + id3v1("", "", "", "", "", 8);
    const MediaFileInfo info = readMediaInfo(make("v22.mp3", content));
    EXPECT_EQ(info.Title, "Old Style");
    EXPECT_EQ(info.Artist, "Someone");
    EXPECT_EQ(info.Album, "Record");
    EXPECT_EQ(info.Year, "1980");
    EXPECT_EQ(info.Genre, "Jazz");
    EXPECT_EQ(info.TrackNumber, 0) << "version 2 asks for TRCK, not TRK";
}

TEST_F(MediaInfoFiles, OtherTagVersionsEndTheReader) {
    const std::string frames = frame3("TIT2", "Version four");
    const std::string content = id3v2(4, frames) + mpegStream() + id3v1("v1", "", "", "", "", 17);
    const MediaFileInfo info = readMediaInfo(make("v24.mp3", content));
    EXPECT_EQ(info.Title, "v1");
    EXPECT_EQ(info.Genre, "17");
    EXPECT_EQ(info.DataLength, static_cast<double>(content.size() - 128 - frames.size()));
}

TEST_F(MediaInfoFiles, BrokenFramesKeepWhatWasRead) {
    // A title frame of size byte 0 cannot be cut out; what follows it in the
    // reader is not reached, the ID3v1 values stay.
    std::string frame = frame3("TIT2", "x");
    frame[7] = 0;
    const std::string content =
        id3v2(3, frame3("TPE1", "Artist") + frame) + mpegStream() + id3v1("v1", "", "", "", "", 17);
    const MediaFileInfo info = readMediaInfo(make("zero.mp3", content));
    EXPECT_EQ(info.Title, "v1");
    EXPECT_EQ(info.Artist, "");
    EXPECT_EQ(info.Frequency, 44100);

    // A frame name at the very end of the tag, its size outside it.
    const MediaFileInfo cut = readMediaInfo(make("cut.mp3", id3v2(3, "TIT2") + mpegStream()));
    EXPECT_EQ(cut.Title, "");
    EXPECT_EQ(cut.Frequency, 44100);

    const MediaFileInfo huge =
        readMediaInfo(make("track.mp3", id3v2(3, frame3("TRCK", "99999")) + mpegStream()));
    EXPECT_EQ(huge.TrackNumber, 0);
    EXPECT_EQ(huge.Frequency, 44100);
}

// ---------------------------------------------------------------------------

TEST_F(MediaInfoFiles, FrameHeaderIsTheFirstMatchingPair) {
    // 0xFF 0xFB at position 1 is a header, tag or not.
    const MediaFileInfo atStart = readMediaInfo(make("start.mp3", mpegStream()));
    EXPECT_EQ(atStart.Frequency, 44100);
    EXPECT_EQ(atStart.Bitrate, 128);
    EXPECT_EQ(atStart.Channels, 2);
    EXPECT_FALSE(atStart.IsVBR);
    EXPECT_EQ(atStart.DataLength, 4180) << "no tag to take off";
    EXPECT_EQ(atStart.Millisecs, 261);

    // A pair inside the ID3v2 tag wins over the real frame after it:
    // layer II, 48000 Hz, single channel, 64 kbit/s.
    const std::string inTag = id3v2(3, frame3("TIT2", "ab" + bytes({0xFF, 0xFD, 0x44, 0xC0})));
    const std::string content = inTag + mpegStream() + id3v1("", "", "", "", "", 0);
    const MediaFileInfo info = readMediaInfo(make("intag.mp3", content));
    EXPECT_EQ(info.Frequency, 48000);
    EXPECT_EQ(info.Channels, 1);
    EXPECT_EQ(info.Bitrate, 64);
    EXPECT_EQ(info.Title, "ab" + bytes({0xFF, 0xFD, 0x44, 0xC0}));

    // MPEG 2 (0xF3) and other pairs do not count; the scan goes on.
    const std::string skipped = bytes({0xFF, 0xF3, 0x90, 0x64, 0xFF, 0xFE, 0xFF}) + mpegStream();
    EXPECT_EQ(readMediaInfo(make("skip.mp3", skipped)).Frequency, 44100);

    EXPECT_EQ(readMediaInfo(make("nosync.mp3", std::string(5000, '\xFF'))).Frequency, 0);
}

TEST_F(MediaInfoFiles, FrameHeaderAcrossReadBlocks) {
    for (std::size_t at : {4095, 4096, 4097, 8191, 12000}) {
        const std::string content = std::string(at, '\0') + mpegStream();
        const MediaFileInfo info = readMediaInfo(make("far.mp3", content));
        EXPECT_EQ(info.Frequency, 44100) << "header at offset " << at;
        EXPECT_EQ(info.Bitrate, 128) << "header at offset " << at;
    }
}

TEST_F(MediaInfoFiles, HeaderFields) {
    struct {
        std::string header;
        std::int32_t frequency;
        double bitrate;
        int channels;
    } cases[] = {
        {bytes({0xFF, 0xFB, 0x90, 0x00}), 44100, 128, 2},  // layer III, stereo
        {bytes({0xFF, 0xFA, 0x94, 0x40}), 48000, 128, 2},  // with CRC, joint stereo
        {bytes({0xFF, 0xFB, 0x98, 0x80}), 32000, 128, 2},  // dual channel
        {bytes({0xFF, 0xFB, 0x10, 0xC0}), 44100, 32, 1},   // single channel, lowest rate
        {bytes({0xFF, 0xFB, 0xE0, 0xC0}), 44100, 320, 1},  // highest rate of layer III
        {bytes({0xFF, 0xFD, 0x90, 0x00}), 44100, 160, 2},  // layer II row
        {bytes({0xFF, 0xFC, 0xE0, 0x00}), 44100, 384, 2},
    };
    for (const auto &c : cases) {
        const std::string content = mpegStream(c.header) + id3v1("", "", "", "", "", 0);
        const MediaFileInfo info = readMediaInfo(make("h.mp3", content));
        EXPECT_EQ(info.Frequency, c.frequency);
        EXPECT_EQ(info.Bitrate, c.bitrate);
        EXPECT_EQ(info.Channels, c.channels);
        // Rounded half to even: 4180 bytes at 320 kbit/s are 104.5 ms.
        const double ms = std::nearbyint(info.DataLength * 8 / c.bitrate);
        EXPECT_EQ(info.Millisecs, ms);
        EXPECT_EQ(info.Samples, std::nearbyint(c.frequency / 1000.0 * ms));
    }
}

TEST_F(MediaInfoFiles, UnusableHeadersLeaveTheDurationOut) {
    const std::string tail = id3v1("", "", "", "", "", 0);
    // Sample rate index 3 is reserved: no frequency and nothing after it.
    const MediaFileInfo reserved =
        readMediaInfo(make("r.mp3", mpegStream(bytes({0xFF, 0xFB, 0x9C, 0xC0})) + tail));
    EXPECT_EQ(reserved.Frequency, 0);
    EXPECT_EQ(reserved.Channels, 1);
    EXPECT_EQ(reserved.Bitrate, 0);
    // Free format (index 0) and the forbidden index 15 give no bit rate, so
    // no duration.
    for (int b2 : {0x00, 0xF0}) {
        const MediaFileInfo info =
            readMediaInfo(make("f.mp3", mpegStream(bytes({0xFF, 0xFB, b2, 0x00})) + tail));
        EXPECT_EQ(info.Frequency, 44100);
        EXPECT_EQ(info.Bitrate, 0);
        EXPECT_EQ(info.Millisecs, 0);
        EXPECT_EQ(info.Samples, 0);
    }
}

TEST_F(MediaInfoFiles, XingHeaderAtItsStereoPlace) {
    const std::uint32_t frames = 1000;
    const std::string content = xingFrame(frames) + mpegStream() + id3v1("", "", "", "", "", 0);
    const MediaFileInfo info = readMediaInfo(make("vbr.mp3", content));
    EXPECT_TRUE(info.IsVBR);
    EXPECT_EQ(info.Frequency, 44100);
    // 1152 samples a frame, whatever the file's length.
    const double ms = frames * 1152 * 1000.0 / 44100;
    EXPECT_EQ(info.Millisecs, std::lround(ms));
    EXPECT_NEAR(info.Bitrate, info.DataLength * 8 / ms, 1e-9);

    // At the mono place (+21) it is not seen: the first frame's rate counts.
    const MediaFileInfo mono =
        readMediaInfo(make("mono.mp3", xingFrame(frames, 21) + mpegStream() + id3v1("", "", "", "", "", 0)));
    EXPECT_FALSE(mono.IsVBR);
    EXPECT_EQ(mono.Bitrate, 128);

    // No frame count: the division fails, the rate and duration stay 0.
    const MediaFileInfo zero = readMediaInfo(make("zero.mp3", xingFrame(0) + id3v1("", "", "", "", "", 0)));
    EXPECT_TRUE(zero.IsVBR);
    EXPECT_EQ(zero.Frequency, 44100);
    EXPECT_EQ(zero.Bitrate, 0);
    EXPECT_EQ(zero.Millisecs, 0);

    // A count beyond the 32-bit range ends the reader before the header is read.
    const MediaFileInfo overflow =
        readMediaInfo(make("ovf.mp3", xingFrame(0x80000000u) + id3v1("", "", "", "", "", 0)));
    EXPECT_TRUE(overflow.IsVBR);
    EXPECT_EQ(overflow.Frequency, 0);

    // "Xing" cut off by the end of the file reads as absent.
    const std::string cut = std::string(300, '\0') + kFrame128 + std::string(32, '\0') + "Xi";
    const MediaFileInfo atEnd = readMediaInfo(make("cut.mp3", cut));
    EXPECT_FALSE(atEnd.IsVBR);
    EXPECT_EQ(atEnd.Bitrate, 128);
}

// ---------------------------------------------------------------------------
// Ogg Vorbis, built page by page.

std::string oggPage(const std::string &packetBytes, std::uint64_t granule, int sequence, int type = 0) {
    std::string lacing;
    std::size_t left = packetBytes.size();
    do {
        const std::size_t n = std::min<std::size_t>(left, 255);
        lacing += static_cast<char>(n);
        left -= n;
        if (n < 255) break;
    } while (true);
    std::string page = "OggS" + bytes({0, type});
    for (int i = 0; i < 8; ++i) page += static_cast<char>(granule >> (8 * i) & 0xFF);
    page += le32(0x1234) + le32(static_cast<std::uint32_t>(sequence)) + le32(0);
    page += static_cast<char>(lacing.size());
    return page + lacing + packetBytes;
}

std::string vorbisIdentification(int channels, std::uint32_t rate, std::int32_t nominal) {
    return "\x01vorbis" + le32(0) + bytes({channels}) + le32(rate) + le32(0) +
           le32(static_cast<std::uint32_t>(nominal)) + le32(0) + bytes({0xB8, 0x01});
}

std::string vorbisComments(const std::vector<std::string> &comments) {
    std::string packet =
        "\x03vorbis" + le32(6) + "vendor" + le32(static_cast<std::uint32_t>(comments.size()));
    for (const std::string &c : comments) packet += le32(static_cast<std::uint32_t>(c.size())) + c;
    return packet + bytes({1});
}

struct OggFile {
    std::string content;
    std::size_t headerBytes;
};

OggFile oggFile(int channels, std::uint32_t rate, std::uint64_t samples,
                const std::vector<std::string> &comments, std::size_t audioBytes = 4000) {
    OggFile f;
    f.content = oggPage(vorbisIdentification(channels, rate, 128000), 0, 0, 2) +
                oggPage(vorbisComments(comments) + "\x05vorbis-setup", 0, 1);
    f.headerBytes = f.content.size();
    f.content += oggPage(std::string(200, 'a'), samples / 2, 2);
    f.content += oggPage(std::string(audioBytes - 200 - 28 - 28, 'b'), samples, 3, 4);
    return f;
}

TEST_F(MediaInfoFiles, OggStreamAndComments) {
    const OggFile f = oggFile(2, 44100, 441000,
                              {"title=Lower Case", "ARTIST=Someone", "ALBUM=Record", "DATE=2001",
                               "COMMENT=Fine, thanks", "GENRE=Ambient", "TRACKNUMBER=3/10", "ENCODER=x"});
    const MediaFileInfo info = readMediaInfo(make("a.ogg", f.content));
    EXPECT_TRUE(info.IsVBR);
    EXPECT_EQ(info.Channels, 2);
    EXPECT_EQ(info.Frequency, 44100);
    EXPECT_EQ(info.Samples, 441000);
    EXPECT_EQ(info.Millisecs, 10000);
    EXPECT_EQ(info.DataLength, static_cast<double>(f.content.size() - f.headerBytes));
    EXPECT_NEAR(info.Bitrate, info.DataLength * 8 / 10000, 1e-9);
    EXPECT_EQ(info.Title, "Lower Case");
    EXPECT_EQ(info.Artist, "Someone");
    EXPECT_EQ(info.Album, "Record");
    EXPECT_EQ(info.Year, "2001");
    EXPECT_EQ(info.Comments, "Fine, thanks") << "Vorbis comments keep their punctuation";
    EXPECT_EQ(info.Genre, "Ambient") << "no genre table for Vorbis";
    EXPECT_EQ(info.TrackNumber, 3);
}

TEST_F(MediaInfoFiles, MonoOggShowsTwiceItsRate) {
    const OggFile f = oggFile(1, 22050, 220500, {"TITLE=x", "ENCODER=y"});
    const MediaFileInfo info = readMediaInfo(make("m.ogg", f.content));
    EXPECT_EQ(info.Channels, 1);
    EXPECT_EQ(info.Millisecs, 10000);
    EXPECT_NEAR(info.Bitrate, 2 * info.DataLength * 8 / 10000, 1e-9);
}

TEST_F(MediaInfoFiles, CommentValueEnds) {
    // The last comment of the packet has no length field after it: its value
    // runs on into the next header up to three NULs.
    const OggFile last = oggFile(2, 44100, 44100, {"TITLE=Tail"});
    const std::string title = readMediaInfo(make("last.ogg", last.content)).Title;
    EXPECT_EQ(title.substr(0, 5), "Tail\x01");

    // Length 0x1000 of the next comment is the NUL 0x10 NUL pattern, which
    // takes one byte too many off the value.
    const std::string big = "ALBUM=" + std::string(0x1000 - 6, 'z');
    const OggFile f = oggFile(2, 44100, 44100, {"ARTIST=Cut short", big});
    EXPECT_EQ(readMediaInfo(make("big.ogg", f.content)).Artist, "Cut shor");

    // Only the first 2048 bytes of the packet are searched.
    const OggFile late =
        oggFile(2, 44100, 44100, {"ENCODER=" + std::string(2100, 'e'), "TITLE=Too late", "X=y"});
    const MediaFileInfo info = readMediaInfo(make("late.ogg", late.content));
    EXPECT_EQ(info.Title, "");
    EXPECT_EQ(info.Millisecs, 1000);
}

TEST_F(MediaInfoFiles, DamagedOggFiles) {
    OggFile f = oggFile(2, 44100, 441000, {"TITLE=Kept", "X=y"});

    // Cut after the headers: the last page is a header page of granule 0,
    // so there is no duration and the nominal rate stays in Bitrate.
    const MediaFileInfo cut = readMediaInfo(make("cut.ogg", f.content.substr(0, f.headerBytes)));
    EXPECT_EQ(cut.Title, "Kept");
    EXPECT_EQ(cut.Frequency, 44100);
    EXPECT_EQ(cut.Millisecs, 0);
    EXPECT_EQ(cut.Bitrate, 128000);

    // Not Vorbis: comments only.
    std::string other = f.content;
    other.replace(29, 6, "speexx");
    const MediaFileInfo speex = readMediaInfo(make("speex.ogg", other));
    EXPECT_EQ(speex.Title, "Kept");
    EXPECT_EQ(speex.Frequency, 0);
    EXPECT_TRUE(speex.IsVBR);

    // A granule beyond 32 bits ends the reader.
    const OggFile longOne = oggFile(2, 44100, 0x80000000ull, {"TITLE=Long"});
    const MediaFileInfo overflow = readMediaInfo(make("long.ogg", longOne.content));
    EXPECT_EQ(overflow.Samples, 0);
    EXPECT_EQ(overflow.Millisecs, 0);
    EXPECT_EQ(overflow.Channels, 2);

    // Rate 0 cannot give a duration.
    const OggFile silent = oggFile(2, 0, 1000, {"TITLE=x", "X=y"});
    EXPECT_EQ(readMediaInfo(make("zero.ogg", silent.content)).Millisecs, 0);

    // No comment packet anywhere: no tags, and the length stays whole.
    const std::string noComments =
        oggPage(vorbisIdentification(1, 8000, 0), 0, 0) + oggPage("audio", 8000, 1);
    const MediaFileInfo bare = readMediaInfo(make("bare.ogg", noComments));
    EXPECT_EQ(bare.DataLength, static_cast<double>(noComments.size()));
    EXPECT_EQ(bare.Millisecs, 1000);

    // Wrong magic: the comment reader ends, the stream reader still runs.
    std::string riff = f.content;
    riff.replace(0, 4, "RIFF");
    const MediaFileInfo wrong = readMediaInfo(make("riff.ogg", riff));
    EXPECT_EQ(wrong.Title, "");
    EXPECT_EQ(wrong.Frequency, 44100);
    EXPECT_EQ(wrong.DataLength, static_cast<double>(riff.size()));
}

// ---------------------------------------------------------------------------
// FLAC, built block by block.

std::string flacBlock(int type, const std::string &body, bool last) {
    return bytes({type | (last ? 0x80 : 0)}) + be24(static_cast<std::uint32_t>(body.size())) + body;
}

std::string streamInfo(std::uint32_t rate, int channels, int bits, std::uint64_t samples) {
    // min/max block size, min/max frame size, then 20 + 3 + 5 + 36 bits.
    std::string body = bytes({0x10, 0, 0x10, 0}) + be24(0) + be24(0);
    const std::uint64_t packed = (std::uint64_t{rate} << 44) | (std::uint64_t(channels - 1) << 41) |
                                 (std::uint64_t(bits - 1) << 36) | samples;
    for (int i = 7; i >= 0; --i) body += static_cast<char>(packed >> (8 * i) & 0xFF);
    return body + std::string(16, '\x5A');  // MD5
}

std::string flacComments(const std::vector<std::string> &comments) {
    std::string body = le32(4) + "flac" + le32(static_cast<std::uint32_t>(comments.size()));
    for (const std::string &c : comments) body += le32(static_cast<std::uint32_t>(c.size())) + c;
    return body;
}

TEST_F(MediaInfoFiles, FlacStreamAndComments) {
    const std::string metadata =
        "fLaC" + flacBlock(0, streamInfo(96000, 2, 24, 960000), false) +
        flacBlock(4, flacComments({"TITLE=Studio", "TRACKNUMBER=12", "GENRE=Jazz", "X=1"}), false) +
        flacBlock(1, std::string(300, '\0'), true);
    const std::string audio(9000, '\x33');
    const MediaFileInfo info = readMediaInfo(make("s.flac", metadata + audio));
    EXPECT_TRUE(info.IsVBR);
    EXPECT_EQ(info.Frequency, 96000);
    EXPECT_EQ(info.Channels, 2);
    EXPECT_EQ(info.Samples, 960000);
    EXPECT_EQ(info.Millisecs, 10000);
    EXPECT_EQ(info.Title, "Studio");
    EXPECT_EQ(info.TrackNumber, 12);
    EXPECT_EQ(info.Genre, "Jazz");
    // The length less the metadata, counted from the 1-based position of the
    // first audio byte: one byte short.
    EXPECT_EQ(info.DataLength, static_cast<double>(audio.size()) - 1);
    EXPECT_NEAR(info.Bitrate, info.DataLength * 8 / 10000 / 2 * 2, 1e-9);

    // The comments may come after other blocks.
    const std::string later = "fLaC" + flacBlock(0, streamInfo(44100, 1, 16, 44100), false) +
                              flacBlock(1, std::string(5000, '\0'), false) +
                              flacBlock(4, flacComments({"ARTIST=Late", "X=1"}), true) + audio;
    const MediaFileInfo second = readMediaInfo(make("late.flac", later));
    EXPECT_EQ(second.Artist, "Late");
    EXPECT_EQ(second.Channels, 1);
    EXPECT_EQ(second.Millisecs, 1000);
    EXPECT_NEAR(second.Bitrate, 2 * second.DataLength * 8 / 1000, 1e-9) << "mono doubled, as for Ogg";
}

TEST_F(MediaInfoFiles, DamagedFlacFiles) {
    // A block length that runs past the end: the walk stops, nothing hangs.
    const std::string runaway = "fLaC" + flacBlock(0, streamInfo(44100, 2, 16, 44100), false) +
                                bytes({0x01, 0xFF, 0xFF, 0xFF}) + std::string(100, '\0');
    const MediaFileInfo info = readMediaInfo(make("run.flac", runaway));
    EXPECT_EQ(info.Millisecs, 1000);
    EXPECT_EQ(info.DataLength, static_cast<double>(runaway.size()));

    // Blocks of length 0 that never say "last" walk to the end and stop.
    const std::string endless =
        "fLaC" + flacBlock(0, streamInfo(44100, 2, 16, 44100), false) + std::string(20000, '\0');
    EXPECT_EQ(readMediaInfo(make("end.flac", endless)).Millisecs, 1000);

    // 36-bit sample counts beyond 32 bits end the reader.
    const std::string huge = "fLaC" + flacBlock(0, streamInfo(44100, 2, 16, 0x800000000ull), true);
    const MediaFileInfo big = readMediaInfo(make("big.flac", huge));
    EXPECT_EQ(big.Frequency, 44100);
    EXPECT_EQ(big.Samples, 0);

    const MediaFileInfo wrong = readMediaInfo(make("wrong.flac", "fLaX" + std::string(100, '\x01')));
    EXPECT_FALSE(wrong.IsVBR);
    EXPECT_EQ(wrong.Frequency, 0);
    EXPECT_EQ(wrong.DataLength, 104);

    const MediaFileInfo empty = readMediaInfo(make("empty.flac", ""));
    EXPECT_EQ(empty.FileName, dir.file("empty.flac"));
    EXPECT_EQ(empty.DataLength, 0);
}

TEST_F(MediaInfoFiles, AacGoesToTheFlacReaderAlone) {
    const std::string adts = bytes({0xFF, 0xF1, 0x50, 0x80, 0x02, 0x1F, 0xFC}) + std::string(500, '\x21');
    const std::string path = make("real.aac", adts);
    const MediaFileInfo real = readMediaInfo(path);
    EXPECT_EQ(real.FileName, path);
    EXPECT_EQ(real.Millisecs, 0);
    EXPECT_FALSE(real.IsVBR);
    EXPECT_EQ(real.DataLength, 0);

    // FLAC inside: the stream is read, the comments are not, and with no
    // data length there is no bit rate.
    const std::string flac = "fLaC" + flacBlock(0, streamInfo(48000, 2, 16, 96000), false) +
                             flacBlock(4, flacComments({"TITLE=Hidden", "X=1"}), true) +
                             std::string(500, '\0');
    const MediaFileInfo inside = readMediaInfo(make("flac.aac", flac));
    EXPECT_EQ(inside.Millisecs, 2000);
    EXPECT_EQ(inside.Title, "");
    EXPECT_EQ(inside.Bitrate, 0);
}

// ---------------------------------------------------------------------------

std::string wavHeader(int channels, std::uint32_t rate, int bits, std::uint32_t dataBytes,
                      std::uint32_t fmtSize = 16) {
    const std::uint32_t byteRate = rate * channels * bits / 8;
    return "RIFF" + le32(36 + dataBytes) + "WAVE" + "fmt " + le32(fmtSize) + le16(1) + le16(channels) +
           le32(rate) + le32(byteRate) + le16(channels * bits / 8) + le16(bits) + "data" + le32(dataBytes);
}

TEST_F(MediaInfoFiles, WaveHeaders) {
    const std::string path = make("a.wav", wavHeader(2, 44100, 16, 176400 * 3));
    const MediaFileInfo info = readMediaInfo(path);
    EXPECT_EQ(info.Channels, 2);
    EXPECT_EQ(info.Frequency, 44100);
    EXPECT_EQ(info.DataLength, 176400 * 3 + 36) << "the RIFF size, header included";
    EXPECT_EQ(info.Millisecs, 3000);
    EXPECT_EQ(info.Samples, 132300);
    EXPECT_EQ(info.Bitrate, 0);
    EXPECT_FALSE(info.IsVBR);

    // The header is taken as canonical; the data chunk is not looked at.
    const MediaFileInfo odd = readMediaInfo(make("b.wav", wavHeader(1, 8000, 8, 8000 * 60 + 4)));
    EXPECT_EQ(odd.Millisecs, 60005) << "the 36 header bytes count as sound";
    EXPECT_EQ(odd.Samples, 480040);

    EXPECT_EQ(readMediaInfo(make("c.wav", wavHeader(2, 44100, 16, 1000, 14))).Frequency, 0);
    EXPECT_EQ(readMediaInfo(make("d.wav", wavHeader(2, 44100, 16, 1000, 40))).Frequency, 44100);
    std::string notWave = wavHeader(2, 44100, 16, 1000);
    notWave.replace(8, 4, "AVI ");
    EXPECT_EQ(readMediaInfo(make("e.wav", notWave)).Frequency, 0);
    notWave = wavHeader(2, 44100, 16, 1000);
    notWave.replace(0, 4, "RIFX");
    EXPECT_EQ(readMediaInfo(make("f.wav", notWave)).Frequency, 0);

    // Byte rate 0: channels and rate are there, the duration is not.
    std::string zeroRate = wavHeader(2, 44100, 16, 1000);
    zeroRate.replace(28, 4, le32(0));
    const MediaFileInfo zero = readMediaInfo(make("g.wav", zeroRate));
    EXPECT_EQ(zero.Frequency, 44100);
    EXPECT_EQ(zero.Millisecs, 0);

    // Shorter than the header record.
    EXPECT_EQ(readMediaInfo(make("h.wav", wavHeader(2, 44100, 16, 0).substr(0, 12))).Frequency, 0);
}

// ---------------------------------------------------------------------------

TEST(BitStringHelpers, DigitsAndValues) {
    EXPECT_EQ(bytesToBinary(bytes({0xFF, 0xFB})), "1111111111111011");
    EXPECT_EQ(bytesToBinary(bytes({0x00, 0x05})), "101") << "leading zeros of the whole text go";
    EXPECT_EQ(bytesToBinary(bytes({0x00, 0x05}), true), "0000000000000101");
    EXPECT_EQ(bytesToBinary(bytes({0, 0})), "");
    EXPECT_EQ(bytesToBinary(""), "");

    EXPECT_EQ(binaryToLong(""), 0);
    EXPECT_EQ(binaryToLong("101"), 5);
    EXPECT_EQ(binaryToLong("0000000000000101"), 5);
    EXPECT_EQ(binaryToLong(std::string(31, '1')), 2147483647);
    EXPECT_EQ(binaryToLong(bytesToBinary(bytes({0x12, 0x34, 0x56, 0x78}))), 0x12345678);
    try {
        binaryToLong("1" + std::string(31, '0'));
        ADD_FAILURE() << "2^31 fits no 32-bit integer";
    } catch (const RuntimeError &e) {
        EXPECT_EQ(e.number(), err::Overflow);
    }
    try {
        binaryToLong("102");
        ADD_FAILURE() << "not a digit text";
    } catch (const RuntimeError &e) {
        EXPECT_EQ(e.number(), err::TypeMismatch);
    }
}

TEST(GenreTable, NamesAndBounds) {
    EXPECT_EQ(kGenres.size(), 126u);
    EXPECT_EQ(genreName(0), "Blues");
    EXPECT_EQ(genreName(17), "Rock");
    EXPECT_EQ(genreName(59), "Gansta");
    EXPECT_EQ(genreName(67), "Psychaledic");
    EXPECT_EQ(genreName(125), "Dance Hall");
    EXPECT_EQ(genreName(126), "");
    EXPECT_EQ(genreName(-1), "");
    for (std::string_view name : kGenres) EXPECT_FALSE(name.empty());
}

}  // namespace
