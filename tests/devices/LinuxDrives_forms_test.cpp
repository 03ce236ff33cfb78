// The main window on Linux: the fake drive speaks as Debian's cdrdao,
// dvd+rw-mediainfo answers for DVDs, and a fake kernel table says what each
// drive reads and writes. Discovery, the drive records, a whole image write
// and a blank, with every device argument checked, and what arrives from the
// event loop during a write. The program and its images stand in folders whose
// names hold shell syntax and a line end: no command may split or start
// anything else.
#include <gtest/gtest.h>

#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QPushButton>
#include <filesystem>
#include <regex>

#include "devices/DeviceInfoText.h"
#include "platform/DriveLayer.h"
#include "platform/MediumWatcher.h"
#include "support/mdlFunctions.h"
#include "testlib/FakeDrive.h"
#include "testlib/ShellHarness.h"

using namespace saltmarrow;
using namespace saltmarrow::test;
namespace mb = saltmarrow::platform::mb;

namespace {

LinuxDrive cdWriter(const std::string &medium, const std::string &disc) {
    LinuxDrive d;
    d.vendor = "PLEXTOR";
    d.model = "CD-R   PX-W4012A";
    d.firmware = "1.01";
    d.readsDVD = d.writesDVD = false;
    d.maxWriteKbs = 7056;
    d.medium = medium;
    d.extra = disc + "manufacturer = Taiyo Yuden\ndrive_buffer = yes\n";
    return d;
}

LinuxDrive dvdWriter() {
    LinuxDrive d;
    d.path = "/dev/sr1";
    d.maxWriteKbs = 22160;
    d.medium = "DVD+R";
    d.extra = "blank = yes\n";
    return d;
}

LinuxDrive reader() {
    LinuxDrive d;
    d.path = "/dev/sr2";
    d.vendor = "ASUS";
    d.model = "DVD: E818A9T";
    d.firmware = "1.00";
    d.writesCD = d.writesDVD = false;
    d.burnProof = false;
    d.maxWriteKbs = 0;
    return d;
}

const std::string kBlankCDR = "blank = yes\nappendable = no\nrewritable = no\ncapacity = 359849\n";
const std::string kUsedCDRW = "blank = no\nappendable = no\nrewritable = yes\ncapacity = 359849\n";

struct LinuxDrives : ::testing::Test {
    TempDir root;
    const std::string awkward = "x\" | touch PWNED \"y \\\" $(touch PWNED) ;\nz";
    std::string app = root.file(awkward + "/app"), images = root.file(awkward), external = app + "/external";
    std::unique_ptr<ShellHarness> h;

    void start(const std::vector<LinuxDrive> &drives, const std::string &global = {}, bool single = false) {
        installLinuxFakeDrive(app, drives, global);
        h = ShellHarness::inFolder(app, "", single);
        ASSERT_TRUE(h->form().Form_Load());
        ASSERT_TRUE(h->errors.reports.empty()) << h->errors.reports.front();
        h->dialogs.prompts.clear();
    }
    void TearDown() override {
        platform::setDriveLayer(nullptr);
        for (const std::string &folder : {external, images})
            EXPECT_FALSE(std::filesystem::exists(folder + "/PWNED"));
    }
    frmMain &f() { return h->form(); }
    std::vector<std::string> calls() {
        std::vector<std::string> lines;
        for (auto &line : vb::Split(readFile(external + "/fakedrive.log"), "\n"))
            if (!line.empty()) lines.push_back(line);
        return lines;
    }
    std::vector<std::string> callsOf(const std::string &start) {
        std::vector<std::string> found;
        for (const auto &line : calls())
            if (line.rfind(start, 0) == 0) found.push_back(line);
        return found;
    }
    // Every drive address the program handed a tool is a device path the
    // scan gave.
    void expectOnlyDevicePaths() {
        static const std::regex argument(
            R"((--device|--source-device) (\S+)|dev=(\S+)|^dvd\+rw-mediainfo (\S+))");
        int seen = 0;
        for (const auto &line : calls())
            for (std::sregex_iterator it(line.begin(), line.end(), argument), end; it != end; ++it) {
                const std::string address = (*it)[2].matched   ? (*it)[2]
                                            : (*it)[3].matched ? (*it)[3]
                                                               : (*it)[4];
                EXPECT_TRUE(std::regex_match(address, std::regex("/dev/sr[0-2]"))) << line;
                ++seen;
            }
        EXPECT_GT(seen, 0);
    }
    std::vector<std::string> items(QComboBox *box) {
        std::vector<std::string> out;
        for (int i = 0; i < box->count(); ++i) out.push_back(box->itemText(i).toStdString());
        return out;
    }
};

}  // namespace

