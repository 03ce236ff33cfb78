// The user's jobs from end to end: the main window with the fake drive in
// its tools folder, real sheets on disk, the questions answered by script.
#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QElapsedTimer>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTimer>
#include <filesystem>
#include <regex>

#include "devices/frmDeviceInfo.h"
#include "exec/frmLog.h"
#include "platform/MediumWatcher.h"
#include "support/mdlFunctions.h"
#include "testlib/FakeDrive.h"
#include "testlib/ShellHarness.h"

using namespace saltmarrow;
using namespace saltmarrow::test;
namespace mb = saltmarrow::platform::mb;

namespace {

LinuxDrive dvdWriter(const std::string &medium) {
    LinuxDrive d;
    d.path = "/dev/sr1";
    d.maxWriteKbs = 22160;
    d.medium = medium;
    d.extra = "blank = yes\nrewritable = yes\n";
    return d;
}

// The program and its images stand in folders whose names hold shell syntax
// and a line end: no command may split there or start anything else.
struct Jobs : ::testing::Test {
    TempDir root;
    const std::string awkward = "x\" | touch PWNED \"y \\\" $(touch PWNED) ;\nz";
    const std::string app = root.file(awkward + "/app"), images = root.file(awkward);
    std::unique_ptr<ShellHarness> h;

    void start(const std::vector<LinuxDrive> &drives, const std::string &commandLine = {},
               const std::string &global = {}, bool single = false) {
        installFakeDrive(app, drives, global);
        h = ShellHarness::inFolder(app, commandLine, single);
        ASSERT_TRUE(h->form().Form_Load());
        ASSERT_TRUE(h->errors.reports.empty()) << h->errors.reports.front();
        h->dialogs.prompts.clear();
    }
    void TearDown() override {
        for (const std::string &folder : {app + "/external", images})
            EXPECT_FALSE(std::filesystem::exists(folder + "/PWNED"));
    }
    frmMain &f() { return h->form(); }
    std::string cue(const std::string &name, std::size_t sectors) {
        std::filesystem::create_directories(images);
        writeFile(images + "/" + name + ".bin", std::string(sectors * 2352, '\x11'));
        writeFile(images + "/" + name + ".cue",
                  "FILE \"" + name + ".bin\" BINARY\r\n  TRACK 01 MODE1/2352\r\n    INDEX 01 00:00:00\r\n");
        return images + "/" + name + ".cue";
    }
    void load(const std::string &path) {
        f().commandLine = "-i \"" + path + "\"";
        f().parseCommand();
    }
    std::vector<std::string> calls(const std::string &prefix) { return fakeCalls(app, prefix); }
    // Clicks Cancel once the line that starts with from has come.
    void cancelAt(const std::string &from) {
        f().runner.objDOS.ReceiveOutputs = [this, from,
                                            interpret = f().runner.objDOS.ReceiveOutputs](auto &line) {
            interpret(line);
            if (line.rfind(from, 0) == 0 && f().cmdWrite->text() == "&Cancel") f().cmdWrite->click();
        };
    }
    std::string status() { return f().txtStatus->text().toStdString(); }
    // Every drive address the program handed a tool is a device path the scan gave.
    void expectOnlyDevicePaths() {
        static const std::regex argument(R"((--device) (\S+)|dev=(\S+)|^dvd\+rw-mediainfo (\S+))");
        int seen = 0;
        for (const auto &line : calls(""))
            for (std::sregex_iterator it(line.begin(), line.end(), argument), end; it != end; ++it, ++seen) {
                const std::string address = (*it)[2].matched   ? (*it)[2]
                                            : (*it)[3].matched ? (*it)[3]
                                                               : (*it)[4];
                EXPECT_TRUE(std::regex_match(address, std::regex("/dev/sr[0-2]"))) << line;
            }
        EXPECT_GT(seen, 0);
    }
};

std::vector<std::string> items(QComboBox *box) {
    std::vector<std::string> out;
    for (int i = 0; i < box->count(); ++i) out.push_back(box->itemText(i).toStdString());
    return out;
}

}  // namespace

