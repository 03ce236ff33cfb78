// Image sizes from the real cdrdao toc-info, run through the program's own
// command runner, on images that real tools made: the bytes reported are the
// bytes the data files hold.
#include <gtest/gtest.h>

#include <filesystem>
#include <random>

#include "discops/ImageLoad.h"
#include "discops/ImageSize.h"
#include "discops/ImageTestSupport.h"
#include "discops/SheetCheck.h"
#include "exec/CommandRunner.h"
#include "platform/CommandLine.h"
#include "platform/Dialogs.h"
#include "testlib/ScriptedDialogs.h"
#include "testlib/TestSupport.h"

using namespace saltmarrow;
using namespace saltmarrow::discops;
using saltmarrow::test::readFile;
using saltmarrow::test::TempDir;
using saltmarrow::test::writeFile;
namespace fs = std::filesystem;

namespace {

std::string cdrdaoProgram() {
    std::string linked = std::string(SALTMARROW_APP_DIR) + "/external/cdrdao";
    if (fs::exists(linked)) return linked;
    return "cdrdao";
}

bool haveTools() {
    return test::haveProgram("cdrdao") || fs::exists(cdrdaoProgram());
}

// A program folder whose external/ is the start folder of every tool, as in
// the application.
struct RealTools {
    TempDir dir;
    std::string app = dir.file("app");
    CommandRunner runner{app + "/external"};
    test::ScriptedDialogs dialogs;
    std::vector<std::string> commands;
    ImageContext ctx;

    RealTools() {
        fs::create_directories(app + "/external");
        ctx.appDir = app;
        ctx.cdrdao = cdrdaoProgram();
        ctx.dialogs = &dialogs;
        ctx.msg = test::imageMessage;
        ctx.run = [this](const std::string &command) {
            commands.push_back(command);
            bool ok = runner.commandExecute(command);
            return CommandResult{ok, runner.commandOutput};
        };
    }
    // Runs a tool to make test material; fails the test if it fails.
    void make(const std::vector<std::string> &arguments) {
        ASSERT_EQ(test::runTool(arguments).exitCode, 0) << arguments.front();
    }
    std::string randomFile(const std::string &name, std::size_t bytes) {
        std::mt19937 random(static_cast<unsigned>(bytes));
        std::string data(bytes, '\0');
        for (auto &c : data) c = static_cast<char>(random());
        std::string path = dir.file(name);
        fs::create_directories(fs::path(path).parent_path());
        writeFile(path, data);
        return path;
    }
};

}  // namespace

TEST(ImageSizeTools, AnIsoMadeByGenisoimageIsAsLargeAsItsFile) {
    if (!haveTools() || !test::haveProgram("genisoimage")) GTEST_SKIP() << "cdrdao or genisoimage missing";
    RealTools t;
    t.randomFile("tree/a.dat", 700000);
    t.randomFile("tree/sub/b.dat", 123457);
    std::string iso = t.dir.file("disc image.iso");
    t.make({"genisoimage", "-quiet", "-r", "-J", "-o", iso, t.dir.file("tree")});

    std::int16_t size = 2352;
    EXPECT_EQ(imageSize(iso, size, t.ctx), static_cast<std::int64_t>(fs::file_size(iso)));
    EXPECT_EQ(size, 2048);
    EXPECT_FALSE(fs::exists(t.app + "/external/TEMP/temp.toc"));
}

TEST(ImageSizeTools, CueAndBinPairsAreAsLargeAsTheirBin) {
    if (!haveTools()) GTEST_SKIP() << "cdrdao missing";
    RealTools t;
    // Each track type a cue sheet may give, measured as the sheet's bin; the
    // last one named in another case than the bin.
    std::int16_t size = 0;
    for (const auto &[type, bytes, bin] : {std::tuple{"MODE1/2352", 2352, "data.bin"},
                                           {"MODE1/2048", 2048, "data.bin"},
                                           {"MODE2/2324", 2324, "data.bin"},
                                           {"MODE2/2336", 2336, "data.bin"},
                                           {"CDI/2336", 2336, "data.bin"},
                                           {"AUDIO", 2352, "DATA.BIN"}}) {
        fs::remove(t.dir.file("data.bin"));
        std::string path = t.randomFile(bin, bytes * 450u);
        writeFile(t.dir.file("data.cue"), "FILE \"data.bin\" BINARY\r\n  TRACK 01 " + std::string(type) +
                                              "\r\n    INDEX 01 00:00:00\r\n");
        EXPECT_EQ(imageSize(t.dir.file("data.cue"), size, t.ctx),
                  static_cast<std::int64_t>(fs::file_size(path)))
            << type;
        EXPECT_EQ(size, bytes) << type;
    }
}

