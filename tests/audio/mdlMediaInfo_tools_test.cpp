// Header readers against files that sox, lame, oggenc and flac make, checked
// against what each tool was told.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cmath>
#include <cstdlib>
#include <string>

#include "audio/mdlMediaInfo.h"
#include "testlib/TestSupport.h"

using namespace saltmarrow;
using saltmarrow::test::haveProgram;
using saltmarrow::test::readFile;
using saltmarrow::test::TempDir;

namespace {

double fileSize(const std::string &path) {
    struct stat st {};
    return ::stat(path.c_str(), &st) == 0 ? static_cast<double>(st.st_size) : -1;
}

// The size an ID3v2 header gives, decoded the standard way (7 bits a byte).
double id3v2Size(const std::string &path) {
    const std::string head = readFile(path).substr(0, 10);
    if (head.compare(0, 3, "ID3") != 0) return 0;
    double size = 0;
    for (int i = 6; i < 10; ++i) size = size * 128 + (static_cast<unsigned char>(head[i]) & 0x7F);
    return size;
}

std::string utf16le(const std::string &ascii) {
    std::string out = "\xFF\xFE";
    for (char c : ascii) out += std::string{c, '\0'};
    return out;
}

class MediaInfoTools : public ::testing::Test {
protected:
    void need(std::initializer_list<const char *> programs) {
        for (const char *p : programs)
            if (!haveProgram(p)) GTEST_SKIP() << p << " is not installed (scripts/setup installs it)";
    }

    // Runs a tool quietly in the test folder; the test stops if it fails.
    void run(const std::string &command) {
        const std::string line = "cd '" + dir.path() + "' && " + command + " >/dev/null 2>&1";
        ASSERT_EQ(std::system(line.c_str()), 0) << command;
    }

    // Sound that the encoders cannot squeeze much: their rates come out near
    // what they were asked for.
    std::string noise(const std::string &name, int rate, int channels, double seconds) {
        run("sox -n -r " + std::to_string(rate) + " -c " + std::to_string(channels) + " -b 16 " + name +
            " synth " + std::to_string(seconds) + " whitenoise vol 0.5");
        return dir.file(name);
    }