TEST_F(Jobs, StartUpFindsTheDrivesAndWhatTheyAre) {
    start({cdWriter("CD-R", kBlankCDR), dvdWriter("DVD+R"), dvdReader()});
    EXPECT_EQ(items(f().cmbReaderDevice), (std::vector<std::string>{"/dev/sr0: PLEXTOR, CD-R   PX-W4012A",
                                                                    "/dev/sr1: HL-DT-ST, DVDRAM GH24NSB0",
                                                                    "/dev/sr2: ASUS, DVD: E818A9T"}));
    EXPECT_EQ(items(f().cmbWriterDevice), (std::vector<std::string>{"/dev/sr0: PLEXTOR, CD-R   PX-W4012A",
                                                                    "/dev/sr1: HL-DT-ST, DVDRAM GH24NSB0"}));
    EXPECT_EQ(f().deviceState.devices.item(0).LastMediaType, "CD-R");
    EXPECT_EQ(f().deviceState.devices.item(1).LastMediaType, "DVD+R");
    // One scan. Which tool asks which drive, the speeds and features read: tests/devices.
    EXPECT_EQ(calls("cdrdao scanbus"), std::vector<std::string>{"cdrdao scanbus"});
    expectOnlyDevicePaths();

    // Device info shows the writer.
    f().show();
    f().mnuDeviceInfo->trigger();
    ASSERT_TRUE(f().deviceInfoForm);
    EXPECT_TRUE(f().deviceInfoForm->isVisible());
    EXPECT_EQ(f().deviceInfoForm->lblFirmwareValue->text(), "1.01");
}

TEST_F(Jobs, ACueImageOntoABlankCD) {
    LinuxDrive writer = cdWriter("CD-R", kBlankCDR);
    writer.extra += "drive_buffer = yes\n";
    start({writer});
    const std::string image = cue("My Disc", 3000);
    load(image);
    EXPECT_EQ(f().sbPanel[0]->text(), "MY DISC");
    f().mnuConfirmWrite->setChecked(true);
    f().chkDelImage->setChecked(true);
    h->dialogs.answer(mb::OK);  // the figures
    h->dialogs.answer(mb::OK);  // the result
    h->dialogs.answer(mb::No);  // keep the image
    f().cmdWrite->click();

    // The figures, the result and the deletion asked: their texts are WriteDispatcher's and ImageDelete's.
    ASSERT_EQ(h->dialogs.prompts.size(), 3u);
    EXPECT_EQ(h->dialogs.prompts[1].text.substr(0, 29), "Writing finished successfully");
    EXPECT_EQ(h->dialogs.prompts[1].style, mb::Information);
    EXPECT_EQ(status().substr(0, 40), "Writing finished successfully after 00mi");
    EXPECT_TRUE(std::filesystem::exists(image));
    const auto writes = calls("cdrdao write");
    ASSERT_EQ(writes.size(), 1u);
    EXPECT_NE(writes[0].find(" --device /dev/sr0 --driver generic-mmc:0x0 "), std::string::npos) << writes[0];
    EXPECT_NE(writes[0].find(vb::Replace(image, "\n", "\\n")), std::string::npos) << "whole, unsplit";
    const std::string log = readFile(app + "/external/TEMP/commandlog.txt");
    EXPECT_NE(log.find("Wrote 7 of 7 MB (Buffers 100%  97%)"), std::string::npos)
        << "the fake read every byte";
    EXPECT_EQ(f().currentMode, Mode::WriteCD);
    EXPECT_EQ(f().cmdWrite->text(), "&Write");
    expectOnlyDevicePaths();
}

TEST_F(Jobs, TheCommandLineStartsTheWriteOnceTheWindowShows) {
    const std::string image = cue("start", 500);
    start({cdWriter("CD-R", kBlankCDR)}, "-w \"" + image + "\"");
    EXPECT_TRUE(calls("cdrdao write").empty());
    f().show();
    QCoreApplication::processEvents();
    QCoreApplication::processEvents();
    EXPECT_EQ(calls("cdrdao write").size(), 1u);
    EXPECT_EQ(status().substr(0, 29), "Writing finished successfully");
}

