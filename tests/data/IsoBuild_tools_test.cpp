// Images made by the real genisoimage from a data project, read back with
// isoinfo; and the builds that must leave nothing behind.
#include <gtest/gtest.h>

#include <filesystem>

#include "data/IsoBuild.h"
#include "testlib/ScriptedDialogs.h"
#include "testlib/TestSupport.h"

using namespace saltmarrow;
using namespace saltmarrow::data;
namespace fs = std::filesystem;

namespace {

const std::string kLong(100, 'n');

// src: a=b.txt, with blank.txt, Grüße.txt, a 100-character name, empty/ and
// My=Docs/sub/deep.bin; the project's messages are their keys.
struct Images : ::testing::Test {
    test::TempDir dir;
    test::ScriptedDialogs dialogs;
    DataProject project;
    std::string lastStatus, src = dir.file("src"), out = dir.file("out");
    std::function<void()> onPump;
    IsoSettings iso;
    DataJob job{project, [this] {
                    DataHost h;
                    h.dialogs = &dialogs;
                    h.message = [](std::string_view key) { return std::string(key); };
                    h.showStatus = [this](const std::string &s) { lastStatus = s; };
                    h.letEventsRun = [this] { onPump ? onPump() : void(); };
                    return h;
                }()};
    IsoBuild build{
        job, IsoBuildHost{.tempFolder = dir.file("TEMP"), .mkisofs = "genisoimage", .charset = "utf-8"}};

