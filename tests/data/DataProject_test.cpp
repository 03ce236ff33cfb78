// The data project on real folders: names, the three names of a node, the
// adds with their quirks and refusals, renames, removals and the size display.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <map>

#include "data/DataJob.h"
#include "data/VolumeLabel.h"
#include "platform/Dialogs.h"
#include "testlib/ScriptedDialogs.h"
#include "testlib/TestSupport.h"

using namespace saltmarrow;
using namespace saltmarrow::data;
namespace fs = std::filesystem;
namespace mb = platform::mb;

namespace {

// A project named L whose messages are their keys, with scripted dialogs
// and a folder `top` holding: a;x/{c.txt, deep/d.txt}, b.txt, empty/.
struct Rig : ::testing::Test {
    test::TempDir dir;
    test::ScriptedDialogs dialogs;
    std::map<std::string, std::string, std::less<>> settings;
    std::vector<std::pair<double, double>> progress;
    std::function<void(double)> onProgress;
    std::string panel;  // the status bar's size
    DataProject project;
    DataJob job{project, host()};
    std::string top = dir.file("top");

    DataHost host() {
        DataHost h;
        h.dialogs = &dialogs;
        h.message = [](std::string_view key) { return std::string(key); };
        h.setting = [this](std::string_view key) { return settings[std::string(key)]; };
        h.setSetting = [this](std::string_view key, const std::string &v) { settings[std::string(key)] = v; };
        h.showProgress = [this](double max, double value) {
            progress.emplace_back(max, value);
            if (onProgress) onProgress(value);
        };
        h.showStatus = [this](const std::string &t) { panel = t; };
        return h;
    }
    void SetUp() override {
        job.ClearList("L");
        fs::create_directories(top + "/a;x/deep");
        fs::create_directories(top + "/empty");
        test::writeFile(top + "/a;x/c.txt", "cccc");
        test::writeFile(top + "/a;x/deep/d.txt", "ddddd");
        test::writeFile(top + "/b.txt", "bbb");
    }
    NodeId node(const std::string &key) { return project.findNode(key); }
    std::vector<std::string> names(const std::string &key) {
        std::vector<std::string> out;
        for (const ItemView &v : project.items(node(key))) out.emplace_back(v.Name());
        return out;
    }
    double size(const std::string &key, const std::string &origName) {
        return project.item(node(key), origName)->Size();
    }
    std::vector<std::string> prompts() {
        std::vector<std::string> out;
        for (const auto &p : dialogs.prompts) out.push_back(p.text);
        return out;
    }
};

// The separators and stray bytes of real names are cleaned in the adds below.
TEST(DataNames, FileNameCheckKeepsWholeCharactersOnly) {
    const std::pair<std::string, std::string> cases[] = {
        {"caf\xc3\xa9", "caf\xc3\xa9"},
        {"cut\xe2\x82", "cut__"},
        {"surrogate\xed\xa0\x80", "surrogate___"},
        {"over\xc0\xaf", "over__"},
    };
    for (const auto &[in, out] : cases) EXPECT_EQ(fileNameCheck(in), out) << in;
    EXPECT_EQ(formatSize(999), "999");
}

TEST(DataNames, DefaultLabels) {
    LabelTime t{2026, 11, 15, 14, 5, "15.11.2026", "14:05"};
    EXPECT_EQ(defaultVolumeLabel(true, t), "261115_1405");
    EXPECT_EQ(defaultVolumeLabel(false, t), "151126_1405");
    t.shortDate = "11/15/26";
    t.shortTime = "2:05 PM";
    EXPECT_EQ(defaultVolumeLabel(false, t), "111526_205");
}

TEST_F(Rig, FilesInTheRootAreCheckedOneByOneAndCancelEndsTheAdd) {
    test::writeFile(dir.file("a;b=c.txt"), "12345");
    test::writeFile(dir.file("real"), "r");
    test::writeFile(dir.file("target"), "0123456789");
    test::writeFile(dir.file("line\nbreak"), "x");
    fs::create_symlink(dir.file("target"), dir.file("link"));
    fs::create_symlink(dir.file("nowhere"), dir.file("dangling"));
    fs::create_directory_symlink(top, dir.file("dirlink"));
    ASSERT_EQ(mkfifo(dir.file("pipe").c_str(), 0600), 0);
    job.addFiles(
        {dir.path(), "a;b=c.txt", "dangling", "dirlink", "gone", "line\nbreak", "link", "pipe", "real"});
    job.addFiles({dir.path(), "a;b=c.txt"});
    EXPECT_EQ(prompts(), (std::vector<std::string>{
                             "msgIllegalFilename\r\n\r\n\\dangling", "msgIllegalFilename\r\n\r\n\\dirlink",
                             "msgIllegalFilename\r\n\r\n\\gone", "msgIllegalFilename\r\n\r\n\\line\nbreak",
                             "msgIllegalFilename\r\n\r\n\\pipe"}));
    EXPECT_EQ(names("L"), (std::vector<std::string>{"a_b=c.txt", "link", "real"}));
    const auto file = project.item(project.root(), "a_b=c.txt");
    EXPECT_EQ(file->SourcePath(), dir.file("a;b=c.txt"));
    EXPECT_EQ(file->IconKey(), "txticon");
    const auto link = project.item(project.root(), "link");
    EXPECT_EQ(link->SourcePath(), dir.file("target")) << "a link is read through its target";
    EXPECT_EQ(link->Size(), 10);
    EXPECT_EQ(project.total, 21) << "a clash is silent and its size stays counted";
    EXPECT_TRUE(project.blnDirty);

    job.ClearList("L");
    dialogs.prompts.clear();
    dialogs.answer(mb::Cancel);
    job.addFiles({dir.path(), "gone", "real"});
    EXPECT_EQ(dialogs.prompts.size(), 1u);
    EXPECT_TRUE(names("L").empty()) << "Cancel stops before the next file";
}

TEST_F(Rig, AncestorsGrowBySinglePrecisionWhileTheTotalStaysExact) {
    project.newFolder(project.root(), "sub");
    job.loadFolderObjects("L\\sub");
    test::writeFile(dir.file("one"), "1");
    fs::resize_file(dir.file("one"), 16777217);
    test::writeFile(dir.file("two"), "2");
    job.addFiles({dir.path(), "one", "two"});
    EXPECT_EQ(project.total, 16777218.0);
    EXPECT_EQ(size("L", "sub"), 16777216.0);
}

TEST_F(Rig, AFolderKeepsItsListingOrderAndEachNodeItsThreeNames) {
    const std::string longName(255, 'n');
    test::writeFile(top + "/a;x/" + longName, "");
    progress.clear();
    EXPECT_EQ(job.addFolder(top, "", true, false), 12);
    std::vector<std::string> keys, tags;
    for (NodeId id : project.nodeOrder()) keys.push_back(project.Key(id));
    EXPECT_EQ(keys,
              (std::vector<std::string>{"L", "L\\top", "L\\top\\a_x", "L\\top\\a_x\\deep", "L\\top\\empty"}));
    EXPECT_EQ(project.Tag(node("L\\top\\a_x\\deep")), "L\\top\\a_x\\deep");
    EXPECT_EQ(names("L\\top"), (std::vector<std::string>{"a_x", "b.txt", "empty"}));
    EXPECT_EQ(names("L\\top\\a_x"), (std::vector<std::string>{"c.txt", "deep", longName}));
    EXPECT_EQ(size("L", "top"), 12);
    EXPECT_EQ(size("L\\top", "a_x"), 9);
    EXPECT_EQ(project.total, 12);
    EXPECT_EQ(project.item(node("L\\top"), "a_x")->SourcePath(), top + "/a;x");
    EXPECT_EQ(project.item(node("L"), "top")->SourcePath(), top);
    EXPECT_TRUE(project.hasCollection("L\\top\\empty"));
    EXPECT_EQ(progress.front(), std::make_pair(3.0, 0.0));
    EXPECT_EQ(progress.back(), std::make_pair(3.0, 3.0));

    EXPECT_EQ(job.addFolder(top, "", true, false), 0);
    EXPECT_EQ(prompts(), std::vector<std::string>{"msgFolderExists"});
    EXPECT_EQ(project.total, 12);
}

TEST_F(Rig, RenamesRetagDescendantsAndKeepEveryKey) {
    job.addFolder(top, "", true, false);
    EXPECT_TRUE(project.renameItem(project.root(), "top", "ren;"));
    const NodeId deep = node("L\\top\\a_x\\deep");
    EXPECT_EQ(project.Text(node("L\\top")), "ren_");
    EXPECT_EQ(project.Tag(deep), "L\\ren_\\a_x\\deep");
    EXPECT_TRUE(project.renameNode(deep, "deeper"));
    EXPECT_EQ(project.Tag(deep), "L\\ren_\\a_x\\deeper");
    EXPECT_EQ(project.item(node("L\\top\\a_x"), "deep")->Name(), "deeper") << "found by its key";
    EXPECT_EQ(project.Key(deep), "L\\top\\a_x\\deep");
    for (const char *refused : {"   ", "", "b.txt", "two\nlines"})
        EXPECT_FALSE(project.renameItem(node("L\\top"), "a_x", refused)) << refused;
    EXPECT_EQ(project.item(node("L\\top"), "a_x")->Name(), "a_x");
    EXPECT_EQ(job.rootLabel("a b#", true), "A_B");
    EXPECT_EQ(job.rootLabel("a b#", false), "a b#");
    EXPECT_FALSE(job.rootLabel("##", true));
}

TEST_F(Rig, NewFolderNumbersItsNamesAndRemovalLeavesNothingBehind) {
    job.mnuNewFolder_Click();
    job.mnuNewFolder_Click();
    EXPECT_EQ(names("L"), (std::vector<std::string>{"New Folder", "New Folder(1)"}));
    EXPECT_TRUE(project.hasCollection("L\\New Folder(1)"));
    EXPECT_EQ(project.item(project.root(), "New Folder")->SourcePath(), "");

    job.addFolder(top, "", true, false);
    job.loadFolderObjects("L\\top");
    job.removeListItems({"a_x"});
    for (const char *key : {"L\\top\\a_x", "L\\top\\a_x\\deep"})
        EXPECT_FALSE(project.hasCollection(key)) << key;
    EXPECT_EQ(project.findNode("L\\top\\a_x\\deep"), kNoNode);
    EXPECT_EQ(size("L", "top"), 3);
    EXPECT_EQ(project.total, 3);

    job.removeNode(project.root());
    EXPECT_EQ(project.count(project.root()), 3u) << "the root has no record and stays";
    job.removeNode(node("L\\top"));
    EXPECT_EQ(project.total, 0);
    EXPECT_EQ(names("L"), (std::vector<std::string>{"New Folder", "New Folder(1)"}));
    EXPECT_EQ(project.selected, project.root());
}

TEST_F(Rig, CancelMidAddKeepsWhatWasAddedAndVanishedFoldersAreSaidSo) {
    onProgress = [this](double value) {
        if (value == 3) job.cancelClick("msgCancel");
    };
    job.addFolder(top, "", true, false);
    EXPECT_EQ(names("L\\top"), (std::vector<std::string>{"a_x", "b.txt"}));
    EXPECT_EQ(size("L", "top"), 12);
    EXPECT_FALSE(job.cancelClick("&Burn"));

    project.cancelFlag = false;
    onProgress = [this](double value) {
        if (value == 1) fs::remove_all(top + "/empty");
    };
    job.ClearList("L");
    fs::create_directory(top + "/empty");
    job.addFolder(top, "", true, false);
    EXPECT_EQ(prompts(), std::vector<std::string>{"msgIllegalFilename\r\n\r\n\\empty"});
    EXPECT_EQ(project.findNode("L\\top\\empty"), kNoNode);
    EXPECT_EQ(names("L\\top"), (std::vector<std::string>{"a_x", "b.txt"}));
}

TEST_F(Rig, LinksToFoldersAreNeverFollowedAndOddNamesKeepTheirBytes) {
    fs::create_directory_symlink(top, top + "/a;x/loop");
    fs::create_directory(top + "/x\\y");
    test::writeFile(top + "/x\\y/bad\xff.txt", "!");
    job.addFolder(top, "", true, false);
    EXPECT_EQ(prompts(), std::vector<std::string>{"msgIllegalFilename\r\n\r\n\\loop"});
    const auto bad = project.item(node("L\\top\\x_y"), "bad_.txt");
    ASSERT_TRUE(bad);
    EXPECT_EQ(bad->SourcePath(), top + "/x\\y/bad\xff.txt");
    EXPECT_EQ(project.total, 13);
}

TEST_F(Rig, BrowseDropAndTheFileDialogFillTheSelectedFolder) {
    dialogs.answer(platform::FolderChoice{"/", false});
    job.cmdBrowse_Click();
    EXPECT_EQ(prompts().back(), "msgToAddRootFolder");
    EXPECT_EQ(project.count(project.root()), 0u);

    settings["FolderContentsOnly"] = "1";
    dialogs.answer(platform::FolderChoice{top, true});
    job.cmdBrowse_Click();
    EXPECT_EQ(dialogs.prompts.back().request.flags, 1) << "the box starts from the setting";
    EXPECT_EQ(names("L"), (std::vector<std::string>{"a_x", "empty", "b.txt"}));
    EXPECT_EQ(settings["MRUData"], top);

    job.ClearList("L");
    job.dropFiles({top + "/b.txt", top + "/a;x", dir.file("elsewhere")});
    EXPECT_EQ(names("L"), (std::vector<std::string>{"a_x", "b.txt"}));
    EXPECT_EQ(prompts().back(), "msgIllegalFilename\r\n\r\n\\elsewhere");

    job.ClearList("L");
    project.blnDVD = true;
    dialogs.answer(std::vector<std::string>{top + "/b.txt", top + "/a;x/c.txt"});
    job.cmdAddFiles_Click();
    EXPECT_EQ(names("L"), std::vector<std::string>{"b.txt"});
    EXPECT_EQ(settings["DVDMRUData"], top);
}

TEST_F(Rig, SizeDisplayAgainstTheFixedCapacities) {
    const std::tuple<bool, double, double> cases[] = {
        {false, 1234, 1234}, {false, 9e8, kCDCapacity}, {true, 9e8, 9e8}, {true, 5e9, kDVDCapacity}};
    for (const auto &[dvd, total, value] : cases) {
        project.blnDVD = dvd;
        project.total = total;
        progress.clear();
        job.updateSize();
        EXPECT_EQ(progress.back(), std::make_pair(dvd ? kDVDCapacity : kCDCapacity, value));
    }
    EXPECT_EQ(panel, "msgTotalSize5,000,000,000");
    job.ClearList("D");
    EXPECT_TRUE(names("D").empty()) << "a data DVD starts empty";
    project.blnDVDVideo = true;
    job.ClearList("V");
    EXPECT_EQ(names("V"), (std::vector<std::string>{"VIDEO_TS", "AUDIO_TS"}));
    EXPECT_EQ(project.total, 0);
    EXPECT_FALSE(project.blnDirty);
}

}  // namespace