TEST_F(Jobs, AUsedRewritableIsErasedOnOfferThenWritten) {
    start({cdWriter("CD-RW", kUsedCDRW)});
    load(cue("data", 400));
    int offers = 0;
    std::function<void()> answer = [&] {
        QWidget *dialog = QApplication::activeModalWidget();
        if (!dialog || dialog->objectName() != "frmEraseCD") return QTimer::singleShot(20, answer);
        ++offers;
        dialog->findChild<QPushButton *>("cmdErase")->click();
    };
    QTimer::singleShot(20, answer);
    f().cmdWrite->click();
    EXPECT_EQ(offers, 1) << "the erased disc is blank: no second offer";
    EXPECT_EQ(calls("cdrdao blank").size(), 1u);
    EXPECT_EQ(calls("cdrdao write").size(), 1u) << "the erased disc was read again and written";
    EXPECT_EQ(status().substr(0, 29), "Writing finished successfully");
    EXPECT_TRUE(h->errors.reports.empty());
}

TEST_F(Jobs, EraseByTheRightToolAndUnlock) {
    start({cdWriter("CD-RW", kUsedCDRW + "unlock = fails\n"), dvdWriter("DVD-RW")});
    // The commands are DiscErase's; here, that the dialog's choice reaches the tool of the writer chosen.
    for (int writer : {0, 1}) {
        f().cmbWriterDevice->setCurrentIndex(writer);
        QTimer::singleShot(20, [writer] {
            auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
            ASSERT_NE(dialog, nullptr);
            dialog->findChild<QCheckBox *>("chkMinimal")->setChecked(writer == 1);
            dialog->findChild<QPushButton *>("cmdErase")->click();
        });
        f().mnuErase->trigger();
        EXPECT_EQ(f().currentMode, Mode::None);
        EXPECT_TRUE(f().writeSucceeded) << writer;
        EXPECT_EQ(status().substr(0, 29), "Writing finished successfully");
    }
    EXPECT_EQ(calls("cdrdao blank"), std::vector<std::string>{"cdrdao blank --device /dev/sr0 --driver "
                                                              "generic-mmc:0x0 --reload --blank-mode full"});
    EXPECT_EQ(calls("dvdrecord blank="),
              std::vector<std::string>{"dvdrecord blank=minimal dev=/dev/sr1 gracetime=0"});
    EXPECT_TRUE(h->dialogs.prompts.empty()) << "erasing has no result box";

    for (int writer : {1, 0}) {
        f().cmbWriterDevice->setCurrentIndex(writer);
        f().mnuResetWriter->trigger();
        EXPECT_EQ(status(), writer ? "Trying to unlock drive... Done." : "Trying to unlock drive... Fail.");
        EXPECT_EQ(f().log->txtOutputs->toPlainText().endsWith("drive... Done."), writer == 1);
    }
    EXPECT_EQ(calls("cdrdao unlock").back(), "cdrdao unlock --device /dev/sr0 --driver generic-mmc:0x0");
}

// A second start with "-w" writes from the event loop. Medium changes and a
// second start with "-i" during that write wait for its end: the write keeps
// its image, the drive is read once, then the new image is loaded.
TEST_F(Jobs, WhatArrivesDuringAWriteWaitsForItsEnd) {
    start({cdWriter("CD-R", kBlankCDR + "write_delay_ms = 60\n")}, {}, {}, true);
    f().showSettings(false);  // so that the write asks the drive only as it starts
    // A sheet cannot name its data in a folder whose name holds a quote.
    writeFile(root.file("data.bin"), std::string(8 << 20, 'x'));
    const std::string first = images + "/first.toc", second = images + "/second.toc";
    for (auto &toc : {first, second})
        writeFile(toc, "CD_ROM\nTRACK MODE1\nDATAFILE \"" + root.file("data.bin") + "\"\n");
    std::unique_ptr<ShellHarness> later;
    std::string written;
    const auto interpret = f().runner.objDOS.ReceiveOutputs;
    f().runner.objDOS.ReceiveOutputs = [&](const std::string &line) {
        interpret(line);
        if (line.find("Wrote 2 of") == 0 && !later) {
            for (int event : {platform::DBT_DEVICEREMOVECOMPLETE, platform::DBT_DEVICEARRIVAL})
                f().findChild<platform::MediumWatcher *>()->deviceChange(event);
            later = ShellHarness::inFolder(app, "-i \"" + second + "\"", true);
            EXPECT_FALSE(later->form().Form_Load());
        }
        if (line.find("Writing finished successfully") == 0) written = f().slot.strFilename;
    };
    EXPECT_FALSE(ShellHarness::inFolder(app, "-w \"" + first + "\"", true)->form().Form_Load());
    QElapsedTimer t;
    for (t.start(); f().slot.strFilename != second && t.elapsed() < 20000;) QCoreApplication::processEvents();
    EXPECT_EQ(written, first);
    const auto log = calls("");
    const auto write =
        std::find_if(log.begin(), log.end(), [](auto &l) { return l.find("cdrdao write") == 0; });
    EXPECT_EQ(std::count_if(write, log.end(), [](auto &l) { return l.find("cdrdao drive-info") == 0; }), 1)
        << "read once";
}

