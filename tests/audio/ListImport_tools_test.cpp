// Projects through the compile and the real cdrdao: a TOC the compile wrote
// comes back into the track list, and one long recording split into tracks.
#include <gtest/gtest.h>

#include <regex>
#include <tuple>

#include "AudioTestHost.h"
#include "audio/ListImport.h"
#include "audio/TrackSplit.h"
#include "exec/DOSOutputs.h"
#include "platform/CommandLine.h"
#include "support/mdlFunctions.h"
#include "testlib/TestSupport.h"

using namespace saltmarrow;
using namespace saltmarrow::test;
namespace mb = saltmarrow::platform::mb;

namespace {

const AddOptions kWaves{false, true, "*.wav"};

// Compiles the project (h.loaded is its authored.toc) and tells where cdrdao
// puts each track of it: the first and the end block, as show-toc prints them.
std::string compileAndPlace(AudioProject &p, AudioTestHost &h, const std::string &folder) {
    RecordingView view;
    DOSOutputs objDOS2, cdrdao;
    AudioCompile compile(p, h.host, view, objDOS2);
    CompileSettings settings;
    settings.strTempFolder = folder;
    settings.mnuAutoWrite = true;
    p.updateTotals(h.host);
    compile.cmdCompile_Click(settings);
    EXPECT_TRUE(cdrdao.ExecuteCommand("cdrdao show-toc " + platform::quoteArgument(h.loaded)))
        << cdrdao.totalOutput;
    static const std::regex place(R"(START +\d+:\d+:\d+\( *(\d+)\)\s+END +\d+:\d+:\d+\( *(\d+)\))");
    std::string places;
    for (std::sregex_iterator it(cdrdao.totalOutput.begin(), cdrdao.totalOutput.end(), place), end; it != end;
         ++it)
        places += (places.empty() ? "" : " ") + (*it)[1].str() + "-" + (*it)[2].str();
    return places;
}

}  // namespace

TEST(ListImportTools, ACompiledTocComesBackAsTheWalksMakeIt) {
    if (!haveProgram("cdrdao")) GTEST_SKIP() << "cdrdao is not installed (scripts/setup installs it)";
    TempDir dir;
    AudioTestHost h;
    AudioProject p;
    // clang-format off
    const std::tuple<const char *, int, const char *, const char *, const char *> tracks[] = {
        {"a.wav", 10000, "00:02:00", "PREGAP", "One"}, {"b.wav", 8000, "00:02:00", "POST_TRACK", "Two"},
        {"c.wav", 6000, "00:01:00", "PRE_TRACK", "Three"}, {"d.wav", 7000, "00:03:00", "PREGAP", "Four"},
        {"e.wav", 5000, "00:00:00", "PRE_TRACK", "Five"}};
    // clang-format on
    for (const auto &[file, ms, pause, type, title] : tracks) {
        writeWave(dir.file(file), 44100, 2, ms);
        p.addTrack(dir.file(file), pause, "00:00:00", "", kWaves, h.host);
        AudioObjects &r = p.track(p.count() - 1);
        r.PregapType = type;
        r.Title = title;
        r.Artist = "Band";
    }
    p.strAlbumTitle = "Album";
    EXPECT_EQ(compileAndPlace(p, h, dir.file("temp")), "150-750 900-1500 1575-1950 2175-2700 2700-3075");

    AudioProject back;
    h.dialogs.answer(mb::Yes);
    importTOCFile(back, h.loaded, kWaves, h.host);
    std::vector<std::string> rows;
    for (std::size_t i = 0; i < back.count(); ++i) {
        const AudioObjects &t = back.track(i);
        rows.push_back(fileNameOf(t.FullPath) + " " + t.Start + "+" + t.Length + "=" + t.Finish + " " +
                       t.Pause + " " + t.PregapType + " " + t.Title + "/" + t.Artist + " " +
                       back.rows[i].text);
    }
    // Each track has the next one's pause added, whatever its kind.
    EXPECT_EQ(rows, (std::vector<std::string>{
                        "a.wav 00:00:00+00:10:00=00:10:00 00:02:00 PREGAP One/Band 01 - One",
                        "b.wav 00:00:00+00:09:00=00:09:00 00:02:00 POST_TRACK Two/Band 02 - Two",
                        "c.wav 00:00:00+00:09:00=00:09:00 00:01:00 PRE_TRACK Three/Band 03 - Three",
                        "d.wav 00:00:00+00:07:00=00:07:00 00:03:00 PREGAP Four/Band 04 - Four",
                        "e.wav 00:00:00+00:05:00=00:05:00 00:00:00 PREGAP Five/Band 05 - Five"}));
    EXPECT_EQ(back.strAlbumTitle + "/" + back.strAlbumArtist, "Album/Band");
    EXPECT_EQ(h.boxes(), std::vector<std::string>{"Import CD-Text from TOC file?"});
}

TEST(ListImportTools, TenMinutesSplitIntoThreeThreeAndTheRest) {
    for (const char *tool : {"sox", "cdrdao"})
        if (!haveProgram(tool)) GTEST_SKIP() << tool << " is not installed (scripts/setup installs it)";
    TempDir dir;
    AudioTestHost h;
    AudioProject p;
    const std::string wav = dir.file("concert.wav");
    ASSERT_TRUE(DOSOutputs().ExecuteCommand("sox -n -r 44100 -c 2 -b 16 " + platform::quoteArgument(wav) +
                                            " synth 600 sine 440 vol 0.1"));
    p.addTrack(wav, "", "00:00:00", "", kWaves, h.host);
    h.dialogs.answer(std::string("03:00:00 junk 99:00:00 03:00:00"));
    ASSERT_TRUE(splitTrack(p, SplitSource::Typed, true, h.host));
    EXPECT_EQ(h.dialogs.prompts.back().text,
              "Enter track lengths as mm:ss:ff and separated with a space.  Erroneous data is ignored.");
    EXPECT_EQ(compileAndPlace(p, h, dir.file("temp")), "0-13500 13500-27000 27000-45000");
}
