#include "exec/OutputInterpreter.h"

#include <gtest/gtest.h>

#include <functional>

#include "EnglishTexts.h"
#include "support/RuntimeError.h"
#include "testlib/RecordingSounds.h"

using namespace saltmarrow;

namespace {

// The main form as far as the interpreter reaches it: records what it is
// told, in order, and keeps a clock that only moves when the test says so.
class RecordingView : public InterpreterView {
public:
    // "value N", "max N", "status TEXT", "caption TEXT", "kill", "execute COMMAND", ...
    std::vector<std::string> events;
    int value = 0;
    std::string status, log, caption;
    std::vector<std::string> commandLog;
    Mode mode = Mode::None;
    bool writeSucceeded = false, writeFailed = false;
    double now = 1000.0;  // seconds since midnight
    test::RecordingSounds recordedSounds;
    std::function<bool(const std::string &)> run;  // commandExecute

    std::vector<std::string> progressEvents() const {
        std::vector<std::string> out;
        for (const auto &e : events)
            if (e.rfind("value ", 0) == 0 || e.rfind("max ", 0) == 0) out.push_back(e);
        return out;
    }
    int count(const std::string &event) const {
        return static_cast<int>(std::count(events.begin(), events.end(), event));
    }

    int progressValue() const override { return value; }
    void setProgressValue(int v) override { events.push_back("value " + std::to_string(value = v)); }
    void setProgressMax(int m) override { events.push_back("max " + std::to_string(m)); }
    void setStatus(const std::string &text) override { events.push_back("status " + (status = text)); }
    bool logEmpty() const override { return log.empty(); }
    void appendLog(const std::string &line) override { log += (log.empty() ? "" : "\r\n") + line; }
    void clearLog() override { log.clear(); }
    void setCaption(const std::string &text) override { events.push_back("caption " + (caption = text)); }
    void setTrayTip(const std::string &) override {}
    void setWriteSucceeded() override { writeSucceeded = true; }
    void setWriteFailed() override { writeFailed = true; }
    bool killInstantly() override {
        events.push_back("kill");
        return true;
    }
    void letEventsRun() override {}
    std::string message(std::string_view key) const override { return test::englishText(key); }
    platform::Sounds &sounds() override { return recordedSounds; }
    void writeCommandLog(const std::string &line) override { commandLog.push_back(line); }
    Mode currentMode() const override { return mode; }
    void ChangeCurrentMode(Mode m) override { mode = m; }
    bool commandExecute(const std::string &command) override {
        events.push_back("execute " + command);
        return run ? run(command) : false;
    }
    void autoHideSettings() override { events.push_back("autohide"); }
    void enableControls(bool enable, bool cancellable) override {
        events.push_back(std::string("enable ") + (enable ? "1" : "0") + (cancellable ? "1" : "0"));
    }
    void restoreWindow() override { events.push_back("restore"); }
    std::string elapsedTimeText(long seconds) const override { return std::to_string(seconds) + " Secs"; }
};

struct Interpreter : ::testing::Test {
    RecordingView view;
    InterpreterState state;
    OutputInterpreter interpreter{view, state, [this] { return view.now; }};

