// What the frame of a write reports, the caption while it runs, the
// version text and where the main window goes on the screen.
#include "shell/WriteFrame.h"

#include <gtest/gtest.h>

#include "shell/VersionText.h"
#include "shell/WindowPlacement.h"

using namespace saltmarrow;

namespace {

// What an outcome does, as words: its status key, then each thing it does.
std::string shown(const WriteOutcome &out) {
    std::string words = out.statusKey;
    for (const auto &[on, word] : {std::pair{out.showMessageBox, " box"},
                                   {out.playAsterisk, " sound"},
                                   {out.restoreFromTray, " restore"},
                                   {out.setSpeedPanel, " speed"},
                                   {out.offerDelete, " delete"}})
        if (on) words += word;
    return words;
}

TEST(WriteOutcome, FromTheFlags) {
    struct Row {
        const char *what;
        WriteOutcomeInput in;  // succeeded, failed, cancelled, confirm, delete images, mode
        std::string shown;
    };
    const Row rows[] = {
        {"success", {true, false, false, false, true, Mode::WriteCD}, "msgWriteSuccess sound speed delete"},
        {"success, confirmed",
         {true, false, false, true, false, Mode::AudioCD},
         "msgWriteSuccess box restore speed"},
        {"no word of success",
         {false, false, false, true, true, Mode::WriteCD},
         "msgErrorsLogged box restore speed"},
        {"a failure line outweighs a success line",
         {true, true, false, true, true, Mode::WriteCD},
         " restore speed"},
        {"cancelled", {true, false, true, false, true, Mode::WriteCD}, "msgWriteCancelled sound"},
        {"an erase has no box",
         {true, false, false, true, false, Mode::EraseCD},
         "msgWriteSuccess restore speed"},
        {"nor a sound", {true, false, false, false, false, Mode::EraseCD}, "msgWriteSuccess speed"},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.what);
        WriteOutcomeInput in = row.in;
        in.elapsedSeconds = 3725;
        const WriteOutcome out = decideWriteOutcome(in);
        EXPECT_EQ(shown(out), row.shown);
        if (out.statusKey == "msgWriteSuccess") {
            EXPECT_EQ(out.elapsedText, "1hrs 2mins 5secs");
        }
    }
}

TEST(WriteOutcome, CaptionsOfTheWriteModesAndTheVersion) {
    EXPECT_TRUE(isWriteMode(Mode::DataDVD));
    EXPECT_FALSE(isWriteMode(Mode::EraseCD));
    EXPECT_EQ(progressCaption(5, 100, "saltmarrow"), "05% saltmarrow");
    EXPECT_EQ(progressCaption(300, 600, "saltmarrow"), "50% saltmarrow");
    EXPECT_EQ(progressCaption(0, 0, "saltmarrow"), "00% saltmarrow");
    EXPECT_EQ(versionText(1, 4, 0), "1.4");
    EXPECT_EQ(versionText(1, 4, 1), "1.4a");
    EXPECT_EQ(versionText(1, 4, 2, "beta"), "1.4b beta");
}

TEST(WindowPlacement, OnTheScreenWithTheLogBelow) {
    const Area screen{0, 0, 1280, 1024};
    struct Row {
        int width, height, log;
        std::optional<Point> wanted;
        Point at;
    };
    const Row rows[] = {
        {736, 300, 0, std::nullopt, {272, 362}},       // centred
        {736, 300, 230, std::nullopt, {272, 247}},     // the group centred
        {736, 300, 230, Point{100, 620}, {100, 494}},  // moved up just enough for the log
        {736, 300, 0, Point{900, -40}, {544, 0}},      // pulled in from the right and the top
        {736, 900, 230, Point{100, 50}, {100, 0}},     // taller than the screen: the top stays on it
    };
    for (const Row &row : rows) {
        const Point at = placeMainForm(screen, row.width, row.height, row.log, row.wanted);
        EXPECT_EQ(at.x, row.at.x) << row.height << "/" << row.log;
        EXPECT_EQ(at.y, row.at.y) << row.height << "/" << row.log;
    }
}

}  // namespace
