// Loading toc sheets end to end: the check, its repair, and the size that the
// real cdrdao gives, through the program's own command runner.
#include <gtest/gtest.h>

#include <filesystem>

#include "discops/ImageDelete.h"
#include "discops/ImageLoad.h"
#include "discops/ImageTestSupport.h"
#include "exec/CommandRunner.h"
#include "platform/CommandLine.h"
#include "platform/Dialogs.h"
#include "testlib/ScriptedDialogs.h"
#include "testlib/TestSupport.h"

using namespace saltmarrow;
using namespace saltmarrow::discops;
using saltmarrow::test::readFile;
using saltmarrow::test::ScriptedDialogs;
using saltmarrow::test::TempDir;
using saltmarrow::test::writeFile;
namespace fs = std::filesystem;
namespace mb = saltmarrow::platform::mb;

namespace {

struct Program {
    TempDir dir;
    ScriptedDialogs dialogs;
    CommandRunner runner{dir.file("app/external")};
    std::vector<std::string> commands;
    ImageSlot slot;
    ImageContext ctx;
    ParseCommandInput input;

    Program() {
        fs::create_directories(dir.file("app/external"));
        ctx.appDir = dir.file("app");
        std::string linked = std::string(SALTMARROW_APP_DIR) + "/external/cdrdao";
        ctx.cdrdao = fs::exists(linked) ? linked : "cdrdao";
        ctx.dialogs = &dialogs;
        ctx.msg = test::imageMessage;
        ctx.run = [this](const std::string &command) {
            commands.push_back(command);
            bool ok = runner.commandExecute(command);
            return CommandResult{ok, runner.commandOutput};
        };
        input.chkCheckCUE = true;
        input.discSizeText = "74 min";
    }
    std::string sound(const std::string &name, double seconds) {
        std::string path = dir.file(name);
        fs::create_directories(fs::path(path).parent_path());
        EXPECT_EQ(test::runTool({"sox", "-n", "-r", "44100", "-c", "2", "-b", "16", path, "synth",
                                 std::to_string(seconds), "sine", "440"})
                      .exitCode,
                  0);
        return path;
    }
    ParseCommandResult load(const std::string &path) {
        slot.startCommand = path;
        return parseCommand(slot, input, ctx);
    }
};

bool ready() {
    return test::haveProgram("sox") &&
           (test::haveProgram("cdrdao") || fs::exists(std::string(SALTMARROW_APP_DIR) + "/external/cdrdao"));
}

}  // namespace

TEST(LoadTocTools, ASheetFromAnotherMachineIsRepairedAndThenSized) {
    if (!ready()) GTEST_SKIP() << "cdrdao or sox missing";
    Program p;
    std::string one = p.sound("cd/01.wav", 4);
    std::string two = p.sound("cd/02.wav", 5);
    std::string toc = p.dir.file("cd/mix.toc");
    const std::string foreign =
        "CD_DA\nTRACK AUDIO\nFILE \"D:\\Music\\01.wav\" 0\nTRACK AUDIO\nFILE \"D:\\Music\\02.wav\" 0\n";

    // Refused the repair, cdrdao cannot find the files: nothing is loaded.
    writeFile(toc, foreign);
    p.dialogs.answer(mb::No);
    ParseCommandResult refused = p.load(toc);
    EXPECT_FALSE(refused.loaded);
    EXPECT_EQ(refused.panel1, "NO IMAGE LOADED");
    EXPECT_EQ(readFile(toc), foreign);

    // With the repair, the sheet names the files beside it and is sized.
    p.dialogs.answer(mb::Yes);
    ParseCommandResult r = p.load(toc);
    ASSERT_TRUE(r.check.rewritten);
    EXPECT_TRUE(r.loaded);
    EXPECT_EQ(p.slot.strFilename, toc);
    EXPECT_EQ(p.slot.imageDataFile, two);
    EXPECT_EQ(p.slot.imageBlockSize, 2352);
    EXPECT_EQ(p.slot.imageBytes, (4 + 5) * 44100.0 * 4);
    EXPECT_EQ(r.txtStatus, "MIX (2MB / 74 min)");
    EXPECT_EQ(readFile(toc),
              "CD_DA\r\nTRACK AUDIO\r\nFILE \"" + one + "\" 0\r\nTRACK AUDIO\r\nFILE \"" + two + "\" 0\r\n");
    ASSERT_FALSE(p.commands.empty());
    EXPECT_EQ(platform::splitCommandLine(p.commands.back()),
              (std::vector<std::string>{p.ctx.cdrdao, "toc-info", toc}));
}

TEST(LoadTocTools, AFileThatIsNowhereIsRefusedAndNothingLoads) {
    if (!ready()) GTEST_SKIP() << "cdrdao or sox missing";
    Program p;
    std::string toc = p.dir.file("lost.toc");
    writeFile(toc, "CD_DA\nTRACK AUDIO\nFILE \"/nowhere/gone.wav\" 0\n");
    ParseCommandResult r = p.load(toc);
    ASSERT_EQ(p.dialogs.prompts.size(), 1u);
    EXPECT_EQ(p.dialogs.prompts[0].text, "gone.wav could not be found!");
    EXPECT_TRUE(r.check.refused);
    EXPECT_FALSE(r.loaded);
    EXPECT_TRUE(p.slot.strFilename.empty());
}

TEST(LoadTocTools, ARenamedAudioFolderIsLoadedAgainWithItsSize) {
    if (!ready()) GTEST_SKIP() << "cdrdao or sox missing";
    Program p;
    std::string folder = p.dir.file("temp/tmpA1");
    p.sound("temp/tmpA1/track01.wav", 6);
    writeFile(folder + "/authored.toc",
              "CD_DA\r\n\r\nTRACK AUDIO\r\nFILE \"" + folder + "/track01.wav\" 0\r\n");
    p.slot.strFilename = folder + "/authored.toc";
    std::string tempFolder = folder;
    p.dialogs.answer(mb::No);
    p.dialogs.answer(std::string("Road Trip"));
    DeleteImageResult offer = deleteImage(p.slot, tempFolder, Mode::AudioCD, p.ctx);
    ASSERT_TRUE(offer.reload);

    ParseCommandResult r = parseCommand(p.slot, p.input, p.ctx);
    EXPECT_TRUE(r.loaded);
    EXPECT_EQ(p.slot.strFilename, p.dir.file("temp/Road Trip/Road Trip.toc"));
    EXPECT_EQ(p.slot.imageBytes, 6 * 44100.0 * 4);
    EXPECT_EQ(r.panel1, "ROAD TRIP");
}
