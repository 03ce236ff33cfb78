// Loading an image into the slot from the command line or the open dialog:
// what the slot holds afterwards and what the form is told to show.
#include "discops/ImageLoad.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "exec/EnglishTexts.h"
#include "platform/Dialogs.h"
#include "testlib/ScriptedDialogs.h"
#include "testlib/TestSupport.h"

using namespace saltmarrow;
using namespace saltmarrow::discops;
using namespace saltmarrow::test;
namespace fs = std::filesystem;
namespace mb = saltmarrow::platform::mb;

namespace {

constexpr double MB = 1024.0 * 1024.0;

// Everything here loads .iso and .cue files, which are never given to cdrdao
// on loading; a run that is called fails the test.
struct Loader {
    TempDir dir;
    ScriptedDialogs dialogs;
    ImageSlot slot;
    ImageContext ctx;
    ParseCommandInput input;
    Loader() {
        fs::create_directories(dir.file("app/external"));
        ctx.appDir = dir.file("app");
        ctx.dialogs = &dialogs;
        ctx.msg = test::englishText;
        ctx.run = [](const std::string &command) {
            ADD_FAILURE() << "ran " << command;
            return CommandResult{};
        };
        input.discSizeText = "80 min";
        input.chkCheckCUE = true;
    }
    std::string put(const std::string &name, std::uintmax_t bytes) {
        std::string path = dir.file(name);
        fs::create_directories(fs::path(path).parent_path());
        writeFile(path, "");
        fs::resize_file(path, bytes);  // sparse where the file system allows
        return path;
    }
    ParseCommandResult load(const std::string &startCommand) {
        slot.startCommand = startCommand;
        return parseCommand(slot, input, ctx);
    }
};

// What the form is told and what the slot holds, as one text.
std::string shown(const ParseCommandResult &r, const ImageSlot &slot) {
    return std::string(r.loaded ? "loaded" : "empty") + (r.mode == Mode::WriteCD ? " to write|" : "|") +
           r.panel1 + "|" + r.txtStatus + "|" + slot.strFilename + "|" +
           std::to_string(static_cast<long long>(slot.imageBytes));
}

}  // namespace

TEST(ParseCommand, ABarePathLoadsAsWithDashI) {
    Loader l;
    std::string iso = l.put("images/backup.iso", static_cast<std::uintmax_t>(3.4 * MB));
    ParseCommandResult r = l.load(iso);
    EXPECT_EQ(shown(r, l.slot), "loaded to write|BACKUP|BACKUP (3MB / 80 min)|" + iso + "|" +
                                    std::to_string(fs::file_size(iso)));
    EXPECT_EQ(l.slot.startCommand, "-i " + iso);
    EXPECT_EQ(l.slot.imageDataFile, iso);
    EXPECT_EQ(l.slot.lastFolder, l.dir.file("images"));
}

// "-w" starts the write only from the program's own command line, and only
// once the form has loaded.
TEST(ParseCommand, DashWStartsTheWrite) {
    Loader l;
    std::string iso = l.put("a b/disc.iso", static_cast<std::uintmax_t>(1.6 * MB));
    const std::string quoted = "-w \"" + iso + "\"";
    for (const auto &[commandLine, formLoaded, starts] : {std::tuple{quoted, true, true},
                                                          {quoted, false, false},
                                                          {"-i \"" + iso + "\"", true, false},
                                                          {std::string(), true, false}}) {
        l.input.commandLine = commandLine;
        l.input.formLoaded = formLoaded;
        ParseCommandResult r = l.load(quoted);
        EXPECT_EQ(l.slot.strFilename, iso);
        EXPECT_EQ(r.txtStatus, "DISC (2MB / 80 min)");
        EXPECT_EQ(r.startWrite, starts) << commandLine << formLoaded;
    }
    // Nothing happens while the button is disabled.
    l.input.cmdWriteEnabled = false;
    l.slot = {};
    EXPECT_FALSE(l.load(iso).ran);
    EXPECT_EQ(l.slot.startCommand, iso);
    EXPECT_TRUE(l.slot.strFilename.empty());
}

