// The command runner against real child processes: the helper program
// scripted_output writes the bytes each test asks for, with pauses between
// them, so the chunk boundaries are the ones the test means.
#include "exec/DOSOutputs.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <filesystem>

#include "exec/CommandRunner.h"
#include "platform/CommandLine.h"
#include "testlib/TestSupport.h"

using namespace saltmarrow;
using namespace saltmarrow::test;
using saltmarrow::platform::quoteArgument;
using Lines = std::vector<std::string>;

namespace {

struct Outcome {
    std::vector<std::string> events;  // "L:<line>" or "N"
    Lines lines;
    int pumps = 0;
    bool result = false;
    std::string total;
};

std::string scripted(const Lines &steps) {
    std::string cmd = quoteArgument(fixture("scripted_output"));
    for (const auto &s : steps) cmd += " " + quoteArgument(s);
    return cmd;
}

Outcome run(const std::string &command, int bufferSize = 256,
            std::function<void(DOSOutputs &, const std::string &)> onLine = {}) {
    Outcome r;
    DOSOutputs dos;
    dos.pump = [&] { ++r.pumps; };
    dos.nullOutputs = [&] { r.events.push_back("N"); };
    dos.ReceiveOutputs = [&](const std::string &line) {
        r.lines.push_back(line);
        r.events.push_back("L:" + line);
        if (onLine) onLine(dos, line);
    };
    r.result = dos.ExecuteCommand(command, bufferSize, 1);
    r.total = dos.totalOutput;
    return r;
}

// Batch files of one pipeline each, of the scripted tool's stages.
struct BatchPipeline : ::testing::Test {
    TempDir dir;
    std::string tool = quoteArgument(fixture("scripted_output"));
    std::string batch(const std::string &name, const std::string &pipeline) {
        writeFile(dir.file(name), "@ECHO OFF\r\n" + pipeline + "\r\n");
        return quoteArgument(dir.file(name));
    }
};

}  // namespace

TEST(DOSOutputs, EmptyOrUnstartableCommandGivesFalseAndNoEvent) {
    for (const char *command : {"", "/nonexistent/tool --help", "no-such-program-anywhere-xyz"}) {
        Outcome r = run(command);
        EXPECT_FALSE(r.result) << command;
        EXPECT_TRUE(r.events.empty()) << command;
        EXPECT_TRUE(r.total.empty()) << command;
    }
}

TEST(DOSOutputs, LinesAsTheBytesArrive) {
    const std::string filler(255, 'x');
    struct Row {
        Lines steps, lines;
        std::optional<std::string> total;
    };
    const Row rows[] = {
        {{"out", "a\\rb\\r\\n"}, {"a", "b"}, "\r\na\r\nb"},  // a lone CR ends a line
        {{"out", "\\r\\n"}, {}, {}},
        {{"out", "a\\r\\n\\r\\n"}, {"a", ""}, {}},
        // A CR LF cut in two by the reads makes one extra empty line.
        {{"out", "a\\r", "sleep", "100", "out", "\\nb\\r\\n"}, {"a", "", "b"}, {}},
        // Standard error arrives through the same pipe.
        {{"out", "o\\n", "sleep", "50", "err", "e\\n"}, {"o", "e"}, {}},
        {{"sleep", "50"}, {}, ""},
        // An unfinished line waits for the end, after the idle turns, and
        // stays out of totalOutput.
        {{"out", "abc", "sleep", "300"}, {"abc"}, ""},
        {{"out", "caf\\xe9 \\xff\\r\\n"}, {"caf\xEF\xBF\xBD \xEF\xBF\xBD"}, {}},
        // A character cut by the end of a 256-byte read is put back together.
        {{"out", filler + "\\xc3", "sleep", "50", "out", "\\xa9\\n"}, {filler + "\xC3\xA9"}, {}},
    };
    for (const Row &row : rows) {
        const std::string what = row.steps.back();
        Outcome r = run(scripted(row.steps));
        EXPECT_TRUE(r.result) << what;
        EXPECT_EQ(r.lines, row.lines) << what;
        EXPECT_EQ(r.total, row.total.value_or(r.total)) << what;
        if (row.total == "") {  // idle turns while nothing came, and the carry last
            ASSERT_FALSE(r.events.empty()) << what;
            EXPECT_EQ(r.events.back(), row.lines.empty() ? "N" : "L:abc") << what;
        }
        EXPECT_GT(r.pumps, 0) << what;
    }
}

