// Editing one track: the time fields as they are typed and left, the
// question of unsaved changes, saving; and one track split into pieces.
#include "audio/TrackProperties.h"

#include <gtest/gtest.h>

#include <tuple>

#include "AudioTestHost.h"
#include "audio/TrackSplit.h"

using namespace saltmarrow;
using namespace saltmarrow::test;

namespace {

const AudioObjects kLive = trackRecord("/m/live.wav", "00:10:00", "00:02:00");

}  // namespace

TEST(TrackProperties, TimeFieldsAsTypedAndLeft) {
    // clang-format off
    const std::pair<std::string, std::string> whole[] = {
        {"0312", "03:12:00"}, {"", "00:00:00"}, {"1:2", "12:00:00"}, {"12:34:56:78", "12:34:56"}, {"1a", "-"}};
    // clang-format on
    for (const auto &[typed, made] : whole) EXPECT_EQ(checkTime(typed).value_or("-"), made) << typed;

    // clang-format off
    const std::tuple<std::string, std::size_t, char, std::string> keys[] = {
        {"", 0, '1', "1|1"}, {"03", 2, '1', "03:1|4"}, {"03:12:00", 1, '4', "04:12:00|3"},
        {"03:12:00", 3, '6', "-"}, {"03:12:00", 8, '1', "-"}, {"03:12:00", 0, 'x', "-"}};
    // clang-format on
    for (const auto &[text, caret, key, result] : keys) {
        const auto edit = timeKey(text, caret, key);
        EXPECT_EQ(edit ? edit->text + "|" + std::to_string(edit->caret) : "-", result) << text << key;
    }
    EXPECT_EQ(timeCaret(3, -1, 8), 1u);
    EXPECT_EQ(timeCaret(1, 1, 8), 3u);

    const AudioObjects &t = kLive;
    // clang-format off
    const std::tuple<std::string TrackFields::*, std::string, std::string, std::string> leaving[] = {
        {&TrackFields::txtFinishMS, "00:01:00", "0012", "00:01:00-00:10:00"},
        {&TrackFields::txtStartMS, "00:09", "00:05:00", "00:05:00-00:05:00"},
        {&TrackFields::txtFinishMS, "00:01:00", "x1", "00:01:00-00:10:00"}};
    // clang-format on
    for (const auto &[left, start, finish, result] : leaving) {
        TrackFields f = loadTrack(t);
        f.txtStartMS = start;
        f.txtFinishMS = finish;
        leaveTimeField(f, left, t);
        EXPECT_EQ(f.txtStartMS + "-" + f.txtFinishMS, result) << start << " " << finish;
    }
}

TEST(TrackProperties, ChangesAreSeenAndSavedIntoTheTrackAndTheAlbum) {
    AudioProject p;
    p.appendTrack(kLive, "live");
    AudioObjects &t = p.track(0);
    TrackFields f = loadTrack(t);
    t.Finish = "00:00:00";
    EXPECT_EQ(loadTrack(t).txtFinishMS, "") << "an unknown end shows empty";
    EXPECT_FALSE(checkChanges(loadTrack(t), t));
    f.PregapType = "PRE_TRACK";
    f.txtStartMS = "00:01:00";
    f.txtTrackTitle = "Opening";
    EXPECT_TRUE(checkChanges(f, t));
    saveTrack(p, 0, f, {"Live", "Band", "0123456789012"});
    EXPECT_EQ(t.Length + t.PregapType + t.ID3merged + p.rows[0].length, "00:09:00PRE_TRACKOpening00:09:00");
    EXPECT_EQ(p.strAlbumTitle + p.strAlbumArtist + p.strAlbumCatalog, "LiveBand0123456789012");
}

TEST(TrackSplit, PiecesFromTheDatabaseOrTypedAndWhenNothingIsCut) {
    const struct {
        std::size_t tracks;
        std::string length;
        bool database;
        std::string typed;
        std::vector<std::string> rows, boxes;
    } cases[] = {
        {2, "00:10:00", false, "", {}, {"Only one track may exist in project to be split."}},
        {1, "00:00:00", false, "", {}, {"WARNING:  Original track length is unknown!"}},
        {1,
         "00:10:00",
         true,
         "",
         {"[One] 00:00:00+00:03:00=00:03:00 00:02:00 PREGAP One/Band Album",
          "[Two] 00:03:00+00:04:00=00:07:00 00:00:00 PRE_TRACK Two/Guest Album (s)",
          "[Three] 00:07:00+00:03:00=00:10:00 00:00:00 PRE_TRACK Three/Band Album (s)"},
         {}},
        {1,
         "00:10:00",
         false,
         "00:04:00 junk 99:00:00 00:04:00",
         {"[ 001 ] 00:00:00+00:04:00=00:04:00 00:02:00 PREGAP / ",
          "[ 002] 00:04:00+00:04:00=00:08:00 00:00:00 PRE_TRACK /  (s)",
          "[ 003] 00:08:00+00:02:00=00:10:00 00:00:00 PRE_TRACK /  (s)"},
         {}},
        {1, "00:10:00", false, "00:10:00 00:11:00", {}, {}},
    };
    for (const auto &c : cases) {
        AudioTestHost h;
        AudioProject p;
        for (std::size_t i = 0; i < c.tracks; ++i)
            p.appendTrack(trackRecord("/m/live.wav", c.length, "00:02:00"), "live");
        if (c.database)
            h.host.GetTrackLengths = [] {
                return std::make_optional(std::make_pair(
                    std::vector<std::string>{"00:03:00", "00:04:00", "55:00:00"},
                    FreedbResult{{"Album", "Band"}, {"One", "Band"}, {"Two", "Guest"}, {"Three", "Band"}}));
            };
        h.dialogs.answer(c.typed);
        const bool cut = splitTrack(p, SplitSource::Database, true, h.host);
        EXPECT_EQ(cut, !c.rows.empty()) << c.typed;
        std::vector<std::string> rows;
        for (std::size_t i = 0; cut && i < p.count(); ++i) {
            const AudioObjects &t = p.track(i);
            rows.push_back("[" + p.rows[i].text + "] " + t.Start + "+" + t.Length + "=" + t.Finish + " " +
                           t.Pause + " " + t.PregapType + " " + t.Title + "/" + t.Artist + " " + t.Album +
                           (p.rows[i].Tag.ends_with("(s)") ? " (s)" : ""));
            EXPECT_TRUE(t.IsSplit && t.FullPath == "/m/live.wav" && t.OrigLength == "00:10:00");
        }
        EXPECT_EQ(rows, c.rows) << c.typed;
        EXPECT_EQ(h.boxes(), c.boxes) << c.typed;
        if (!c.typed.empty()) {
            EXPECT_EQ(
                h.dialogs.prompts.front().text,
                "Enter track lengths as mm:ss:ff and separated with a space.  Erroneous data is ignored.");
        }
    }
}
