// Sheets written through the fake drive, which has the real cdrdao read
// each one first: what cdrdao refuses fails with its words, what it takes is
// written with every byte its files hold. (A sheet that reads standard input
// is written through a pipeline by the data CD test in tests/shell.)
#include <gtest/gtest.h>

#include <random>

#include "exec/CommandRunner.h"
#include "platform/CommandLine.h"
#include "testlib/FakeDrive.h"
#include "testlib/TestSupport.h"

using namespace saltmarrow;
using namespace saltmarrow::test;

namespace {

struct SheetWrite : ::testing::Test {
    TempDir app;
    CommandRunner runner{app.file("external")};
    std::string write;

    void SetUp() override {
        installFakeDrive(app.path(), {cdWriter("CD-R", kBlankCDR)});
        write = platform::quoteArgument(app.file("external/cdrdao")) +
                " write --device /dev/sr0 --driver generic-mmc --reload -n --buffers 256 ";
        writeFile(app.file("disc.bin"), std::string(3000 * 2352, '\x11'));
    }
    bool run(const std::string &name, const std::string &text) {
        writeFile(app.file(name), text);
        runner.setExternalFolder(app.path());
        return runner.commandExecute(write + platform::quoteArgument(app.file(name)));
    }
    std::string output() const { return runner.objDOS.totalOutput; }
};

TEST_F(SheetWrite, WhatCdrdaoRefusesFails) {
    std::string noise(100 * 1024, '\0');
    std::mt19937 random(7);
    for (char &c : noise) c = static_cast<char>(random());
    const std::string cue = "FILE \"disc.bin\" BINARY\r\n  TRACK 01 MODE1/2352\r\n    INDEX 01 00:00:00\r\n";
    struct Row {
        std::string name, text, words;
    };
    const Row rows[] = {
        {"noise.toc", noise, "syntax error"},
        {"bom.cue", "\xEF\xBB\xBF" + cue, "bom.cue:1: Unknown command"},
        {"mode.cue", "FILE \"disc.bin\" BINARY\r\n  TRACK 01 CDG\r\n    INDEX 01 00:00:00\r\n",
         "mode.cue:2: Unsupported track mode"},
    };
    for (const Row &row : rows) {
        EXPECT_FALSE(run(row.name, row.text)) << row.name;
        EXPECT_NE(output().find(row.words), std::string::npos) << output();
        EXPECT_EQ(output().find("Writing finished successfully."), std::string::npos) << row.name;
    }
    EXPECT_TRUE(run("good.cue", cue)) << output();
    EXPECT_NE(output().find("Wrote 7 of 7 MB"), std::string::npos) << "the fake read the whole data file";
    EXPECT_NE(output().find("Writing finished successfully."), std::string::npos);
}

}  // namespace
