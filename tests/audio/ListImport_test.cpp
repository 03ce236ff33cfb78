// Play lists and sheets into the track list: each format as the programs that
// write them do, and files that are no list at all.
#include "audio/ListImport.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <random>

#include "AudioTestHost.h"
#include "support/mdlFunctions.h"
#include "testlib/TestSupport.h"

using namespace saltmarrow;
using namespace saltmarrow::test;
namespace mb = saltmarrow::platform::mb;

namespace {

struct ListCase {
    std::string name, text;  // "D/" stands for the folder of the list
    int answer;              // to the CD-Text question, 0: none queued
    std::vector<std::string> rows, boxes;
    std::string album = "||";
};

const std::string kRepaired = "Incorrect Paths in Tracklist were repaired.";

struct Lists : ::testing::Test {
    TempDir dir;
    AudioTestHost h;
    AudioProject p;

    void SetUp() override {
        std::filesystem::create_directory(dir.file("sub"));
        for (const auto &[name, ms] : {std::pair("a.wav", 10000),
                                       {"b.wav", 8000},
                                       {"c.wav", 6000},
                                       {"sub/d.wav", 4000},
                                       {"\xC3\xA4 b.wav", 2000}})
            writeWave(dir.file(name), 44100, 2, ms);
    }
    // The list added as the window adds it; each row as its file, start,
    // length, pause, type and CD-Text.
    std::vector<std::string> import(const ListCase &c) {
        writeFile(dir.file(c.name), vb::Replace(c.text, "D/", dir.path() + "/"));
        p.clear();
        h.dialogs.prompts.clear();
        if (c.answer) h.dialogs.answer(c.answer);
        p.addTrack(dir.file(c.name), "", "00:00:00", "", {false, true, "*.wav"}, h.host);
        std::vector<std::string> rows;
        for (std::size_t i = 0; i < p.count(); ++i) {
            const AudioObjects &t = p.track(i);
            rows.push_back(vb::Replace(t.FullPath, dir.path() + "/", "") + " " + t.Start + "+" + t.Length +
                           " " + t.Pause + " " + t.PregapType +
                           (t.Title.empty() ? "" : " " + t.Title + "/" + t.Artist) +
                           (t.ISRC.empty() ? "" : " " + t.ISRC));
            EXPECT_EQ(p.rows[i].length, t.Length);
        }
        return rows;
    }
};

}  // namespace

