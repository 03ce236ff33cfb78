// The track list's rules on the plain project: adding and its refusals, the
// totals, order, names from tags and from file names.

#include <gtest/gtest.h>

#include "AudioTestHost.h"
#include "testlib/TestSupport.h"

using namespace saltmarrow;
using namespace saltmarrow::test;

namespace {

std::vector<std::string> names(const AudioProject &p) {
    std::vector<std::string> out;
    for (const auto &row : p.rows) out.push_back(row.text + "@" + row.position);
    return out;
}

}  // namespace

TEST(AudioProject, AddingChecksKindDecoderRateAndChannelsInThatOrder) {
    TempDir dir;
    AudioTestHost h;
    writeWave(dir.file("a.wav"));
    writeWave(dir.file("b48.wav"), 48000);
    writeWave(dir.file("mono.wav"), 44100, 1);
    writeFile(dir.file("empty.mp3"), "");
    AudioProject p;
    const AddOptions on{true, true, "*.wav;*.mp3;*.mp2"};
    struct Case {
        std::string file;
        AddResult result;
        std::string box;
    } cases[] = {
        {"a.wav", AddResult::Added, ""},
        {"b48.wav", AddResult::Refused, "Samplerate of b48.wav is unsupported."},
        {"mono.wav", AddResult::Refused, "Number of channels in mono.wav is unsupported."},
        {"empty.mp3", AddResult::Added, "Cannot read header of track empty.mp3."},
        {"x.mpc", AddResult::Ignored, ""},  // no Musepack decoder installed
        {"list.cue", AddResult::Routed, ""},
        {"notes.txt", AddResult::Ignored, ""},
    };
    for (const auto &c : cases) {
        h.dialogs.prompts.clear();
        EXPECT_EQ(p.addTrack(dir.file(c.file), "", "00:00:00", "", on, h.host), c.result) << c.file;
        EXPECT_EQ(h.boxes(), c.box.empty() ? std::vector<std::string>{} : std::vector<std::string>{c.box})
            << c.file;
    }
    ASSERT_EQ(p.count(), 2u);
    const AudioObjects &a = p.track(0);
    EXPECT_EQ(a.Pause + a.Length + a.OrigLength + a.Index + a.PregapType, "00:02:0000:05:0000:05:0001PREGAP");
    EXPECT_EQ(p.rows[0].text, "a");
    EXPECT_EQ(p.track(1).Length + p.track(1).Index, "00:00:0002");
    EXPECT_NE(p.rows[0].Tag, p.rows[1].Tag);

    p.addTrack(dir.file("a.wav"), "", "00:00:00", "", AddOptions{false, false, "*.wav"}, h.host);
    EXPECT_EQ(p.track(2).Pause, "00:00:00") << "the two-second gap follows the box";
    EXPECT_EQ(p.rows[2].text, "a.wav") << "without CD-Text the file name shows";
}

TEST(AudioProject, TotalsAndDatabaseLengthsCountPregapsButNotGapsInsideTheSource) {
    AudioTestHost h;
    AudioProject p;
    p.appendTrack(trackRecord("/m/a.wav", "80:00:00", "00:02:00"), "a");
    p.appendTrack(trackRecord("/m/b.wav", "01:38:00", "00:03:00", "PRE_TRACK"), "b");
    const Totals t = p.updateTotals(h.host);
    EXPECT_DOUBLE_EQ(p.totalUsed, 4900);
    EXPECT_EQ(t.barValue, 4800);
    EXPECT_EQ(t.panel, "Total Time: 81mins 40secs");
    // The database is asked with each pregap in front of its track, but not a
    // pause that is part of its track's source.
    EXPECT_EQ(p.freedbLengths(), (std::vector<long>{2000, 4800000, 98000}));
}

TEST(AudioProject, MovesSortingAndRemovalKeepRowsAndRecordsTogether) {
    AudioProject p;
    for (const char *n : {"c", "a", "b"})
        p.appendTrack(trackRecord(std::string("/m/") + n + ".wav", "00:10:00"), n);
    EXPECT_FALSE(p.moveUp(0));
    EXPECT_FALSE(p.moveDown(2));
    EXPECT_EQ(p.moveDown(0), 1u);
    EXPECT_EQ(names(p), (std::vector<std::string>{"a@01", "c@02", "b@03"}));
    p.columnClick(true);
    EXPECT_EQ(names(p), (std::vector<std::string>{"a@01", "b@02", "c@03"}));
    EXPECT_EQ(p.track(2).FullPath, "/m/c.wav");
    p.rows[0].selected = p.rows[1].selected = true;
    p.removeSelected();
    EXPECT_EQ(names(p), std::vector<std::string>{"c@03"});
    EXPECT_EQ(p.colAllTracks.size(), 1u);
    EXPECT_TRUE(p.rows[0].selected);
    p.allToCurrentPause(0);
    EXPECT_EQ(p.tracklistText(), "#EXTM3U\r\n/m/c.wav\r\n");
}

TEST(AudioProject, AlbumNamesAndNamesFromFileNames) {
    AudioProject p;
    for (const char *album : {"X", "X", ""}) {
        AudioObjects t = trackRecord("/m/03 - Foo - Bar.wav", "00:10:00");
        t.Album = album;
        t.Artist = album;
        p.appendTrack(t, "r");
    }
    p.findAlbumNames();
    EXPECT_EQ(p.strAlbumTitle, "");
    EXPECT_EQ(p.strAlbumArtist, "Various Artists");

    struct Case {
        std::string filter, artist, title, number;
    } cases[] = {
        {"%4 - %1 - %2", "Foo", "Bar", "03"},
        {"abcdefgh%2", "", " - Bar", ""},  // eight literal characters skip eight of the name
        {"%0 - %2 - %1", "Bar", "Foo", ""},
    };
    for (const auto &c : cases) {
        AudioObjects &t = p.track(0);
        t.Artist = t.Title = t.TrackNumber = "";
        p.rows[0].selected = true;
        p.filterFilename(c.filter, true);
        EXPECT_EQ(t.Artist + "|" + t.Title + "|" + t.TrackNumber, c.artist + "|" + c.title + "|" + c.number)
            << c.filter;
    }
    EXPECT_EQ(p.track(1).Title, "") << "only the selected rows";
    p.refreshTrackNames(true);
    EXPECT_EQ(p.rows[0].text, "Foo");
    EXPECT_EQ(p.rows[1].text, "03 - Foo - Bar");
}
