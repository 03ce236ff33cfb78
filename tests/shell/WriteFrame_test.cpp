#include <gtest/gtest.h>

#include "exec/LogDocking.h"
#include "shell/WriteFrame.h"
#include "support/ErrorReport.h"
#include "support/RuntimeError.h"
#include "support/TimeText.h"

using namespace saltmarrow;

TEST(WriteOutcome, SuccessReportsTheElapsedTimeAndOffersTheImage) {
    WriteOutcomeInput in;
    in.writeSucceeded = true;
    in.mode = "WRITE CD";
    in.elapsedSeconds = 3725;
    in.deleteImages = true;
    WriteOutcome out = decideWriteOutcome(in);
    EXPECT_EQ(out.statusKey, "msgWriteSuccess");
    EXPECT_EQ(out.elapsedText, "1hrs 2mins 5secs");
    EXPECT_TRUE(out.playAsterisk);
    EXPECT_FALSE(out.showMessageBox);
    EXPECT_TRUE(out.offerDelete);
    EXPECT_TRUE(out.setSpeedPanel);

    in.confirmWrite = true;
    out = decideWriteOutcome(in);
    EXPECT_TRUE(out.showMessageBox);
    EXPECT_TRUE(out.restoreFromTray);
    EXPECT_FALSE(out.playAsterisk) << "the box stands in for the sound";
}

TEST(WriteOutcome, FailureCancelAndErasing) {
    WriteOutcomeInput in;
    in.mode = "WRITE CD";
    in.confirmWrite = true;
    WriteOutcome nothing = decideWriteOutcome(in);
    EXPECT_EQ(nothing.statusKey, "msgErrorsLogged");
    EXPECT_TRUE(nothing.showMessageBox);

    in.writeFailed = true;
    in.writeSucceeded = true;  // a failure line outweighs a success line
    WriteOutcome failed = decideWriteOutcome(in);
    EXPECT_TRUE(failed.statusKey.empty()) << "the interpreter's own status stays";
    EXPECT_FALSE(failed.offerDelete);

    in.writeCancelled = true;
    WriteOutcome cancelled = decideWriteOutcome(in);
    EXPECT_EQ(cancelled.statusKey, "msgWriteCancelled");
    EXPECT_FALSE(cancelled.setSpeedPanel);

    WriteOutcomeInput erase;
    erase.mode = "ERASE CD";
    erase.writeSucceeded = true;
    erase.confirmWrite = true;
    WriteOutcome erased = decideWriteOutcome(erase);
    EXPECT_EQ(erased.statusKey, "msgWriteSuccess");
    EXPECT_FALSE(erased.showMessageBox);
    erase.confirmWrite = false;
    EXPECT_FALSE(decideWriteOutcome(erase).playAsterisk);
}

TEST(WriteOutcome, CaptionsAndTimeTexts) {
    EXPECT_TRUE(isWriteMode("DATA DVD"));
    EXPECT_FALSE(isWriteMode("ERASE CD"));
    EXPECT_FALSE(isWriteMode("write cd"));
    EXPECT_EQ(progressCaption(5, 100, "saltmarrow"), "05% saltmarrow");
    EXPECT_EQ(progressCaption(300, 600, "saltmarrow"), "50% saltmarrow");
    EXPECT_EQ(progressCaption(0, 0, "saltmarrow"), "00% saltmarrow");
    EXPECT_EQ(secondsToText(0), "00mins 00secs");
    EXPECT_EQ(secondsToText(183), "3mins 3secs");
    EXPECT_EQ(elapsedTimeText(59, "h", "m", "s"), "0m 59s");
    EXPECT_EQ(elapsedTimeText(3600, "Std", "Min", "Sek"), "1Std 00Min 00Sek");
    EXPECT_EQ(versionText(1, 4, 0), "1.4");
    EXPECT_EQ(versionText(1, 4, 1), "1.4a");
    EXPECT_EQ(versionText(1, 4, 2, "beta"), "1.4b beta");
}

TEST(LogDocking, FollowsTheMainFormAndSnapsWithinReach) {
    WindowRect main{1500, 3000, 9000, 2120};
    const int edge = 3000 + 2120;
    DockMove follow = mainWindowMoved(main, true);
    EXPECT_TRUE(follow.move);
    EXPECT_EQ(follow.top, edge);
    EXPECT_EQ(follow.left, 1500);
    EXPECT_FALSE(mainWindowMoved(main, false).move);

    DockMove snap = logWindowMoved(main, edge + 299, 1500 - 499, false);
    EXPECT_TRUE(snap.docked);
    EXPECT_TRUE(snap.move);
    EXPECT_TRUE(snap.endDrag);
    EXPECT_EQ(snap.top, edge);
    EXPECT_EQ(snap.left, 1500);
    DockMove stay = logWindowMoved(main, edge + 10, 1500, true);
    EXPECT_TRUE(stay.docked);
    EXPECT_FALSE(stay.move);
    // The bounds are strict.
    EXPECT_FALSE(logWindowMoved(main, edge + 300, 1500, true).docked);
    EXPECT_FALSE(logWindowMoved(main, edge - 300, 1500, true).docked);
    EXPECT_FALSE(logWindowMoved(main, edge, 1500 + 500, true).docked);
    EXPECT_FALSE(logWindowMoved(main, edge, 1500 - 500, false).move);
}

namespace {
struct RecordingReporter : ErrorReporter {
    bool answer = true;
    std::vector<std::string> reports;
    bool ErrorReport(int number, const std::string &description, const std::string &module,
                     const std::string &procedure, int line) override {
        reports.push_back(errorReportText(number, description, module, procedure, line, "1.0", "6.1\tDebian"));
        return answer;
    }
};
}  // namespace

TEST(ErrorReport, TextWithAndWithoutLineAndDescription) {
    EXPECT_EQ(errorReportText(13, "Type mismatch", "frmMain", "loadSettings", 0, "0.1", "6.1.0\tDebian 12"),
              "Error 13: Type mismatch\r\nError occurred in: frmMain:loadSettings\r\nApp Version: 0.1\r\n"
              "Linux Version: 6.1.0\tDebian 12");
    std::string withLine = errorReportText(5, "", "frmMain", "cmdWrite_Click", 120, "0.1", "x");
    EXPECT_EQ(withLine.substr(0, withLine.find("\r\n")), "Error 5: ");
    EXPECT_NE(withLine.find("Error occurred in: frmMain:cmdWrite_Click:120\r\n"), std::string::npos);
}

TEST(ErrorReport, GuardReportsWhatEscapesAHandler) {
    RecordingReporter reporter;
    int terminated = 0;
    bool ran = false;
    guard(reporter, "frmMain", "ok_Click", [&] { ran = true; }, [&] { ++terminated; });
    EXPECT_TRUE(ran);
    EXPECT_TRUE(reporter.reports.empty());

    guard(reporter, "frmMain", "loadSettings", [] { raiseError(13); }, [&] { ++terminated; });
    ASSERT_EQ(reporter.reports.size(), 1u);
    EXPECT_EQ(reporter.reports[0].substr(0, 23), "Error 13: Type mismatch");
    EXPECT_NE(reporter.reports[0].find("frmMain:loadSettings"), std::string::npos);
    EXPECT_EQ(terminated, 0) << "Ignore goes on";

    reporter.answer = false;
    guard(reporter, "frmMain", "x", [] { throw std::runtime_error("disk gone"); }, [&] { ++terminated; });
    EXPECT_EQ(terminated, 1);
    EXPECT_NE(reporter.reports.back().find("disk gone"), std::string::npos);
}