    void SetUp() override {
        for (const char *d : {"src/My=Docs/sub", "src/empty", "out"}) fs::create_directories(dir.file(d));
        for (const std::string name : {"a=b.txt", "with blank.txt", "Grüße.txt", kLong.c_str()})
            test::writeFile(src + "/" + name, name + " holds this");
        test::writeFile(src + "/My=Docs/sub/deep.bin", std::string(300000, 'd'));
        job.ClearList("L");
    }
    void tick(std::initializer_list<IsoBox> boxes) {
        for (IsoBox b : boxes) iso.boxes[static_cast<std::size_t>(b)] = true;
    }
    // cmdBurn with chkCreateISO into target: the boxes shown meanwhile.
    std::vector<std::string> make(const std::string &target) {
        dialogs.prompts.clear();
        dialogs.answer(target);
        build.cmdBurn_Click({true, false, false, {}, [this] { return iso; }});
        std::vector<std::string> boxes;
        for (const auto &p : dialogs.prompts)
            if (p.kind == "msgbox") boxes.push_back(p.text);
        return boxes;
    }
    std::string info(const std::string &image, std::vector<std::string> args) {
        args.insert(args.begin(), "isoinfo");
        args.insert(args.end(), {"-i", image});
        return test::runTool(args).output;
    }
};

TEST_F(Images, NamesContentsDescriptorsUdfAndABootImageCopy) {
    const std::string boot(4096, 'Z');
    test::writeFile(dir.file("boot=1.img"), boot);
    iso.strBootImage = dir.file("boot=1.img");
    const std::pair<IsoField, const char *> fields[] = {
        {IsoField::Label, "MY DISC"},     {IsoField::SysID, "SYS"},      {IsoField::VolSet, "SET"},
        {IsoField::Publisher, "P \"Q\""}, {IsoField::Preparer, "PREP"},  {IsoField::Abstract, "ABS"},
        {IsoField::Bibliographic, "BIB"}, {IsoField::Copyright, "COPY"}, {IsoField::LoadSize, "4"}};
    for (const auto &[field, value] : fields) iso.text(field) = value;
    tick({IsoBox::Joliet, IsoBox::LongJoliet, IsoBox::RockRidge, IsoBox::UDF, IsoBox::BootImage,
          IsoBox::NoEmulation, IsoBox::LoadSize, IsoBox::BootInfoTable});
    job.addFolderContents(src);
    const std::string image = out + "/all.iso";
    EXPECT_EQ(make(image), std::vector<std::string>{"msgWriteSuccess"});
    const std::string rr = info(image, {"-R", "-l"}), joliet = info(image, {"-J", "-l"}),
                      d = info(image, {"-d"});
    for (const std::string &name : std::vector<std::string>{"a=b.txt", "with blank.txt", "Grüße.txt",
                                                            "My=Docs", "empty", "300000", kLong})
        EXPECT_NE(rr.find(" " + name + " "), std::string::npos) << name;
    EXPECT_NE(joliet.find(" Gr\xFC\xDF"
                          "e.txt "),
              std::string::npos);
    EXPECT_NE(joliet.find(" " + kLong + " "), std::string::npos);
    for (const char *file : {"/a=b.txt", "/My=Docs/sub/deep.bin", "/Grüße.txt"})
        EXPECT_EQ(info(image, {"-R", "-x", file}), test::readFile(src + file)) << file;
    for (const char *line :
         {"Volume id: MY DISC\n", "System id: SYS\n", "Volume set id: SET\n", "Publisher id: P \"Q\"\n",
          "Data preparer id: PREP\n", "Copyright File id: COPY\n", "Abstract File id: ABS\n",
          "Bibliographic File id: BIB\n", "Boot media 0 (No Emulation Boot)", "Nsect 4"})
        EXPECT_NE(d.find(line), std::string::npos) << line;
    const std::string bytes = test::readFile(image);
    EXPECT_NE(bytes.substr(16 * 2048, 8 * 2048).find("NSR02"), std::string::npos) << "UDF";
    // The user's file stays as it was; the copy on the disc has genisoimage's boot table in bytes 8 to 63.
    EXPECT_TRUE(test::readFile(dir.file("boot=1.img")) == boot) << "the user's boot image changed";
    const long sector = std::stol(d.substr(d.find(' ', d.find("Bootoff ") + 8) + 1));
    const std::string placed = bytes.substr(sector * 2048, boot.size());
    EXPECT_EQ(placed.substr(0, 8) + placed.substr(64), boot.substr(0, 8) + boot.substr(64));
    EXPECT_NE(placed.substr(8, 56), boot.substr(8, 56));
    EXPECT_EQ((rr + joliet).find("Boot"), std::string::npos);

    iso = IsoSettings();
    tick({IsoBox::Joliet});
    EXPECT_EQ(make(out + "/short.iso"), std::vector<std::string>{"msgWriteSuccess"});
    EXPECT_NE(info(out + "/short.iso", {"-J", "-l"}).find(" " + kLong.substr(0, 64) + " "),
              std::string::npos);
}

TEST_F(Images, RefusalsFailuresAndCancelLeaveNothingAndKeepAnOldImage) {
    // Split by hand, this name would write out/evil.iso.
    const std::string odd = out + "/a\" -o \"" + out + "/evil.iso", dupe = std::string(70, 'j'),
                      old = out + "/old.iso";
    fs::create_directories(fs::path(odd).parent_path());
    test::writeFile(src + "/big", "");
    fs::resize_file(src + "/big", 1500000000);
    for (const char *c : {"1", "2"}) test::writeFile(src + "/" + dupe + c, "j");
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
        test::writeFile(src + "/gone", "");
        std::vector<std::string> add{src};
        add.insert(add.end(), names.begin(), names.end());
        if (!names.empty()) job.addFiles(add);
        fs::remove(src + "/gone");
        iso.boxes[static_cast<std::size_t>(IsoBox::Joliet)] = true;
        onPump = names == std::vector<std::string>{"big"} ? std::function<void()>(cancel) : nullptr;
        const bool good = boxes == std::vector<std::string>{"msgWriteSuccess"};
        EXPECT_EQ(make(good ? odd : old), boxes);
        std::vector<std::string> files;
        for (const auto &e : fs::recursive_directory_iterator(out))
            if (e.is_regular_file()) files.push_back(e.path().string());
        std::sort(files.begin(), files.end());
        EXPECT_EQ(files, (good ? std::vector<std::string>{odd, old} : std::vector<std::string>{old}));
        EXPECT_EQ(test::readFile(old), "old");
    }
    EXPECT_TRUE(cancelled);
    EXPECT_NE(info(odd, {"-J", "-l"})
                  .find("Gr\xFC\xDF"
                        "e.txt"),
              std::string::npos);
    project.cancelFlag = true;
    EXPECT_FALSE(build.buildFileList(true));
    EXPECT_FALSE(fs::exists(dir.file("TEMP/isofilelist.txt"))) << "a cancelled list is deleted";
}

}  // namespace