// A second command while one runs is refused, and a kill from a handler ends
// the run with false.
TEST(DOSOutputs, AQuestionWithoutLineEndIsSeenWhileTheToolWaits) {
    DOSOutputs dos;
    Lines open;
    dos.openLine = [&](const std::string &text) {
        open.push_back(text);
        EXPECT_FALSE(dos.ExecuteCommand(scripted({"out", "second\\n"})));
        EXPECT_TRUE(dos.killInstantly());
    };
    EXPECT_FALSE(dos.ExecuteCommand(scripted({"out", "insert a disc and press enter", "hang"})));
    EXPECT_EQ(open, Lines{"insert a disc and press enter"});
    EXPECT_FALSE(DOSOutputs().killInstantly()) << "nothing runs";
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
        EXPECT_LT(r.pumps, 300) << "events run by time, not for every line";
        EXPECT_LE(r.lines.size() - text.size(), 300u * 12 / static_cast<unsigned>(size) + 1) << size;
    }
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

TEST(DOSOutputs, ArgumentsReachTheProcessUnchanged) {
    // Nothing of this is a shell's business.
    Lines steps{"args"}, expected;
    for (const char *a : {"a b", "$HOME", "`id`", "x;y", "a&b", "p|q", "back\\slash\\", "q\"uote", "*", "",
                          "\\\\server\\share"}) {
        steps.push_back(a);
        expected.push_back("[" + std::string(a) + "]");
    }
    EXPECT_EQ(run(scripted(steps)).lines, expected);
}

TEST_F(BatchPipeline, FiftyMegabytesFlowBetweenTheStagesAndLinesArriveInOrder) {
    // The tools folder of a user may hold blanks.
    const std::string tools = dir.file("my tools");
    std::filesystem::create_directory(tools);
    std::filesystem::copy_file(fixture("scripted_output"), tools + "/scripted_output");
    tool = quoteArgument(tools + "/scripted_output");
    Outcome r = run(batch("command.bat", tool + " fill 52428800 x | " + tool + " count"));
    EXPECT_TRUE(r.result);
    ASSERT_EQ(r.lines.size(), 51u);
    for (int i = 1; i <= 50; ++i) EXPECT_EQ(r.lines[i - 1], "read " + std::to_string(i) + " MB");
    EXPECT_EQ(r.lines.back(), "total 52428800 bytes");
}

TEST_F(BatchPipeline, ExitCodeIsTheLastStagesAndAMissingStageFailsTheJob) {
    EXPECT_TRUE(run(batch("a.bat", tool + " exit 3 | " + tool + " count")).result);
    EXPECT_FALSE(run(batch("b.bat", tool + " fill 10 x | " + tool + " count exit 4")).result);
    Outcome c = run(batch("c.bat", tool + " fill 10 x | /nonexistent/tool"));
    EXPECT_FALSE(c.result);
    EXPECT_TRUE(c.lines.empty());
    EXPECT_FALSE(run(batch("d.bat", "")).result);
    EXPECT_FALSE(run(quoteArgument(dir.file("missing.bat"))).result);
}

TEST_F(BatchPipeline, CancelLeavesNoStageAlive) {
    const std::string marker = "987654321987";  // a size no other process will carry
    std::vector<int> aliveAtCancel;
    Outcome r = run(batch("command.bat", tool + " fill " + marker + " x | " + tool + " count"), 256,
                    [&](DOSOutputs &dos, const std::string &line) {
                        if (line != "read 5 MB") return;
                        aliveAtCancel = test::livingProcessesNaming(marker);
                        dos.killInstantly();
                    });
    EXPECT_FALSE(r.result);
    EXPECT_EQ(aliveAtCancel.size(), 1u) << "the writing stage ran until the cancel";
    EXPECT_TRUE(test::livingProcessesNaming(marker).empty());
    EXPECT_NE(r.lines.back(), "total " + marker + " bytes");
}

// The runner starts in its tools folder, keeps the output of a command that
// succeeded, and logs with a separator before every command but the first.
TEST(CommandRunner, OutputFolderAndLog) {
    TempDir dir;
    const std::string tools = dir.file("my tools");
    std::filesystem::create_directory(tools);
    CommandRunner runner(tools);
    runner.log.setPath(dir.file("commandlog.txt"));
    runner.objDOS.ReceiveOutputs = [&](const std::string &l) { runner.log.writeLine(l); };
    writeFile(dir.file("commandlog.txt"), "last run\r\n");
    EXPECT_TRUE(runner.commandExecute(scripted({"cwd"})));
    EXPECT_EQ(runner.commandOutput, "\r\n" + tools);
    EXPECT_FALSE(runner.commandExecute(scripted({"out", "three\\n", "exit", "2"})));
    EXPECT_TRUE(runner.commandOutput.empty());
    runner.log.close();
    std::string sep(62, '-');
    EXPECT_EQ(readFile(dir.file("commandlog.txt")), tools + "\r\n\r\n" + sep + "\r\n\r\nthree\r\n");
}
