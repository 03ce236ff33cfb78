// The compile with Debian's real decoders on files that sox and the encoders
// make here: CD-ready WAV files, the cache, bad sources, cancel, WaveGain on
// copies only, hostile file names, a full disk and short tracks.
#include <gtest/gtest.h>

#include <filesystem>

#include "AudioTestHost.h"
#include "audio/mdlMediaInfo.h"
#include "exec/DOSOutputs.h"
#include "platform/CommandLine.h"
#include "support/mdlFunctions.h"
#include "testlib/TestSupport.h"

using namespace saltmarrow;
using namespace saltmarrow::test;
namespace fs = std::filesystem;
namespace mb = saltmarrow::platform::mb;

namespace {

struct Compile : ::testing::Test {
    TempDir dir;
    AudioTestHost h;
    RecordingView view;
    DOSOutputs objDOS2;
    AudioProject project;
    AudioCompile compile{project, h.host, view, objDOS2};
    CompileSettings settings;

    void SetUp() override {
        for (const char *tool :
             {"sox", "lame", "oggenc", "flac", "mpcenc", "madplay", "oggdec", "mpcdec", "faad"})
            if (!haveProgram(tool)) GTEST_SKIP() << tool << " is not installed (scripts/setup installs it)";
        settings.strTempFolder = dir.file("temp");
        settings.mnuAutoWrite = true;  // no question at the end
        settings.decoders = {decoderPrefix("madplay", "-v %s --output=wave:%d -S --sample-rate=44100"),
                             decoderPrefix("oggdec", "%s -o %d"),
                             decoderPrefix("flac", "-d %s -o %d"),
                             "",
                             decoderPrefix("mpcdec", "%s %d"),
                             decoderPrefix("faad", "%s -o %d")};
    }
    void tool(const std::string &command) {
        ASSERT_TRUE(DOSOutputs().ExecuteCommand(command, 4096, 1, dir.path())) << command;
    }
    // Noise of the given length, encoded by extension.
    std::string make(const std::string &name, double seconds = 6, int rate = 44100, int channels = 2) {
        const std::string wav = dir.file(baseNameOf(name) + "-src.wav"), out = dir.file(name);
        tool("sox -n -r " + std::to_string(rate) + " -c " + std::to_string(channels) + " -b 16 " +
             platform::quoteArgument(wav) + " synth " + std::to_string(seconds) + " whitenoise vol 0.3");
        const std::string in = platform::quoteArgument(wav), to = platform::quoteArgument(out);
        const std::string ext = extensionOf(name);
        if (ext == "MP3") tool("lame --quiet " + in + " " + to);
        if (ext == "OGG") tool("oggenc -Q " + in + " -o " + to);
        if (ext == "FLAC") tool("flac -s -f " + in + " -o " + to);
        if (ext == "MPC") tool("mpcenc --silent " + in + " " + to);
        if (ext == "AAC") tool("faac -o " + to + " " + in);
        if (ext == "WAV") fs::rename(wav, out);
        return out;
    }
    void add(const std::string &path) {
        project.addTrack(path, "", "00:00:00", "",
                         {false, true, "*.wav;*.mp3;*.mp2;*.ogg;*.flac;*.mpc;*.aac"}, h.host);
    }
    void run() {
        project.updateTotals(h.host);
        compile.cmdCompile_Click(settings);
    }
    std::string temp(const std::string &name) const { return h.tempName + "/" + name; }
    std::string toc() const { return readFile(temp("authored.toc")); }
    long panels(const std::string &start) const {
        return std::count_if(view.panels.begin(), view.panels.end(),
                             [&](auto &p) { return p.rfind(start, 0) == 0; });
    }
};

}  // namespace

TEST_F(Compile, EveryDecoderGivesACDWaveAndTheSecondCompileDecodesNothing) {
    std::vector<std::string> sources = {make("a.mp3"), make("m48.mp3", 6, 48000, 1),
                                        make("o.ogg"), make("f.flac"),
                                        make("p.mpc"), make("w.wav")};
    if (haveProgram("faac")) sources.push_back(make("c.aac"));
    for (const auto &s : sources) add(s);
    ASSERT_EQ(project.count(), sources.size()) << "a mono MP3 at 48000 Hz is added";
    run();
    EXPECT_EQ(h.loaded, temp("authored.toc"));
    EXPECT_EQ(panels("Resampling Track: 2 / "), 1) << "madplay says that it resamples";
    for (const auto &s : sources) {
        const std::string wav = extensionOf(s) == "WAV" ? s : temp(baseNameOf(s) + ".wav");
        const MediaFileInfo info = readMediaInfo(wav);
        EXPECT_EQ(info.Frequency, 44100) << s;
        EXPECT_EQ(info.Channels, 2) << s;
        EXPECT_NEAR(info.Millisecs, 6000, 150) << s;
        EXPECT_NE(toc().find("FILE \"" + wav + "\" 00:00:00"), std::string::npos) << s << toc();
    }
    cdrdao("toc-info", temp("authored.toc"));

    view.panels.clear();
    h.space = platform::VolumeSpace{0, "/full"};  // nothing left to decode: 0 MB are needed
    run();
    EXPECT_EQ(panels("Decoding Track: "), 0);
    EXPECT_TRUE(h.boxes().empty());
}

