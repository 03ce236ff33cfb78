// What the drive and disc queries make of the tools' answers.
#include "devices/DriveQueries.h"

#include <gtest/gtest.h>

#include "ScriptedHost.h"
#include "devices/KernelDriveInfo.h"
#include "support/RuntimeError.h"

using namespace saltmarrow;
using saltmarrow::test::asOutput;
using saltmarrow::test::diskInfo;
using saltmarrow::test::ScriptedHost;

namespace {

// A cdrdao whose drive-info tells the medium, the feature words and the
// speeds itself, as the tool's other builds do.
struct FullReportLayer : platform::LinuxDriveLayer {
    FullReportLayer() : LinuxDriveLayer("/nonexistent") {}
    bool driveInfoReportsAll() const override { return true; }
};

std::vector<std::string> driveInfo(const std::string &media, const std::vector<std::string> &speedLines) {
    std::vector<std::string> lines = {"/dev/sr0: PLEXTOR  PX-W4012A  Rev: 1.01 ",
                                      "Inserted Media: " + media,
                                      "Reads   : CD-R CD-RW CD-ROM  ",
                                      "Writes  : CD-R CD-RW",
                                      "Features: BURN-Proof",
                                      "Buffer Size:  2048 kB",
                                      "Buffer Underrun Protection: yes"};
    lines.insert(lines.end(), speedLines.begin(), speedLines.end());
    return lines;
}

TEST(Speeds, LadderAndReportedList) {
    const std::pair<const char *, const char *> ladders[] = {
        {"24", "24x,20x,16x,12x,10x,8x,6x,4x,2x,1x"}, {"1", "1x"}, {"2", "2x,1x"}, {"0", ""}};
    for (const auto &[top, list] : ladders) EXPECT_EQ(speedLadder(top), list) << top;
    EXPECT_THROW(speedLadder("fast"), RuntimeError);
    const std::pair<const char *, const char *> reported[] = {
        {"4x 8x 12x 16x", "4x,8x"},  // a comparison of texts: "12" sorts below "4x,8x,"
        {"40x 32x 24x", "40x"},
        {"16x 4-8x 8x", "4-8x,8x"},  // a range empties the list built so far
        {"0x", ""},
    };
    for (const auto &[text, list] : reported) EXPECT_EQ(reportedSpeeds(text), list) << text;
}

TEST(DriveInfoText, FieldsAndTheChoiceOfSpeeds) {
    struct Row {
        const char *media;
        std::vector<std::string> speedLines;
        const char *speeds;
        bool inserted;
    };
    const Row rows[] = {
        {"CD-RW",
         {"Maximum Writing Speed : 7056 kB/s (24x)", "Available Write Speeds: 4-10x 8x 4x"},
         "4-10x,8x",
         true},
        {"n/a",
         {"Maximum Writing Speed : 1764 kB/s (10x)", "Available Write Speeds: 0x"},
         "10x,8x,6x,4x,2x,1x",
         false},
        {"CD-R", {"Maximum Writing Speed : 0 kB/s (0x)", "Available Write Speeds: MAX"}, "Max", true},
        {"DVD-ROM", {}, "", true},
    };
    DeviceInfo d;
    for (const Row &row : rows) {
        readDriveInfo(d, asOutput(driveInfo(row.media, row.speedLines)), row.media);
        EXPECT_EQ(d.WriteSpeeds, row.speeds) << row.media;
        EXPECT_EQ(d.isWriter, *row.speeds != '\0') << row.media;
        EXPECT_EQ(d.MediaInserted, row.inserted) << row.media;
    }
    EXPECT_EQ(d.LastMediaType, "DVD-ROM");
    EXPECT_EQ(d.Firmware, "1.01");
    EXPECT_EQ(d.ReadFeatures, "CD-R CD-RW CD-ROM ");
    EXPECT_EQ(d.WriteFeatures, "CD-R CD-RW ");
    EXPECT_EQ(d.OtherFeatures, "BURN-Proof ");
    EXPECT_EQ(d.BufferSize, "2048");
    EXPECT_TRUE(d.BufferProtection);
    EXPECT_TRUE(d.isWriterKnown);
    readDriveInfo(d, asOutput(driveInfo("n/a", {})), "n/a");
    EXPECT_EQ(d.LastMediaType, "DVD-ROM") << "an emptied drive keeps its last type";
}

struct Query : ::testing::Test {
    ScriptedHost fake;
    FullReportLayer fullReport;
    DeviceState state;
    void SetUp() override {
        DeviceInfo d;
        d.ASPIDeviceID = "/dev/sr0";
        d.ASPIFullName = "/dev/sr0: PLEXTOR, PX";
        d.Driver = "generic-mmc";
        d.DriverOptions = "0";
        d.LastMediaType = "CD-R";
        d.MediaInserted = true;
        state.devices.Add("1", d);
        fake.host.layer = &fullReport;
    }
    DeviceInfo &drive() { return state.devices.item(0); }
};

TEST_F(Query, ADriveSlowToAnswerIsAskedThreeTimesMore) {
    for (int i = 0; i < 3; ++i) fake.answer({"WARNING: Unit not ready, still trying..."}, false);
    fake.answer(driveInfo("CD-R", {"Available Write Speeds: 16x"}));
    fake.host.letEventsRun = [&] { fake.sleeps.push_back(0); };
    updateDriveInfo(state, fake.host, 0, false, false);
    EXPECT_EQ(fake.commands.size(), 4u);
    EXPECT_EQ(fake.commands[0], "\"/app/external/cdrdao\" drive-info --device /dev/sr0 --driver generic-mmc");
    // Three pauses of 250 ms, in slices of 10 ms with the window's events between.
    EXPECT_EQ(std::count(fake.sleeps.begin(), fake.sleeps.end(), 10), 75);
    EXPECT_EQ(*std::max_element(fake.sleeps.begin(), fake.sleeps.end()), 10);
    EXPECT_EQ(std::search_n(fake.sleeps.begin(), fake.sleeps.end(), 2, 10), fake.sleeps.end());
    EXPECT_EQ(state.driveRetries, 0);
    EXPECT_EQ(drive().WriteSpeeds, "16x");
    EXPECT_EQ(fake.mode, Mode::WriteCD);
    EXPECT_EQ(std::count(fake.splash.begin(), fake.splash.end(), "step"), 1)
        << "only the answered try counts";

    // A drive that never answers ends in the error handler, the mode hidden.
    for (int i = 0; i < 4; ++i) fake.answer({}, false);
    EXPECT_THROW(updateDriveInfo(state, fake.host, 0, false, false), RuntimeError);
    EXPECT_EQ(fake.mode, Mode::HideMe);
}

TEST_F(Query, WhichDrivesAreAskedAndWhatAnEmptyOneChanges) {
    drive().WriteSpeeds = "16x";
    fake.answer(driveInfo("n/a", {}));
    updateDriveInfo(state, fake.host, 0, true, false);
    EXPECT_TRUE(drive().MediaInserted) << "with skipNoMedia the record is left as it was";
    EXPECT_EQ(drive().WriteSpeeds, "16x");

    drive().isWriter = false;
    drive().isWriterKnown = true;
    updateDriveInfo(state, fake.host, 0, false, false);
    EXPECT_EQ(fake.commands.size(), 1u) << "a drive known not to write is not asked again";
    fake.answer(driveInfo("CD-R", {"Available Write Speeds: MAX"}));
    updateDriveInfo(state, fake.host, 0, false, true);
    EXPECT_EQ(fake.commands.size(), 2u) << "unless forced";
    EXPECT_TRUE(drive().isWriter);
}

TEST_F(Query, MediaRefreshKeepsOrResetsTheSpeedChoice) {
    drive().isWriter = true;
    drive().WriteSpeeds = "16x,8x";
    WritePanel panel;
    panel.cmbWriterDeviceIndex = 0;
    panel.cmbWriterDevice = drive().ASPIFullName;
    panel.cmbSpeedItems = {"16x", "8x"};
    panel.cmbSpeedIndex = 1;
    panel.cmbSpeed = "8x";
    OptionsMemory memory;
    std::string statusPanel;
    fake.answer(driveInfo("CD-R", {"Available Write Speeds: 16x 8x"}));
    updateMediaInfo(state, fake.host, panel, memory, statusPanel, true, false, false);
    EXPECT_EQ(panel.cmbSpeed, "8x") << "same speeds: the choice stays";

    fake.answer(driveInfo("CD-RW", {"Available Write Speeds: 4x"}));
    updateMediaInfo(state, fake.host, panel, memory, statusPanel, true, false, false);
    EXPECT_EQ(panel.cmbSpeedItems, std::vector<std::string>{"4x"});
    EXPECT_EQ(panel.cmbSpeed, "4x");

    fake.host.deviceSettingsShown = [] { return false; };
    updateMediaInfo(state, fake.host, panel, memory, statusPanel, false, false, false);
    EXPECT_EQ(fake.commands.size(), 2u) << "not while the settings area is closed, unless automatic";
}

TEST(DiscStatus, WhatTheDiscIs) {
    struct Row {
        std::vector<std::string> output;
        bool ok;
        std::string result;
        const char *status;
    };
    const std::string nul(1, '\0');
    const Row rows[] = {
        {diskInfo(false, true, false), true, "E" + nul + "359849" + nul + "0",
         "Checking for writable media..."},
        // Blank and appendable at once: appendable wins.
        {diskInfo(false, true, true), true, "A" + nul + "330875" + nul + "0",
         "Checking for writable media..."},
        {diskInfo(false, false, false), true, "C" + nul + "0" + nul + "0", "Checking for writable media..."},
        {{}, false, "X" + nul + "0", "Operation Cancelled"},
        {{"WARNING: Inserted medium is not a CD."}, true, "0" + nul + "0", "No writable media found!"},
    };
    for (const Row &row : rows) {
        ScriptedHost fake;
        fake.answer(row.output, row.ok);
        DiscStatusContext context;
        context.writer = "/dev/sr0: PLEXTOR, PX";
        context.deviceFragment = " --device /dev/sr0 --driver generic-mmc:0x0 ";
        EXPECT_EQ(discStatus(fake.host, context), row.result);
        EXPECT_EQ(fake.commands,
                  std::vector<std::string>{
                      "\"/app/external/cdrdao\" disk-info --device /dev/sr0 --driver generic-mmc:0x0 "});
        EXPECT_EQ(fake.statuses.back(), row.status);
    }
    ScriptedHost fake;
    EXPECT_EQ(discStatus(fake.host, DiscStatusContext{}), "") << "no writer chosen";
    ASSERT_EQ(fake.dialogs.prompts.size(), 1u);
    EXPECT_EQ(fake.dialogs.prompts[0].text, "Please select a Write Device.");
    EXPECT_EQ(fake.dialogs.prompts[0].style, 48);
}

TEST(DiscStatus, AUsedRewritableIsOfferedForErasingAndReadAgain) {
    ScriptedHost fake;
    fake.answer(diskInfo(true, false, false));
    fake.answer(diskInfo(true, true, false));
    int offers = 0;
    DiscStatusContext context;
    context.writer = "/dev/sr0: PLEXTOR, PX";
    context.offerErase = [&] {
        ++offers;
        return false;  // erased
    };
    DiscStatusResult result = splitDiscStatus(discStatus(fake.host, context));
    EXPECT_EQ(offers, 1);
    EXPECT_EQ(fake.commands.size(), 2u);
    EXPECT_EQ(result.status, 'E');
    EXPECT_EQ(result.rewritable, 1);

    context.offerErase = [&] {
        ++offers;
        return true;  // cancelled
    };
    fake.answer(diskInfo(true, false, false));
    EXPECT_EQ(splitDiscStatus(discStatus(fake.host, context)).status, 'C');
    EXPECT_EQ(offers, 2);

    // A multi-session data disc is added to, not erased.
    fake.answer(diskInfo(true, false, true));
    fake.mode = Mode::DataCD;
    context.chkMulti = true;
    result = splitDiscStatus(discStatus(fake.host, context));
    EXPECT_EQ(offers, 2);
    EXPECT_EQ(result.status, 'A');
}

// The drive queries where the system tells what a drive is and cdrdao only
// its speed: Debian's cdrdao with the kernel's CD-ROM table. A CD writer's
// top speed and its rounding are read by the device dialog's test, a drive
// that cannot write by the start-up test.
TEST(KernelDriveInfo, TopSpeedInCDOrDVDSteps) {
    struct Row {
        const char *output;
        bool dvd;
        long top;
    };
    const Row rows[] = {
        {"Maximum writing speed: 22160 kB/s\r\n", true, 16},
        {"Maximum writing speed: 8310 kB/s", true, 6},
        {"Maximum reading speed: 8467 kB/s", false, 0},
    };
    for (const Row &row : rows) EXPECT_EQ(topWriteSpeed(row.output, row.dvd), row.top) << row.output;
}

TEST(KernelDriveInfo, MediumWords) {
    const std::string inquiry = "INQUIRY:                [HL-DT-ST][DVDRAM GH24NSB0 ][LN01]\n";
    const std::pair<std::string, const char *> dvds[] = {
        {inquiry + " Mounted Media:         1Bh, DVD+R\n", "DVD+R"},
        {inquiry + " Mounted Media:         13h, DVD-RW Restricted Overwrite\r\n", "DVD-RW"},
        {inquiry + ":-( no media mounted, exiting...\n", "n/a"},
        {inquiry + ":-( non-DVD media mounted, exiting...\n", ""},
        {inquiry + " Mounted Media:         41h, BD-R SRM\n", ""},
    };
    for (const auto &[output, type] : dvds) EXPECT_EQ(dvdMediumType(output), type) << output;
    const std::string read = "That data below may not reflect the real status of the inserted medium\n";
    const std::pair<std::string, const char *> cds[] = {
        {read + "CD-RW                : yes\nCD-R medium          : Ritek\n", "CD-RW"},
        {read + "CD-RW                : no\nCD-R medium          : Taiyo Yuden\n", "CD-R"},
        {read + "CD-RW                : no\nCD-R medium          : n/a\n", "CD-ROM"},
        {"ERROR: Unit not ready, giving up.\n", "n/a"},
    };
    for (const auto &[output, type] : cds) EXPECT_EQ(cdMediumType(output), type) << output;
}

TEST(KernelDriveInfo, TheMediumAsksAsFewToolsAsItCan) {
    ScriptedHost fake;
    fake.host.mediaInfoTool = "/app/external/dvd+rw-mediainfo";
    DeviceInfo device;
    device.Driver = "generic-mmc";
    platform::DriveCapabilities dvdDrive;
    dvdDrive.readsDVD = true;
    fake.answer({"INQUIRY: x", " Mounted Media:         1Bh, DVD+R"});
    EXPECT_EQ(queryMedium(fake.host, device, "/dev/sr0", dvdDrive), "DVD+R");
    fake.answer({":-( non-DVD media mounted, exiting..."}, false);
    fake.answer({"That data below may not reflect the real status", "CD-RW                : yes"});
    EXPECT_EQ(queryMedium(fake.host, device, "/dev/sr0", dvdDrive), "CD-RW");
    fake.answer({"ERROR: Unit not ready, giving up."}, false);
    EXPECT_EQ(queryMedium(fake.host, device, "/dev/sr1", {}), "n/a") << "a CD drive is asked by cdrdao alone";
    EXPECT_EQ(
        fake.commands,
        (std::vector<std::string>{
            "\"/app/external/dvd+rw-mediainfo\" /dev/sr0", "\"/app/external/dvd+rw-mediainfo\" /dev/sr0",
            "\"/app/external/cdrdao\" disk-info --device /dev/sr0 --driver generic-mmc",
            "\"/app/external/cdrdao\" disk-info --device /dev/sr1 --driver generic-mmc"}));
}

}  // namespace