TEST_F(Lists, EachFormatGivesItsRowsGapsAndNamesAndWhatIsNoListAddsNothing) {
    std::string many, noise(1 << 16, '\0'), line(1 << 20, 'x');
    for (int i = 0; i < 100000; ++i) many += "missing" + std::to_string(i) + ".wav\n";
    std::mt19937 random(7);
    for (char &c : noise) c = static_cast<char>(random());
    // clang-format off
    const ListCase cases[] = {
        {"ext.m3u", "#EXTM3U\r\n#EXTINF:10,Band - One\r\na.wav\r\n#EXTINF:4,Four\r\nsub/d.wav\r\nfile://D/b.wav\r\n", 0,
         {"a.wav 00:00:00+00:10:00 00:00:00 PREGAP", "sub/d.wav 00:00:00+00:04:00 00:00:00 PREGAP",
          "b.wav 00:00:00+00:08:00 00:00:00 PREGAP"}, {}},
        {"bom.m3u8", "\xEF\xBB\xBF\xC3\xA4 b.wav\n", 0, {"\xC3\xA4 b.wav 00:00:00+00:02:00 00:00:00 PREGAP"}, {}},
        {"latin1.m3u", "\xE4 b.wav\r", 0, {"\xC3\xA4 b.wav 00:00:00+00:02:00 00:00:00 PREGAP"}, {}},
        {"radio.pls", "[playlist]\nFile1=D/c.wav\nTitle1=Three\nFile2=C:\\Music\\A.WAV\nNumberOfEntries=2\n", 0,
         {"c.wav 00:00:00+00:06:00 00:00:00 PREGAP", "a.wav 00:00:00+00:10:00 00:00:00 PREGAP"}, {kRepaired}},
        {"list.bpl", "<Track Location=\"file://D/%C3%A4%20b.wav\">\n<Track Location=\"file:///elsewhere/c.wav\">\n", 0,
         {"\xC3\xA4 b.wav 00:00:00+00:02:00 00:00:00 PREGAP", "c.wav 00:00:00+00:06:00 00:00:00 PREGAP"}, {kRepaired}},
        {"notes.m3u", "#EXTM3U\n#EXTINF:1,Nothing here\n\n", 0, {}, {}},
        {"eac.cue", "REM GENRE Rock\r\nCATALOG 0123456789012\r\nPERFORMER \"Band\"\r\nTITLE \"Album\"\r\n"
         "FILE \"a.wav\" WAVE\r\n  TRACK 01 AUDIO\r\n    TITLE \"One\"\r\n    PERFORMER \"Band\"\r\n"
         "    ISRC USABC0100001\r\n    INDEX 01 00:00:00\r\n  TRACK 02 AUDIO\r\n    PERFORMER \"Guest\"\r\n"
         "    INDEX 00 00:03:00\r\n    INDEX 01 00:04:00\r\n    TITLE \"FILE 2 INDEX 01 1\"\r\n"
         "  TRACK 03 AUDIO\r\n\tTITLE \"Three\"\r\n\tINDEX 01 00:07:00\r\n", mb::Yes,
         {"a.wav 00:00:00+00:03:00 00:00:00 PREGAP One/Band USABC0100001",
          "a.wav 00:03:00+00:04:00 00:01:00 PRE_TRACK FILE 2 INDEX 01 1/Guest", "a.wav 00:07:00+00:03:00 00:00:00 PREGAP Three/"},
         {"Import CD-Text from CUE file?"}, "Album|Band|0123456789012"},
        {"gaps.cue", "PERFORMER \"Band\"\nFILE \"a.wav\" WAVE\n TRACK 01 AUDIO\n  TITLE \"One\"\n  INDEX 01 00:00:00\n"
         " TRACK 02 AUDIO\n  INDEX 00 00:08:00\nFILE \"b.wav\" WAVE\n  INDEX 01 00:00:00\nFILE \"c.wav\" WAVE\n"
         " TRACK 03 AUDIO\n  PREGAP 00:02:00\n  INDEX 01 00:00:00\n", mb::No,
         {"a.wav 00:00:00+00:10:00 00:00:00 PREGAP", "b.wav 00:00:00+00:08:00 00:02:00 POST_TRACK",
          "c.wav 00:00:00+00:06:00 00:02:00 PREGAP"}, {"Import CD-Text from CUE file?"}},
        {"mixed.cue", "FILE \"a.wav\" BINARY\n TRACK 01 MODE1/2352\n  INDEX 01 00:00:00\n TRACK 02 AUDIO\n"
         "  INDEX 01 00:02:00\n TRACK 03 AUDIO\n  INDEX 01 00:05:00\nFILE \"b.wav\" WAVE\n TRACK 04 AUDIO\n"
         "  INDEX 01 00:00:00\n", 0,
         {"a.wav 00:02:00+00:03:00 00:00:00 PREGAP", "a.wav 00:05:00+00:05:00 00:00:00 PREGAP",
          "b.wav 00:00:00+00:08:00 00:00:00 PREGAP"}, {}},
        {"windows.cue", "FILE \"C:\\Rips\\C.WAV\" WAVE\r\n  TRACK 01 AUDIO\r\n    INDEX 01 00:00:00\r\n"
         "FILE \"gone.wav\" WAVE\r\n  TRACK 02 AUDIO\r\n    INDEX 01 00:00:00\r\n", 0,
         {"c.wav 00:00:00+00:06:00 00:00:00 PREGAP"}, {"gone.wav could not be found!", kRepaired}},
        // A TOC as the compile writes it: each track gets the next one's pause back, whatever its kind.
        {"authored.toc", "CD_ROM_XA\r\n\r\nTRACK AUDIO\r\nFILE \"D/c.wav\" 00:00:00 \r\nSTART 00:01:00\r\n\r\n"
         "TRACK AUDIO\r\nPREGAP 00:03:00\r\nFILE \"D/sub/d.wav\" 00:00:00 \r\n\r\n", 0,
         {"c.wav 00:00:00+00:09:00 00:01:00 PRE_TRACK", "sub/d.wav 00:00:00+00:04:00 00:03:00 PREGAP"}, {}},
        // What is no list adds nothing that does not exist.
        {"many.m3u", many + "a.wav\n", 0, {"a.wav 00:00:00+00:10:00 00:00:00 PREGAP"}, {}},
        {"noise.m3u", noise, 0, {}, {}},
        {"noise.cue", noise, 0, {}, {}},
        {"long.m3u", line + "\nb.wav\n" + line, 0, {"b.wav 00:00:00+00:08:00 00:00:00 PREGAP"}, {}},
        {"places.m3u", "/dev/null\nD/\nsub\n/dev\n.\n..\n", 0, {}, {}},
        {"self.m3u", "self.m3u\nc.wav\nD/self.m3u\nback.m3u\n", 0, {"c.wav 00:00:00+00:06:00 00:00:00 PREGAP"}, {}},
        {"times.cue", "FILE \"a.wav\" WAVE\nTRACK 01 AUDIO\nINDEX 01 00:00:00\nTRACK 02 AUDIO\nINDEX 00 ab:cd:ef\n"
         "INDEX 01 99:99:99\n", 0,
         {"a.wav 00:00:00+00:00:00 00:00:00 PREGAP", "a.wav 00:00:00+00:10:00 00:00:00 PREGAP"}, {}},
        {"quotes.toc", "CD_TEXT {LANGUAGE 0 {TITLE \"x PERFORMER }}\nTRACK AUDIO\nFILE \"a.wav 0\nTRACK AUDIO\n"
         "FILE \"b.wav\" 0 00:05:00\n", 0, {"b.wav 00:00:00+00:05:00 00:00:00 PREGAP"},
         {"Import CD-Text from TOC file?"}},
    };
    // clang-format on
    writeFile(dir.file("back.m3u"), "self.m3u\n");
    for (const ListCase &c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(import(c), c.rows);
        EXPECT_EQ(h.boxes(), c.boxes);
        EXPECT_EQ(p.strAlbumTitle + "|" + p.strAlbumArtist + "|" + p.strAlbumCatalog, c.album);
    }
}