// A reader with a CD in it, its tracks in blocks and which of them hold data.
struct Reading : Jobs {
    LinuxDrive reader = dvdReader(), writer = cdWriter("CD-R", kBlankCDR);
    const std::string img = root.file("img");
    void disc(const std::string &medium, const std::string &tracks, const std::string &extra = {}) {
        reader.medium = medium;
        reader.extra = "tracks = " + tracks + "\n" + extra;
        if (!h) start({writer, reader});
        writeFile(app + "/external/fakedrive.state", fakeState({writer, reader}));
        f().cmbReaderDevice->setCurrentIndex(1);
        std::filesystem::create_directories(img);
    }
    void answer(std::initializer_list<ScriptedDialogs::Answer> answers) {
        h->dialogs.prompts.clear();
        for (const auto &a : answers) h->dialogs.answer(a);
    }
    std::string prompt(std::size_t i) {
        return i < h->dialogs.prompts.size() ? h->dialogs.prompts[i].text : "";
    }
};

TEST_F(Reading, EachKindOfDiscToItsImage) {
    struct Row {
        const char *tracks, *name;
        std::vector<std::string> files;  // what the folder holds afterwards
        bool cueOffered;
    };
    const Row rows[] = {{"300 300", "audio", {"audio.dat", "audio.toc"}, false},
                        {"300 300\ndata_tracks = 1", "mixed", {"mixed.bin", "mixed.toc"}, true},
                        {"300\ndata_tracks = 1", "data", {"data.bin", "data.cue"}, true}};
    for (const Row &row : rows) {
        disc("CD-ROM", row.tracks);
        answer({mb::OK, img + "/" + row.name + ".cue", mb::Yes});  // a cue is asked for whatever the disc
        f().mnuReadCD->trigger();
        std::vector<std::string> files;
        for (const auto &e : std::filesystem::directory_iterator(img))
            if (e.path().stem() == row.name) files.push_back(e.path().filename());
        std::sort(files.begin(), files.end());
        EXPECT_EQ(files, row.files);
        EXPECT_EQ(h->dialogs.prompts.at(1).request.filter.find("*.cue") != std::string::npos, row.cueOffered);
        EXPECT_EQ(f().slot.strFilename, img + "/" + row.files[1]) << "loaded for writing";
    }
    EXPECT_FALSE(std::filesystem::exists(app + "/external/TEMP/info.toc"));
    EXPECT_EQ(prompt(0), "/dev/sr2: ASUS, DVD: E818A9T\r\n\r\n1 MB will be read to an image file.");
    f().cmdWrite->click();
    EXPECT_EQ(status().substr(0, 29), "Writing finished successfully") << "the cue image writes";
}

