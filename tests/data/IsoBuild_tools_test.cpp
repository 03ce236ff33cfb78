// Images made by the real genisoimage from a data project, read back with
// isoinfo: names, sizes, contents, descriptors, the file systems, DVD-Video,
// El Torito; and the builds that must leave nothing behind.
#include <gtest/gtest.h>

#include <filesystem>

#include "data/IsoBuild.h"
#include "platform/CommandLine.h"
#include "testlib/ScriptedDialogs.h"
#include "testlib/TestSupport.h"

using namespace saltmarrow;
using namespace saltmarrow::data;
namespace fs = std::filesystem;

namespace {

std::string run(const std::vector<std::string> &args) {
    return test::runTool(args).output;
}

const std::string kLong(100, 'n');

struct Images : ::testing::Test {
    test::TempDir dir;
    test::ScriptedDialogs dialogs;
    DataProject project;
    std::string lastStatus;
    std::function<void()> onPump;
    IsoSettings iso;
    std::string src = dir.file("src"), out = dir.file("out");
    DataJob job{project, [this] {
                    DataHost h;
                    h.dialogs = &dialogs;
                    h.message = [](std::string_view key) { return std::string(key); };
                    h.showStatus = [this](const std::string &s) { lastStatus = s; };
                    h.letEventsRun = [this] {
                        if (onPump) onPump();
                    };
                    return h;
                }()};
    IsoBuild build{job, [this] {
                       IsoBuildHost h;
                       h.tempFolder = dir.file("TEMP");
                       h.mkisofs = "genisoimage";
                       h.charset = "utf-8";
                       return h;
                   }()};

