// Image files made by the real genisoimage: the builds that fail, are
// cancelled or are refused leave nothing where the user asked for an image,
// and an old image of that name survives them.
#include <gtest/gtest.h>

#include <filesystem>

#include "data/IsoBuild.h"
#include "testlib/ScriptedDialogs.h"
#include "testlib/TestSupport.h"

using namespace saltmarrow;
using namespace saltmarrow::data;
namespace fs = std::filesystem;

TEST(IsoBuild, RefusalsFailuresAndCancelLeaveNothingAndKeepAnOldImage) {
    test::TempDir dir;
    test::ScriptedDialogs dialogs;
    DataProject project;
    std::string lastStatus;
    std::function<void()> onPump;
    DataHost host;
    host.dialogs = &dialogs;
    host.message = [](std::string_view key) { return std::string(key); };
    host.showStatus = [&](const std::string &s) { lastStatus = s; };
    host.letEventsRun = [&] { onPump ? onPump() : void(); };
    DataJob job(project, host);
    IsoBuild build(
        job, IsoBuildHost{.tempFolder = dir.file("TEMP"), .mkisofs = "genisoimage", .charset = "utf-8"});
    // Split by hand, this name would write out/evil.iso.
    const std::string out = dir.file("out"), odd = out + "/a\" -o \"" + out + "/evil.iso",
                      old = out + "/old.iso";
    const std::string dupe(70, 'j');
    fs::create_directories(fs::path(odd).parent_path());
    for (const std::string &name : {dupe + "1", dupe + "2", std::string("Grüße.txt"), std::string("big")})
        test::writeFile(dir.file(name), name);
    fs::resize_file(dir.file("big"), 1500000000);
    bool cancelled = false;
    const auto cancel = [&] {
        if (!cancelled && lastStatus.starts_with("msgWritingISO")) cancelled = build.cancelClick("msgCancel");
    };
    const std::pair<std::vector<std::string>, std::vector<std::string>> rows[] = {
        {{}, {"msgAddData"}},
        {{dupe + "1", dupe + "2"}, {"msgDupeFileName", "msgFileCheckFail"}},
        {{"gone"}, {"msgFileCheckFail"}},
        {{"big"}, {}},
        {{"Grüße.txt"}, {"msgWriteSuccess"}},
    };
    for (const auto &[names, boxes] : rows) {
        job.ClearList("L");
        test::writeFile(old, "old");
        test::writeFile(dir.file("gone"), "");
        std::vector<std::string> add{dir.path()};
        add.insert(add.end(), names.begin(), names.end());
        if (!names.empty()) job.addFiles(add);
        fs::remove(dir.file("gone"));
        onPump = names == std::vector<std::string>{"big"} ? std::function<void()>(cancel) : nullptr;
        const bool good = boxes == std::vector<std::string>{"msgWriteSuccess"};
        dialogs.prompts.clear();
        dialogs.answer(good ? odd : old);
        IsoSettings iso;
        iso.boxes[static_cast<std::size_t>(IsoBox::Joliet)] = true;
        build.cmdBurn_Click({true, false, false, {}, [&] { return iso; }});
        std::vector<std::string> shown, files;
        for (const auto &p : dialogs.prompts)
            if (p.kind == "msgbox") shown.push_back(p.text);
        EXPECT_EQ(shown, boxes);
        for (const auto &e : fs::recursive_directory_iterator(out))
            if (e.is_regular_file()) files.push_back(e.path().string());
        std::sort(files.begin(), files.end());
        EXPECT_EQ(files, (good ? std::vector<std::string>{odd, old} : std::vector<std::string>{old}));
        EXPECT_EQ(test::readFile(old), "old");
        EXPECT_EQ(lastStatus == "msgWriteCancelled", bool(onPump)) << "a cancelled build says so";
    }
    EXPECT_TRUE(cancelled);
    EXPECT_NE(test::runTool({"isoinfo", "-J", "-l", "-i", odd}).output.find("Gr\374\337e.txt"),
              std::string::npos);
    project.cancelFlag = true;
    EXPECT_FALSE(build.buildFileList(true));
    EXPECT_FALSE(fs::exists(dir.file("TEMP/isofilelist.txt"))) << "a cancelled list is deleted";
}
