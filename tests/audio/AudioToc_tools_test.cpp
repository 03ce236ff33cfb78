// authored.toc byte for byte for each kind of gap, with and without CD-Text,
// and what the real cdrdao makes of it: toc-info accepts it as a write would,
// show-toc puts the tracks where the project has them; the TOC comes back
// into the track list as it went out, and the compile's CD-Text file.
#include <gtest/gtest.h>

#include <regex>

#include "AudioTestHost.h"
#include "audio/AudioToc.h"
#include "audio/ListImport.h"
#include "support/mdlFunctions.h"
#include "testlib/TestSupport.h"

using namespace saltmarrow;
using namespace saltmarrow::test;
namespace mb = saltmarrow::platform::mb;

namespace {

struct TrackSpec {
    std::string file, length, pause, type, title, artist, isrc;
    // A piece of a longer file: where it starts, and the file's length.
    std::string start = "00:00:00", whole = "";
};

struct TocCase {
    std::string name;
    bool cdText;
    std::string album, catalog;
    std::vector<TrackSpec> tracks;
    std::string toc;                // "D" stands for the folder of the files
    std::string places;             // start and end block of each track, as show-toc prints them
    std::vector<std::string> back;  // the album, then the rows, as the TOC is imported
    std::string cdTextFile = "";
};

// clang-format off
const TocCase kCases[] = {
    {"gaps of all three kinds, a cut track, quotes in names", true, "Alb\"um", "0123456789012",
     {{"a.wav", "00:10:00", "00:02:00", "PREGAP", "T\"1", "A1", "USABC0100001"},
      {"b.wav", "00:08:00", "00:02:00", "POST_TRACK", "T2", "Art", ""},
      {"c.wav", "00:05:00", "00:01:00", "PRE_TRACK", "", "", "", "00:00:00", "00:06:00"}},
     "CATALOG \"0123456789012\"\r\nCD_ROM_XA\r\n"
     "CD_TEXT {LANGUAGE_MAP {0: 9} LANGUAGE 0 {TITLE \"Album\" PERFORMER \"Art\"}}\r\n\r\n\r\n"
     "TRACK AUDIO\r\nISRC \"USABC0100001\"\r\nCD_TEXT {LANGUAGE 0 {TITLE \"T1\" PERFORMER \"A1\"}}\r\n"
     "PREGAP 00:02:00\r\nFILE \"D/a.wav\" 00:00:00 00:08:00\r\n\r\n"
     "TRACK AUDIO\r\nCD_TEXT {LANGUAGE 0 {TITLE \"T2\" PERFORMER \"Art\"}}\r\n"
     "FILE \"D/a.wav\" 00:08:00\r\nSTART\r\nFILE \"D/b.wav\" 00:00:00 \r\n\r\n"
     "TRACK AUDIO\r\nFILE \"D/c.wav\" 00:00:00 00:05:00\r\nSTART 00:01:00\r\n\r\n",
     "150-750 900-1500 1575-1875",
     {"Album/Art/0123456789012", "a.wav 00:00:00+00:10:00=00:10:00 00:02:00 PREGAP T1/A1 USABC0100001 01 - T1",
      "b.wav 00:00:00+00:09:00=00:09:00 00:02:00 POST_TRACK T2/Art  02 - T2",
      "c.wav 00:00:00+00:05:00=00:05:00 00:01:00 PRE_TRACK /  c"},
     "Album - Art\r\n\r\nT\"1 - A1\r\nT2\r\n - \r\n"},
    {"no CD-Text, a first track POST_TRACK", false, "Album", "",
     {{"a.wav", "00:10:00", "00:02:00", "POST_TRACK", "T1", "A1", ""},
      {"b.wav", "00:08:00", "00:00:00", "PRE_TRACK", "T2", "A2", ""}},
     "CD_ROM_XA\r\n\r\n"
     "TRACK AUDIO\r\nPREGAP 00:02:00\r\nFILE \"D/a.wav\" 00:00:00 \r\n\r\n"
     "TRACK AUDIO\r\nFILE \"D/b.wav\" 00:00:00 \r\n\r\n",
     "150-900 900-1500",
     {"//", "a.wav 00:00:00+00:10:00=00:10:00 00:02:00 PREGAP /  a",
      "b.wav 00:00:00+00:08:00=00:08:00 00:00:00 PREGAP /  b"}},
    {"CD-Text with nothing to say", true, "", "",
     {{"a.wav", "00:10:00", "00:00:00", "PREGAP", "", "", ""}},
     "CD_ROM_XA\r\n\r\n\r\nTRACK AUDIO\r\nFILE \"D/a.wav\" 00:00:00 \r\n\r\n",
     "0-750",
     {"//", "a.wav 00:00:00+00:10:00=00:10:00 00:00:00 PREGAP /  a"}, "\r\n\r\n\r\n"},
    // The pieces of a split: each from its place in the one file.
    {"one recording split in two", false, "", "",
     {{"a.wav", "00:04:00", "00:00:00", "PREGAP", "", "", "", "00:00:00", "00:10:00"},
      {"a.wav", "00:06:00", "00:00:00", "PRE_TRACK", "", "", "", "00:04:00", "00:10:00"}},
     "CD_ROM_XA\r\n\r\nTRACK AUDIO\r\nFILE \"D/a.wav\" 00:00:00 00:04:00\r\n\r\n"
     "TRACK AUDIO\r\nFILE \"D/a.wav\" 00:04:00 00:06:00\r\n\r\n",
     "0-300 300-750",
     {"//", "a.wav 00:00:00+00:04:00=00:04:00 00:00:00 PREGAP /  a",
      "a.wav 00:04:00+00:06:00=00:10:00 00:00:00 PREGAP /  a"}},
};
// clang-format on

const AddOptions kWaves{false, true, "*.wav"};

// The TOC, and the CD-Text file where it is asked for, as the compile writes them.
std::pair<std::string, std::string> authored(AudioProject &p, bool cdText) {
    std::string toc = tocHead(p, cdText), text = cdText ? cdTextHead(p) : "", last;
    for (std::size_t i = 0; i < p.count(); ++i) {
        if (cdText) text += cdTextLine(p.track(i), p.strAlbumArtist);
        toc += tocTrack(p, i, "", cdText, last) + "\r\n";
    }
    return {toc, text};
}

// Where cdrdao's show-toc puts each track: its start and end block.
std::string places(const std::string &toc) {
    const std::string shown = cdrdao("show-toc", toc);
    static const std::regex place(R"(START +\d+:\d+:\d+\( *(\d+)\)\s+END +\d+:\d+:\d+\( *(\d+)\))");
    std::string out;
    for (std::sregex_iterator it(shown.begin(), shown.end(), place), end; it != end; ++it)
        out += (out.empty() ? "" : " ") + (*it)[1].str() + "-" + (*it)[2].str();
    return out;
}

}  // namespace