    // Each line a step of the clock later.
    void feed(Mode mode, std::initializer_list<std::string> lines, double step = 0) {
        view.mode = mode;
        for (const auto &l : lines) {
            interpreter.objDOS_ReceiveOutputs(l);
            view.now += step;
        }
    }
};

TEST_F(Interpreter, CDProgressAtMostTwiceASecondAndAlwaysAtTheEnd) {
    // Megabytes 1 and 2 show nothing; 3 does; then the throttle; the last
    // always. The value is set before the maximum; a full buffer shows 99.
    feed(Mode::WriteCD,
         {"Wrote 1 of 10 MB (Buffer 100%).", "Wrote 2 of 10 MB (Buffer 100%).",
          "Wrote 3 of 10 MB (Buffer 100%).", "Wrote 4 of 10 MB (Buffer 98%).",
          "Wrote 5 of 10 MB (Buffer 98%).", "Wrote 10 of 10 MB (Buffer 97%)."},
         0.3);
    EXPECT_EQ(view.progressEvents(),
              (std::vector<std::string>{"value 3", "max 10", "value 5", "max 10", "value 10", "max 10"}));
    EXPECT_EQ(view.status, "Wrote 10 of 10 MB (Buffer 97%)");
    EXPECT_TRUE(view.log.empty());
    EXPECT_EQ(view.commandLog.size(), 6u) << "every line reaches the log file";

    // Both forms of Debian's cdrdao show the program's buffer, the first figure.
    const std::pair<const char *, const char *> forms[] = {
        {"Wrote 5 of 700 MB (Buffers 100%  99%).", "Wrote 5 of 700 MB (Buffer 99%)"},
        {"Wrote 6 of 700 MB (Buffers   7%  98%).", "Wrote 6 of 700 MB (Buffer 7%)"},
        {"Wrote 7 of 700 MB.", "Wrote 7 of 700 MB"},
    };
    for (const auto &[line, status] : forms) {
        view.now += 1;
        feed(Mode::AudioCD, {line});
        EXPECT_EQ(view.status, status);
    }
    EXPECT_THROW(feed(Mode::DataCD, {"Wrote x of 700 MB (Buffer 100%)."}), RuntimeError);
}

TEST_F(Interpreter, TheChainTranslatesTheFirstHitAndSetsTheOutcome) {
    struct Row {
        const char *line, *status;
        bool fails;
    };
    const Row rows[] = {
        {"Starting write at speed 16...", "Starting write at speed 16...", false},
        {"ERROR: Cannot setup device /dev/sr0.", "Could not setup device /dev/sr0.", true},
        {"ERROR: c:\\music\\a is corrupted.wav",
         "ERROR: c:\\music\\a Bad file referenced in toc/cue file - see log for more details..wav", true},
        // "Blanking disk..." comes before "Write data failed." in the chain and ends it.
        {"Blanking disk... Write data failed.", "Blanking disc... Write data failed.", false},
    };
    for (const Row &row : rows) {
        view.log.clear();
        view.writeFailed = false;
        feed(Mode::WriteCD, {row.line});
        EXPECT_EQ(view.status, row.status);
        EXPECT_EQ(view.writeFailed, row.fails) << row.line;
        EXPECT_EQ(view.log, row.line) << "chain lines stay in the log";
    }
    view.log.clear();
    feed(Mode::EraseCD, {"Blanking time: 60s"});
    EXPECT_TRUE(view.writeSucceeded);
    feed(Mode::CopyCD, {"Process can be aborted with QUIT signal (usually CTRL-\\).",
                        "WARNING: Unit not ready, still trying...", "Writing track 01 (mode 1/2048)"});
    EXPECT_EQ(view.recordedSounds.played, std::vector<std::string>{"DeviceFail"});
    EXPECT_EQ(view.status, "Writing Track 01...");
    EXPECT_EQ(
        view.log,
        "Blanking time: 60s\r\nWARNING: Unit not ready, still trying...\r\nWriting track 01 (mode 1/2048)");
    // A track line shows only before the bar runs: the translation is emptied.
    view.value = 5;
    feed(Mode::WriteCD, {"Writing track 02 (mode 1/2048)"});
    EXPECT_EQ(view.status, "Writing Track 01...");
}

TEST_F(Interpreter, WhatEachModeShows) {
    feed(Mode::VersionInfo, {"", "Cdrdao version 1.2.4", "second", ""});
    EXPECT_EQ(view.log, "Cdrdao version 1.2.4") << "the first line with anything on it";
    EXPECT_EQ(view.mode, Mode::HideMe);
    feed(Mode::HideMe, {"anything"});
    feed(Mode::None, {"Initializing...", "Using driver: Generic SCSI-3/MMC", "plain line",
                      "if a simulation run was performed before. Reload the medium in this case."});
    feed(Mode::Reset, {"That data below may not reflect the real status of the inserted medium", "unlocked"});
    EXPECT_EQ(view.log,
              "Cdrdao version 1.2.4\r\nplain line\r\n"
              "Media should be reloaded if a simulation was performed before.\r\nunlocked");
    feed(Mode::DiscInfo, {"WARNING: Unit not ready, still trying..."});
    EXPECT_EQ(view.status, "WARNING: Drive not ready, still trying...");
    EXPECT_EQ(view.recordedSounds.played, std::vector<std::string>{"DeviceFail"});
    feed(Mode::DVDSize,
         {"Blocks total: 2295104 Blocks current: 2295104", "Starting to write CD/DVD at speed 4"});
    EXPECT_EQ(view.count("kill"), 1) << "the size run is stopped once the writer starts";

    RecordingView v;
    OutputInterpreter tools(v, state, {}, "/cygdrive/C/prog/external");
    for (const char *line :
         {"/CYGDRIVE/c/prog/external/mkisofs: 12.5% done",
          "/cygdrive/C/prog/external/dvdrecord: fifo was 0 times empty", "/usr/bin/mkisofs: stays"})
        tools.objDOS_ReceiveOutputs(line);
    EXPECT_EQ(v.log, "12.5% done\r\nfifo was 0 times empty\r\n/usr/bin/mkisofs: stays");
}

TEST_F(Interpreter, DVDWriting) {
    feed(Mode::WriteDVD,
         {"", "scsidev: '/dev/sr1'", "Last chance to quit, starting real write",
          "Starting to write CD/DVD at speed 4 in real SAO mode for single session.",
          "Track 01:   12 of  700 MB written (fifo 100%) [buf  99%]"},
         0.2);
    EXPECT_EQ(view.log, "Starting to write CD/DVD at speed 4 in real SAO mode for single session.");
    EXPECT_EQ(view.progressEvents(), (std::vector<std::string>{"max 700", "value 12"}));
    EXPECT_EQ(view.status, "Wrote 12 of 700 MB (Buffer 99%)");
    feed(Mode::DataDVD, {"Track 01:   13 of  700 MB written (fifo  88%) [buf  99%]"}, 0.4);
    EXPECT_EQ(view.status, "Wrote 12 of 700 MB (Buffer 99%)") << "throttled";
    feed(Mode::DataDVD, {"Track 01:   14 of  700 MB written (fifo  88%) [buf  99%]", "",
                         "Writing track 01 (mode 1/2048)", "Writing  time:   12.345s"});
    EXPECT_EQ(view.status, "Wrote 14 of 700 MB (Buffer 88%)") << "the fifo is the buffer; no track line";
    EXPECT_NE(view.log.find("\r\n\r\n"), std::string::npos) << "an empty line shows once the log has text";
    EXPECT_TRUE(view.writeSucceeded);
    feed(Mode::WriteDVD, {"Write data failed."});
    EXPECT_TRUE(view.writeFailed);
    view.writeSucceeded = false;
    for (bool erasing : {false, true}) {  // a write that blanks first has not written yet; a blank has ended
        state.erasing = erasing;
        feed(Mode::WriteDVD, {"Blanking time:   42.000s"});
        EXPECT_EQ(view.writeSucceeded, erasing);
    }
}

TEST_F(Interpreter, Reading) {
    feed(Mode::ReadTOC, {" 1      AUDIO   0      00:00:00(     0)     04:13:50( 19025)"});
    EXPECT_EQ(view.count("kill"), 0);
    feed(Mode::ReadTOC, {"Leadout AUDIO   0      00:20:00(  1500)"});
    EXPECT_FLOAT_EQ(state.readSectors, 1500.0f);
    EXPECT_FLOAT_EQ(state.discBytes, 1500.0f * 2352.0f);
    EXPECT_EQ(view.count("kill"), 1) << "the length is known: the tool is stopped";

    feed(Mode::ReadCD, {"00:10:00"}, 0.2);
    EXPECT_TRUE(view.log.find("00:10:00") == std::string::npos);
    EXPECT_EQ(view.status, "Cdrdao Reading Sector #750");
    EXPECT_EQ(view.caption, "50% - saltmarrow");
    feed(Mode::ReadCD, {"00:20:00"}, 0.4);
    EXPECT_EQ(view.status, "Cdrdao Reading Sector #750") << "throttled";
    interpreter.objDOS_nullOutputs();  // a quiet tool: the display still moves
    EXPECT_EQ(view.status, "Cdrdao Reading Sector #1500");
    feed(Mode::ReadCD, {"This drive does not support RW sub-channel reading.", "00:30:00"}, 1);
    EXPECT_EQ(view.status, "Cdrdao Reading Sector #2250");
    EXPECT_EQ(view.value, 100) << "the bar stops at its end";
    EXPECT_EQ(view.caption, "150% - saltmarrow");
    EXPECT_EQ(view.count("status This drive does not support RW sub-channel reading."), 1);

    // readom's dump: its capacity, its end and its addresses; a disc larger than the room is stopped.
    state.readRoom = 600 * 1024;
    feed(Mode::DiscDump,
         {"Capacity: 300 Blocks = 600 kBytes = 0 MBytes = 0 prMB", "end:       300",
          "addr:      150 cnt: 128"},
         1);
    EXPECT_EQ(view.status, "Readom Reading Sector #150");
    EXPECT_EQ(view.caption, "50% - saltmarrow");
    EXPECT_EQ(view.log.find("addr:"), std::string::npos);
    feed(Mode::DiscDump,
         {"Capacity: 301 Blocks = 602 kBytes", "readom: Permission denied. Cannot open 'x'."});
    EXPECT_TRUE(state.readTooLarge && view.writeFailed && view.count("kill") == 2);

    view.run = [this](const std::string &) {
        view.now += 75;
        return true;
    };
    view.events.clear();
    EXPECT_TRUE(interpreter.readcd("cdrdao read-cd"));
    EXPECT_EQ(view.status, "Read Operation Completed after 75 Secs");
    EXPECT_EQ(std::vector<std::string>(view.events.begin(), view.events.begin() + 2),
              (std::vector<std::string>{"autohide", "value 0"}));
    EXPECT_EQ(view.events.back(), "enable 10");
    EXPECT_FALSE(state.reading);
    view.run = [](const std::string &) { return false; };
    EXPECT_FALSE(interpreter.readcd("x"));
    EXPECT_EQ(view.status, "Read Operation Cancelled");
}

}  // namespace