TEST_F(LinuxDrives, ThreeDrivesFromOneScanWithTheirFeaturesSpeedsAndMedia) {
    start({cdWriter("CD-R", kBlankCDR), dvdWriter(), reader()});
    EXPECT_EQ(items(f().cmbReaderDevice), (std::vector<std::string>{"/dev/sr0: PLEXTOR, CD-R   PX-W4012A",
                                                                    "/dev/sr1: HL-DT-ST, DVDRAM GH24NSB0",
                                                                    "/dev/sr2: ASUS, DVD: E818A9T"}));
    EXPECT_EQ(items(f().cmbWriterDevice), (std::vector<std::string>{"/dev/sr0: PLEXTOR, CD-R   PX-W4012A",
                                                                    "/dev/sr1: HL-DT-ST, DVDRAM GH24NSB0"}));
    EXPECT_FALSE(f().chkUseSPTI->isChecked());
    EXPECT_FALSE(f().chkUseSPTI->isEnabled());

    const DeviceInfo &cd = f().deviceState.devices.item(0);
    EXPECT_EQ(cd.DeviceName, "PLEXTOR, CD-R   PX-W4012A");
    EXPECT_EQ(cd.Firmware, "1.01");
    EXPECT_EQ(cd.Driver, "generic-mmc") << "no driver table: the generic driver";
    EXPECT_EQ(cd.WriteSpeeds, "40x,32x,24x,20x,16x,12x,10x,8x,6x,4x,2x,1x");
    EXPECT_EQ(cd.WriteFeatures, "CD-R CD-RW MRW-WRITE ");
    EXPECT_EQ(cd.LastMediaType, "CD-R");
    EXPECT_TRUE(cd.MediaInserted);
    EXPECT_TRUE(cd.BufferProtection);
    EXPECT_EQ(items(f().cmbSpeed).front(), "40x");
    const DeviceTab tab = ShowDeviceInfo(cd);
    EXPECT_EQ(tab.lblTypeValue, "CD Writer");
    EXPECT_EQ(tab.lblBufferValue, "n/a") << "Debian's cdrdao names no buffer size";

    const DeviceInfo &dvd = f().deviceState.devices.item(1);
    EXPECT_EQ(dvd.WriteSpeeds, "16x,12x,10x,8x,6x,4x,2x,1x");
    EXPECT_NE(dvd.WriteFeatures.find("DVD-R "), std::string::npos);
    EXPECT_EQ(dvd.LastMediaType, "DVD+R");
    EXPECT_EQ(ShowDeviceInfo(dvd).lblTypeValue, "DVD\\CD Writer");

    const DeviceInfo &rom = f().deviceState.devices.item(2);
    EXPECT_FALSE(rom.isWriter);
    EXPECT_EQ(rom.WriteSpeeds, "");
    EXPECT_EQ(rom.ReadFeatures, "CD-R CD-RW CD-ROM DVD-ROM ");
    EXPECT_FALSE(rom.MediaInserted);

    // One scan, no layer switch; the DVD drives are asked by dvd+rw-mediainfo
    // and the CD-only writer by disk-info.
    EXPECT_EQ(callsOf("cdrdao scanbus"), std::vector<std::string>{"cdrdao scanbus"});
    EXPECT_FALSE(callsOf("dvd+rw-mediainfo /dev/sr1").empty());
    EXPECT_TRUE(callsOf("dvd+rw-mediainfo /dev/sr0").empty());
    EXPECT_FALSE(callsOf("cdrdao disk-info --device /dev/sr0").empty());
    expectOnlyDevicePaths();
}

TEST_F(LinuxDrives, NoDriveFound) {
    start({}, "sysfs = missing\n");
    EXPECT_EQ(f().cmbReaderDevice->count(), 0);
    EXPECT_EQ(f().cmbWriterDevice->count(), 0);
    EXPECT_EQ(f().txtStatus->text().toStdString(), "Could not find any host adapters.");

    TearDown();
    h.reset();
    TempDir other;
    installLinuxFakeDrive(other.path(), {});
    h = ShellHarness::inFolder(other.path(), "", false);
    ASSERT_TRUE(h->form().Form_Load());
    EXPECT_EQ(f().cmbReaderDevice->count(), 0);
    EXPECT_EQ(f().txtStatus->text().toStdString(), "Could not find any devices.");
    EXPECT_TRUE(h->errors.reports.empty());
}

TEST_F(LinuxDrives, OneReaderIsNoWriter) {
    start({reader()});
    EXPECT_EQ(items(f().cmbReaderDevice), std::vector<std::string>{"/dev/sr2: ASUS, DVD: E818A9T"});
    EXPECT_EQ(f().cmbWriterDevice->count(), 0);
    EXPECT_EQ(f().deviceState.devices.item(0).Firmware, "1.00");
}