TEST_F(Reading, CopyOnTheFlyNeedsTwoDrives) {
    disc("CD-ROM", "300 300\ndata_tracks = 1");
    f().mnuConfirmWrite->setChecked(true);
    answer({mb::OK, mb::OK});
    f().mnuCopyCD->trigger();
    EXPECT_EQ(prompt(0),
              "Reader:\t/dev/sr2: ASUS, DVD: E818A9T\r\nWriter:\t/dev/sr0: PLEXTOR, CD-R   PX-W4012A\r\n"
              "\r\n1 MB to be copied on the fly (807 MB free).");
    EXPECT_EQ(calls("cdrdao copy"),
              std::vector<std::string>{
                  "cdrdao copy --on-the-fly --fast-toc --source-device /dev/sr2 --source-driver "
                  "generic-mmc:0x200000 --paranoia-mode 0 --device /dev/sr0 --driver "
                  "generic-mmc:0x0 --eject --reload --speed 40 -n --buffers 256 -v 2"});
    EXPECT_EQ(status().substr(0, 29), "Writing finished successfully");
    f().cmbReaderDevice->setCurrentIndex(0);
    answer({mb::OK});
    f().mnuCopyCD->trigger();
    EXPECT_EQ(prompt(0), "Selected Read and Write Device are the same!");
    EXPECT_EQ(calls("cdrdao read-toc").size() + calls("cdrdao copy").size(), 2u) << "nothing read or copied";
    EXPECT_EQ(f().currentMode, Mode::None);
}

// Each road that reads nothing says why; a read that fails or is cancelled offers its partial image
// and leaves no tool behind.
TEST_F(Reading, WhatCannotBeReadIsSaid) {
    struct Row {
        const char *medium, *tracks;
        QAction *frmMain::*menu;
        std::vector<ScriptedDialogs::Answer> answers;
        const char *said;
    };
    const std::string x = img + "/x.toc";
    const Row rows[] = {
        {"DVD-ROM", "", &frmMain::mnuReadCD, {}, "DVD Read currently unsupported!"},
        {"n/a", "", &frmMain::mnuDDump, {}, "Please insert the disc to be read!"},
        {"CD-ROM", "300", &frmMain::mnuDDump, {}, "This disc holds no data track to dump."},
        {"CD-ROM", "300", &frmMain::mnuReadCD, {mb::OK, "/proc/x.toc"}, "Could not open file for writing"},
        {"CD-ROM", "2000000000", &frmMain::mnuReadCD, {mb::OK, x}, "Insufficient free space"},
        {"CD-ROM",
         "75 75\nvanish = read-cd",
         &frmMain::mnuReadCD,
         {mb::OK, x, mb::Yes},
         "Delete partial image"},
        {"CD-ROM",
         "300 300\nwrite_delay_ms = 300",
         &frmMain::mnuReadCD,
         {mb::OK, x, mb::Yes},
         "Delete partial"},
    };
    disc("n/a", "");
    cancelAt("00:02:00");
    for (const Row &row : rows) {
        disc(row.medium, row.tracks);
        answer({});
        for (const auto &a : row.answers) h->dialogs.answer(a);
        (f().*row.menu)->trigger();
        EXPECT_EQ(h->dialogs.prompts.back().text.rfind(row.said, 0), 0u) << row.said;
        // The DVD is refused before anything starts.
        EXPECT_EQ(status().rfind("Read Operation Cancelled", 0) == 0, row.medium != std::string("DVD-ROM"));
    }
    EXPECT_EQ(status(), "Read Operation Cancelled - the tray may stay locked: Tools, Reset Writer frees it.");
    EXPECT_TRUE(livingProcessesNaming(app).empty()) << "no tool left behind";
    EXPECT_EQ(calls("cdrdao read-cd").size(), 2u);
    EXPECT_TRUE(std::filesystem::is_empty(img)) << "the partial images deleted";
}

TEST_F(Reading, DumpOfADataCDAndOfADVD) {
    for (const std::string medium : {"CD-ROM", "DVD-ROM"}) {
        std::string bytes(medium == "CD-ROM" ? 300 * 2048 : 3 << 20, '\0');
        for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<char>(i * 7 / 2048 + i);
        writeFile(root.file(medium), bytes);
        disc(medium, "300\ndata_tracks = 1", "image = " + root.file(medium) + "\n");
        answer({img + "/" + medium, mb::Yes});  // ".iso" is added
        f().mnuDDump->trigger();
        EXPECT_TRUE(readFile(img + "/" + medium + ".iso") == bytes) << "the disc, byte for byte";
        EXPECT_EQ(f().slot.strFilename, img + "/" + medium + ".iso") << "loaded for writing";
        EXPECT_EQ(calls("readom").back(), "readom dev=/dev/sr2 f=" + img + "/" + medium + ".iso");
        EXPECT_EQ(calls("cdrdao read-toc").size(), 1u) << "a DVD holds data: no table of contents is read";
    }
}
