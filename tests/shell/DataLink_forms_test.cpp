// The mastering menu opens the data form in its kind, and data discs are
// burnt from it end to end.
#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QLineEdit>
#include <QPushButton>
#include <filesystem>

#include "data/frmDataCD.h"
#include "data/frmISOSettings.h"
#include "testlib/FakeDrive.h"
#include "testlib/ShellHarness.h"

using namespace saltmarrow;
using namespace saltmarrow::test;
namespace mb = saltmarrow::platform::mb;

// When a change of kind asks and what Cancel keeps: NewDataJob in tests/data.
// Here, that each entry opens the one form in its kind, with the main
// window's settings and messages.
TEST(DataLink, MenuEntriesOpenTheOneFormInTheirKind) {
    ShellHarness shell;
    frmMain &main = shell.form();
    TempDir dir;
    writeFile(dir.file("a.txt"), "12345");
    const std::pair<QAction *, const char *> entries[] = {{main.mnuDataDVD, "Data DVD Mastering"},
                                                          {main.mnuDVDVideo, "DVD Video Mastering"},
                                                          {main.mnuDataCD, "Data CD Mastering"}};
    for (const auto &[entry, title] : entries) {
        entry->trigger();  // what the kind before added is cleared: the question gets OK
        auto *form = main.findChild<frmDataCD *>("frmDataCD");
        ASSERT_TRUE(form);
        EXPECT_TRUE(form->isVisible());
        EXPECT_EQ(form->windowTitle(), title);
        shell.dialogs.answer(std::vector<std::string>{dir.file("a.txt")});
        form->mnuAddFiles->trigger();
        EXPECT_EQ(form->project.total, 5);
        form->close();
        EXPECT_FALSE(form->isVisible()) << "closing only hides it";
    }
    EXPECT_EQ(main.settings.text("DVDMRUData"), dir.path());
    EXPECT_EQ(shell.dialogs.prompts.at(1).text,
              "Starting a new data project type will clear previous data project.");
    EXPECT_EQ(main.findChildren<frmDataCD *>().size(), 1);
    EXPECT_TRUE(shell.errors.reports.empty());
}

namespace {

// A data project burnt with Auto Write: the data form hands it to the main
// window, which pipes the real genisoimage into the fake drive. The drive's
// path is a file, so that -M can read a first session from it.
struct DataDiscs : ::testing::Test {
    TempDir root;
    const std::string app = root.file("app"), src = root.file("src"), disc = root.file("disc");
    const std::string kept = app + "/external/fakedrive.state.received";
    std::unique_ptr<ShellHarness> h;
    frmDataCD *form = nullptr;

