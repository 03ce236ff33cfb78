// The command runner against real child processes: the helper program
// scripted_output writes the bytes each test asks for, with pauses between
// them, so the chunk boundaries are the ones the test means.
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <sys/resource.h>

#include "exec/CommandRunner.h"
#include "exec/DOSOutputs.h"
#include "platform/CommandLine.h"
#include "testlib/TestSupport.h"

using namespace saltmarrow;
using saltmarrow::platform::quoteArgument;
using saltmarrow::test::fixture;
using saltmarrow::test::readFile;
using saltmarrow::test::TempDir;
using saltmarrow::test::writeFile;

namespace {

struct Outcome {
    std::vector<std::string> events;  // "L:<line>" or "N"
    std::vector<std::string> lines;
    int nulls = 0;
    int pumps = 0;
    long ms = 0;  // how long the command took
    bool result = false;
    std::string total;
};

std::string scripted(const std::vector<std::string> &steps) {
    std::string cmd = quoteArgument(fixture("scripted_output"));
    for (const auto &s : steps) cmd += " " + quoteArgument(s);
    return cmd;
}

Outcome run(const std::string &command, int bufferSize = 256, std::function<void(DOSOutputs &, const std::string &)> onLine = {}) {
    Outcome r;
    DOSOutputs dos;
    dos.pump = [&] { ++r.pumps; };
    dos.nullOutputs = [&] {
        ++r.nulls;
        r.events.push_back("N");
    };
    dos.ReceiveOutputs = [&](const std::string &line) {
        r.lines.push_back(line);
        r.events.push_back("L:" + line);
        if (onLine) onLine(dos, line);
    };
    const auto start = std::chrono::steady_clock::now();
    r.result = dos.ExecuteCommand(command, bufferSize, 1);
    r.ms = (std::chrono::steady_clock::now() - start) / std::chrono::milliseconds(1);
    r.total = dos.totalOutput;
    return r;
}

using Lines = std::vector<std::string>;

}  // namespace

TEST(DOSOutputs, EmptyOrUnstartableCommandGivesFalseAndNoEvent) {
    Outcome empty = run("");
    EXPECT_FALSE(empty.result);
    EXPECT_TRUE(empty.events.empty());
    EXPECT_TRUE(empty.total.empty());

    Outcome missing = run("/nonexistent/tool --help");
    EXPECT_FALSE(missing.result);
    EXPECT_TRUE(missing.events.empty());

    Outcome bare = run("no-such-program-anywhere-xyz");
    EXPECT_FALSE(bare.result);
    EXPECT_TRUE(bare.events.empty());
}

TEST(DOSOutputs, LoneCarriageReturnEndsALine) {
    Outcome r = run(scripted({"out", "a\\rb\\r\\n"}));
    EXPECT_TRUE(r.result);
    EXPECT_EQ(r.lines, (Lines{"a", "b"}));
    EXPECT_EQ(r.total, "\r\na\r\nb");
}

TEST(DOSOutputs, UnfinishedLineWaitsForTheEndOfTheProcess) {
    Outcome r = run(scripted({"out", "abc", "sleep", "300"}));
    EXPECT_TRUE(r.result);
    ASSERT_EQ(r.lines, (Lines{"abc"}));
    // Idle turns passed while "abc" sat in the carry; it came last.
    EXPECT_EQ(r.events.back(), "L:abc");
    EXPECT_GT(r.nulls, 10);
    EXPECT_TRUE(r.total.empty()) << "the carry is not part of totalOutput";
}

TEST(DOSOutputs, AQuestionWithoutLineEndIsSeenWhileTheToolWaits) {
    DOSOutputs dos;
    Lines open;
    dos.openLine = [&](const std::string &text) {
        open.push_back(text);
        dos.killInstantly();
    };
    EXPECT_FALSE(dos.ExecuteCommand(scripted({"out", "insert a disc and press enter", "hang"})));
    EXPECT_EQ(open, Lines{"insert a disc and press enter"});
}

TEST(DOSOutputs, SilentProcessSucceedsWithHeartbeats) {
    Outcome r = run(scripted({"sleep", "50"}));
    EXPECT_TRUE(r.result);
    EXPECT_TRUE(r.lines.empty());
    EXPECT_TRUE(r.total.empty());
    EXPECT_GE(r.nulls, 1);
    EXPECT_GT(r.pumps, 0);
}

TEST(DOSOutputs, EmptyLinesAndLineEndsAcrossReads) {
    EXPECT_TRUE(run(scripted({"out", "\\r\\n"})).lines.empty());
    EXPECT_EQ(run(scripted({"out", "a\\r\\n\\r\\n"})).lines, (Lines{"a", ""}));
    // A CR LF cut in two by the reads makes one extra empty line.
    EXPECT_EQ(run(scripted({"out", "a\\r", "sleep", "100", "out", "\\nb\\r\\n"})).lines, (Lines{"a", "", "b"}));
    // Standard error arrives through the same pipe.
    EXPECT_EQ(run(scripted({"out", "o\\n", "sleep", "50", "err", "e\\n"})).lines, (Lines{"o", "e"}));
}

