// The Write button from end to end: a fake writer in the tools folder, a
// real cue/bin or toc on disk, the questions answered by script.
#include <gtest/gtest.h>

#include <QCheckBox>
#include <QApplication>
#include <QCoreApplication>
#include <QTimer>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <dirent.h>
#include <filesystem>

#include "support/mdlFunctions.h"
#include "testlib/FakeDrive.h"
#include "testlib/ShellHarness.h"

using namespace saltmarrow;
using namespace saltmarrow::test;
namespace mb = saltmarrow::platform::mb;

namespace {

std::string writer(const std::string &medium, bool blank) { return fakeWriter(medium, blank); }

struct Dispatcher : ::testing::Test {
    TempDir app;
    TempDir images;
    std::string external = app.path() + "/external";
    std::unique_ptr<ShellHarness> h;

    void start(const std::string &drives, const std::string &commandLine = {}) {
        installFakeDrive(app.path(), drives);
        h = ShellHarness::inFolder(app.path(), commandLine, false);
        ASSERT_TRUE(h->form().Form_Load());
        ASSERT_TRUE(h->errors.reports.empty()) << h->errors.reports.front();
        h->dialogs.prompts.clear();
    }
    frmMain &f() { return h->form(); }
    std::string cueImage(const std::string &name, std::size_t sectors) {
        const std::string bin = images.file(name + ".bin");
        writeFile(bin, std::string(sectors * 2352, '\x11'));
        const std::string cue = images.file(name + ".cue");
        writeFile(cue, "FILE \"" + name + ".bin\" BINARY\r\n  TRACK 01 MODE1/2352\r\n    INDEX 01 00:00:00\r\n");
        return cue;
    }
    std::string tocImage(const std::string &name, std::size_t bytes) {
        const std::string bin = images.file(name + ".bin");
        writeFile(bin, std::string(bytes, '\x22'));
        const std::string toc = images.file(name + ".toc");
        writeFile(toc, "CD_ROM\r\n\r\nTRACK MODE1\r\nDATAFILE \"" + bin + "\"\r\n");
        return toc;
    }
    void load(const std::string &path) {
        f().commandLine = "-i \"" + path + "\"";
        f().parseCommand();
    }
    std::vector<std::string> driveCalls(const std::string &sub) {
        std::vector<std::string> found;
        for (const auto &line : vb::Split(readFile(external + "/fakedrive.log"), "\n"))
            if (line.find(" " + sub + " ") != std::string::npos) found.push_back(line);
        return found;
    }
    std::vector<std::string> boxes() {
        std::vector<std::string> texts;
        for (const auto &p : h->dialogs.prompts) texts.push_back(p.text);
        return texts;
    }
};

}  // namespace

TEST_F(Dispatcher, ACueImageOntoABlankCDToTheEnd) {
    start(writer("CD-R", true));
    const std::string cue = cueImage("My Disc", 3000);
    load(cue);
    EXPECT_EQ(f().currentMode, "WRITE CD");
    EXPECT_EQ(f().sbPanel[0]->text(), "MY DISC");
    f().mnuConfirmWrite->setChecked(true);
    f().chkDelImage->setChecked(true);
    h->dialogs.answer(mb::OK);   // the figures
    h->dialogs.answer(mb::OK);   // the result
    h->dialogs.answer(mb::No);   // keep the image
    f().cmdWrite->click();

    ASSERT_GE(h->dialogs.prompts.size(), 3u) << vb::Join(boxes(), " | ");
    EXPECT_EQ(h->dialogs.prompts[0].style, 65);
    EXPECT_NE(h->dialogs.prompts[0].text.find("MB to be written to disc"), std::string::npos);
    EXPECT_EQ(f().txtStatus->text().left(40).toStdString(), "Writing finished successfully after 00mi");
    EXPECT_EQ(h->dialogs.prompts[2].text, "Please confirm deletion of Image Files");
    EXPECT_TRUE(std::filesystem::exists(cue));

    auto writes = driveCalls("write");
    ASSERT_EQ(writes.size(), 1u);
    EXPECT_NE(writes[0].find("--device"), std::string::npos);
    EXPECT_NE(writes[0].find("--driver generic-mmc"), std::string::npos);
    EXPECT_NE(writes[0].find(cue), std::string::npos);
    // 3000 sectors of 2352 bytes: the seventh megabyte is the last.
    EXPECT_NE(readFile(external + "/TEMP/commandlog.txt").find("Wrote 7 of 7 MB"), std::string::npos)
        << "the fake read the whole data file";
    EXPECT_EQ(f().currentMode, "WRITE CD");
    EXPECT_EQ(f().cmdWrite->text(), "&Write");
}

TEST_F(Dispatcher, RefusalsInTheirOrder) {
    start(writer("CD-R", false));
    // Nothing loaded: the open dialog comes instead.
    h->dialogs.cancelNext();
    f().cmdWrite->click();
    ASSERT_EQ(h->dialogs.prompts.size(), 1u);
    EXPECT_EQ(h->dialogs.prompts[0].kind, "open");

    // A disc that is not blank.
    load(tocImage("data", 2048 * 400));
    h->dialogs.prompts.clear();
    f().cmdWrite->click();
    EXPECT_EQ(boxes(), std::vector<std::string>{"Inserted medium is not blank!"});
    EXPECT_EQ(f().txtStatus->text().toStdString(), "Write Operation Cancelled.");
    EXPECT_TRUE(driveCalls("write").empty());

    // No writer chosen.
    f().cmbWriterDevice->clear();
    h->dialogs.prompts.clear();
    f().cmdWrite->click();
    EXPECT_EQ(boxes(), std::vector<std::string>{"Please select a Write Device."});
    EXPECT_TRUE(f().mnuDeviceSettings->isChecked()) << "the settings open to choose one";
}