TEST_F(LinuxDrives, ACueImageIsWrittenWithBothProgressForms) {
    start({cdWriter("CD-R", kBlankCDR)});
    const std::string bin = images + "/disc.bin";
    writeFile(bin, std::string(3000 * 2352, '\x11'));
    const std::string cue = images + "/disc.cue";
    writeFile(cue, "FILE \"disc.bin\" BINARY\r\n  TRACK 01 MODE1/2352\r\n    INDEX 01 00:00:00\r\n");
    f().commandLine = "-i \"" + cue + "\"";
    f().parseCommand();
    h->dialogs.answer(mb::OK);  // the result
    f().cmdWrite->click();

    EXPECT_TRUE(h->errors.reports.empty()) << h->errors.reports.front();
    EXPECT_EQ(f().txtStatus->text().left(40).toStdString(), "Writing finished successfully after 00mi");
    const auto writes = callsOf("cdrdao write");
    ASSERT_EQ(writes.size(), 1u);
    EXPECT_NE(writes[0].find(" --device /dev/sr0 --driver generic-mmc"), std::string::npos) << writes[0];
    const std::string log = readFile(external + "/TEMP/commandlog.txt");
    EXPECT_NE(log.find("(Buffers 100%  97%)"), std::string::npos) << "the drive's own buffer was reported";
    EXPECT_NE(log.find("Wrote 7 of 7 MB"), std::string::npos);
    expectOnlyDevicePaths();
}

TEST_F(LinuxDrives, AUsedRewritableIsBlanked) {
    start({cdWriter("CD-RW", kUsedCDRW)});
    EXPECT_EQ(f().deviceState.devices.item(0).LastMediaType, "CD-RW");
    h->dialogs.answer(mb::OK);
    f().discErase("minimal");

    EXPECT_TRUE(h->errors.reports.empty()) << h->errors.reports.front();
    const auto blanks = callsOf("cdrdao blank");
    ASSERT_EQ(blanks.size(), 1u);
    EXPECT_NE(blanks[0].find(" --device /dev/sr0 "), std::string::npos) << blanks[0];
    EXPECT_NE(blanks[0].find("--blank-mode minimal"), std::string::npos) << blanks[0];
    EXPECT_TRUE(f().writeSucceeded) << "\"Blanking time: 62 seconds\" ends the blank well";
    EXPECT_NE(readFile(external + "/fakedrive.state.media").find("/dev/sr0 blank yes"), std::string::npos);
    expectOnlyDevicePaths();
}

// A second start with "-w" writes from the event loop. Medium changes and a
// second start with "-i" during that write wait for its end: the write keeps
// its image, the drive is read once, then the new image is loaded.
TEST_F(LinuxDrives, WhatArrivesDuringAWriteWaitsForItsEnd) {
    start({cdWriter("CD-R", kBlankCDR + "write_delay_ms = 60\n")}, {}, true);
    f().showSettings(false);  // so that the write asks the drive only as it starts
    // A sheet cannot name its data in a folder whose name holds a quote.
    writeFile(root.file("data.bin"), std::string(8 << 20, 'x'));
    const std::string first = images + "/first.toc", second = images + "/second.toc";
    for (auto &toc : {first, second})
        writeFile(toc, "CD_ROM\nTRACK MODE1\nDATAFILE \"" + root.file("data.bin") + "\"");
    std::unique_ptr<ShellHarness> later;
    std::string written;
    const auto interpret = f().runner.objDOS.ReceiveOutputs;
    f().runner.objDOS.ReceiveOutputs = [&](const std::string &line) {
        interpret(line);
        if (line.find("Wrote 2 of") == 0 && !later) {
            for (int event : {platform::DBT_DEVICEREMOVECOMPLETE, platform::DBT_DEVICEARRIVAL})
                f().findChild<platform::MediumWatcher *>()->deviceChange(event);
            later = ShellHarness::inFolder(app, "-i " + second, true);
            EXPECT_FALSE(later->form().Form_Load());
        }
        if (line.find("Writing finished successfully") == 0) written = f().slot.strFilename;
    };
    EXPECT_FALSE(ShellHarness::inFolder(app, "-w " + first, true)->form().Form_Load());
    QElapsedTimer t;
    for (t.start(); f().slot.strFilename != second && t.elapsed() < 20000;) QCoreApplication::processEvents();
    EXPECT_EQ(written, first);
    const std::string log = readFile(external + "/fakedrive.log");
    EXPECT_EQ(vb::Split(log.substr(log.find("cdrdao write")), "cdrdao drive-info").size(), 2u) << "read once";
}