TEST(ImageSizeTools, TheTrackTypeTableCountsAsCdrdaoDoes) {
    if (!haveTools()) GTEST_SKIP() << "cdrdao missing";
    RealTools t;
    // cdrdao reads a data file of 300 blocks of the size we think the type has
    // as exactly 300 blocks.
    for (const char *type : {"MODE1", "MODE2_FORM1", "MODE2_FORM2", "MODE2", "MODE2_FORM_MIX", "AUDIO",
                             "MODE1_RAW", "MODE2_RAW"}) {
        SCOPED_TRACE(type);
        auto blockSize = blockSizeOfTrackType(type);
        ASSERT_TRUE(blockSize.has_value());
        std::string data = t.randomFile(std::string(type) + ".bin", 300u * *blockSize);
        std::string toc = t.dir.file(std::string(type) + ".toc");
        writeFile(toc, dataTrackSheet(type, data));
        std::int16_t field = 0;
        EXPECT_EQ(tocInfo(toc, field, t.ctx), "300");
    }
}

TEST(ImageSizeTools, WhatCdrdaoCannotReadHasNoSize) {
    if (!haveTools()) GTEST_SKIP() << "cdrdao missing";
    RealTools t;
    const std::pair<std::string, std::string> sheets[] = {
        {"missing.toc", "CD_ROM\r\n\r\nTRACK MODE1\r\nDATAFILE \"/no/such/file.bin\"\r\n"},
        {"garbage.toc", "this is no sheet at all\r\n"},
        {"empty.toc", ""},
        // Relative names are read from the tools' folder, where there is none.
        {"relative.toc", "CD_ROM\r\nTRACK MODE1\r\nDATAFILE \"rel.bin\"\r\n"},
        // A cue sheet whose bin is missing.
        {"alone.cue", "FILE \"alone.bin\" BINARY\nTRACK 01 MODE1/2048\n"},
    };
    t.randomFile("rel.bin", 2048 * 300);
    for (const auto &[name, text] : sheets) {
        SCOPED_TRACE(name);
        writeFile(t.dir.file(name), text);
        std::int16_t size = 2336;
        EXPECT_EQ(imageSize(t.dir.file(name), size, t.ctx), 0);
        EXPECT_EQ(readFile(t.dir.file(name)), text);
    }
}

// Loading a toc sheet from another machine end to end: the check, its repair,
// and the size of the sound that the real cdrdao gives.
TEST(ImageSizeTools, ASheetFromAnotherMachineIsRepairedOnLoadingAndThenSized) {
    if (!haveTools() || !test::haveProgram("sox")) GTEST_SKIP() << "cdrdao or sox missing";
    RealTools t;
    std::string one = t.dir.file("cd/01.wav"), two = t.dir.file("cd/02.wav");
    fs::create_directories(t.dir.file("cd"));
    for (const auto &[file, seconds] : {std::pair{one, "4"}, {two, "5"}})
        t.make({"sox", "-n", "-r", "44100", "-c", "2", "-b", "16", file, "synth", seconds, "sine", "300"});
    std::string toc = t.dir.file("cd/mix.toc");
    const std::string foreign =
        "CD_DA\nTRACK AUDIO\nFILE \"D:\\Music\\01.wav\" 0\nTRACK AUDIO\nFILE \"D:\\Music\\02.wav\" 0\n";
    ImageSlot slot;
    ParseCommandInput input;
    input.chkCheckCUE = true;
    input.discSizeText = "74 min";

    // Refused the repair, cdrdao cannot find the files: nothing is loaded.
    writeFile(toc, foreign);
    t.dialogs.answer(platform::mb::No);
    slot.startCommand = toc;
    ParseCommandResult refused = parseCommand(slot, input, t.ctx);
    EXPECT_FALSE(refused.loaded);
    EXPECT_EQ(refused.panel1, "NO IMAGE LOADED");
    EXPECT_EQ(readFile(toc), foreign);

    // With the repair, the sheet names the files beside it and is sized:
    // the sound, not the headers.
    t.dialogs.answer(platform::mb::Yes);
    slot.startCommand = toc;
    ParseCommandResult r = parseCommand(slot, input, t.ctx);
    EXPECT_TRUE(r.loaded);
    EXPECT_EQ(slot.strFilename, toc);
    EXPECT_EQ(slot.imageDataFile, two);
    EXPECT_EQ(slot.imageBlockSize, 2352);
    EXPECT_EQ(slot.imageBytes, (4 + 5) * 44100.0 * 4);
    EXPECT_EQ(r.txtStatus, "MIX (2MB / 74 min)");
    EXPECT_EQ(readFile(toc),
              "CD_DA\r\nTRACK AUDIO\r\nFILE \"" + one + "\" 0\r\nTRACK AUDIO\r\nFILE \"" + two + "\" 0\r\n");
    EXPECT_EQ(platform::splitCommandLine(t.commands.back()),
              (std::vector<std::string>{t.ctx.cdrdao, "toc-info", toc}));
}