TEST(ParseCommand, WhatIsNoImageEmptiesTheSlot) {
    Loader l;
    std::string iso = l.put("disc.iso", 4096);
    fs::create_directories(l.dir.file("folder.iso"));
    const std::string notImages[] = {l.dir.file("missing.iso"), l.dir.file("folder.iso"), "/dev/null",
                                     l.put("empty.iso", 0)};
    for (const auto &path : notImages) {
        SCOPED_TRACE(path);
        ASSERT_TRUE(l.load(iso).loaded);
        EXPECT_EQ(shown(l.load("-i " + path), l.slot), "empty|NO IMAGE LOADED|NO IMAGE LOADED||0");
    }
    // An option that names no image leaves the slot as it was.
    ASSERT_TRUE(l.load(iso).loaded);
    EXPECT_EQ(shown(l.load("-x " + l.dir.file("missing.iso")), l.slot),
              "loaded to write|DISC|DISC (0MB / 80 min)|" + iso + "|4096");
}

TEST(ParseCommand, ACueIsCheckedAndShowsTheSizeOfTheSheetUntilTheWrite) {
    Loader l;
    l.put("music/live.bin", 2352 * 300);
    std::string cue = l.dir.file("music/live.cue");
    writeFile(cue, "FILE live.bin BINARY\n  TRACK 01 AUDIO\n    INDEX 01 00:00:00\n");
    l.dialogs.answer(mb::Yes);
    ParseCommandResult r = l.load(cue);
    ASSERT_EQ(l.dialogs.prompts.size(), 1u);
    EXPECT_TRUE(r.check.rewritten);
    EXPECT_EQ(l.slot.imageDataFile, l.dir.file("music/live.bin"));
    EXPECT_EQ(l.slot.workingFolder, l.dir.file("music"));
    EXPECT_EQ(l.slot.imageBlockSize, 2352);
    EXPECT_EQ(l.slot.imageBytes, static_cast<double>(fs::file_size(cue)));
    EXPECT_TRUE(r.loaded);

    // Unticked, the sheet is neither asked about nor changed.
    l.input.chkCheckCUE = false;
    const std::string bytes = "FILE other.bin BINARY\n  TRACK 01 MODE1/2048\n";
    writeFile(cue, bytes);
    ScriptedDialogs quiet;
    l.ctx.dialogs = &quiet;
    l.load(cue);
    EXPECT_TRUE(quiet.prompts.empty());
    EXPECT_EQ(readFile(cue), bytes);
    EXPECT_EQ(l.slot.imageBlockSize, 2048);
}

TEST(ParseCommand, LongNamesAreCutBetweenCharacters) {
    struct Case {
        std::string base, panel, status;
    };
    const Case cases[] = {
        {"twenty_characters_ab", "TWENTY_CHARACTERS_AB", "TWENTY_CHARACTERS_AB"},
        {"twenty_one_characters", "TWENTY_ONE_CHARACTER...", "TWENTY_ONE_CHARACTERS"},
        {"exactly_thirty_characters_abcd", "EXACTLY_THIRTY_CHARA...", "EXACTLY_THIRTY_CHARACTERS_ABCD"},
        {"thirty_one_characters_abcdefghi", "THIRTY_ONE_CHARACTER...", "THIRTY_ONE_CHARACTERS_ABCDEFGH..."},
        // Letters beyond ASCII stay as they are and count as one character each.
        {"\xC3\xA9t\xC3\xA9 \xC3\xA0 la plage, vingt-cinq", "\xC3\xA9T\xC3\xA9 \xC3\xA0 LA PLAGE, VING...",
         "\xC3\xA9T\xC3\xA9 \xC3\xA0 LA PLAGE, VINGT-CINQ"},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.base);
        Loader l;
        std::string iso = l.put(c.base + ".iso", 2048);
        ParseCommandResult r = l.load(iso);
        EXPECT_EQ(r.panel1, c.panel);
        EXPECT_EQ(r.txtStatus, c.status + " (0MB / 80 min)");
    }
}

TEST(ChooseImage, TheOpenDialogStartsInTheLastFolderAndCancelKeepsTheSlot) {
    Loader l;
    std::string iso = l.put("last/one.iso", 2048);
    l.slot.lastFolder = l.dir.file("last");
    l.slot.startCommand = "-i before";

    l.dialogs.cancelNext();
    EXPECT_FALSE(chooseImage(l.slot, l.dialogs));
    EXPECT_EQ(l.slot.startCommand, "-i before");
    ASSERT_EQ(l.dialogs.prompts.size(), 1u);
    EXPECT_EQ(l.dialogs.prompts[0].request.folder, l.dir.file("last"));

    l.dialogs.answer(std::string(iso));
    ASSERT_TRUE(chooseImage(l.slot, l.dialogs));
    EXPECT_TRUE(parseCommand(l.slot, l.input, l.ctx).loaded);
    EXPECT_EQ(l.slot.strFilename, iso);
}
