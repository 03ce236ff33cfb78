#include "devices/Discovery.h"

#include <gtest/gtest.h>

#include "ScriptedHost.h"

using namespace saltmarrow;
using saltmarrow::test::ScriptedHost;

namespace {

// A model name holding ": " or ", " stays whole: the path comes first and
// the revision last.
const std::vector<std::string> kScan = {"Cdrdao version 1.2.4 - (C) Andreas Mueller <andreas@daneb.de>",
                                        "/dev/sr0 : PLEXTOR, CD-R   PX-W4012A, 1.01",
                                        "/dev/sr1 : ASUS, DRW: 24B1ST, a, 1.00"};

struct Discovery : ::testing::Test {
    ScriptedHost fake;
    DeviceState state;
    DeviceLists lists;
};

TEST_F(Discovery, AScanThatListsNoDriveEndsBare) {
    fake.answer(
        {"Cdrdao version 1.2.4", "ERROR: Unable to access sysfs filesystem at /sys/bus/scsi/devices"});
    EXPECT_FALSE(scanbus(state, fake.host));
    EXPECT_EQ(fake.statuses, std::vector<std::string>{"Could not find any host adapters."});
    EXPECT_EQ(fake.mode, Mode::HideMe) << "the early return leaves the mode";
    EXPECT_TRUE(state.devices.empty());
}

TEST_F(Discovery, StartUpScansOnceThenFillsTheReaderAndTheWriterList) {
    fake.answer(kScan);
    startupScanDevices(state, fake.host, true, lists);
    EXPECT_EQ(fake.commands, std::vector<std::string>{"\"/app/external/cdrdao\" scanbus"});
    ASSERT_EQ(lists.reader, (std::vector<std::string>{"/dev/sr0: PLEXTOR, CD-R   PX-W4012A",
                                                      "/dev/sr1: ASUS, DRW: 24B1ST, a"}));
    EXPECT_EQ(lists.readerIndex, 0);
    const DeviceInfo &second = state.devices.item(1);
    EXPECT_EQ(second.DeviceNumber, "2");
    EXPECT_EQ(second.DeviceName, "ASUS, DRW: 24B1ST, a");
    EXPECT_EQ(second.Firmware, "1.00");
    EXPECT_EQ(fake.log.substr(0, 6), "Cdrdao") << "the log window shows the scan";
    EXPECT_EQ(fake.mode, Mode::WriteCD) << "the mode before the scan is back";
    EXPECT_EQ(fake.splash, (std::vector<std::string>{"Scanning for devices...", "bar 3 1"}));

    // Debian's cdrdao has no driver table: the generic driver. A drive with
    // a raw driver of its own keeps it and is marked in the log.
    state.devices.item(1).Driver = "generic-mmc-raw";
    fake.log = "/dev/sr1: ASUS, DRW: 24B1ST, a\r\n";
    fake.answer({"ERROR: Illegal command: dt-lookup"}, false);
    fake.answer({"Maximum writing speed: 7056 kB/s", "BurnProof supported: yes"});
    fake.answer({"That data below may not reflect the real status of the inserted medium"});
    fake.answer({"Maximum writing speed: 0 kB/s"});
    fake.answer({}, false);
    startupConfigureDevices(state, fake.host, lists, "2");
    EXPECT_EQ(fake.commands[1], "\"/app/external/cdrdao\" dt-lookup --device /dev/sr0");
    EXPECT_EQ(state.devices.item(0).Driver, "generic-mmc");
    EXPECT_EQ(state.devices.item(0).DriverOptions, "0");
    EXPECT_EQ(fake.commands[2], "\"/app/external/cdrdao\" drive-info --device /dev/sr0 --driver generic-mmc");
    EXPECT_EQ(fake.commands[4],
              "\"/app/external/cdrdao\" drive-info --device /dev/sr1 --driver generic-mmc-raw");
    EXPECT_EQ(lists.writer, std::vector<std::string>{"/dev/sr0: PLEXTOR, CD-R   PX-W4012A"});
    EXPECT_EQ(lists.writerIndex, 0) << "the saved writer is no writer now: the first one";
    EXPECT_EQ(fake.log, "/dev/sr1: ASUS, DRW: 24B1ST, a (Raw Driver Recommended)\r\n");
    EXPECT_NE(std::find(fake.splash.begin(), fake.splash.end(), "Configuring devices..."), fake.splash.end());
}

TEST_F(Discovery, StartUpWithoutCdrdaoSaysSo) {
    startupScanDevices(state, fake.host, false, lists);
    EXPECT_EQ(fake.statuses, std::vector<std::string>{"No working cdrdao installation found"});
    EXPECT_TRUE(fake.commands.empty());
    EXPECT_TRUE(lists.reader.empty());
}

TEST(DriverLookup, PhraseColonAndFallback) {
    const std::pair<const char *, DriverEntry> rows[] = {
        {"\r\nbanner\r\nDriver found in driver table: generic-mmc-raw:0x20010", {"generic-mmc-raw", "20010"}},
        {"\r\nNo driver found", {"generic-mmc", "0"}},
        {"\r\nDriver found in driver table: plextor", {"generic-mmc", "0"}},  // no colon, no entry
    };
    for (const auto &[output, entry] : rows) {
        const DriverEntry found = parseDriverLookup(output);
        EXPECT_EQ(found.Driver, entry.Driver) << output;
        EXPECT_EQ(found.DriverOptions, entry.DriverOptions) << output;
    }
}

TEST(RawDriverMark, BitwiseTestOfThePositions) {
    // Name at 8, line end at 16: 8 AND 16 is 0, so the drive is not marked
    // (a marked one is in the start-up test).
    EXPECT_EQ(markRawDriver("1,0,0: PLEX, WX", "PLEX, WX"), "1,0,0: PLEX, WX");
    EXPECT_EQ(markRawDriver("other text", "PLEX, W"), "other text");
}

TEST(DeviceIndex, WellFormedLastMatchOrZero) {
    DeviceState state;
    for (const char *id : {"/dev/sr0", "/dev/sr1", "/dev/sr1"}) {
        DeviceInfo d;
        d.ASPIDeviceID = id;
        state.devices.Add(std::to_string(state.devices.Count() + 1), d);
    }
    const platform::LinuxDriveLayer layer("/nonexistent");
    EXPECT_EQ(getDeviceIndex(state, "/dev/sr1: X", layer), 2);
    EXPECT_EQ(getDeviceIndex(state, "/dev/sr9", layer), 0);
    EXPECT_EQ(getDeviceIndex(state, "no address", layer), 0);
}

struct Lists : ::testing::Test {
    ScriptedHost fake;
    DeviceState state;
    DeviceLists lists;
    void SetUp() override {
        DeviceInfo writer;
        writer.ASPIDeviceID = "/dev/sr0";
        writer.ASPIFullName = "/dev/sr0: PLEXTOR, PX-W4012A";
        writer.isWriter = true;
        writer.WriteSpeeds = "40x,32x,16x";
        writer.WriterOptions =
            "3000110000"
            "32x";
        state.devices.Add("1", writer);
        DeviceInfo reader;
        reader.ASPIDeviceID = "/dev/sr1";
        reader.ASPIFullName = "/dev/sr1: ASUS, DVD";
        state.devices.Add("2", reader);
    }
};

TEST_F(Lists, ListsKeepTheirSelectionWhereTheyCan) {
    lists.readerIndex = 1;
    lists.writerIndex = 4;
    fillDeviceLists(state, lists);
    EXPECT_EQ(lists.reader,
              (std::vector<std::string>{"/dev/sr0: PLEXTOR, PX-W4012A", "/dev/sr1: ASUS, DVD"}));
    EXPECT_EQ(lists.writer, std::vector<std::string>{"/dev/sr0: PLEXTOR, PX-W4012A"});
    EXPECT_EQ(lists.readerIndex, 1);
    EXPECT_EQ(lists.writerIndex, 0) << "an index the new list cannot hold falls back to the first";
}

TEST_F(Lists, SptiIsRefusedWithoutTheLayer) {
    state.isNT = false;
    state.chkUseSPTI = 1;
    chkUseSPTI_Click(state, fake.host, true, lists);
    EXPECT_EQ(state.chkUseSPTI, 0);
    ASSERT_EQ(fake.dialogs.prompts.size(), 1u);
    EXPECT_EQ(fake.dialogs.prompts[0].text, "SPTI is only available on Windows NT/2k/XP");
    EXPECT_EQ(fake.dialogs.prompts[0].style, 64);
    EXPECT_TRUE(lists.reader.empty());
}

TEST_F(Lists, WriterClickLoadsThePanelAndTheSpeeds) {
    WritePanel panel;
    OptionsMemory memory;
    std::string statusPanel;
    panel.cmbWriterDeviceIndex = 0;
    panel.cmbWriterDevice = "/dev/sr0: PLEXTOR, PX-W4012A with a long name";
    panel.cmbBuffersIndex = 0;
    cmbWriterDevice_Click(state, panel, memory, fake.layer, statusPanel);
    EXPECT_EQ(statusPanel, panel.cmbWriterDevice.substr(0, 35));
    EXPECT_EQ(panel.cmbBuffersIndex, 3);
    EXPECT_EQ(panel.cmbSpeedItems, (std::vector<std::string>{"40x", "32x", "16x"}));
    EXPECT_EQ(panel.cmbSpeed, "32x");
    EXPECT_EQ(panel.cmbSpeedIndex, 1);

    state.devices.item(0).WriterOptions =
        "3000110000"
        "4x";
    cmbWriterDevice_Click(state, panel, memory, fake.layer, statusPanel);
    EXPECT_EQ(panel.cmbSpeed, "40x") << "a saved speed the drive no longer offers gives the first";
}

}  // namespace