    void start(LinuxDrive drive, QAction *frmMain::*kind = &frmMain::mnuDataCD) {
        drive.path = disc;
        std::filesystem::create_directories(src + "/My=Docs");
        writeFile(src + "/My=Docs/a.txt", "first");
        writeFile(src + "/Grüße.txt", std::string(1500000, 'g'));
        installFakeDrive(app, {drive});
        h = ShellHarness::inFolder(app, {}, false);
        ASSERT_TRUE(h->form().Form_Load());
        (h->form().*kind)->trigger();
        form = h->form().findChild<frmDataCD *>();
        form->mnuAutoWrite->setChecked(true);
    }
    void burn(const std::string &folder = {}) {
        h->dialogs.prompts.clear();
        if (!folder.empty()) form->job().addFolderContents(folder);
        form->cmdBurn->click();
        QCoreApplication::processEvents();
    }
    std::string status() { return h->form().txtStatus->text().toStdString(); }
    std::string info(const std::string &image, std::vector<std::string> args) {
        args.insert(args.begin(), "isoinfo");
        args.insert(args.end(), {"-i", image});
        return runTool(args).output;
    }
};

// Names with "=", blanks, umlauts and 100 characters, an empty folder, every
// descriptor and a boot image: all read back from what the drive got. Which
// box gives which option is IsoBuild's (tests/data).
TEST_F(DataDiscs, ACDOnTheFlyThenASessionThatImportsIt) {
    const std::string longName(100, 'n'), boot(4096, 'Z'), temp = app + "/external/TEMP/";
    for (const std::string &name : {std::string("a=b c.txt"), longName}) writeFile(root.file(name), name);
    std::filesystem::create_directories(src + "/empty");
    writeFile(root.file("boot=1.img"), boot);
    LinuxDrive cd = cdWriter("CD-R", kBlankCDR);
    start(cd);
    form->job().addFiles({root.path(), "a=b c.txt", longName});
    frmISOSettings &iso = *form->iso();
    // Each descriptor with its text and the name isoinfo gives it.
    const std::tuple<data::IsoField, std::string, std::string> fields[] = {
        {data::IsoField::SysID, "SYS", "System id"},
        {data::IsoField::VolSet, "SET", "Volume set id"},
        {data::IsoField::Publisher, "P \"Q\"", "Publisher id"},
        {data::IsoField::Preparer, "PREP", "Data preparer id"},
        {data::IsoField::Abstract, "ABS", "Abstract File id"},
        {data::IsoField::Bibliographic, "BIB", "Bibliographic File id"},
        {data::IsoField::Copyright, "COPY", "Copyright File id"},
        {data::IsoField::Label, "MY DISC", "Volume id"}};
    for (const auto &[field, text, name] : fields) iso.field(field)->setText(QString::fromStdString(text));
    for (data::IsoBox b : {data::IsoBox::LongJoliet, data::IsoBox::UDF, data::IsoBox::BootImage,
                           data::IsoBox::NoEmulation, data::IsoBox::BootInfoTable})
        iso.box(b)->click();
    h->dialogs.answer(std::vector<std::string>{root.file("boot=1.img")});
    iso.cmdBootImage->click();
    burn(src);
    EXPECT_EQ(status().substr(0, 29), "Writing finished successfully");
    EXPECT_EQ(fakeCalls(app, "cdrdao write").back().find("cdrdao write --device " + disc + " "), 0u);
    const std::string list = readFile(temp + "filelist.txt");
    EXPECT_EQ(list.substr(list.rfind('\n')), "\n/My\\=Docs/a.txt=" + src + "/My\\=Docs/a.txt")
        << "last, no line end";
    const std::string first = readFile(kept), next = std::to_string(first.size() / 2048);
    const std::string rr = info(kept, {"-R", "-l"}), d = info(kept, {"-d"});
    for (const char *name : {"a=b c.txt", "Grüße.txt", "My=Docs", "empty", "1500000", longName.c_str()})
        EXPECT_NE(rr.find(" " + std::string(name) + " "), std::string::npos) << name;
    EXPECT_EQ(info(kept, {"-R", "-x", "/My=Docs/a.txt"}), "first");
    for (const auto &[field, text, name] : fields)
        EXPECT_NE(d.find(name + ": " + text + "\n"), std::string::npos) << name;
    EXPECT_NE(d.find("(No Emulation Boot)"), std::string::npos);
    // genisoimage writes its table into the boot image it is given: the user's stays as it was.
    EXPECT_TRUE(readFile(root.file("boot=1.img")) == boot);

    writeFile(disc, first);
    cd.extra = "blank = no\nappendable = yes\ncapacity = 359849\nremaining = " +
               std::to_string(359849 - first.size() / 2048) + "\n";
    cd.path = disc;
    std::filesystem::remove(app + "/external/fakedrive.state.media");
    installFakeDrive(app, {cd});
    std::filesystem::create_directories(root.file("more"));
    writeFile(root.file("more/two.txt"), "second");
    form->job().ClearList("L2");
    for (data::IsoBox b :
         {data::IsoBox::UDF, data::IsoBox::BootImage, data::IsoBox::LongJoliet, data::IsoBox::Multi})
        iso.box(b)->click();
    burn(root.file("more"));
    EXPECT_EQ(status().substr(0, 29), "Writing finished successfully");
    EXPECT_NE(readFile(temp + "command.bat").find(" -C 0," + next + " -M " + disc + " -quiet "),
              std::string::npos);
    // A stream shorter than the 4 seconds cdrdao takes is filled up.
    EXPECT_EQ(readFile(temp + "mkisofs.toc").substr(0, 11), "CD_ROM_XA\r\n");
    EXPECT_NE(readFile(temp + "mkisofs.toc").find("\r\nZERO MODE1 "), std::string::npos);
    writeFile(root.file("both"), first + readFile(kept));
    const std::string both = info(root.file("both"), {"-R", "-l", "-T", next});
    for (const char *name : {" two.txt ", " Grüße.txt ", " My=Docs "})
        EXPECT_NE(both.find(name), std::string::npos);
}

TEST_F(DataDiscs, ADVDVideoOnTheFlyCancelledThenWrittenAndItsImageWrittenAgain) {
    LinuxDrive dvd;
    dvd.medium = "DVD+R";
    dvd.extra = "blank = yes\nhang = dvdrecord\n";
    start(dvd, &frmMain::mnuDVDVideo);
    form->job().loadFolderObjects(form->project.Key(form->project.root()) + "\\VIDEO_TS");
    form->job().addFolderContents(sourcePath("tests/fixtures/dvdvideo/VIDEO_TS"));
    bool clicked = false;
    auto original = h->form().runner.objDOS.nullOutputs;
    h->form().runner.objDOS.nullOutputs = [&] {
        original();
        if (!clicked && !fakeCalls(app, "dvdrecord").empty()) clicked = (h->form().cmdWrite->click(), true);
    };
    burn();
    EXPECT_TRUE(clicked);
    EXPECT_EQ(status(), "Write Operation Cancelled.");
    EXPECT_TRUE(livingProcessesNaming(app).empty());

    dvd.path = disc;
    dvd.extra = "blank = yes\n";
    installFakeDrive(app, {dvd});
    h->form().mnuConfirmWrite->setChecked(true);
    burn();
    EXPECT_EQ(status().substr(0, 29), "Writing finished successfully");
    EXPECT_EQ(h->dialogs.prompts.at(0).text, "1 MB to be written to disc (4483 MB free).");
    const std::string write = fakeCalls(app, "dvdrecord").back();
    EXPECT_NE(write.find(" -tsize " + std::to_string(readFile(kept).size() / 2048) + "s -"),
              std::string::npos);
    EXPECT_NE(info(kept, {"-l"}).find("VTS_01_1.VOB;1"), std::string::npos);

    const std::string image = root.file("video.iso");
    std::filesystem::copy_file(kept, image);
    h->form().commandLine = "-i \"" + image + "\"";
    h->form().parseCommand();
    h->form().cmdWrite->click();
    EXPECT_EQ(fakeCalls(app, "dvdrecord").back().substr(write.find(" -tsize")),
              " -tsize=" + std::to_string(readFile(image).size() / 2048) + "s " + image);
}

TEST_F(DataDiscs, RefusalsALargeFileAndAFullDisc) {
    const std::string appendable = "blank = no\nappendable = yes\ncapacity = 359849\nremaining = 1000\n";
    struct Row {
        std::string disc;
        bool multi;
        std::string file;  // added: "gone" is deleted then, "large" has 4 GiB
        std::string box, status;
        std::size_t writes;
    } rows[] = {
        {kBlankCDR, true, "x", "Inserted medium is not appendable!", "Write Operation Cancelled.", 0},
        {appendable, false, "x", "Inserted medium is not blank!", "Write Operation Cancelled.", 0},
        {kBlankCDR, false, "gone", "", "File check failed - please see log.", 0},
        {kBlankCDR, false, "large", "Files of 4 GB or more are seen whole only by readers of UDF.",
         "Write Operation Cancelled.", 0},
        {kBlankCDR + "full_after_mb = 1\n", false, "x", "", "ERROR: Write failed, please consult the log.",
         1},
    };
    for (const Row &r : rows) {
        start(cdWriter("CD-R", r.disc));
        if (r.multi) form->iso()->box(data::IsoBox::Multi)->click();
        h->form().mnuConfirmWrite->setChecked(r.file == "large");
        writeFile(root.file(r.file), "");
        if (r.file == "large") std::filesystem::resize_file(root.file(r.file), 4294967296);
        form->job().addFiles({root.path(), r.file});
        if (r.file == "gone") std::filesystem::remove(root.file(r.file));
        h->dialogs.answer(mb::Cancel);
        burn(src);
        const std::string box = h->dialogs.prompts.empty() ? "" : h->dialogs.prompts.back().text;
        EXPECT_EQ(box.substr(box.rfind('\n') + 1), r.box);
        EXPECT_EQ(status(), r.status) << r.box;
        EXPECT_EQ(fakeCalls(app, "cdrdao write").size(), r.writes) << r.status;
        EXPECT_TRUE(livingProcessesNaming(app).empty());
        std::filesystem::remove(app + "/external/fakedrive.log");
    }
}

}  // namespace
