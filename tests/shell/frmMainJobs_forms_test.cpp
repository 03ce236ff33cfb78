// The main window and its jobs on the fake drive's Linux personality: names
// that look like shell syntax, and what arrives from the event loop while a
// job runs (a medium change, a second start of the program).
#include <gtest/gtest.h>

#include <QComboBox>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>
#include <filesystem>

#include "platform/DriveLayer.h"
#include "platform/MediumWatcher.h"
#include "support/mdlFunctions.h"
#include "testlib/FakeDrive.h"
#include "testlib/ShellHarness.h"

using namespace saltmarrow;
using namespace saltmarrow::test;
namespace fs = std::filesystem;

namespace {

// Every piece of shell syntax a name can hold, a line end too.
const std::string kAwkward = "x\" | touch PWNED \"y \\\" $(touch PWNED) ;\nz";

struct Jobs : ::testing::Test {
    TempDir root;
    std::unique_ptr<ShellHarness> h;

    // One CD writer with a blank CD-RW; the program folder may have any name.
    void start(const std::string &app, const std::string &extra = {}, bool singleInstance = false) {
        fs::create_directories(app);
        LinuxDrive d;
        d.readsDVD = d.writesDVD = false;
        d.medium = "CD-RW";
        d.extra = "blank = yes\nappendable = no\nrewritable = yes\ncapacity = 359849\n" + extra;
        installLinuxFakeDrive(app, {d});
        h = ShellHarness::inFolder(app, "", singleInstance);
        ASSERT_TRUE(h->form().Form_Load());
        ASSERT_EQ(h->form().cmbWriterDevice->count(), 1);
    }
    void TearDown() override { platform::setDriveLayer(nullptr); }
    frmMain &f() { return h->form(); }
    std::string status() { return f().txtStatus->text().toStdString(); }
    // A toc sheet of megabytes of data in folder, under the given name.
    std::string sheet(const std::string &folder, const std::string &name, int megabytes = 3) {
        fs::create_directories(folder);
        const std::string data = root.file(std::to_string(megabytes) + ".bin");
        writeFile(data, std::string(megabytes * 1048576, '\x22'));
        writeFile(folder + "/" + name, "CD_ROM\n\nTRACK MODE1\nDATAFILE \"" + data + "\"\n");
        return folder + "/" + name;
    }
    bool waitFor(const std::function<bool()> &condition, int ms = 20000) {
        QElapsedTimer t;
        t.start();
        while (!condition() && t.elapsed() < ms) QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
        return condition();
    }
};

}  // namespace

// The tools, the batch file and the image all stand in folders whose names
// hold shell syntax: every command reaches its tool whole, and nothing else runs.
TEST_F(Jobs, NamesOfAnyKindReachTheToolsWholeAndStartNothingElse) {
    start(root.file(kAwkward));
    f().commandLine = "-i " + sheet(root.file("images/" + kAwkward), kAwkward + ".toc");
    f().parseCommand();
    ASSERT_EQ(f().currentMode, "WRITE CD") << "toc-info measured the sheet";
    h->dialogs.answer(platform::mb::OK);
    f().cmdWrite->click();
    EXPECT_EQ(status().substr(0, 29), "Writing finished successfully");
    f().discErase("minimal");
    EXPECT_TRUE(f().writeSucceeded) << "the blank went through";
    EXPECT_TRUE(h->errors.reports.empty()) << h->errors.reports.front();
    for (const auto &entry : fs::recursive_directory_iterator(root.path()))
        EXPECT_NE(entry.path().filename(), "PWNED") << entry.path();
    EXPECT_FALSE(fs::exists("PWNED"));
}

// Two medium changes during a slow write: the write runs to its end, and then
// the drive status is read once.
TEST_F(Jobs, AMediumChangeDuringAWriteWaitsForItsEndAndIsReadOnce) {
    start(root.file("app"), "write_delay_ms = 60\n");
    f().showSettings(false);  // so the write itself asks the drive only as it starts
    f().commandLine = "-i " + sheet(root.file("images"), "disc.toc", 8);
    f().parseCommand();
    auto *watcher = f().findChild<platform::MediumWatcher *>();
    QTimer::singleShot(150, [watcher] {
        watcher->deviceChange(platform::DBT_DEVICEREMOVECOMPLETE);
        watcher->deviceChange(platform::DBT_DEVICEARRIVAL);
    });
    f().cmdWrite->click();
    EXPECT_EQ(status().substr(0, 29), "Writing finished successfully");
    const std::string log = readFile(f().appDir + "/external/fakedrive.log");
    ASSERT_TRUE(waitFor([&] { return readFile(f().appDir + "/external/fakedrive.log") != log; }));
    const std::string after =
        readFile(f().appDir + "/external/fakedrive.log").substr(log.find("cdrdao write"));
    EXPECT_EQ(vb::Split(after, "cdrdao drive-info").size(), 2u) << after;
    EXPECT_TRUE(h->errors.reports.empty()) << h->errors.reports.front();
}

// A second start with "-w" writes from the event loop; a second start during
// that write loads its image only once the write has ended.
TEST_F(Jobs, HandOversActFromTheEventLoopAndNeverReplaceTheRunningWrite) {
    const std::string app = root.file("app");
    start(app, "write_delay_ms = 60\n", true);
    const std::string first = sheet(root.file("images"), "first.toc", 8);
    const std::string second = sheet(root.file("images"), "second.toc");
    std::unique_ptr<ShellHarness> third;
    std::string written;
    auto interpret = f().runner.objDOS.ReceiveOutputs;
    f().runner.objDOS.ReceiveOutputs = [&](const std::string &line) {
        interpret(line);
        if (line.find("Wrote 2 of") != std::string::npos && !third) {
            third = ShellHarness::inFolder(app, "-i " + second, true);
            EXPECT_FALSE(third->form().Form_Load());
        }
        if (line.find("Writing finished successfully") != std::string::npos) written = f().slot.strFilename;
    };
    EXPECT_FALSE(ShellHarness::inFolder(app, "-w " + first, true)->form().Form_Load());
    ASSERT_TRUE(waitFor([&] { return f().slot.strFilename == second; }));
    EXPECT_EQ(written, first);
    EXPECT_EQ(status().substr(0, 10), "SECOND (3M");
    EXPECT_TRUE(h->errors.reports.empty()) << h->errors.reports.front();
}
