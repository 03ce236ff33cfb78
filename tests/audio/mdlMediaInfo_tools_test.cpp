// Header readers against files that lame, oggenc and flac make of sox's noise,
// checked against what each tool was told. sox's own WAV files carry the
// canonical header that the hand-made files of the unit test have.
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>

#include "AudioTestHost.h"
#include "audio/mdlMediaInfo.h"
#include "testlib/TestSupport.h"

using namespace saltmarrow;
using namespace saltmarrow::test;

namespace {

struct MediaTools : ::testing::Test {
    TempDir dir;
    void need(std::initializer_list<const char *> programs) {
        for (const char *p : programs)
            if (!haveProgram(p)) GTEST_SKIP() << p << " is not installed (scripts/setup installs it)";
    }
    void run(const std::vector<std::string> &arguments) {
        const ToolResult r = runTool(arguments, dir.path());
        ASSERT_EQ(r.exitCode, 0) << arguments.front() << ": " << r.output;
    }
    // Noise the encoders cannot squeeze much: their rates come out near what
    // they were asked for.
    void noise(const std::string &name, int rate, int channels, double seconds) {
        run({"sox", "-n", "-r", std::to_string(rate), "-c", std::to_string(channels), "-b", "16", name,
             "synth", std::to_string(seconds), "whitenoise", "vol", "0.5"});
    }
    MediaFileInfo read(const std::string &name) { return readMediaInfo(dir.file(name)); }
    double size(const std::string &name) {
        return static_cast<double>(std::filesystem::file_size(dir.file(name)));
    }
};

// Encoder delay, padding and the Info frame: lame adds up to three frames.
const double kSlackMs = 3 * 1152 * 1000.0 / 44100;

// The rates, channel modes and tags of the frames are the unit test's; here
// the frame that lame puts first, and its two tags.
TEST_F(MediaTools, Mp3sFromLame) {
    need({"sox", "lame"});
    noise("in.wav", 44100, 2, 3);
    for (const auto &[mode, file] : {std::pair{"-b128", "cbr.mp3"}, {"-V2", "vbr.mp3"}})
        run({"lame", "--quiet",    mode,   "--id3v2-latin1", "--add-id3v2",  "--tt",   "My Title",
             "--ta", "The Artist", "--tl", "An Album",       "--ty",         "2003",   "--tn",
             "7",    "--tg",       "Rock", "--tc",           "hello, world", "in.wav", file});

    // The comment comes from the ID3v1 tag only, blanks and commas gone;
    // lame keeps the track in its last byte, a control code there.
    const MediaFileInfo both = read("cbr.mp3");
    EXPECT_EQ(tagText(both), "My Title|The Artist|An Album|2003|Rock|7|helloworld");
    EXPECT_FALSE(both.IsVBR) << "lame's Info frame of a constant-rate file is no Xing header";
    EXPECT_EQ(std::to_string(both.Frequency) + " " + std::to_string(both.Channels), "44100 2");
    EXPECT_EQ(both.Bitrate, 128);
    EXPECT_EQ(both.Millisecs, std::nearbyint(both.DataLength * 8 / 128));
    EXPECT_NEAR(both.Millisecs, 3000, kSlackMs);

    const MediaFileInfo vbr = read("vbr.mp3");
    EXPECT_TRUE(vbr.IsVBR);
    EXPECT_EQ(vbr.Title, "My Title");
    EXPECT_NEAR(vbr.Millisecs, 3000, kSlackMs);
    EXPECT_NEAR(vbr.Bitrate, vbr.DataLength * 8 / vbr.Millisecs, 0.5);
    EXPECT_GT(vbr.Bitrate, 100);
}

// oggenc and flac, told the same tags, give the length to the sample and the
// rate of the sound alone: the header pages with the codebooks, and the
// metadata with some 8 KiB of padding, are not counted.
TEST_F(MediaTools, OggVorbisAndFlacFromTheirEncoders) {
    need({"sox", "oggenc", "flac"});
    noise("in.wav", 44100, 2, 3);
    std::vector<std::string> oggenc{"oggenc", "-Q", "-b", "128", "--managed", "in.wav", "-o", "s.ogg"};
    std::vector<std::string> flac{"flac", "-s", "in.wav", "-o", "s.flac"};
    for (const char *tag : {"TITLE=My Title", "ARTIST=The Artist", "ALBUM=An Album", "DATE=2003",
                            "TRACKNUMBER=7", "GENRE=Rock", "COMMENT=hi there", "ENCODEDBY=tests"}) {
        oggenc.insert(oggenc.end(), {"-c", tag});
        flac.insert(flac.end(), {"-T", tag});
    }
    struct Row {
        std::vector<std::string> encode;
        const char *file;
        double headersAtLeast, headersAtMost;  // bytes
    };
    for (const Row &row : {Row{oggenc, "s.ogg", 3000, 10000}, Row{flac, "s.flac", 0, 9000}}) {
        SCOPED_TRACE(row.file);
        run(row.encode);
        const MediaFileInfo info = read(row.file);
        EXPECT_EQ(tagText(info), "My Title|The Artist|An Album|2003|Rock|7|hi there");
        EXPECT_TRUE(info.IsVBR);
        EXPECT_EQ(info.Samples, 3 * 44100);
        EXPECT_EQ(info.Millisecs, 3000);
        EXPECT_NEAR(info.Bitrate, info.DataLength * 8 / 3000, 0.01);
        EXPECT_GT(info.DataLength, size(row.file) - row.headersAtMost);
        EXPECT_LT(info.DataLength, size(row.file) - row.headersAtLeast);
    }
    EXPECT_NEAR(read("s.ogg").Bitrate, 128, 12.8) << "oggenc was told 128 kbit/s";
}

}  // namespace
