#include "shell/ToolRegistry.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "support/mdlFunctions.h"
#include "testlib/ScriptedDialogs.h"
#include "testlib/TestSupport.h"

namespace saltmarrow {
namespace {

using test::ScriptedDialogs;
using test::TempDir;
using test::writeFile;
namespace fs = std::filesystem;

// A program folder whose external/ holds the named files.
struct AppFolder {
    TempDir dir;
    explicit AppFolder(std::initializer_list<const char *> tools) {
        fs::create_directories(dir.file("external"));
        for (const char *t : tools) writeFile(dir.file(std::string("external/") + t), "#!/bin/sh\n");
    }
    std::string tool(const std::string &name) const { return dir.file("external/" + name); }
};

TEST(ToolRegistry, OnlyMkisofsComplainsAboutCdrdaoAndListsOnlyMkisofs) {
    AppFolder app({"mkisofs"});
    ScriptedDialogs dialogs;
    MessageTable messages;
    ToolRegistry registry(app.dir.path(), dialogs, messages);
    ToolPaths paths = registry.resolveTools();

    // The one complaint here: cygwin1.dll is a Windows matter and not looked up.
    ASSERT_EQ(dialogs.prompts.size(), 1u);
    EXPECT_EQ(dialogs.prompts[0].text, "/external/cdrdao could not be found!");
    EXPECT_EQ(dialogs.prompts[0].style, platform::mb::Exclamation);
    EXPECT_EQ(paths.strMkisofs, app.tool("mkisofs"));
    EXPECT_EQ(paths.strCdrdao, "");
    EXPECT_EQ(paths.cygwinRoot, "");
    EXPECT_EQ(paths.strdvdrecord, "");

    EXPECT_EQ(externalToolsList(paths, messages), "Mkisofs for iso creation");
    EXPECT_EQ(toolReportText(paths, messages),
              "  saltmarrow found the following external tools:\r\n\r\n\r\n\r\n  Mkisofs for iso creation");
}

TEST(ToolRegistry, NothingFoundSaysSo) {
    AppFolder app({});
    fs::create_directory(app.tool("cdrdao"));  // a folder of that name is no tool
    ScriptedDialogs dialogs;
    MessageTable messages;
    ToolPaths paths = ToolRegistry(app.dir.path(), dialogs, messages).resolveTools();
    ASSERT_EQ(dialogs.prompts.size(), 2u);
    EXPECT_EQ(dialogs.prompts[1].text, "/external/mkisofs could not be found!");
    EXPECT_EQ(paths.strCdrdao, "");
    EXPECT_EQ(externalToolsList(paths, messages), "No external tools found!!!");

    std::vector<std::string> lines = toolReportLines(paths, messages);
    const std::string frame(62, '-');
    EXPECT_EQ(lines, (std::vector<std::string>{frame, "", "No external tools found!!!", "", frame}));
}

TEST(ToolRegistry, ReportsFollowTheirOwnOrderAndTheMessageTable) {
    AppFolder app({"cdrdao", "mkisofs", "toc2cue", "madplay", "oggdec", "flac", "MAC", "mppdec", "faad",
                   "WaveGain", "dvdrecord"});
    ScriptedDialogs dialogs;
    MessageTable messages;
    messages.set("extCdrdao", "zum Schreiben von CDs");
    ToolPaths paths = ToolRegistry(app.dir.path(), dialogs, messages).resolveTools();
    EXPECT_TRUE(dialogs.prompts.empty());
    EXPECT_EQ(paths.strToc2Cue, app.tool("toc2cue"));
    EXPECT_EQ(paths.strLame, app.tool("madplay"));
    EXPECT_EQ(paths.strMAC, app.tool("MAC"));

    EXPECT_EQ(
        externalToolsList(paths, messages),
        "Cdrdao zum Schreiben von CDs\r\nDVDRecord for dvd writing\r\nMkisofs for iso creation\r\n"
        "WaveGain for ReplayGain\r\nMadPlay for mp3 decoding\r\nVorbis Tools - OggDec\r\nFLAC Decoder\r\n"
        "MPC Decoder\r\nFreeware AAC Decoder\r\nMonkey's Audio Console");
    std::vector<std::string> lines = toolReportLines(paths, messages);
    ASSERT_EQ(lines.size(), 18u);
    EXPECT_EQ(lines[0], std::string(62, '-'));
    EXPECT_EQ(lines[2], "  saltmarrow found the following external tools:");
    EXPECT_EQ(lines[6], "  Cdrdao zum Schreiben von CDs");
    EXPECT_EQ(lines[11], "  Ogg Decoder ");
    EXPECT_EQ(lines[15], "  Monkey's Audio Console ");
    EXPECT_EQ(lines[16], "");
    EXPECT_EQ(lines[17], std::string(62, '-'));

    // A tool that went away since start-up drops out of both reports.
    fs::remove(app.tool("flac"));
    EXPECT_EQ(externalToolsList(paths, messages).find("FLAC"), std::string::npos);
}

TEST(ToolRegistry, ProDVDTakesTheDVDWritersPlace) {
    AppFolder app({"cdrdao", "mkisofs", "dvdrecord"});
    ScriptedDialogs dialogs;
    MessageTable messages;
    ToolRegistry registry(app.dir.path(), dialogs, messages);
    ToolPaths paths = registry.resolveTools();
    EXPECT_EQ(paths.strdvdrecord, app.tool("dvdrecord"));
    registry.applyProDVD(paths);
    EXPECT_EQ(paths.strdvdrecord, "");
    EXPECT_TRUE(dialogs.prompts.empty());  // no complaint about prodvd

    writeFile(app.tool("prodvd"), "");
    registry.applyProDVD(paths);
    EXPECT_EQ(paths.strdvdrecord, app.tool("prodvd"));
}

TEST(ToolRegistry, FindExternalComplainsOnlyWhenAsked) {
    AppFolder app({"toc2cue"});
    ScriptedDialogs dialogs;
    MessageTable messages;
    ToolRegistry registry(app.dir.path(), dialogs, messages);
    EXPECT_EQ(registry.findExternal("/external/toc2cue", true), app.tool("toc2cue"));
    EXPECT_EQ(registry.findExternal("/external/nothing", false), "");
    EXPECT_TRUE(dialogs.prompts.empty());
    EXPECT_EQ(registry.findExternal("/external/nothing", true), "");
    ASSERT_EQ(dialogs.prompts.size(), 1u);
    EXPECT_EQ(dialogs.prompts[0].text, "/external/nothing could not be found!");
}

TEST(ToolRegistry, CygwinRootFromAWindowsPath) {
    EXPECT_EQ(cygwinRootFrom("C:\\prog\\external\\cygwin1.dll"), "/cygdrive/C/prog/external");
}

}  // namespace
}  // namespace saltmarrow