    TempDir dir;
};

const std::string kTags =
    "--tt 'My Title' --ta 'The Artist' --tl 'An Album' --ty 2003 --tn 7 --tg Rock "
    "--tc 'hello, world'";

// Encoder delay, padding to whole frames and the Xing/Info frame: lame adds
// up to three frames of 1152 samples to what it was given.
double lameSlackMs(int rate) {
    return 3 * 1152 * 1000.0 / rate;
}

// ---------------------------------------------------------------------------

TEST_F(MediaInfoTools, WaveFilesFromSox) {
    need({"sox"});
    for (int channels : {1, 2})
        for (int rate : {44100, 48000})
            for (int bits : {8, 16}) {
                SCOPED_TRACE(std::to_string(channels) + " ch, " + std::to_string(rate) + " Hz, " +
                             std::to_string(bits) + " bit");
                const std::string name =
                    "w" + std::to_string(channels) + std::to_string(rate) + std::to_string(bits) + ".wav";
                run("sox -n -r " + std::to_string(rate) + " -c " + std::to_string(channels) + " -b " +
                    std::to_string(bits) + " " + name + " synth 1.5 sine 440 vol 0.5");
                const MediaFileInfo info = readMediaInfo(dir.file(name));
                EXPECT_EQ(info.FileName, dir.file(name));
                EXPECT_EQ(info.Frequency, rate);
                EXPECT_EQ(info.Channels, channels);
                EXPECT_EQ(info.DataLength, fileSize(dir.file(name)) - 8) << "the RIFF size";
                // The 36 bytes of header that the RIFF size includes, plus rounding.
                const double byteRate = rate * channels * bits / 8.0;
                EXPECT_NEAR(info.Millisecs, 1500, 36 * 1000 / byteRate + 0.5);
                EXPECT_EQ(info.Samples, std::nearbyint(rate / 1000.0 * info.Millisecs));
                EXPECT_EQ(info.Bitrate, 0);
                EXPECT_FALSE(info.IsVBR);
            }
}

TEST_F(MediaInfoTools, Mp3ConstantRateWithBothTags) {
    need({"sox", "lame"});
    const std::string wav = noise("in.wav", 44100, 2, 3);
    run("lame --quiet -b 128 --id3v2-latin1 " + kTags + " --add-id3v2 in.wav both.mp3");
    const std::string mp3 = dir.file("both.mp3");
    const MediaFileInfo info = readMediaInfo(mp3);
    EXPECT_EQ(info.Title, "My Title");
    EXPECT_EQ(info.Artist, "The Artist");
    EXPECT_EQ(info.Album, "An Album");
    EXPECT_EQ(info.Year, "2003");
    EXPECT_EQ(info.TrackNumber, 7);
    EXPECT_EQ(info.Genre, "Rock");
    // The comment comes from the ID3v1 tag only, with blanks and commas gone.
    EXPECT_EQ(info.Comments, "helloworld");

    EXPECT_EQ(info.Frequency, 44100);
    EXPECT_EQ(info.Channels, 2);
    EXPECT_EQ(info.Bitrate, 128);
    EXPECT_FALSE(info.IsVBR) << "lame's Info frame of a constant-rate file is no Xing header";
    EXPECT_GT(id3v2Size(mp3), 0);
    EXPECT_EQ(info.DataLength, fileSize(mp3) - 128 - id3v2Size(mp3));
    EXPECT_EQ(info.Millisecs, std::nearbyint(info.DataLength * 8 / 128));
    EXPECT_NEAR(info.Millisecs, 3000, lameSlackMs(44100));
    EXPECT_EQ(info.Samples, std::nearbyint(44.1 * info.Millisecs));
}

TEST_F(MediaInfoTools, Mp3RatesAndModes) {
    need({"sox", "lame"});
    noise("s48.wav", 48000, 2, 2);
    noise("m32.wav", 32000, 1, 2);
    run("lame --quiet -b 192 s48.wav s48.mp3");
    run("lame --quiet -b 64 -m m m32.wav m32.mp3");
    run("lame --quiet -b 160 -m d s48.wav dual.mp3");

    const MediaFileInfo s48 = readMediaInfo(dir.file("s48.mp3"));
    EXPECT_EQ(s48.Frequency, 48000);
    EXPECT_EQ(s48.Bitrate, 192);
    EXPECT_EQ(s48.Channels, 2);
    EXPECT_EQ(s48.DataLength, fileSize(dir.file("s48.mp3"))) << "no tags were asked for";
    EXPECT_NEAR(s48.Millisecs, 2000, lameSlackMs(48000));

    const MediaFileInfo m32 = readMediaInfo(dir.file("m32.mp3"));
    EXPECT_EQ(m32.Frequency, 32000);
    EXPECT_EQ(m32.Bitrate, 64);
    EXPECT_EQ(m32.Channels, 1);
    EXPECT_NEAR(m32.Millisecs, 2000, lameSlackMs(32000));

    const MediaFileInfo dual = readMediaInfo(dir.file("dual.mp3"));
    EXPECT_EQ(dual.Channels, 2);
    EXPECT_EQ(dual.Bitrate, 160);
}

TEST_F(MediaInfoTools, Mp3UnicodeTagsStayBytes) {
    need({"sox", "lame"});
    noise("in.wav", 44100, 2, 1);
    // lame writes its ID3v2 texts as UTF-16 unless told otherwise; the
    // encoding byte is passed over, so the text comes as it is stored.
    run("lame --quiet -b 128 " + kTags + " --add-id3v2 in.wav u.mp3");
    const MediaFileInfo info = readMediaInfo(dir.file("u.mp3"));
    EXPECT_EQ(info.Title, utf16le("My Title"));
    EXPECT_EQ(info.Artist, utf16le("The Artist"));
    EXPECT_EQ(info.TrackNumber, 0) << "Val of text that starts with a byte-order mark";
    EXPECT_EQ(info.Comments, "helloworld");
}

TEST_F(MediaInfoTools, Mp3WithID3v1Only) {
    need({"sox", "lame"});
    noise("in.wav", 44100, 2, 1);
    run("lame --quiet -b 128 " + kTags + " --id3v1-only in.wav v1.mp3");
    const std::string mp3 = dir.file("v1.mp3");
    const MediaFileInfo info = readMediaInfo(mp3);
    EXPECT_EQ(id3v2Size(mp3), 0);
    EXPECT_EQ(info.Title, "My Title");
    EXPECT_EQ(info.Artist, "The Artist");
    EXPECT_EQ(info.Album, "An Album");
    EXPECT_EQ(info.Year, "2003");
    EXPECT_EQ(info.Genre, "Rock");
    // lame keeps the track in the comment's last byte (ID3v1.1); it is a
    // control code there and goes with the punctuation.
    EXPECT_EQ(info.Comments, "helloworld");
    EXPECT_EQ(info.TrackNumber, 0);
    EXPECT_EQ(info.DataLength, fileSize(mp3) - 128);
    EXPECT_NEAR(info.Millisecs, 1000, lameSlackMs(44100));
}

TEST_F(MediaInfoTools, Mp3VariableRate) {
    need({"sox", "lame"});
    noise("in.wav", 44100, 2, 3);
    noise("mono.wav", 44100, 1, 3);
    run("lame --quiet -V 2 --id3v2-latin1 " + kTags + " --add-id3v2 in.wav vbr.mp3");
    run("lame --quiet -V 2 -m m mono.wav monovbr.mp3");

    const MediaFileInfo info = readMediaInfo(dir.file("vbr.mp3"));
    EXPECT_TRUE(info.IsVBR);
    EXPECT_EQ(info.Frequency, 44100);
    EXPECT_EQ(info.Title, "My Title");
    EXPECT_NEAR(info.Millisecs, 3000, lameSlackMs(44100));
    EXPECT_NEAR(info.Bitrate, info.DataLength * 8 / info.Millisecs, 0.5);
    // -V 2 on noise lands well inside the layer III range.
    EXPECT_GT(info.Bitrate, 100);
    EXPECT_LT(info.Bitrate, 320);

    // A mono frame has its Xing header at +21, where it is not looked for:
    // the file reads as constant-rate at its first frame's rate.
    const MediaFileInfo mono = readMediaInfo(dir.file("monovbr.mp3"));
    EXPECT_FALSE(mono.IsVBR);
    EXPECT_EQ(mono.Channels, 1);
    EXPECT_GT(mono.Bitrate, 0);
}

TEST_F(MediaInfoTools, OggVorbisStereoWithComments) {
    need({"sox", "oggenc"});
    noise("in.wav", 44100, 2, 5);
    run("oggenc -Q -b 128 --managed -c 'COMMENT=hi there' -t 'My Title' -a 'The Artist' -l 'An Album' "
        "-d 2003 -G Rock -N 7 in.wav -o s.ogg");
    const std::string ogg = dir.file("s.ogg");
    const MediaFileInfo info = readMediaInfo(ogg);
    EXPECT_TRUE(info.IsVBR);
    EXPECT_EQ(info.Frequency, 44100);
    EXPECT_EQ(info.Channels, 2);
    EXPECT_EQ(info.Samples, 5 * 44100);
    EXPECT_EQ(info.Millisecs, 5000);
    EXPECT_NEAR(info.Bitrate, 128, 128 * 0.1);
    // The header pages (with the codebooks) are not counted as sound.
    EXPECT_LT(info.DataLength, fileSize(ogg) - 3000);
    EXPECT_GT(info.DataLength, fileSize(ogg) - 10000);
    EXPECT_EQ(info.Title, "My Title");
    EXPECT_EQ(info.Artist, "The Artist");
    EXPECT_EQ(info.Album, "An Album");
    EXPECT_EQ(info.Year, "2003");
    EXPECT_EQ(info.Genre, "Rock");
    EXPECT_EQ(info.Comments, "hi there");
    EXPECT_EQ(info.TrackNumber, 7);
}

TEST_F(MediaInfoTools, OggVorbisMonoShowsTwiceItsRate) {
    need({"sox", "oggenc"});
    noise("in.wav", 48000, 1, 4);
    run("oggenc -Q -b 64 --managed -t Mono -a Voice -N 2 in.wav -o m.ogg");
    const MediaFileInfo info = readMediaInfo(dir.file("m.ogg"));
    EXPECT_EQ(info.Channels, 1);
    EXPECT_EQ(info.Frequency, 48000);
    EXPECT_EQ(info.Millisecs, 4000);
    EXPECT_NEAR(info.Bitrate, 2 * 64, 2 * 64 * 0.1);
    EXPECT_EQ(info.Title, "Mono");
    EXPECT_EQ(info.Artist, "Voice");
    EXPECT_EQ(info.TrackNumber, 2);
}

TEST_F(MediaInfoTools, FlacWithTags) {
    need({"sox", "flac"});
    noise("in.wav", 44100, 2, 2);
    noise("m.wav", 48000, 1, 1.5);
    const std::string tags =
        "-T 'TITLE=My Title' -T 'ARTIST=The Artist' -T 'ALBUM=An Album' -T DATE=2003 "
        "-T TRACKNUMBER=7 -T GENRE=Rock -T 'COMMENT=hi there' -T ENCODEDBY=tests";
    run("flac -s " + tags + " in.wav -o padded.flac");
    run("flac -s --no-padding " + tags + " in.wav -o tight.flac");
    run("flac -s m.wav -o mono.flac");

    const MediaFileInfo info = readMediaInfo(dir.file("padded.flac"));
    EXPECT_TRUE(info.IsVBR);
    EXPECT_EQ(info.Frequency, 44100);
    EXPECT_EQ(info.Channels, 2);
    EXPECT_EQ(info.Samples, 2 * 44100);
    EXPECT_EQ(info.Millisecs, 2000);
    EXPECT_EQ(info.Title, "My Title");
    EXPECT_EQ(info.Artist, "The Artist");
    EXPECT_EQ(info.Album, "An Album");
    EXPECT_EQ(info.Year, "2003");
    EXPECT_EQ(info.TrackNumber, 7);
    EXPECT_EQ(info.Genre, "Rock");
    EXPECT_EQ(info.Comments, "hi there");
    // The file's average rate, less the metadata (some 8 KiB of it padding).
    const double whole = fileSize(dir.file("padded.flac")) * 8 / 2000;
    EXPECT_LT(info.Bitrate, whole);
    EXPECT_GT(info.Bitrate, whole - 9000.0 * 8 / 2000);

    // Padding is metadata too: the same sound gives the same length and rate.
    const MediaFileInfo tight = readMediaInfo(dir.file("tight.flac"));
    EXPECT_LT(fileSize(dir.file("tight.flac")), fileSize(dir.file("padded.flac")));
    EXPECT_EQ(tight.DataLength, info.DataLength);
    EXPECT_EQ(tight.Bitrate, info.Bitrate);

    const MediaFileInfo mono = readMediaInfo(dir.file("mono.flac"));
    EXPECT_EQ(mono.Channels, 1);
    EXPECT_EQ(mono.Frequency, 48000);
    EXPECT_EQ(mono.Millisecs, 1500);
    EXPECT_EQ(mono.Title, "");
}

TEST_F(MediaInfoTools, FlacNamedAac) {
    need({"sox", "flac"});
    noise("in.wav", 44100, 2, 1);
    run("flac -s -T TITLE=Hidden in.wav -o a.flac && cp a.flac a.aac");
    const MediaFileInfo info = readMediaInfo(dir.file("a.aac"));
    EXPECT_EQ(info.Millisecs, 1000);
    EXPECT_EQ(info.Channels, 2);
    EXPECT_EQ(info.Title, "") << "no comment reader for AAC";
    EXPECT_EQ(info.DataLength, 0);
    EXPECT_EQ(info.Bitrate, 0);
}

}  // namespace
