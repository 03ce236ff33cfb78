// authored.toc byte for byte for each kind of gap, with and without CD-Text,
// and what the real cdrdao makes of it: toc-info accepts it as a write would,
// show-toc puts the tracks where the project has them.
#include <gtest/gtest.h>

#include <regex>

#include "AudioTestHost.h"
#include "audio/AudioToc.h"
#include "exec/DOSOutputs.h"
#include "platform/CommandLine.h"
#include "support/mdlFunctions.h"
#include "testlib/TestSupport.h"

using namespace saltmarrow;
using namespace saltmarrow::test;

namespace {

struct TrackSpec {
    std::string file, length, pause, type, title, artist, isrc;
};

struct TocCase {
    std::string name;
    bool cdText;
    std::string album, catalog;
    std::vector<TrackSpec> tracks;
    std::string toc;     // "D" stands for the folder of the files
    std::string places;  // start and end block of each track, as show-toc prints them
};

// clang-format off
const TocCase kCases[] = {
    {"gaps of all three kinds, a cut track, quotes in names", true, "Alb\"um", "0123456789012",
     {{"a.wav", "00:10:00", "00:02:00", "PREGAP", "T\"1", "A1", "USABC0100001"},
      {"b.wav", "00:08:00", "00:02:00", "POST_TRACK", "T2", "A2", ""},
      {"c.wav", "00:05:00", "00:01:00", "PRE_TRACK", "", "", ""}},
     "CATALOG \"0123456789012\"\r\nCD_ROM_XA\r\n"
     "CD_TEXT {LANGUAGE_MAP {0: 9} LANGUAGE 0 {TITLE \"Album\" PERFORMER \"Art\"}}\r\n\r\n\r\n"
     "TRACK AUDIO\r\nISRC \"USABC0100001\"\r\nCD_TEXT {LANGUAGE 0 {TITLE \"T1\" PERFORMER \"A1\"}}\r\n"
     "PREGAP 00:02:00\r\nFILE \"D/a.wav\" 00:00:00 00:08:00\r\n\r\n"
     "TRACK AUDIO\r\nCD_TEXT {LANGUAGE 0 {TITLE \"T2\" PERFORMER \"A2\"}}\r\n"
     "FILE \"D/a.wav\" 00:08:00\r\nSTART\r\nFILE \"D/b.wav\" 00:00:00 \r\n\r\n"
     "TRACK AUDIO\r\nFILE \"D/c.wav\" 00:00:00 00:05:00\r\nSTART 00:01:00\r\n\r\n",
     "150-750 900-1500 1575-1875"},
    {"no CD-Text, a first track POST_TRACK", false, "Album", "",
     {{"a.wav", "00:10:00", "00:02:00", "POST_TRACK", "T1", "A1", ""},
      {"b.wav", "00:08:00", "00:00:00", "PRE_TRACK", "T2", "A2", ""}},
     "CD_ROM_XA\r\n\r\n"
     "TRACK AUDIO\r\nPREGAP 00:02:00\r\nFILE \"D/a.wav\" 00:00:00 \r\n\r\n"
     "TRACK AUDIO\r\nFILE \"D/b.wav\" 00:00:00 \r\n\r\n",
     "150-900 900-1500"},
    {"CD-Text with nothing to say", true, "", "",
     {{"a.wav", "00:10:00", "00:00:00", "PREGAP", "", "", ""}},
     "CD_ROM_XA\r\n\r\n\r\nTRACK AUDIO\r\nFILE \"D/a.wav\" 00:00:00 \r\n\r\n",
     "0-750"},
};
// clang-format on

std::string cdrdao(const std::string &subcommand, const std::string &toc, bool &ok) {
    DOSOutputs run;
    ok = run.ExecuteCommand("cdrdao " + subcommand + " " + platform::quoteArgument(toc));
    return run.totalOutput;
}

}  // namespace

TEST(AudioToc, EachCaseByteForByteAndAsCdrdaoReadsIt) {
    if (!haveProgram("cdrdao")) GTEST_SKIP() << "cdrdao is not installed (scripts/setup installs it)";
    TempDir dir;
    writeWave(dir.file("a.wav"), 44100, 2, 10000);
    writeWave(dir.file("b.wav"), 44100, 2, 8000);
    writeWave(dir.file("c.wav"), 44100, 2, 6000);
    for (const TocCase &c : kCases) {
        AudioProject p;
        p.strAlbumTitle = c.album;
        p.strAlbumArtist = c.album.empty() ? "" : "Art";
        p.strAlbumCatalog = c.catalog;
        for (const TrackSpec &s : c.tracks) {
            AudioObjects t;
            t.FullPath = dir.file(s.file);
            t.Start = "00:00:00";
            t.OrigLength = t.Finish = s.file == "c.wav" ? "00:06:00" : s.length;
            t.Length = s.length;
            t.Pause = s.pause;
            t.PregapType = s.type;
            t.Title = s.title;
            t.Artist = s.artist;
            t.ISRC = s.isrc;
            p.appendTrack(t, s.file);
        }
        std::string toc = tocHead(p, c.cdText), last;
        for (std::size_t i = 0; i < p.count(); ++i) toc += tocTrack(p, i, "", c.cdText, last) + "\r\n";
        EXPECT_EQ(toc, vb::Replace(c.toc, "D/", dir.path() + "/")) << c.name;
        writeFile(dir.file("authored.toc"), toc);

        bool ok = false;
        const std::string info = cdrdao("toc-info", dir.file("authored.toc"), ok);
        EXPECT_TRUE(ok) << c.name << info;
        const std::string shown = cdrdao("show-toc", dir.file("authored.toc"), ok);
        static const std::regex place(R"(START +\d+:\d+:\d+\( *(\d+)\)\s+END +\d+:\d+:\d+\( *(\d+)\))");
        std::string places;
        for (std::sregex_iterator it(shown.begin(), shown.end(), place), end; it != end; ++it)
            places += (places.empty() ? "" : " ") + (*it)[1].str() + "-" + (*it)[2].str();
        EXPECT_EQ(places, c.places) << c.name << shown;
    }
}

TEST(AudioToc, CDTextFileNamesTheGuestArtistsOnly) {
    AudioProject p;
    p.strAlbumTitle = "Album";
    p.strAlbumArtist = "Band";
    AudioObjects t;
    t.Title = "One";
    t.Artist = "Band";
    std::string text = cdTextHead(p) + cdTextLine(t, "Band");
    t.Artist = "Guest";
    EXPECT_EQ(text + cdTextLine(t, "Band"), "Album - Band\r\n\r\nOne\r\nOne - Guest\r\n");
}
