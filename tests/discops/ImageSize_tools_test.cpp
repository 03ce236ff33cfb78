// Image sizes from the real cdrdao toc-info, run through the program's own
// command runner: the bytes reported are the bytes the data files hold.
#include <gtest/gtest.h>

#include <filesystem>
#include <random>

#include "discops/ImageLoad.h"
#include "discops/ImageSize.h"
#include "discops/SheetCheck.h"
#include "exec/CommandRunner.h"
#include "exec/EnglishTexts.h"
#include "platform/CommandLine.h"
#include "platform/Dialogs.h"
#include "testlib/ScriptedDialogs.h"
#include "testlib/TestSupport.h"

using namespace saltmarrow;
using namespace saltmarrow::discops;
using namespace saltmarrow::test;
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
        ctx.msg = test::englishText;
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

// Each kind of image as the real cdrdao measures 300 blocks of its data: an
// ISO is its own data file, a cue sheet's bin bears the sheet's name (once in
// another case), and a toc sheet of each track type counts its data file in
// blocks of the size the program's track type table gives.
TEST(ImageSizeTools, EachKindAndTrackTypeIsAsLargeAsItsData) {
    if (!haveTools()) GTEST_SKIP() << "cdrdao missing";
    RealTools t;
    struct Row {
        std::string sheet, type, data;  // data: the file measured, for an ISO the image itself
        std::int16_t bytes;             // of a block
    };
    const Row rows[] = {
        {"disc image.iso", "", "disc image.iso", 2048},
        {"data.cue", "MODE1/2048", "data.bin", 2048},
        {"data.cue", "MODE2/2324", "data.bin", 2324},
        {"data.cue", "MODE2/2336", "data.bin", 2336},
        {"data.cue", "AUDIO", "DATA.BIN", 2352},
        {"a.toc", "MODE1", "a.bin", 2048},
        {"b.toc", "MODE2_FORM1", "b.bin", 2048},
        {"c.toc", "MODE2_FORM2", "c.bin", 2324},
        {"d.toc", "MODE2", "d.bin", 2336},
        {"e.toc", "MODE2_FORM_MIX", "e.bin", 2336},
        {"f.toc", "AUDIO", "f.bin", 2352},
        {"g.toc", "MODE1_RAW", "g.bin", 2352},
        {"h.toc", "MODE2_RAW", "h.bin", 2352},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.sheet + " " + row.type);
        fs::remove(t.dir.file("data.bin"));
        const std::string data = t.randomFile(row.data, 300u * row.bytes), sheet = t.dir.file(row.sheet);
        if (row.sheet.ends_with(".cue"))
            writeFile(sheet,
                      "FILE \"data.bin\" BINARY\r\n  TRACK 01 " + row.type + "\r\n    INDEX 01 00:00:00\r\n");
        if (row.sheet.ends_with(".toc")) writeFile(sheet, dataTrackSheet(row.type, data));
        std::int16_t size = 0;
        EXPECT_EQ(imageSize(sheet, size, t.ctx), 300 * row.bytes);
        EXPECT_EQ(size, row.bytes);
    }
    EXPECT_FALSE(fs::exists(t.app + "/external/TEMP/temp.toc"));
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
    writeFile(toc, foreign);
    // Repaired, the sheet names the files beside it and is sized: the sound,
    // not the headers.
    t.dialogs.answer(platform::mb::Yes);
    slot.startCommand = toc;
    ParseCommandResult r = parseCommand(slot, input, t.ctx);
    EXPECT_TRUE(r.loaded);
    EXPECT_EQ(slot.strFilename, toc);
    EXPECT_EQ(slot.imageDataFile, two);
    EXPECT_EQ(slot.imageBlockSize, 2352);
    EXPECT_EQ(slot.imageBytes, (4 + 5) * 44100.0 * 4);
    EXPECT_EQ(r.txtStatus, "MIX (2MB / 74 min)");
    EXPECT_EQ(platform::splitCommandLine(t.commands.back()),
              (std::vector<std::string>{t.ctx.cdrdao, "toc-info", toc}));
}
