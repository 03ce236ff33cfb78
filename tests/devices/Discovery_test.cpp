#include "devices/Discovery.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "ScriptedHost.h"
#include "platform/DriveLayer.h"
#include "support/RuntimeError.h"

using namespace saltmarrow;
using saltmarrow::test::scanOutput;
using saltmarrow::test::ScriptedHost;
using saltmarrow::test::toolOutput;

namespace {

const platform::WindowsDriveLayer kLayer;

TEST(ScanClassification, MessagesInTheirOrder) {
    EXPECT_EQ(kLayer.scanProblem(""), "msgCdrdaoFail");
    EXPECT_EQ(kLayer.scanProblem("\r\nERROR: Can not load ASPI driver"), "msgNoASPILayer");
    EXPECT_EQ(kLayer.scanProblem("\r\ncan not load aspi or spti driver!"), "msgNoASPILayer");
    EXPECT_EQ(kLayer.scanProblem("\r\nCould not find any host adapters" + std::string(300, ' ')),
              "msgNoHostAdapters");
    // The length rule alone: a device line does not save a short output.
    std::string shortScan = "\r\nOK!\r\n1,0,0: A, B, 1\r\n";
    shortScan += std::string(209 - shortScan.size(), ' ');
    EXPECT_EQ(kLayer.scanProblem(shortScan), "msgNoDevicesFound");
    EXPECT_EQ(kLayer.scanProblem(shortScan + " "), std::nullopt);
}

TEST(ScanLines, AddressNameAndFirmware) {
    const auto drive = kLayer.parseScanLine("1,0,0: VENDOR, MODEL, 1.0");
    EXPECT_EQ(drive.address, "1,0,0");
    EXPECT_EQ(drive.fullName, "1,0,0: VENDOR, MODEL");
    EXPECT_EQ(drive.deviceName, "VENDOR, MODEL");
    const auto colon = kLayer.parseScanLine("1,0,0: VENDOR: SPECIAL, MODEL, 1.0");
    EXPECT_EQ(colon.deviceName, "SPECIAL, MODEL") << "split at the last \": \"";
    EXPECT_EQ(colon.fullName, "1,0,0: VENDOR: SPECIAL, MODEL");
    const auto barred = kLayer.parseScanLine("SPTI|2,1,0: HL-DT-ST, DVDRAM, 1.00");
    EXPECT_EQ(barred.address, "2,1,0");
    EXPECT_EQ(barred.fullName, "2,1,0: HL-DT-ST, DVDRAM");
}

TEST(ScanLines, AddressesAreOneDigitPerField) {
    const auto lines =
        kLayer.deviceLines(toolOutput({"banner, with, commas", "10,0,0: A, B, 1", "1,0,0: C, D, 2"}));
    ASSERT_EQ(lines.size(), 3u);  // the cut starts at the line break: an empty first line
    EXPECT_EQ(lines[1], "10,0,0: A, B, 1");
    // A two-digit bus yields a five-character address that is no address.
    const auto wide = kLayer.parseScanLine(lines[1]);
    EXPECT_EQ(wide.address, "10,0,");
    EXPECT_EQ(kLayer.wellFormedAddress(wide.address), std::nullopt);
    EXPECT_TRUE(kLayer.deviceLines(toolOutput({"no devices, here", "only text"})).empty());
    EXPECT_TRUE(kLayer.deviceLines(toolOutput({"1,0,0 without the colon"})).empty());
}

struct Scan : ::testing::Test {
    ScriptedHost fake;
    DeviceState state;
};

TEST_F(Scan, BothLayersMatchedByPlace) {
    fake.answer(scanOutput({"0,1,0: PLEXTOR, PX-W4012A, 1.01", "", "0,2,0: LITEON, DVD-ROM LTD163, GHR3"}));
    fake.answer(scanOutput({"1,0,0: PLEXTOR, PX-W4012A, 1.01", "1,1,0: LITEON, DVD-ROM LTD163, GHR3"}));
    EXPECT_TRUE(scanbus(state, fake.host, false));
    EXPECT_EQ(fake.commands, (std::vector<std::string>{"\"/app/external/cdrdao\" scanbus",
                                                       "\"/app/external/cdrdao\" scanbus --spti"}));
    ASSERT_EQ(state.devices.Count(), 2u);
    const DeviceInfo &second = state.devices.item(1);
    EXPECT_EQ(second.DeviceNumber, "2") << "an empty line uses up no key";
    EXPECT_EQ(second.DeviceName, "LITEON, DVD-ROM LTD163");
    EXPECT_EQ(second.ASPIDeviceID, "0,2,0");
    EXPECT_EQ(second.SPTIDeviceID, "1,1,0");
    EXPECT_EQ(second.SPTIFullName, "1,1,0: LITEON, DVD-ROM LTD163");
    EXPECT_EQ(state.availableInterfaces, 3);
    EXPECT_EQ(state.aspiScanOutput.substr(0, 8), "\nCdrdao ");
    EXPECT_EQ(fake.mode, "WRITE CD");
    EXPECT_EQ(fake.splash,
              (std::vector<std::string>{"Scanning for devices...", "Scanning for devices...", "bar 3 1"}));
    EXPECT_EQ(getDeviceIndex(state, "0,2,0: whatever", kLayer), 1);
}

TEST_F(Scan, OnlySptiCreatesTheRecords) {
    fake.answer(toolOutput({"ASPI layer not there" + std::string(250, '.')}));
    fake.answer(scanOutput({"1,0,0: PLEXTOR, PX-W4012A, 1.01"}));
    EXPECT_TRUE(scanbus(state, fake.host, false));
    EXPECT_EQ(state.availableInterfaces, 2);
    ASSERT_EQ(state.devices.Count(), 1u);
    EXPECT_EQ(state.devices.item(0).SPTIFullName, "1,0,0: PLEXTOR, PX-W4012A");
    EXPECT_EQ(state.devices.item(0).ASPIFullName, "");
    EXPECT_TRUE(fake.statuses.empty()) << "no OK! is no message";
}

TEST_F(Scan, NoLayerAtAllIsFalseWithoutMessage) {
    fake.answer(toolOutput({std::string(250, '.')}));
    fake.answer(toolOutput({std::string(250, '.')}));
    EXPECT_FALSE(scanbus(state, fake.host, false));
    EXPECT_TRUE(fake.statuses.empty());
    EXPECT_EQ(state.availableInterfaces, 0);
}

TEST_F(Scan, FailedFirstScanEndsBareWithoutTheSecond) {
    fake.answer(toolOutput({"Can not load ASPI driver"}), false);
    EXPECT_FALSE(scanbus(state, fake.host, false));
    EXPECT_EQ(fake.commands.size(), 1u);
    EXPECT_EQ(fake.statuses, std::vector<std::string>{"Cannot load ASPI driver."});
    EXPECT_EQ(fake.mode, "HIDE ME") << "the early return leaves the mode";
}

TEST_F(Scan, SptiListingMoreDrivesThanAspiIsAnError) {
    fake.answer(scanOutput({"0,1,0: PLEXTOR, PX-W4012A, 1.01"}));
    fake.answer(scanOutput({"1,0,0: PLEXTOR, PX-W4012A, 1.01", "1,1,0: LITEON, DVD-ROM LTD163, GHR3"}));
    EXPECT_THROW(scanbus(state, fake.host, false), RuntimeError);
}

TEST(DriverLookup, PhraseColonAndFallback) {
    auto entry =
        parseDriverLookup(toolOutput({"banner", "Driver found in driver table: generic-mmc-raw:0x20010"}));
    EXPECT_EQ(entry.Driver, "generic-mmc-raw");
    EXPECT_EQ(entry.DriverOptions, "20010");
    entry = parseDriverLookup(toolOutput({"banner", "No driver found"}));
    EXPECT_EQ(entry.Driver, "generic-mmc");
    EXPECT_EQ(entry.DriverOptions, "0");
    entry = parseDriverLookup(toolOutput({"Driver found in driver table: plextor"}));
    EXPECT_EQ(entry.Driver, "generic-mmc") << "no colon, no entry";
}

TEST(RawDriverMark, BitwiseTestOfThePositions) {
    // Name at 8, line end at 15: 8 AND 15 is 8, so the drive is marked.
    EXPECT_EQ(markRawDriver("1,0,0: PLEX, W", "PLEX, W"), "1,0,0: PLEX, W (Raw Driver Recommended)");
    // Name at 8, line end at 16: 8 AND 16 is 0, so it is not.
    EXPECT_EQ(markRawDriver("1,0,0: PLEX, WX", "PLEX, WX"), "1,0,0: PLEX, WX");
    EXPECT_EQ(markRawDriver("other text", "PLEX, W"), "other text");
}

TEST(DeviceIndex, WellFormedLastMatchOrZero) {
    DeviceState state;
    for (const char *id : {"1,0,0", "1,1,0", "1,1,0"}) {
        DeviceInfo d;
        d.ASPIDeviceID = id;
        d.SPTIDeviceID = std::string("2") + (id + 1);
        state.devices.Add(std::to_string(state.devices.Count() + 1), d);
    }
    EXPECT_EQ(getDeviceIndex(state, "1,1,0: X", kLayer), 2);
    EXPECT_EQ(getDeviceIndex(state, "1,1,", kLayer), 0);
    EXPECT_EQ(getDeviceIndex(state, "1.1.0", kLayer), 0);
    EXPECT_EQ(getDeviceIndex(state, "9,9,9", kLayer), 0);
    state.chkUseSPTI = 1;
    EXPECT_EQ(getDeviceIndex(state, "2,1,0", kLayer), 2);
    EXPECT_EQ(getDeviceIndex(state, "1,1,0", kLayer), 0);
}

struct Lists : ::testing::Test {
    ScriptedHost fake;
    DeviceState state;
    DeviceLists lists;
    void SetUp() override {
        DeviceInfo writer;
        writer.ASPIDeviceID = "0,1,0";
        writer.ASPIFullName = "0,1,0: PLEXTOR, PX-W4012A";
        writer.SPTIDeviceID = "1,0,0";
        writer.SPTIFullName = "1,0,0: PLEXTOR, PX-W4012A";
        writer.isWriter = true;
        writer.WriteSpeeds = "40x,32x,16x";
        writer.WriterOptions =
            "3000110000"
            "32x";
        state.devices.Add("1", writer);
        DeviceInfo reader;
        reader.ASPIDeviceID = "0,2,0";
        reader.ASPIFullName = "0,2,0: LITEON, DVD-ROM";
        state.devices.Add("2", reader);
        state.aspiScanOutput = "\nASPI scan";
        state.sptiScanOutput = "\nSPTI scan";
    }
};

TEST_F(Lists, SwitchingLayersRebuildsBothLists) {
    chkUseSPTI_Click(state, fake.host, false, lists);
    EXPECT_TRUE(lists.reader.empty()) << "nothing before the form has loaded";
    chkUseSPTI_Click(state, fake.host, true, lists);
    EXPECT_EQ(lists.reader,
              (std::vector<std::string>{"0,1,0: PLEXTOR, PX-W4012A", "0,2,0: LITEON, DVD-ROM"}));
    EXPECT_EQ(lists.writer, std::vector<std::string>{"0,1,0: PLEXTOR, PX-W4012A"});
    EXPECT_EQ(lists.readerIndex, 0);
    EXPECT_EQ(fake.log, "ASPI scan");
    lists.readerIndex = 1;
    state.chkUseSPTI = 1;
    chkUseSPTI_Click(state, fake.host, true, lists);
    EXPECT_EQ(lists.reader, std::vector<std::string>{"1,0,0: PLEXTOR, PX-W4012A"});
    EXPECT_EQ(lists.readerIndex, 0) << "an index the new list cannot hold falls back to the first";
    EXPECT_EQ(fake.log, "SPTI scan");
}

TEST_F(Lists, OneLayerOnlyLeavesTheOtherListsEmpty) {
    for (auto &d : state.devices.Items()) d.SPTIFullName.clear();
    state.chkUseSPTI = 1;
    chkUseSPTI_Click(state, fake.host, true, lists);
    EXPECT_TRUE(lists.reader.empty());
    EXPECT_TRUE(lists.writer.empty());
    EXPECT_EQ(lists.readerIndex, -1);
}

TEST_F(Lists, SptiRefusedOutsideTheNtFamily) {
    state.isNT = false;
    state.chkUseSPTI = 1;
    chkUseSPTI_Click(state, fake.host, true, lists);
    EXPECT_EQ(state.chkUseSPTI, 0);
    ASSERT_EQ(fake.dialogs.prompts.size(), 1u);
    EXPECT_EQ(fake.dialogs.prompts[0].text, "SPTI is only available on Windows NT/2k/XP");
    EXPECT_EQ(fake.dialogs.prompts[0].style, 64);
    EXPECT_TRUE(lists.reader.empty());
}

TEST_F(Lists, WriterClickLoadsPanelAndSpeeds) {
    WritePanel panel;
    OptionsMemory memory;
    std::string statusPanel;
    panel.cmbWriterDeviceIndex = 0;
    panel.cmbWriterDevice = "0,1,0: PLEXTOR, PX-W4012A with a long name";
    panel.cmbBuffersIndex = 0;
    cmbWriterDevice_Click(state, panel, memory, kLayer, statusPanel);
    EXPECT_EQ(statusPanel, panel.cmbWriterDevice.substr(0, 35));
    EXPECT_LT(statusPanel.size(), panel.cmbWriterDevice.size());
    EXPECT_EQ(panel.cmbBuffersIndex, 3);
    EXPECT_EQ(panel.cmbSpeedItems, (std::vector<std::string>{"40x", "32x", "16x"}));
    EXPECT_EQ(panel.cmbSpeed, "32x");
    EXPECT_EQ(panel.cmbSpeedIndex, 1);

    state.devices.item(0).WriterOptions =
        "3000110000"
        "4x";
    cmbWriterDevice_Click(state, panel, memory, kLayer, statusPanel);
    EXPECT_EQ(panel.cmbSpeed, "40x") << "a saved speed the drive no longer offers gives the first";
}

TEST_F(Lists, StartupFillsReaderThenWriterAndPicksTheSavedWriter) {
    fake.answer(scanOutput({"0,1,0: PLEXTOR, PX-W4012A, 1.01", "0,2,0: LITEON, DVD-ROM, GHR3"}));
    fake.answer(toolOutput({std::string(250, '.')}));  // no SPTI layer
    state = DeviceState{};
    startupScanDevices(state, fake.host, true, lists);
    EXPECT_EQ(state.chkUseSPTI, 0);
    EXPECT_EQ(lists.reader.size(), 2u);
    EXPECT_EQ(lists.readerIndex, 0);
    EXPECT_EQ(fake.log.substr(0, 6), "Cdrdao");

    fake.commands.clear();
    state.devices.item(0).Driver = "generic-mmc";
    state.devices.item(0).DriverOptions = "10";
    fake.answer(toolOutput({"Inserted Media: CD-R", "Rev: 1.0", "Reads   : CD-R", "Writes  : CD-R",
                            "Features: x", "Buffer Size: 2048 kB", "Available Write Speeds: 16x"}));
    fake.answer(toolOutput({"Driver found in driver table: generic-mmc-raw:0x0"}));
    fake.answer(toolOutput({"Inserted Media: n/a", "Rev: 1.0", "Reads   : CD-R", "Writes  : ", "Features: x",
                            "Buffer Size: 512 kB"}));
    fake.log = "0,2,0: LITEON, DVD-ROM\r\n";
    startupConfigureDevices(state, fake.host, lists, "1");
    EXPECT_EQ(fake.commands,
              (std::vector<std::string>{
                  "\"/app/external/cdrdao\" drive-info --device ASPI:0,1,0 --driver generic-mmc",
                  "\"/app/external/cdrdao\" dt-lookup --device ASPI:0,2,0",
                  "\"/app/external/cdrdao\" drive-info --device ASPI:0,2,0 --driver generic-mmc-raw"}));
    EXPECT_EQ(lists.writer, std::vector<std::string>{"0,1,0: PLEXTOR, PX-W4012A"});
    EXPECT_EQ(lists.writerIndex, 0);
    EXPECT_EQ(state.devices.item(1).DriverOptions, "0");
    EXPECT_FALSE(state.devices.item(1).isWriter);
    // Name at 8 and line end at 23: 8 AND 23 is 0, so this drive goes unmarked.
    EXPECT_EQ(fake.log, "0,2,0: LITEON, DVD-ROM\r\n");
    EXPECT_NE(std::find(fake.splash.begin(), fake.splash.end(), "Configuring devices..."), fake.splash.end());
}

TEST_F(Lists, StartupWithoutCdrdaoSaysSo) {
    startupScanDevices(state, fake.host, false, lists);
    EXPECT_EQ(fake.statuses, std::vector<std::string>{"No working cdrdao installation found"});
    EXPECT_TRUE(fake.commands.empty());
}

}  // namespace
