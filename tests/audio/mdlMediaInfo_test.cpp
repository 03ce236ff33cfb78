// Header readers against hand-made files: the cases no encoder writes.
#include "audio/mdlMediaInfo.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <string>
#include <vector>

#include "AudioTestHost.h"
#include "testlib/TestSupport.h"

using namespace saltmarrow;
using namespace saltmarrow::test;

namespace {

std::string bytes(std::initializer_list<int> values) {
    std::string out;
    for (int v : values) out += static_cast<char>(v);
    return out;
}
std::string padded(std::string text, std::size_t width) {
    text.resize(width, '\0');
    return text;
}
std::string with(std::string text, std::size_t at, const std::string &part) {
    return text.replace(at, part.size(), part);
}
std::string be(std::uint64_t v, int width) {
    std::string out;
    for (int i = width - 1; i >= 0; --i) out += static_cast<char>(v >> (8 * i) & 0xFF);
    return out;
}

std::string id3v1(const std::string &title, const std::string &album = "", int genre = 0,
                  const std::string &comment = "") {
    return "TAG" + padded(title, 30) + padded("", 30) + padded(album, 30) + padded("1999", 4) +
           padded(comment, 30) + bytes({genre});
}
// A version 2.3 frame (name, size, flags, encoding, text); version 2.2 has a
// three-letter name and three size bytes.
std::string frame3(const std::string &name, const std::string &text, int formatFlags = 0) {
    return name + be(text.size() + 1, 4) + bytes({0, formatFlags, 0}) + text;
}
std::string frame2(const std::string &name, const std::string &text) {
    return name + be(text.size() + 1, 3) + bytes({0}) + text;
}
std::string id3v2(int version, const std::string &frames) {
    const std::size_t n = frames.size();
    return "ID3" +
           bytes(
               {version, 0, 0, int(n >> 21 & 0x7F), int(n >> 14 & 0x7F), int(n >> 7 & 0x7F), int(n & 0x7F)}) +
           frames;
}
// An MPEG 1 layer III frame header: 128 kbit/s, 44100 Hz, joint stereo;
// with zeros behind it, a stream long enough for the reader.
const std::string kFrame = bytes({0xFF, 0xFB, 0x90, 0x64});
std::string mpeg(const std::string &header = kFrame) {
    return padded(header, 4180);
}
std::string xing(std::uint32_t frames, std::size_t at = 36) {
    return padded(padded(kFrame, at) + "Xing" + bytes({0, 0, 0, 0x0F}) + be(frames, 4), 417);
}

// An ID3v2 tag whose first size byte is 1: 20917152 bytes, as the reader takes it.
const std::string kBigTag = with(id3v2(3, frame3("TIT2", "T")), 6, bytes({1}));

// Ogg Vorbis, built page by page.
std::string oggPage(const std::string &packet, std::uint64_t granule, int sequence, int type = 0) {
    std::string lacing;
    for (std::size_t left = packet.size();; left -= 255) {
        lacing += static_cast<char>(std::min<std::size_t>(left, 255));
        if (left < 255) break;
    }
    std::string page = "OggS" + bytes({0, type});
    for (int i = 0; i < 8; ++i) page += static_cast<char>(granule >> (8 * i) & 0xFF);
    return page + le32(0x1234) + le32(sequence) + le32(0) + static_cast<char>(lacing.size()) + lacing +
           packet;
}
std::string vorbisId(int channels, std::uint32_t rate) {
    return "\x01vorbis" + le32(0) + bytes({channels}) + le32(rate) + le32(0) + le32(128000) + le32(0) +
           bytes({0xB8, 0x01});
}
// The vendor and the comments, as Vorbis and FLAC both keep them.
std::string commentList(const std::string &vendor, const std::vector<std::string> &comments) {
    std::string list = le32(vendor.size()) + vendor + le32(comments.size());
    for (const std::string &c : comments) list += le32(c.size()) + c;
    return list;
}
std::string ogg(int channels, std::uint32_t rate, std::uint64_t samples,
                const std::vector<std::string> &comments, bool audio = true) {
    std::string f =
        oggPage(vorbisId(channels, rate), 0, 0, 2) +
        oggPage("\x03vorbis" + commentList("vendor", comments) + bytes({1}) + "\x05vorbis-setup", 0, 1);
    if (audio)
        f += oggPage(std::string(200, 'a'), samples / 2, 2) + oggPage(std::string(3744, 'b'), samples, 3, 4);
    return f;
}

// FLAC, built block by block.
std::string flacBlock(int type, const std::string &body, bool last = false) {
    return bytes({type | (last ? 0x80 : 0)}) + be(body.size(), 3) + body;
}
std::string streamInfo(std::uint32_t rate, int channels, std::uint64_t samples) {
    const std::uint64_t packed = (std::uint64_t{rate} << 44) | (std::uint64_t(channels - 1) << 41) |
                                 (std::uint64_t(15) << 36) | samples;
    return bytes({0x10, 0, 0x10, 0}) + be(0, 6) + be(packed, 8) + std::string(16, '\x5A');
}

// What a row compares: the tags, and the stream.
std::string stream(const MediaFileInfo &i) {
    char text[160];
    std::snprintf(text, sizeof text, "%d Hz %d ch %g kbit%s %d ms %d samples %.0f bytes", i.Frequency,
                  i.Channels, i.Bitrate, i.IsVBR ? " vbr" : "", i.Millisecs, i.Samples, i.DataLength);
    return text;
}
const std::string kNothing = "0 Hz 0 ch 0 kbit 0 ms 0 samples 0 bytes";

struct Media : ::testing::Test {
    test::TempDir dir;
    MediaFileInfo read(const std::string &name, const std::string &content) {
        test::writeFile(dir.file(name), content);
        return readMediaInfo(dir.file(name));
    }
};

TEST_F(Media, EachFileAsItsReaderSeesIt) {
    struct Row {
        const char *what;
        std::string content;
        std::string tags;                 // empty: not compared
        std::string stream = "44100 Hz";  // compared as far as it goes
        std::string file = "t.mp3";
    };
    const std::string v1 = id3v1("Old Title", "Old Album", 9, "note"),
                      utf16 = bytes({0xFF, 0xFE, 'H', 0, 'i', 0});
    const std::string oggKept = ogg(2, 44100, 441000, {"TITLE=Kept", "X=y"}), flacAudio(9000, '\x33');
    const Row rows[] = {
        // Readers are chosen by the extension alone, in any case.
        {"a second extension", mpeg() + id3v1("T"), "|||||0|", kNothing, "song.mp3.txt"},
        {"no extension", mpeg() + id3v1("T"), "|||||0|", kNothing, "noext"},
        {"an unknown extension", mpeg() + id3v1("T"), "|||||0|", kNothing, "song.mpc"},
        {"an extension in mixed case", mpeg() + id3v1("T"), "T|||1999|Blues|0|", "44100 Hz", "Song.Mp3"},
        {"MP2", mpeg(), "", "44100 Hz", "song.MP2"},
        // 128 bytes are enough for the tag, 256 are needed for the stream.
        {"too short for either", kFrame + "TAG", "|||||0|", kNothing, "tiny.mp3"},
        {"too short for the stream", padded(kFrame, 100) + id3v1("Short", "", 1),
         "Short|||1999|Classic Rock|0|", "0 Hz 0 ch 0 kbit 0 ms 0 samples 100 bytes", "short.mp3"},

        {"ID3v1: blanks, then NULs, go; comments lose codes 0 to 47",
         mpeg() + "TAG" + padded("Blank padded                  ", 30) + padded("Artist", 30) +
             padded("Blanks before NULs  ", 30) + "1987" + padded("Hello, World! 42: a-b.c", 30) +
             bytes({17}),
         "Blank padded|Artist|Blanks before NULs  |1987|Rock|0|HelloWorld42:abc"},
        {"beyond the table", mpeg() + id3v1("", "", 126), "|||1999||0|"},
        {"ID3v2 wins; an empty frame keeps the ID3v1 text",
         id3v2(3, frame3("TIT2", "New") + frame3("TPE1", "Artist") + frame3("TALB", "") +
                      frame3("TYER", "2024") + frame3("TCON", "(17)Rock") + frame3("TRCK", "5/12")) +
             mpeg() + v1,
         "New|Artist|Old Album|2024|Rock|5|note"},
        {"the text after the number", id3v2(3, frame3("TCON", "(9)Anything")) + mpeg() + id3v1("", "", 255),
         "|||1999|Anything|0|"},
        {"nothing after the number: the ID3v1 genre",
         id3v2(3, frame3("TCON", "(17)")) + mpeg() + id3v1("", "", 9), "|||1999|Metal|0|"},
        {"a bare number", id3v2(3, frame3("TCON", "13")) + mpeg() + id3v1("", "", 255), "|||1999|Pop|0|"},
        {"a name", id3v2(3, frame3("TCON", "Synthwave")) + mpeg() + id3v1(""), "|||1999|Synthwave|0|"},
        {"an empty genre frame: the ID3v1 genre", id3v2(3, frame3("TCON", "")) + mpeg() + id3v1("", "", 2),
         "|||1999|Country|0|"},
        {"version 2.2, which asks for TRCK, not TRK",
         id3v2(2, frame2("TT2", "Old Style") + frame2("TOA", "Someone") + frame2("TCO", "(8)") +
                      frame2("TRK", "4")) +
             mpeg() + id3v1("", "", 8),
         "Old Style|Someone||1999|Jazz|0|"},
        {"version 4 ends the reader", id3v2(4, frame3("TIT2", "Four")) + mpeg() + id3v1("v1", "", 17),
         "v1|||1999|17|0|"},
        {"the first TIT2 anywhere, even in a comment",
         id3v2(3, frame3("COMM", "xTIT2" + bytes({0, 0, 0, 5, 0, 0, 0}) + "Fake") + frame3("TIT2", "Real")) +
             mpeg(),
         "Fake|||||0|"},
        {"only the lowest size byte counts", id3v2(3, frame3("TIT2", std::string(260, 'a'))) + mpeg(),
         "aaaa|||||0|"},
        {"compressed frames are skipped", id3v2(3, frame3("TIT2", "G", 0x80)) + mpeg() + id3v1("v1"),
         "v1|||1999|Blues|0|"},
        {"encrypted frames are skipped", id3v2(3, frame3("TIT2", "G", 0x40)) + mpeg() + id3v1("v1"),
         "v1|||1999|Blues|0|"},
        {"grouped frames are read", id3v2(3, frame3("TIT2", "G", 0x20)) + mpeg() + id3v1("v1"),
         "G|||1999|Blues|0|"},
        {"a frame of size 0 ends the reader",
         id3v2(3, frame3("TPE1", "A") + "TIT2" + bytes({0, 0, 0, 0, 0, 0})) + mpeg() + id3v1("v1", "", 17),
         "v1|||1999|17|0|"},
        {"a name at the very end of the tag", id3v2(3, "TIT2") + mpeg(), "|||||0|"},
        {"a track number beyond 16 bits", id3v2(3, frame3("TRCK", "99999")) + mpeg(), "|||||0|"},
        {"the encoding byte is passed over: UTF-16 text stays bytes",
         id3v2(3, with(frame3("TPE1", utf16), 10, bytes({1}))) + mpeg(), "|" + utf16 + "||||0|"},
        {"both tags off; the tag's own header is not", id3v2(3, frame3("TIT2", "T")) + mpeg() + id3v1(""), "",
         "44100 Hz 2 ch 128 kbit 262 ms 11554 samples 4190 bytes"},
        // A first size byte of 1 is 20917152 bytes, kept as it stands: beyond
        // the file the reader stops with the ID3v1 values before the genre lookup.
        {"an ID3v2 size beyond the file", kBigTag + mpeg() + id3v1("From v1", "", 17), "From v1|||1999|17|0|",
         "44100 Hz 2 ch 128 kbit 263 ms 11598 samples 4202 bytes"},

        {"a header at the start", mpeg(), "", "44100 Hz 2 ch 128 kbit 261 ms 11510 samples 4180 bytes"},
        {"with CRC, 48000 Hz", mpeg(bytes({0xFF, 0xFA, 0x94, 0x40})), "",
         "48000 Hz 2 ch 128 kbit 261 ms 12528 samples 4180 bytes"},
        {"dual channel, 32000 Hz", mpeg(bytes({0xFF, 0xFB, 0x98, 0x80})), "",
         "32000 Hz 2 ch 128 kbit 261 ms 8352 samples 4180 bytes"},
        {"single channel, lowest rate", mpeg(bytes({0xFF, 0xFB, 0x10, 0xC0})), "",
         "44100 Hz 1 ch 32 kbit 1045 ms 46084 samples 4180 bytes"},
        {"highest rate; half rounds to even", mpeg(bytes({0xFF, 0xFB, 0xE0, 0xC0})), "",
         "44100 Hz 1 ch 320 kbit 104 ms 4586 samples 4180 bytes"},
        {"layer II", mpeg(bytes({0xFF, 0xFC, 0xE0, 0x00})), "",
         "44100 Hz 2 ch 384 kbit 87 ms 3837 samples 4180 bytes"},
        {"a pair inside the ID3v2 tag wins",
         id3v2(3, frame3("TIT2", "ab" + bytes({0xFF, 0xFD, 0x44, 0xC0}))) + mpeg(), "",
         "48000 Hz 1 ch 64 kbit 524 ms 25152 samples 4190 bytes"},
        {"MPEG 2 and other pairs are passed", bytes({0xFF, 0xF3, 0x90, 0x64, 0xFF, 0xFE, 0xFF}) + mpeg(), "",
         "44100 Hz 2 ch 128 kbit 262 ms 11554 samples 4187 bytes"},
        {"a header beyond the first block", std::string(8191, '\0') + mpeg(), "",
         "44100 Hz 2 ch 128 kbit 773 ms 34089 samples 12371 bytes"},
        {"no header at all", std::string(5000, '\xFF'), "", "0 Hz 0 ch 0 kbit 0 ms 0 samples 5000 bytes"},
        {"a reserved sample rate", mpeg(bytes({0xFF, 0xFB, 0x9C, 0xC0})), "",
         "0 Hz 1 ch 0 kbit 0 ms 0 samples 4180 bytes"},
        {"free format", mpeg(bytes({0xFF, 0xFB, 0x00, 0x00})), "",
         "44100 Hz 2 ch 0 kbit 0 ms 0 samples 4180 bytes"},
        {"the forbidden rate", mpeg(bytes({0xFF, 0xFB, 0xF0, 0x00})), "",
         "44100 Hz 2 ch 0 kbit 0 ms 0 samples 4180 bytes"},
        // 1152 samples a frame, whatever the file's length.
        {"a Xing header", xing(1000) + mpeg(), "",
         "44100 Hz 2 ch 1.40783 kbit vbr 26122 ms 1151980 samples 4597 bytes"},
        {"a Xing header at the mono place is not seen", xing(1000, 21) + mpeg(), "",
         "44100 Hz 2 ch 128 kbit 287 ms 12657 samples 4597 bytes"},
        {"no frame count", xing(0), "", "44100 Hz 2 ch 0 kbit vbr 0 ms 0 samples 417 bytes"},
        {"a count beyond 32 bits ends the reader", xing(0x80000000u), "",
         "0 Hz 0 ch 0 kbit vbr 0 ms 0 samples 417 bytes"},
        {"Xing cut off by the end", std::string(300, '\0') + kFrame + std::string(32, '\0') + "Xi", "",
         "44100 Hz 2 ch 128 kbit 21 ms 926 samples 338 bytes"},

        // No genre table, punctuation kept; the length is the file less its headers.
        {"Ogg Vorbis",
         ogg(2, 44100, 441000,
             {"title=Lower Case", "ARTIST=Someone", "ALBUM=Record", "DATE=2001", "COMMENT=Fine, thanks",
              "GENRE=Ambient", "TRACKNUMBER=3/10", "X=y"}),
         "Lower Case|Someone|Record|2001|Ambient|3|Fine, thanks",
         "44100 Hz 2 ch 3.2112 kbit vbr 10000 ms 441000 samples 4014 bytes", "a.ogg"},
        {"mono shows twice its rate", ogg(1, 22050, 220500, {"TITLE=x", "X=y"}), "",
         "22050 Hz 1 ch 6.4224 kbit vbr 10000 ms 220500 samples 4014 bytes", "m.ogg"},
        // The last comment runs on into the next header up to three NULs; a next
        // length of 0x1000 is the NUL 0x10 NUL pattern and cuts one byte too many;
        // only the first 2048 bytes of the packet are searched.
        {"the last comment", ogg(2, 44100, 44100, {"TITLE=Tail"}),
         "Tail" + bytes({1, 5}) + "vorbis-setupOggS" + bytes({0, 0, '"'}) + "|||||0|", "", "d.ogg"},
        {"a next length of 0x1000",
         ogg(2, 44100, 44100, {"ARTIST=Cut short", "ALBUM=" + std::string(0x1000 - 6, 'z')}),
         "|Cut shor|" + std::string(2048 - 51, 'z') + "|||0|", "", "d.ogg"},
        {"beyond 2048 bytes", ogg(2, 44100, 44100, {"E=" + std::string(2100, 'e'), "TITLE=Late", "X=y"}),
         "|||||0|", "", "d.ogg"},
        {"cut after the headers: the nominal rate", ogg(2, 44100, 0, {"TITLE=Kept", "X=y"}, false),
         "Kept|||||0|", "44100 Hz 2 ch 128000 kbit vbr 0 ms 0 samples 0 bytes", "d.ogg"},
        {"not Vorbis: comments only", with(oggKept, 29, "speexx"), "Kept|||||0|",
         "0 Hz 0 ch 0 kbit vbr 0 ms 0 samples 4014 bytes", "d.ogg"},
        {"a granule beyond 32 bits", ogg(2, 44100, 0x80000000ull, {"TITLE=Long"}), "",
         "44100 Hz 2 ch 128000 kbit vbr 0 ms 0 samples 4014 bytes", "d.ogg"},
        {"rate 0", ogg(2, 0, 1000, {"TITLE=x", "X=y"}), "",
         "0 Hz 2 ch 128000 kbit vbr 0 ms 1000 samples 4014 bytes", "d.ogg"},
        {"no comment packet: the length stays whole",
         oggPage(vorbisId(1, 8000), 0, 0) + oggPage("audio", 8000, 1), "",
         "8000 Hz 1 ch 1.456 kbit vbr 1000 ms 8000 samples 91 bytes", "d.ogg"},
        {"wrong magic: the stream still read, the length whole", with(oggKept, 0, "RIFF"), "",
         "44100 Hz 2 ch 3.3248 kbit vbr 10000 ms 441000 samples 4156 bytes", "d.ogg"},

        // The length counted from the 1-based position of the first audio byte: one short.
        {"FLAC stream and comments",
         "fLaC" + flacBlock(0, streamInfo(96000, 2, 960000)) +
             flacBlock(4, commentList("flac", {"TITLE=Studio", "TRACKNUMBER=12", "GENRE=Jazz", "X=1"})) +
             flacBlock(1, std::string(300, '\0'), true) + flacAudio,
         "Studio||||Jazz|12|", "96000 Hz 2 ch 7.1992 kbit vbr 10000 ms 960000 samples 8999 bytes", "s.flac"},
        {"comments after other blocks; mono doubled",
         "fLaC" + flacBlock(0, streamInfo(44100, 1, 44100)) + flacBlock(1, std::string(5000, '\0')) +
             flacBlock(4, commentList("flac", {"ARTIST=Late", "X=1"}), true) + flacAudio,
         "", "44100 Hz 1 ch 143.984 kbit vbr 1000 ms 44100 samples 8999 bytes", "late.flac"},
        {"a block that runs past the end",
         "fLaC" + flacBlock(0, streamInfo(44100, 2, 44100)) + bytes({0x01, 0xFF, 0xFF, 0xFF}) +
             std::string(100, '\0'),
         "", "44100 Hz 2 ch 1.168 kbit vbr 1000 ms 44100 samples 146 bytes", "run.flac"},
        {"blocks that never say last",
         "fLaC" + flacBlock(0, streamInfo(44100, 2, 44100)) + std::string(20000, '\0'), "",
         "44100 Hz 2 ch 160.336 kbit vbr 1000 ms 44100 samples 20042 bytes", "end.flac"},
        {"a sample count beyond 32 bits", "fLaC" + flacBlock(0, streamInfo(44100, 2, 0x800000000ull), true),
         "", "44100 Hz 2 ch 0 kbit vbr 0 ms 0 samples -1 bytes", "big.flac"},
        {"no FLAC", "fLaX" + std::string(100, '\x01'), "", "0 Hz 0 ch 0 kbit 0 ms 0 samples 104 bytes",
         "wrong.flac"},
        {"a real AAC file is not read", bytes({0xFF, 0xF1, 0x50, 0x80, 0x02, 0x1F, 0xFC}) + flacAudio, "",
         kNothing, "real.aac"},
        {"FLAC under .aac: the stream, no comments, no rate",
         "fLaC" + flacBlock(0, streamInfo(48000, 2, 96000)) +
             flacBlock(4, commentList("flac", {"TITLE=Hidden"}), true) + flacAudio,
         "|||||0|", "48000 Hz 2 ch 0 kbit vbr 2000 ms 96000 samples 0 bytes", "flac.aac"},

        {"WAV", waveHeader(2, 44100, 16, 176400 * 3), "",
         "44100 Hz 2 ch 0 kbit 3000 ms 132300 samples 529236 bytes", "w.wav"},
        // The header is taken as canonical: its 36 bytes count as sound.
        {"mono, 8 bits", waveHeader(1, 8000, 8, 8000 * 60 + 4), "",
         "8000 Hz 1 ch 0 kbit 60005 ms 480040 samples 480040 bytes", "w.wav"},
        {"a short format chunk", waveHeader(2, 44100, 16, 1000, 14), "", kNothing, "w.wav"},
        {"a long format chunk", waveHeader(2, 44100, 16, 1000, 40), "",
         "44100 Hz 2 ch 0 kbit 6 ms 265 samples 1036 bytes", "w.wav"},
        {"AVI", with(waveHeader(2, 44100, 16, 1000), 8, "AVI "), "", kNothing, "w.wav"},
        {"RIFX", with(waveHeader(2, 44100, 16, 1000), 0, "RIFX"), "", kNothing, "w.wav"},
        {"rate 0", with(waveHeader(2, 44100, 16, 1000), 28, le32(0)), "",
         "44100 Hz 2 ch 0 kbit 0 ms 0 samples 1036 bytes", "w.wav"},
        {"cut after the kind", waveHeader(2, 44100, 16, 1000).substr(0, 12), "", kNothing, "w.wav"},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.what);
        const MediaFileInfo info = read(row.file, row.content);
        if (!row.tags.empty()) {
            EXPECT_EQ(tagText(info), row.tags);
        }
        EXPECT_THAT(stream(info), ::testing::StartsWith(row.stream));
    }
}

TEST_F(Media, NoFileAnEmptyFileAndTheTagSizeFactor) {
    EXPECT_EQ(readMediaInfo(dir.file("nothing.mp3")).FileName, "");
    EXPECT_EQ(readMediaInfo(dir.path()).FileName, "") << "a folder is no file";
    EXPECT_EQ(read("empty.flac", "").FileName, dir.file("empty.flac"));
    // On a file long enough for it, the ID3v2 size is taken with the factor.
    test::writeFile(dir.file("huge.mp3"), kBigTag);
    ASSERT_EQ(::truncate(dir.file("huge.mp3").c_str(), 21'000'000), 0);
    const MediaFileInfo huge = readMediaInfo(dir.file("huge.mp3"));
    EXPECT_EQ(huge.Title, "T");
    EXPECT_EQ(huge.DataLength, 21'000'000 - 20917152.0 - 12);
}

}  // namespace