TEST(DOSOutputs, ExitCodeDecidesTheResult) {
    CommandRunner runner;
    std::vector<std::string> seen;
    runner.objDOS.ReceiveOutputs = [&](const std::string &l) { seen.push_back(l); };
    EXPECT_TRUE(runner.commandExecute(scripted({"out", "ok\\n"})));
    EXPECT_EQ(runner.commandOutput, "\r\nok");
    EXPECT_FALSE(runner.commandExecute(scripted({"out", "line 1\\nline 2\\n", "exit", "1"})));
    EXPECT_TRUE(runner.commandOutput.empty());
    EXPECT_EQ(seen, (Lines{"ok", "line 1", "line 2"}));
}

// A second command while one runs is refused: false, and not a line of it.
TEST(DOSOutputs, KillFromAHandlerEndsWithFalse) {
    Outcome r = run(scripted({"out", "Writing finished successfully\\r\\n", "hang"}), 256,
                    [](DOSOutputs &dos, auto &) {
                        EXPECT_FALSE(dos.ExecuteCommand(scripted({"out", "second\\n"})));
                        EXPECT_TRUE(dos.killInstantly());
                    });
    EXPECT_FALSE(r.result);
    EXPECT_EQ(r.lines, Lines{"Writing finished successfully"});

    DOSOutputs idle;
    EXPECT_FALSE(idle.killInstantly()) << "nothing runs";
}

TEST(DOSOutputs, EveryBufferSizeGivesTheSameLines) {
    Lines expected;
    for (int i = 1; i <= 300; ++i) expected.push_back("Wrote " + std::to_string(i));
    for (int size : {256, 512, 8192}) {
        Outcome r = run(scripted({"lines", "300", "0", "Wrote"}), size);
        EXPECT_TRUE(r.result);
        // A CR LF cut by a read adds an empty line; nothing else may differ.
        Lines text;
        for (const auto &l : r.lines)
            if (!l.empty()) text.push_back(l);
        EXPECT_EQ(text, expected) << size;
        EXPECT_LE(r.pumps, 1 + r.ms / 10) << "events run by time, not for every line";
        EXPECT_LE(r.lines.size() - text.size(), 300u * 12 / static_cast<unsigned>(size) + 1) << size;
    }
}

TEST(DOSOutputs, OutputIsTextEvenWhenNotUtf8) {
    Outcome bad = run(scripted({"out", "caf\\xe9 \\xff\\r\\n"}));
    ASSERT_EQ(bad.lines.size(), 1u);
    EXPECT_EQ(bad.lines[0], "caf\xEF\xBF\xBD \xEF\xBF\xBD");
    // A character cut by the end of a 256-byte read is put back together.
    std::string filler(255, 'x');
    Outcome split = run(scripted({"out", filler + "\\xc3", "sleep", "50", "out", "\\xa9\\n"}));
    ASSERT_EQ(split.lines.size(), 1u);
    EXPECT_EQ(split.lines[0], filler + "\xC3\xA9");
}

TEST(DOSOutputs, HugeLineWithoutLineEndArrivesWholeAtTheEnd) {
    rusage before{};
    getrusage(RUSAGE_SELF, &before);
    Outcome r = run(scripted({"fill", "10485760", "z"}));
    ASSERT_EQ(r.lines.size(), 1u);
    EXPECT_EQ(r.lines[0].size(), 10485760u);
    EXPECT_EQ(r.lines[0].find_first_not_of('z'), std::string::npos);
    rusage after{};
    getrusage(RUSAGE_SELF, &after);
    EXPECT_LT(after.ru_maxrss - before.ru_maxrss, 80 * 1024) << "kilobytes of peak memory for a 10 MB line";
}

TEST(DOSOutputs, StartFolderAndArgumentsReachTheProcessUnchanged) {
    TempDir dir;
    std::string folder = dir.file("with blank");
    std::filesystem::create_directory(folder);
    DOSOutputs dos;
    std::vector<std::string> lines;
    dos.ReceiveOutputs = [&](const std::string &l) { lines.push_back(l); };
    EXPECT_TRUE(dos.ExecuteCommand(scripted({"cwd"}), 256, 1, folder));
    EXPECT_EQ(lines, (Lines{folder}));

    // Nothing of this is a shell's business.
    Lines awkward{"a b", "$HOME", "`id`", "x;y", "a&b", "p|q", "back\\slash\\", "q\"uote", "*", "", "\\\\server\\share"};
    Lines steps{"args"};
    steps.insert(steps.end(), awkward.begin(), awkward.end());
    Outcome r = run(scripted(steps));
    Lines expected;
    for (const auto &a : awkward) expected.push_back("[" + a + "]");
    EXPECT_EQ(r.lines, expected);
}