TEST_F(Compile, BadSourcesAreLeftOutAndTheNextTrackGoesOn) {
    writeFile(dir.file("bad.mp3"), std::string(20000, '\x55'));
    writeFile(dir.file("bad.aac"), std::string(5000, '\x33'));  // faad fails, yet ends with 0
    const std::string gone = make("gone.wav"), good = make("good.ogg");
    for (const auto &s : {dir.file("bad.mp3"), dir.file("bad.aac"), gone, good}) add(s);
    h.dialogs.prompts.clear();
    fs::remove(gone);
    run();
    EXPECT_EQ(compile.tracksLeftOut, 3);
    EXPECT_EQ(vb::Split(toc(), "TRACK AUDIO").size(), 2u) << toc();
    EXPECT_NE(toc().find(temp("good.wav")), std::string::npos);
    EXPECT_FALSE(fs::exists(temp("bad.wav"))) << "a broken target is not kept as decoded";
    EXPECT_EQ(view.panels.back(), "3 track(s) could not be read and were left out; see the command log.");
    EXPECT_EQ(h.log[1], "Track 1 left out, it could not be read: " + dir.file("bad.mp3"));
    EXPECT_TRUE(h.boxes().empty()) << "a decoder failure asks nothing";
}

TEST_F(Compile, CancelWhileDecodingDeletesTheTargetAndHandsNothingOver) {
    add(make("long.mp3", 30));
    h.host.letEventsRun = [this] {
        if (compile.decoderBusy && compile.running()) compile.cmdCompile_Click(settings);
    };
    run();
    EXPECT_FALSE(fs::exists(temp("long.wav")));
    EXPECT_EQ(h.loaded, "");
    EXPECT_FALSE(compile.compiledAny);
    EXPECT_TRUE(view.enabled);
}

TEST_F(Compile, WaveGainWorksOnCopiesAndReportsToTheLog) {
    const std::string own = make("own.wav"), mp3 = make("x.mp3");
    add(own);
    add(mp3);
    const std::string before = readFile(own);
    settings.mnuWaveGain = true;
    settings.strWaveGain = fixture("wavegain");
    settings.strWaveGainCommand = "--radio --gain 3 --apply";
    fs::remove(fixture("wavegain.log"));
    run();
    EXPECT_EQ(readFile(own), before) << "the user's own file is never touched";
    EXPECT_EQ(readFile(temp("own.wav")).at(44), '\x55') << "the copy got the gain";
    EXPECT_EQ(readFile(fixture("wavegain.log")),
              "--radio\n--gain\n3\n--apply\n" + temp("own.wav") + "\n" + temp("x.wav") + "\n");
    EXPECT_EQ(
        h.log.back(),
        "WaveGain settings were applied as follows:\r\n\r\nTrack 01: -2.50 dB  |  32767  |   0.75  |  24575"
        "\r\nTrack 03: -2.50 dB  |  32767  |   0.75  |  24575");
    EXPECT_EQ(panels("Skipping Track: "), 1);
    EXPECT_NE(toc().find(temp("own.wav")), std::string::npos);
}

TEST_F(Compile, HostileNamesDecodeToTheirOwnTargetAndReachCdrdaoByALink) {
    fs::create_directories(dir.file("a\" -o \"/home/x"));
    const std::string mp3 = make("a\" -o \"/home/x/.profile.mp3");
    const std::string wav = make("it's \"q\\.wav");
    add(mp3);
    add(wav);
    run();
    std::vector<std::string> files;
    for (const auto &e : fs::recursive_directory_iterator(dir.path()))
        if (!e.is_directory()) files.push_back(e.path().lexically_relative(dir.path()).string());
    std::sort(files.begin(), files.end());
    const std::string t = fs::relative(h.tempName, dir.path()).string();
    EXPECT_EQ(files, (std::vector<std::string>{".profile-src.wav", "a\" -o \"/home/x/.profile.mp3",
                                               "it's \"q\\.wav", t + "/.profile.wav", t + "/CDText.txt",
                                               t + "/authored.toc", t + "/~link02.wav"}));
    EXPECT_EQ(fs::read_symlink(temp("~link02.wav")), wav);
    cdrdao("toc-info", temp("authored.toc"));
}

TEST_F(Compile, AFullDiskAndShortTracksAreSaidFirst) {
    add(make("short.mp3", 2));
    h.space = platform::VolumeSpace{1024, "/mnt/full"};
    h.dialogs.answer(mb::Yes);
    run();
    EXPECT_EQ(h.boxes().back(), "Insufficient free space on drive /mnt/full");
    EXPECT_NE(h.boxes().front().find("\r\nshort ("), std::string::npos) << h.boxes().front();
    h.space.reset();
    h.dialogs.prompts.clear();
    h.dialogs.answer(mb::No);
    run();
    EXPECT_EQ(h.boxes().size(), 1u);
    EXPECT_EQ(h.loaded, "") << "the user stopped at the warning";
}
