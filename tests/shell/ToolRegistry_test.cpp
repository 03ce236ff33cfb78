#include "shell/ToolRegistry.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "testlib/ScriptedDialogs.h"
#include "testlib/TestSupport.h"

namespace saltmarrow {
namespace {

using test::ScriptedDialogs;
using test::TempDir;
using test::writeFile;
namespace fs = std::filesystem;
using Lines = std::vector<std::string>;

// A program folder whose external/ holds the named files.
struct AppFolder {
    TempDir dir;
    explicit AppFolder(const std::vector<std::string> &tools) {
        fs::create_directories(dir.file("external"));
        for (const std::string &t : tools) writeFile(tool(t), "#!/bin/sh\n");
    }
    std::string tool(const std::string &name) const { return dir.file("external/" + name); }
};

// Only cdrdao and mkisofs are missed aloud (cygwin1.dll is a Windows matter);
// both reports list what is there, each in its own order and words.
TEST(ToolRegistry, WhatIsMissedAndWhatIsReported) {
    const std::string frame(62, '-'), header = "  saltmarrow found the following external tools:";
    struct Row {
        Lines tools, complaints;
        std::string list;
        Lines report;
    };
    const Row rows[] = {
        {{},
         {"/external/cdrdao could not be found!", "/external/mkisofs could not be found!"},
         "No external tools found!!!",
         {frame, "", "No external tools found!!!", "", frame}},
        {{"mkisofs"},
         {"/external/cdrdao could not be found!"},
         "Mkisofs for iso creation",
         {frame, "", header, "", "", "", "  Mkisofs for iso creation", "", frame}},
        {{"oggdec", "cdrdao"},
         {"/external/mkisofs could not be found!"},
         "Cdrdao zum Schreiben\r\nVorbis Tools - OggDec",
         {frame, "", header, "", "", "", "  Cdrdao zum Schreiben", "  Ogg Decoder ", "", frame}},
    };
    MessageTable messages;
    messages.set("extCdrdao", "zum Schreiben");
    for (const Row &row : rows) {
        AppFolder app(row.tools);
        fs::create_directory(app.tool("flac"));  // a folder of that name is no tool
        ScriptedDialogs dialogs;
        ToolPaths paths = ToolRegistry(app.dir.path(), dialogs, messages).resolveTools();
        Lines complaints;
        for (const auto &p : dialogs.prompts) {
            complaints.push_back(p.text);
            EXPECT_EQ(p.style, platform::mb::Exclamation);
        }
        EXPECT_EQ(complaints, row.complaints);
        EXPECT_EQ(paths.strFLAC, "");
        EXPECT_EQ(externalToolsList(paths, messages), row.list);
        EXPECT_EQ(toolReportLines(paths, messages), row.report);
    }

    // A tool that went away since start-up drops out of both reports.
    AppFolder app({"oggdec"});
    ScriptedDialogs dialogs;
    ToolPaths paths = ToolRegistry(app.dir.path(), dialogs, messages).resolveTools();
    fs::remove(app.tool("oggdec"));
    EXPECT_EQ(externalToolsList(paths, messages), rows[0].list);
    EXPECT_EQ(toolReportLines(paths, messages), rows[0].report);
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

}  // namespace
}  // namespace saltmarrow