TEST_F(Dispatcher, ADVDRefusesASheetAndTakesAnISOAsADVDJob) {
    start(writer("DVD-R", true));
    load(tocImage("data", 2048 * 400));
    f().cmdWrite->click();
    EXPECT_EQ(boxes(), std::vector<std::string>{"Current project does not match inserted media!"});

    std::string modeSeen;
    f().writeDVDImage = [&] { modeSeen = f().currentMode; };
    const std::string iso = images.file("disc.iso");
    writeFile(iso, std::string(2048 * 20, '\0'));
    load(iso);
    f().cmdWrite->click();
    EXPECT_EQ(modeSeen, "WRITE DVD");
    EXPECT_EQ(f().currentMode, "WRITE CD") << "the label comes back after the click";
}

TEST_F(Dispatcher, CancelAtTheQuestionAndDuringTheWrite) {
    start(writer("CD-R", true) + "hang = write\n");
    load(tocImage("data", 2048 * 400));
    f().mnuConfirmWrite->setChecked(true);
    h->dialogs.answer(mb::Cancel);
    f().cmdWrite->click();
    EXPECT_EQ(f().txtStatus->text().toStdString(), "Write Operation Cancelled.");
    EXPECT_TRUE(driveCalls("write").empty());

    f().mnuConfirmWrite->setChecked(false);
    h->dialogs.prompts.clear();
    bool clicked = false;
    auto original = f().runner.objDOS.nullOutputs;
    f().runner.objDOS.nullOutputs = [&] {
        original();
        if (!clicked && f().cmdWrite->text() == "&Cancel" && !driveCalls("write").empty()) {
            clicked = true;
            f().cmdWrite->click();
        }
    };
    f().cmdWrite->click();
    EXPECT_TRUE(clicked);
    EXPECT_TRUE(f().writeCancelled);
    EXPECT_EQ(f().txtStatus->text().toStdString(), "Write Operation Cancelled.");
    // No process of the fake drive is left.
    bool alive = false;
    DIR *proc = opendir("/proc");
    while (dirent *e = readdir(proc)) {
        const int pid = std::atoi(e->d_name);
        if (pid > 0 && readFile("/proc/" + std::to_string(pid) + "/cmdline").find(external) != std::string::npos &&
            processAlive(pid))
            alive = true;
    }
    closedir(proc);
    EXPECT_FALSE(alive);
}

TEST_F(Dispatcher, TheCommandLineCanStartTheWrite) {
    const std::string cue = cueImage("start", 500);
    start(writer("CD-R", true), "-w \"" + cue + "\"");
    EXPECT_TRUE(f().autoWritePending);
    f().show();
    QCoreApplication::processEvents();
    QCoreApplication::processEvents();
    EXPECT_EQ(driveCalls("write").size(), 1u);
    EXPECT_EQ(f().txtStatus->text().left(29).toStdString(), "Writing finished successfully");
}

TEST_F(Dispatcher, AUsedRewritableIsErasedOnOfferAndThenWritten) {
    start(fakeWriter("CD-RW", false, "rewritable = yes\n"));
    load(tocImage("data", 2048 * 400));
    // The erase dialog comes up modal over the check of the disc: take Erase.
    int offers = 0;
    std::function<void()> answer = [&] {
        QWidget *dialog = QApplication::activeModalWidget();
        if (!dialog || dialog->objectName() != "frmEraseCD") {
            QTimer::singleShot(20, answer);
            return;
        }
        ++offers;
        dialog->findChild<QPushButton *>("cmdErase")->click();
    };
    QTimer::singleShot(20, answer);
    f().cmdWrite->click();
    EXPECT_EQ(offers, 1);
    const auto blanks = driveCalls("blank");
    ASSERT_EQ(blanks.size(), 1u);
    EXPECT_NE(blanks[0].find("--blank-mode minimal"), std::string::npos);
    EXPECT_EQ(driveCalls("write").size(), 1u) << "the erased disc was read again and written";
    EXPECT_EQ(f().txtStatus->text().left(29).toStdString(), "Writing finished successfully");
}

TEST_F(Dispatcher, DeviceInfoShowsTheWriter) {
    start(fakeWriter("CD-R", true));
    f().show();
    f().mnuDeviceInfo->trigger();
    QWidget *info = f().findChild<QWidget *>("frmDeviceInfo");
    ASSERT_NE(info, nullptr);
    EXPECT_TRUE(info->isVisible());
    auto *firmware = info->findChild<QLabel *>("lblFirmwareValue");
    ASSERT_NE(firmware, nullptr);
    EXPECT_EQ(firmware->text(), "1.01");
    EXPECT_TRUE(h->errors.reports.empty());
}