TEST(BatchPipeline, FiftyMegabytesFlowBetweenTheStagesAndLinesArriveInOrder) {
    TempDir dir;
    // The tools folder of a user may hold blanks.
    std::string tools = dir.file("my tools");
    std::filesystem::create_directory(tools);
    std::filesystem::copy_file(fixture("scripted_output"), tools + "/scripted_output");
    std::filesystem::permissions(tools + "/scripted_output", std::filesystem::perms::owner_all);
    std::string tool = quoteArgument(tools + "/scripted_output");
    std::string bat = dir.file("command.bat");
    writeFile(bat, "@ECHO OFF\r\n" + tool + " fill 52428800 x | " + tool + " count\r\n");

    Outcome r = run(quoteArgument(bat));
    EXPECT_TRUE(r.result);
    ASSERT_EQ(r.lines.size(), 51u);
    for (int i = 1; i <= 50; ++i) EXPECT_EQ(r.lines[i - 1], "read " + std::to_string(i) + " MB");
    EXPECT_EQ(r.lines.back(), "total 52428800 bytes");
}

TEST(BatchPipeline, ExitCodeIsTheLastStagesAndAMissingStageFailsTheJob) {
    TempDir dir;
    std::string tool = quoteArgument(fixture("scripted_output"));
    writeFile(dir.file("a.bat"), "@ECHO OFF\r\n" + tool + " exit 3 | " + tool + " count\r\n");
    EXPECT_TRUE(run(quoteArgument(dir.file("a.bat"))).result);
    writeFile(dir.file("b.bat"), "@ECHO OFF\r\n" + tool + " fill 10 x | " + tool + " count exit 4\r\n");
    EXPECT_FALSE(run(quoteArgument(dir.file("b.bat"))).result);
    writeFile(dir.file("c.bat"), "@ECHO OFF\r\n" + tool + " fill 10 x | /nonexistent/tool\r\n");
    Outcome c = run(quoteArgument(dir.file("c.bat")));
    EXPECT_FALSE(c.result);
    EXPECT_TRUE(c.lines.empty());
    writeFile(dir.file("d.bat"), "@ECHO OFF\r\n");
    EXPECT_FALSE(run(quoteArgument(dir.file("d.bat"))).result);
    EXPECT_FALSE(run(quoteArgument(dir.file("missing.bat"))).result);
}

TEST(BatchPipeline, CancelLeavesNoStageAlive) {
    TempDir dir;
    std::string tool = quoteArgument(fixture("scripted_output"));
    const std::string marker = "987654321987";  // a size no other process will carry
    writeFile(dir.file("command.bat"), "@ECHO OFF\r\n" + tool + " fill " + marker + " x | " + tool + " count\r\n");
    std::vector<int> aliveAtCancel;
    Outcome r = run(quoteArgument(dir.file("command.bat")), 256, [&](DOSOutputs &dos, const std::string &line) {
        if (line == "read 5 MB") {
            aliveAtCancel = test::livingProcessesNaming(marker);
            dos.killInstantly();
        }
    });
    EXPECT_FALSE(r.result);
    EXPECT_EQ(aliveAtCancel.size(), 1u) << "the writing stage ran until the cancel";
    EXPECT_TRUE(test::livingProcessesNaming(marker).empty());
    EXPECT_NE(r.lines.back(), "total " + marker + " bytes");
}

TEST(CommandLog, SeparatorBeforeEveryCommandButTheFirstAndLinesAsTheyCame) {
    TempDir dir;
    CommandRunner runner(dir.path());
    runner.log.setPath(dir.file("commandlog.txt"));
    runner.objDOS.ReceiveOutputs = [&](const std::string &l) { runner.log.writeLine(l); };
    writeFile(dir.file("commandlog.txt"), "last run\r\n");
    EXPECT_TRUE(runner.commandExecute(scripted({"out", "one\\rtwo\\n"})));
    EXPECT_FALSE(runner.commandExecute(scripted({"out", "three\\n", "exit", "2"})));
    runner.log.close();
    std::string sep(62, '-');
    EXPECT_EQ(readFile(dir.file("commandlog.txt")), "one\r\ntwo\r\n\r\n" + sep + "\r\n\r\nthree\r\n");

    // A later instance leaves the first one's log alone.
    CommandRunner second(dir.path());
    second.log.setPath(dir.file("commandlog.txt"));
    second.log.setAllowed(false);
    second.objDOS.ReceiveOutputs = [&](const std::string &l) { second.log.writeLine(l); };
    EXPECT_TRUE(second.commandExecute(scripted({"out", "other\\n"})));
    EXPECT_FALSE(second.log.isOpen());
    EXPECT_EQ(readFile(dir.file("commandlog.txt")).find("other"), std::string::npos);
}

TEST(CommandLog, StartsInTheToolsFolder) {
    TempDir dir;
    CommandRunner runner(dir.path());
    EXPECT_TRUE(runner.commandExecute(scripted({"cwd"})));
    EXPECT_EQ(runner.commandOutput, "\r\n" + dir.path());
}