    void SetUp() override {
        for (const char *d : {"src/My=Docs/sub", "src/empty", "out", "TEMP"})
            fs::create_directories(dir.file(d));
        test::writeFile(src + "/a=b.txt", "equals");
        test::writeFile(src + "/with blank.txt", "blank");
        test::writeFile(src + "/Grüße.txt", "umlauts");
        test::writeFile(src + "/" + kLong, "long");
        std::string deep(300000, '\0');
        for (std::size_t i = 0; i < deep.size(); ++i) deep[i] = static_cast<char>(i * 7919 % 251);
        test::writeFile(src + "/My=Docs/sub/deep.bin", deep);
        job.ClearList("L");
        iso.text(IsoField::Label) = "MY DISC";
    }
    void tick(std::initializer_list<IsoBox> boxes) {
        for (IsoBox b : boxes) iso.boxes[static_cast<std::size_t>(b)] = true;
    }
    // cmdBurn with chkCreateISO into target; the boxes shown meanwhile.
    std::vector<std::string> make(const std::string &target) {
        dialogs.prompts.clear();
        dialogs.answer(target);
        BurnClick click;
        click.chkCreateISO = true;
        click.isoSettings = [this] { return iso; };
        build.cmdBurn_Click(click);
        std::vector<std::string> boxes;
        for (const auto &p : dialogs.prompts)
            if (p.kind == "msgbox") boxes.push_back(p.text.substr(0, p.text.find(' ')));
        return boxes;
    }
    std::string info(const std::string &image, std::vector<std::string> args) {
        args.insert(args.begin(), "isoinfo");
        args.insert(args.end(), {"-i", image});
        return run(args);
    }
};

TEST_F(Images, NamesSizesContentsAndDescriptors) {
    job.addFolderContents(src);
    const std::pair<IsoField, const char *> fields[] = {
        {IsoField::SysID, "SYS"},     {IsoField::VolSet, "SET"},   {IsoField::Publisher, "PUB \"Q\" A"},
        {IsoField::Preparer, "PREP"}, {IsoField::Abstract, "ABS"}, {IsoField::Bibliographic, "BIB"},
        {IsoField::Copyright, "COPY"}};
    for (const auto &[field, value] : fields) iso.text(field) = value;
    tick({IsoBox::Joliet, IsoBox::RockRidge});
    for (const bool longJoliet : {true, false}) {
        iso.boxes[static_cast<std::size_t>(IsoBox::LongJoliet)] = longJoliet;
        const std::string image = out + (longJoliet ? "/long.iso" : "/short.iso");
        EXPECT_EQ(make(image), std::vector<std::string>{"msgWriteSuccess"});
        const std::string rr = info(image, {"-R", "-l"}), joliet = info(image, {"-J", "-l"});
        for (const char *name :
             {" a=b.txt ", " with blank.txt ", " Grüße.txt ", " My=Docs ", " empty ", " deep.bin "})
            EXPECT_NE(rr.find(name), std::string::npos) << name;
        EXPECT_NE(rr.find(" 300000 "), std::string::npos);
        EXPECT_NE(rr.find(" " + kLong + " "), std::string::npos);
        EXPECT_NE(joliet.find(" Gr\xFC\xDF"
                              "e.txt "),
                  std::string::npos);
        EXPECT_NE(joliet.find(" " + kLong.substr(0, longJoliet ? 100 : 64) + " "), std::string::npos);
        EXPECT_EQ(joliet.find(kLong.substr(0, 65)) != std::string::npos, longJoliet);
        for (const char *file : {"/a=b.txt", "/My=Docs/sub/deep.bin", "/Grüße.txt"})
            EXPECT_EQ(info(image, {"-R", "-x", file}), test::readFile(src + file)) << file;
        const std::string d = info(image, {"-d"});
        for (const char *line :
             {"Volume id: MY DISC\n", "System id: SYS\n", "Volume set id: SET\n",
              "Publisher id: PUB \"Q\" A\n", "Data preparer id: PREP\n", "Copyright File id: COPY\n",
              "Abstract File id: ABS\n", "Bibliographic File id: BIB\n", "Volume set size is: 1\n",
              "Application id: SALTMARROW\n"})
            EXPECT_NE(d.find(line), std::string::npos) << line;
    }
}

TEST_F(Images, UdfAndFilesOf4GiB) {
    job.addFolderContents(dir.file("src/My=Docs"));
    tick({IsoBox::UDF});
    EXPECT_EQ(make(out + "/u.iso"), std::vector<std::string>{"msgWriteSuccess"});
    const std::string head = test::readFile(out + "/u.iso").substr(16 * 2048, 8 * 2048);
    EXPECT_NE(head.find("NSR02"), std::string::npos);
    // Too big to build here: the dry run shows genisoimage takes it.
    fs::resize_file(src + "/with blank.txt", 4294967296);
    job.addFiles({src, "with blank.txt"});
    ASSERT_TRUE(build.buildFileList(false));
    const std::string options = build.getIsoCommand(IsoSettings());
    EXPECT_NE(options.find(" -udf -allow-limited-size"), std::string::npos);
    std::vector<std::string> args{"genisoimage", "-print-size"};
    for (const std::string &a : platform::splitCommandLine(options)) args.push_back(a);
    EXPECT_NE(run(args).find("Total extents scheduled to be written = 2097"), std::string::npos);
}

TEST_F(Images, DVDVideoFromItsStagingFolder) {
    project.blnDVDVideo = project.blnDVD = true;
    job.ClearList("MOVIE");
    job.loadFolderObjects("MOVIE\\VIDEO_TS");
    job.addFolderContents(test::sourcePath("tests/fixtures/dvdvideo/VIDEO_TS"));
    EXPECT_EQ(make(out + "/v.iso"), std::vector<std::string>{"msgWriteSuccess"});
    const std::string listing = info(out + "/v.iso", {"-l"});
    for (const char *name : {"/VIDEO_TS/", "/AUDIO_TS/", "VIDEO_TS.IFO;1", "VTS_01_1.VOB;1"})
        EXPECT_NE(listing.find(name), std::string::npos) << name;
    EXPECT_EQ(info(out + "/v.iso", {"-x", "/VIDEO_TS/VIDEO_TS.IFO;1"}),
              test::readFile(test::sourcePath("tests/fixtures/dvdvideo/VIDEO_TS/VIDEO_TS.IFO")));
}

TEST_F(Images, BootImageFromACopy) {
    std::string boot(4096, '\0');
    for (std::size_t i = 0; i < boot.size(); ++i) boot[i] = static_cast<char>(i % 253 + 1);
    test::writeFile(dir.file("boot=1.img"), boot);
    job.addFiles({src, "a=b.txt"});
    tick({IsoBox::Joliet, IsoBox::RockRidge, IsoBox::BootImage, IsoBox::NoEmulation, IsoBox::LoadSize,
          IsoBox::BootInfoTable});
    iso.strBootImage = dir.file("boot=1.img");
    iso.text(IsoField::LoadSize) = "4";
    EXPECT_EQ(make(out + "/b.iso"), std::vector<std::string>{"msgWriteSuccess"});
    EXPECT_EQ(test::readFile(dir.file("boot=1.img")), boot);
    const std::string d = info(out + "/b.iso", {"-d"});
    EXPECT_NE(d.find("Boot media 0 (No Emulation Boot)"), std::string::npos);
    EXPECT_NE(d.find("Nsect 4"), std::string::npos);
    const std::size_t at = d.find("Bootoff ");
    ASSERT_NE(at, std::string::npos);
    const long sector = std::stol(d.substr(d.find(' ', at + 8) + 1));
    const std::string placed = test::readFile(out + "/b.iso").substr(sector * 2048, boot.size());
    // Bytes 8 to 63 are the boot table genisoimage writes.
    EXPECT_EQ(placed.substr(0, 8) + placed.substr(64), boot.substr(0, 8) + boot.substr(64));
    EXPECT_NE(placed.substr(8, 56), boot.substr(8, 56));
    for (const char *flag : {"-R", "-J"})
        EXPECT_EQ(info(out + "/b.iso", {flag, "-l"}).find("Boot"), std::string::npos);
}

TEST_F(Images, FailuresLeaveNothingAndKeepAnOldImage) {
    // Split by hand, this name would write out/evil.iso.
    const std::string odd = out + "/a\" -o \"" + out + "/evil.iso";
    fs::create_directories(fs::path(odd).parent_path());
    struct Case {
        const char *what;
        std::function<void()> setup;
        std::string target;
        std::vector<std::string> boxes;
    } cases[] = {
        {"same Joliet name",
         [&] {
             for (char c : {'1', '2'}) test::writeFile(src + "/" + std::string(70, 'j') + c, "j");
             job.addFiles({src, std::string(70, 'j') + '1', std::string(70, 'j') + '2'});
             tick({IsoBox::Joliet});
         },
         out + "/old.iso",
         {"msgDupeFileName", "msgFileCheckFail"}},
        {"file gone since it was added",
         [&] {
             job.addFiles({src, "a=b.txt"});
             fs::remove(src + "/a=b.txt");
         },
         out + "/old.iso",
         {"msgFileCheckFail"}},
        {"quotes in the target",
         [&] {
             job.addFiles({src, "Grüße.txt"});
             tick({IsoBox::RockRidge});
         },
         odd,
         {"msgWriteSuccess"}},
    };
    for (const Case &c : cases) {
        job.ClearList("L");
        iso = IsoSettings();
        test::writeFile(out + "/old.iso", "old");
        c.setup();
        EXPECT_EQ(make(c.target), c.boxes) << c.what;
        EXPECT_EQ(test::readFile(out + "/old.iso"), "old") << c.what;
        std::vector<std::string> files;
        for (const auto &e : fs::recursive_directory_iterator(out))
            if (e.is_regular_file()) files.push_back(e.path().string());
        std::sort(files.begin(), files.end());
        std::vector<std::string> expected{out + "/old.iso"};
        if (c.target == odd) expected.insert(expected.begin(), odd);
        EXPECT_EQ(files, expected) << c.what;
    }
    EXPECT_NE(info(odd, {"-R", "-l"}).find(" Grüße.txt "), std::string::npos);
}

TEST_F(Images, CancelEndsTheToolAndRemovesThePartialImage) {
    fs::resize_file(src + "/with blank.txt", 1500000000);
    job.addFiles({src, "with blank.txt"});
    bool cancelled = false;
    onPump = [&] {
        if (cancelled || lastStatus.rfind("msgWritingISO", 0) != 0) return;
        cancelled = true;
        EXPECT_TRUE(build.objDOS.isRunning());
        EXPECT_TRUE(build.cancelClick("msgCancel"));
    };
    EXPECT_EQ(make(out + "/c.iso"), std::vector<std::string>{});
    EXPECT_TRUE(cancelled);
    EXPECT_TRUE(fs::is_empty(out));
    EXPECT_EQ(lastStatus, "msgWriteCancelled");
}

}  // namespace
