#include "exec/OutputInterpreter.h"

#include <gtest/gtest.h>

#include "RecordingView.h"
#include "support/RuntimeError.h"

using namespace saltmarrow;
using saltmarrow::test::RecordingView;

namespace {

struct Interpreter : ::testing::Test {
    RecordingView view;
    InterpreterState state;
    OutputInterpreter interpreter{view, state, view.clock()};

    void feed(Mode mode, std::initializer_list<std::string> lines) {
        view.mode = mode;
        for (const auto &l : lines) interpreter.objDOS_ReceiveOutputs(l);
    }
};

// ------------------------------------------------------------ CD writing

TEST_F(Interpreter, FirstMegabyteIsHiddenButShowsNothing) {
    feed(Mode::WriteCD, {"Wrote 1 of 700 MB (Buffer 100%)."});
    EXPECT_TRUE(view.log.empty());
    EXPECT_TRUE(view.progressEvents().empty());
    EXPECT_TRUE(view.status.empty());
    EXPECT_EQ(view.commandLog, std::vector<std::string>{"Wrote 1 of 700 MB (Buffer 100%)."});
}

TEST_F(Interpreter, LastMegabyteIgnoresTheThrottleAndShowsBufferFullAs99) {
    feed(Mode::AudioCD, {"Wrote 650 of 700 MB (Buffer 100%)."});
    ASSERT_EQ(view.status, "Wrote 650 of 700 MB (Buffer 99%)");
    view.now += 0.1;
    feed(Mode::AudioCD, {"Wrote 651 of 700 MB (Buffer 97%).", "Wrote 700 of 700 MB (Buffer 100%)."});
    EXPECT_EQ(view.status, "Wrote 700 of 700 MB (Buffer 99%)");
    // Value is set before Max, as the bar has always been driven.
    EXPECT_EQ(view.progressEvents(),
              (std::vector<std::string>{"value 650", "max 700", "value 700", "max 700"}));
    EXPECT_TRUE(view.log.empty());
}

TEST_F(Interpreter, ProgressIsThrottledToTwoUpdatesASecond) {
    const char *lines[] = {"Wrote 3 of 10 MB (Buffer 98%).", "Wrote 4 of 10 MB (Buffer 98%).",
                           "Wrote 5 of 10 MB (Buffer 98%).", "Wrote 6 of 10 MB (Buffer 98%)."};
    std::vector<std::string> shown;
    for (const char *l : lines) {
        feed(Mode::DataCD, {l});
        shown.push_back(view.status);
        view.now += 0.3;
    }
    // 3 at 0.0 s, 4 at 0.3 s is too soon, 5 at 0.6 s, 6 at 0.9 s too soon again.
    EXPECT_EQ(shown,
              (std::vector<std::string>{"Wrote 3 of 10 MB (Buffer 98%)", "Wrote 3 of 10 MB (Buffer 98%)",
                                        "Wrote 5 of 10 MB (Buffer 98%)", "Wrote 5 of 10 MB (Buffer 98%)"}));
}

TEST_F(Interpreter, SecondMegabytePassesTheThrottleWithoutResettingIt) {
    feed(Mode::WriteCD, {"Wrote 2 of 10 MB (Buffer 100%)."});
    EXPECT_TRUE(view.progressEvents().empty());
    feed(Mode::WriteCD, {"Wrote 3 of 10 MB (Buffer 100%)."});  // same instant: 2 left no time behind
    EXPECT_EQ(view.status, "Wrote 3 of 10 MB (Buffer 99%)");
}

TEST_F(Interpreter, ProgressWithoutBufferFigureAndBadNumbers) {
    feed(Mode::WriteCD, {"Wrote 12 of 700 MB."});
    EXPECT_EQ(view.status, "Wrote 12 of 700 MB");
    view.now += 1;
    EXPECT_THROW(feed(Mode::WriteCD, {"Wrote x of 700 MB (Buffer 100%)."}), RuntimeError);
}

TEST_F(Interpreter, BothProgressFormsOfDebiansCdrdaoShowTheProgramsBuffer) {
    // "%3d" pads the figures; the drive's own buffer is the second one.
    const std::pair<const char *, const char *> lines[] = {
        {"Wrote 5 of 700 MB (Buffers 100%  99%).", "Wrote 5 of 700 MB (Buffer 99%)"},
        {"Wrote 6 of 700 MB (Buffers   7%  98%).", "Wrote 6 of 700 MB (Buffer 7%)"},
        {"Wrote 7 of 700 MB (Buffer  42%).", "Wrote 7 of 700 MB (Buffer 42%)"},
        {"Wrote 700 of 700 MB (Buffers  63% 100%).", "Wrote 700 of 700 MB (Buffer 63%)"},
    };
    for (const auto &[line, status] : lines) {
        view.now += 1;
        EXPECT_NO_THROW(feed(Mode::WriteCD, {line})) << line;
        EXPECT_EQ(view.status, status) << line;
    }
}

TEST_F(Interpreter, ChainTranslatesTheFirstHitAndSetsTheOutcome) {
    struct Case {
        const char *line;
        const char *status;
        bool fails;
    } cases[] = {
        {"Starting write at speed 16...", "Starting write at speed 16...", false},
        {"Cannot erase CD-RW, sorry", "Cannot erase disc, sorry", false},
        {"ERROR: Blanking failed.", "ERROR: Blanking failed.", false},
        {"ERROR: Cannot setup device SPTI:1,0,0.", "Could not setup device SPTI:1,0,0.", true},
        {"ERROR: Inserted disk is not empty and not appendable.",
         "ERROR: Inserted medium is not blank and not appendable.", true},
        {"ERROR: c:\\music\\a is corrupted.wav",
         "ERROR: c:\\music\\a Bad file referenced in toc/cue file - see log for "
         "more details..wav",
         true},
        {"mkisofs -graft-points -path-list x", "mkisofs Scanning source files... -path-list x", true},
        {"ERROR: Writing failed.", "ERROR: Write failed, please consult the log.", true},
    };
    for (const Case &c : cases) {
        RecordingView v;
        InterpreterState s;
        OutputInterpreter i(v, s, v.clock());
        v.mode = Mode::WriteCD;
        i.objDOS_ReceiveOutputs(c.line);
        EXPECT_EQ(v.status, c.status) << c.line;
        EXPECT_EQ(v.writeFailed, c.fails) << c.line;
        EXPECT_EQ(v.log, c.line) << "chain lines stay in the log";
    }
    // "Blanking disk..." comes before "Write data failed." in the chain and ends it.
    feed(Mode::EraseCD, {"Blanking disk... Write data failed."});
    EXPECT_EQ(view.status, "Blanking disc... Write data failed.");
    EXPECT_FALSE(view.writeFailed);
}

TEST_F(Interpreter, OutcomeSoundsAndHiddenAbortHint) {
    feed(Mode::EraseCD, {"Blanking time: 60s"});
    EXPECT_TRUE(view.writeSucceeded);
    feed(Mode::CopyCD, {"Process can be aborted with QUIT signal (usually CTRL-\\).",
                     "WARNING: Unit not ready, still trying..."});
    EXPECT_EQ(view.status, "WARNING: Device not ready, still trying...");
    EXPECT_EQ(view.recordedSounds.played, std::vector<std::string>{"DeviceFail"});
    EXPECT_EQ(view.log, "Blanking time: 60s\r\nWARNING: Unit not ready, still trying...");
}

TEST_F(Interpreter, TrackLineShowsOnlyBeforeTheBarRuns) {
    feed(Mode::WriteCD, {"Writing track 01 (mode 1/2048)"});
    EXPECT_EQ(view.status, "Writing Track 01...");
    view.value = 5;
    view.status = "Wrote 5 of 10 MB";
    feed(Mode::WriteCD, {"Writing track 02 (mode 1/2048)"});
    EXPECT_EQ(view.status, "Wrote 5 of 10 MB");
}

TEST_F(Interpreter, EmptyTranslationShowsNothing) {
    view.texts["logBlankingDisc"] = "";
    view.status = "before";
    feed(Mode::EraseCD, {"Blanking disk..."});
    EXPECT_EQ(view.status, "before");
}

// ------------------------------------------------------------ dispatch

TEST_F(Interpreter, VersionInfoKeepsOnlyTheFirstLine) {
    feed(Mode::VersionInfo, {"", "Cdrdao version 1.2.4", "second", ""});
    EXPECT_EQ(view.log, "Cdrdao version 1.2.4");
    EXPECT_EQ(view.mode, Mode::HideMe);
    EXPECT_EQ(view.commandLog.size(), 4u);
}

TEST_F(Interpreter, GlobalHidesReloadTextAndUnknownModes) {
    feed(Mode::None, {"Initializing...", "Using driver: Generic SCSI-3/MMC", "plain line",
              "if a simulation run was performed before. Reload the medium in this case."});
    feed(Mode::DiscInfo,
         {"Initializing", "That data below may not reflect the real status of the inserted medium"});
    EXPECT_EQ(view.log, "plain line\r\nMedia should be reloaded if a simulation was performed before.");
    feed(Mode::HideMe, {"anything"});
    EXPECT_EQ(view.commandLog.size(), 7u);
    EXPECT_EQ(view.log.find("anything"), std::string::npos);
}

TEST_F(Interpreter, DiscInfoWarnsButShowsTheLine) {
    feed(Mode::DiscInfo, {"WARNING: Unit not ready, still trying..."});
    EXPECT_EQ(view.status, "WARNING: Drive not ready, still trying...");
    EXPECT_EQ(view.recordedSounds.played, std::vector<std::string>{"DeviceFail"});
    EXPECT_EQ(view.log, "WARNING: Unit not ready, still trying...");
}

TEST(InterpreterTools, ToolPrefixesAreRemovedWhateverTheirCase) {
    RecordingView view;
    InterpreterState state;
    OutputInterpreter interpreter(view, state, view.clock(), "/cygdrive/C/prog/external");
    view.mode = Mode::None;
    interpreter.objDOS_ReceiveOutputs("/CYGDRIVE/c/prog/external/mkisofs: 12.5% done");
    interpreter.objDOS_ReceiveOutputs("/cygdrive/C/prog/external/dvdrecord: fifo was 0 times empty");
    interpreter.objDOS_ReceiveOutputs("/usr/bin/mkisofs: stays");
    EXPECT_EQ(view.log, "12.5% done\r\nfifo was 0 times empty\r\n/usr/bin/mkisofs: stays");
    EXPECT_EQ(view.commandLog.front(), "/CYGDRIVE/c/prog/external/mkisofs: 12.5% done");
}

TEST_F(Interpreter, DvdSizeRunIsStoppedOnceTheWriterStarts) {
    feed(Mode::DVDSize,
         {"Blocks total: 2295104 Blocks current: 2295104", "Starting to write CD/DVD at speed 4"});
    EXPECT_EQ(view.kills, 1);
    EXPECT_TRUE(view.log.empty());
}

// ------------------------------------------------------------ DVD writing

TEST_F(Interpreter, DvdProgressSetsMaxBeforeValue) {
    feed(Mode::WriteDVD, {"Track 01:   12 of  700 MB written (fifo 100%) [buf  99%]"});
    EXPECT_EQ(view.progressEvents(), (std::vector<std::string>{"max 700", "value 12"}));
    EXPECT_EQ(view.status, "Wrote 12 of 700 MB (Buffer 99%)");
    view.now += 0.2;
    feed(Mode::DataDVD, {"Track 01:   13 of  700 MB written (fifo  88%) [buf  99%]"});
    EXPECT_EQ(view.status, "Wrote 12 of 700 MB (Buffer 99%)");
    view.now += 0.4;
    feed(Mode::DataDVD, {"Track 01:   14 of  700 MB written (fifo  88%) [buf  99%]"});
    EXPECT_EQ(view.status, "Wrote 14 of 700 MB (Buffer 88%)");
    EXPECT_TRUE(view.log.empty());
}

TEST_F(Interpreter, DvdHidesChainAndOutcome) {
    feed(Mode::WriteDVD, {"", "scsidev: 'SPTILOCK:1,0,0'", "Last chance to quit, starting real write",
                       "Starting to write CD/DVD at speed 4 in real SAO mode for single session."});
    EXPECT_EQ(view.status, "Starting write at speed 4...");
    EXPECT_EQ(view.log, "Starting to write CD/DVD at speed 4 in real SAO mode for single session.");
    feed(Mode::WriteDVD, {"", "Writing track 01 (mode 1/2048)"});
    EXPECT_EQ(view.status, "Starting write at speed 4...") << "track lines are not in the DVD chain";
    EXPECT_NE(view.log.find("\r\n\r\n"), std::string::npos) << "an empty line shows once the log has text";
    feed(Mode::WriteDVD, {"Writing  time:   12.345s"});
    EXPECT_TRUE(view.writeSucceeded);
    feed(Mode::WriteDVD, {"Write data failed."});
    EXPECT_TRUE(view.writeFailed);
}

// ------------------------------------------------------------ reading

TEST_F(Interpreter, ReadTimeStampsMoveTheBar) {
    state.readSectors = 1500;
    feed(Mode::ReadCD, {"00:10:00"});
    EXPECT_EQ(state.readSector, 750);
    EXPECT_TRUE(view.log.empty());
    EXPECT_EQ(view.status, "Cdrdao Reading Sector #750");
    EXPECT_EQ(view.progressEvents(), (std::vector<std::string>{"max 100", "value 50"}));
    EXPECT_EQ(view.caption, "50% - saltmarrow");
    EXPECT_EQ(view.trayTip, "50% - saltmarrow");

    view.now += 0.2;
    feed(Mode::ReadCD, {"00:20:00"});
    EXPECT_EQ(view.status, "Cdrdao Reading Sector #750") << "throttled";
    EXPECT_EQ(state.readSector, 1500);
    view.now += 0.4;
    interpreter.objDOS_nullOutputs();  // quiet tool: the display still moves
    EXPECT_EQ(view.status, "Cdrdao Reading Sector #1500");
    EXPECT_EQ(view.value, 100);
}

TEST_F(Interpreter, ReadWarningsAndBarCap) {
    state.readSectors = 100;
    feed(Mode::ReadCD, {"This drive does not support RW sub-channel reading."});
    EXPECT_EQ(view.status, "This drive does not support RW sub-channel reading.");
    view.now += 1;
    feed(Mode::ReadCD, {"This drive does not support RW_RAW sub-channel reading."});
    EXPECT_EQ(view.status, "This drive does not support RW_RAW sub-channel reading.");
    view.now += 1;
    feed(Mode::ReadCD, {"00:02:00"});
    EXPECT_EQ(view.value, 100);
    EXPECT_EQ(view.caption, "150% - saltmarrow");
    view.mode = Mode::WriteCD;
    const auto before = view.events.size();
    view.now += 1;
    interpreter.objDOS_nullOutputs();
    EXPECT_EQ(view.events.size(), before);
}

TEST_F(Interpreter, TocLeadoutGivesTheDiscLengthAndStopsTheTool) {
    feed(Mode::ReadTOC, {" 1      AUDIO   0      00:00:00(     0)     04:13:50( 19025)"});
    EXPECT_EQ(view.kills, 0);
    feed(Mode::ReadTOC, {"Leadout AUDIO   0      61:25:10(276385)"});
    EXPECT_FLOAT_EQ(state.readSectors, 276385.0f);
    EXPECT_FLOAT_EQ(state.discBytes, 276385.0f * 2352.0f);
    EXPECT_EQ(view.kills, 1);
    EXPECT_NE(view.log.find("Leadout"), std::string::npos);
}

TEST_F(Interpreter, ReadFrameReportsOutcome) {
    view.run = [this](const std::string &) {
        view.now += 75;
        return true;
    };
    EXPECT_TRUE(interpreter.readcd("\"cdrdao\" read-cd"));
    EXPECT_EQ(view.status, "Read Operation Completed after 75 Secs");
    EXPECT_EQ(view.frame, (std::vector<std::string>{"autohide", "enable 01", "execute \"cdrdao\" read-cd",
                                                    "restore", "enable 10"}));
    EXPECT_EQ(view.caption, "saltmarrow");
    EXPECT_FALSE(state.reading);

    view.run = [](const std::string &) { return false; };
    EXPECT_FALSE(interpreter.readcd("x"));
    EXPECT_EQ(view.status, "Read Operation Cancelled");
}

TEST(ProperCase, WordsStartAfterBlanksOnly) {
    EXPECT_EQ(properCase("writing TRACK 01 (mode 1/2048)"), "Writing Track 01 (mode 1/2048)");
}

}  // namespace
