// Sheets written through the fake drive, which has the real cdrdao read
// each one first: what cdrdao refuses fails with its words, what it takes is
// written with every byte its files hold, standard input included.
#include <gtest/gtest.h>

#include <filesystem>
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

TEST_F(SheetWrite, StandardInputThroughAPipeline) {
    std::filesystem::create_directories(app.file("tree"));
    writeFile(app.file("tree/big.dat"), std::string(3 * 1048576, 'p'));
    ASSERT_TRUE(
        runner.commandExecute("genisoimage -quiet -print-size " + platform::quoteArgument(app.file("tree"))));
    const long blocks = std::stol(runner.commandOutput.substr(2));
    writeFile(app.file("stdin.toc"),
              "CD_ROM\n\nTRACK MODE1\nDATAFILE \"-\" " + std::to_string(blocks * 2048L) + "\n");
    const std::string batch = app.file("external/TEMP/command.bat");
    writeFile(batch, "@ECHO OFF\r\ngenisoimage -quiet " + platform::quoteArgument(app.file("tree")) + " | " +
                         write + platform::quoteArgument(app.file("stdin.toc")) + "\r\n");
    EXPECT_TRUE(runner.commandExecute(platform::quoteArgument(batch))) << output();
    const std::string total = std::to_string((blocks * 2048L + 1048575) / 1048576);
    EXPECT_NE(output().find("Wrote " + total + " of " + total + " MB"), std::string::npos) << output();
}

}  // namespace