TEST(AudioToc, EachCaseByteForByteAndAsCdrdaoReadsIt) {
    if (!haveProgram("cdrdao")) GTEST_SKIP() << "cdrdao is not installed (scripts/setup installs it)";
    TempDir dir;
    writeWave(dir.file("a.wav"), 44100, 2, 10000);
    writeWave(dir.file("b.wav"), 44100, 2, 8000);
    writeWave(dir.file("c.wav"), 44100, 2, 6000);
    for (const TocCase &c : kCases) {
        SCOPED_TRACE(c.name);
        AudioProject p;
        p.strAlbumTitle = c.album;
        p.strAlbumArtist = c.album.empty() ? "" : "Art";
        p.strAlbumCatalog = c.catalog;
        for (const TrackSpec &s : c.tracks) {
            AudioObjects t = trackRecord(dir.file(s.file), s.length, s.pause, s.type);
            t.Start = s.start;
            if (!s.whole.empty()) t.OrigLength = t.Finish = s.whole;
            t.Title = s.title;
            t.Artist = s.artist;
            t.ISRC = s.isrc;
            p.appendTrack(t, s.file);
        }
        const auto [toc, cdTextFile] = authored(p, c.cdText);
        EXPECT_EQ(toc, vb::Replace(c.toc, "D/", dir.path() + "/"));
        EXPECT_EQ(cdTextFile, c.cdTextFile);
        writeFile(dir.file("authored.toc"), toc);

        cdrdao("toc-info", dir.file("authored.toc"));
        EXPECT_EQ(places(dir.file("authored.toc")), c.places);

        AudioTestHost h;
        AudioProject back;
        h.dialogs.answer(mb::Yes);
        importTOCFile(back, dir.file("authored.toc"), kWaves, h.host);
        std::vector<std::string> rows{back.strAlbumTitle + "/" + back.strAlbumArtist + "/" +
                                      back.strAlbumCatalog};
        for (std::size_t i = 0; i < back.count(); ++i) {
            const AudioObjects &t = back.track(i);
            rows.push_back(fileNameOf(t.FullPath) + " " + t.Start + "+" + t.Length + "=" + t.Finish + " " +
                           t.Pause + " " + t.PregapType + " " + t.Title + "/" + t.Artist + " " + t.ISRC +
                           " " + back.rows[i].text);
        }
        EXPECT_EQ(rows, c.back);
    }
}
