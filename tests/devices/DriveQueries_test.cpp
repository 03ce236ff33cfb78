#include "devices/DriveQueries.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "ScriptedHost.h"
#include "support/RuntimeError.h"

using namespace saltmarrow;
using saltmarrow::test::ScriptedHost;
using saltmarrow::test::toolOutput;

namespace {

std::string driveInfo(const std::string &media, const std::vector<std::string> &speedLines) {
    std::vector<std::string> lines = {"SPTI:1,0,0: PLEXTOR  PX-W4012A  Rev: 1.01 ",
                                      "Inserted Media: " + media,
                                      "Reads   : CD-R CD-RW CD-ROM  ",
                                      "Writes  : CD-R CD-RW",
                                      "Features: BURN-Proof",
                                      "Buffer Size:  2048 kB",
                                      "Buffer Underrun Protection: yes"};
    lines.insert(lines.end(), speedLines.begin(), speedLines.end());
    return toolOutput(lines);
}

TEST(Speeds, LadderBelowTheTopSpeed) {
    EXPECT_EQ(speedLadder("24"), "24x,20x,16x,12x,10x,8x,6x,4x,2x,1x");
    EXPECT_EQ(speedLadder("1"), "1x");
    EXPECT_EQ(speedLadder("2"), "2x,1x");
    EXPECT_EQ(speedLadder("0"), "");
    EXPECT_THROW(speedLadder("fast"), RuntimeError);
}

TEST(Speeds, ReportedListComparesTexts) {
    EXPECT_EQ(reportedSpeeds("4x 8x 12x 16x"), "4x,8x") << "\"12\" sorts below \"4x,8x,\"";
    EXPECT_EQ(reportedSpeeds("40x 32x 24x"), "40x");
    EXPECT_EQ(reportedSpeeds("16x 4-8x 8x"), "4-8x,8x") << "a range empties the list built so far";
    EXPECT_EQ(reportedSpeeds("0x"), "");
}

TEST(DriveInfoText, FieldsFeaturesAndSpeedChoice) {
    DeviceInfo d;
    readDriveInfo(d,
                  driveInfo("CD-RW", {"Maximum Writing Speed : 7056 kB/s (24x)",
                                      "Available Write Speeds: 4-10x 8x 4x"}),
                  "CD-RW");
    EXPECT_EQ(d.Firmware, "1.01");
    EXPECT_EQ(d.ReadFeatures, "CD-R CD-RW CD-ROM ");
    EXPECT_EQ(d.WriteFeatures, "CD-R CD-RW ");
    EXPECT_EQ(d.OtherFeatures, "BURN-Proof ");
    EXPECT_EQ(d.BufferSize, "2048");
    EXPECT_TRUE(d.BufferProtection);
    EXPECT_EQ(d.WriteSpeeds, "4-10x,8x") << "the reported list wins over the ladder";
    EXPECT_TRUE(d.isWriter);
    EXPECT_TRUE(d.MediaInserted);
    EXPECT_EQ(d.LastMediaType, "CD-RW");

    readDriveInfo(d,
                  driveInfo("n/a", {"Maximum Writing Speed : 1764 kB/s (10x)", "Available Write Speeds: 0x"}),
                  "n/a");
    EXPECT_EQ(d.WriteSpeeds, "10x,8x,6x,4x,2x,1x") << "an empty reported list falls back to the ladder";
    EXPECT_FALSE(d.MediaInserted);
    EXPECT_EQ(d.LastMediaType, "CD-RW") << "an emptied drive keeps its last type";

    readDriveInfo(
        d, driveInfo("CD-R", {"Maximum Writing Speed : 0 kB/s (0x)", "Available Write Speeds: MAX"}), "CD-R");
    EXPECT_EQ(d.WriteSpeeds, "Max");
    EXPECT_TRUE(d.isWriter);

    readDriveInfo(d, driveInfo("DVD-ROM", {}), "DVD-ROM");
    EXPECT_EQ(d.WriteSpeeds, "");
    EXPECT_FALSE(d.isWriter);
    EXPECT_TRUE(d.isWriterKnown);
}

struct Query : ::testing::Test {
    ScriptedHost fake;
    DeviceState state;
    void SetUp() override {
        DeviceInfo d;
        d.SPTIDeviceID = "1,0,0";
        d.ASPIDeviceID = "0,1,0";
        d.Driver = "generic-mmc";
        d.DriverOptions = "0";
        d.LastMediaType = "CD-R";
        d.MediaInserted = true;
        state.devices.Add("1", d);
        state.chkUseSPTI = 1;
    }
    DeviceInfo &drive() { return state.devices.item(0); }
};

TEST_F(Query, RetriesThreeTimesThenReadsTheAnswer) {
    for (int i = 0; i < 3; ++i) fake.answer(toolOutput({"WARNING: Unit not ready, still trying..."}), false);
    fake.answer(driveInfo("CD-R", {"Available Write Speeds: 16x"}));
    fake.host.letEventsRun = [&] { fake.sleeps.push_back(0); };
    updateDriveInfo(state, fake.host, 0, false, false);
    EXPECT_EQ(fake.commands.size(), 4u);
    EXPECT_EQ(fake.commands[0],
              "\"/app/external/cdrdao\" drive-info --device SPTI:1,0,0 --driver generic-mmc");
    // Three pauses of 250 ms, in slices of 10 ms with the window's events between.
    EXPECT_EQ(std::count(fake.sleeps.begin(), fake.sleeps.end(), 10), 75);
    EXPECT_EQ(*std::max_element(fake.sleeps.begin(), fake.sleeps.end()), 10);
    EXPECT_EQ(std::search_n(fake.sleeps.begin(), fake.sleeps.end(), 2, 10), fake.sleeps.end());
    EXPECT_EQ(state.driveRetries, 0);
    EXPECT_EQ(drive().WriteSpeeds, "16x");
    EXPECT_EQ(fake.mode, "WRITE CD");
    EXPECT_EQ(std::count(fake.splash.begin(), fake.splash.end(), "step"), 1)
        << "only the answered try counts";
}

TEST_F(Query, SilentDriveEndsInTheErrorHandlerWithTheModeHidden) {
    for (int i = 0; i < 4; ++i) fake.answer("", false);
    EXPECT_THROW(updateDriveInfo(state, fake.host, 0, false, false), RuntimeError);
    EXPECT_EQ(fake.commands.size(), 4u);
    EXPECT_EQ(fake.mode, "HIDE ME");
}

TEST_F(Query, NoMediumIsSkippedWhenAskedAndWritersOnly) {
    drive().WriteSpeeds = "16x";
    fake.answer(driveInfo("n/a", {}));
    updateDriveInfo(state, fake.host, 0, true, false);
    EXPECT_TRUE(drive().MediaInserted) << "the record is left as it was";
    EXPECT_EQ(drive().WriteSpeeds, "16x");

    drive().isWriter = false;
    drive().isWriterKnown = true;
    updateDriveInfo(state, fake.host, 0, false, false);
    EXPECT_EQ(fake.commands.size(), 1u) << "a drive known not to write is not asked again";
    fake.answer(driveInfo("CD-R", {"Available Write Speeds: MAX"}));
    bool force = true;
    updateDriveInfo(state, fake.host, 0, false, force);
    EXPECT_EQ(fake.commands.size(), 2u);
    EXPECT_TRUE(drive().isWriter);
}

TEST_F(Query, MediaRefreshKeepsOrResetsTheSpeedChoice) {
    drive().isWriter = true;
    drive().WriteSpeeds = "16x,8x";
    drive().SPTIFullName = "1,0,0: PLEXTOR, PX";
    WritePanel panel;
    panel.cmbWriterDeviceIndex = 0;
    panel.cmbWriterDevice = drive().SPTIFullName;
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
    EXPECT_EQ(drive().LastMediaType, "CD-RW");

    fake.host.deviceSettingsShown = [] { return false; };
    updateMediaInfo(state, fake.host, panel, memory, statusPanel, false, false, false);
    EXPECT_EQ(fake.commands.size(), 2u) << "not while the settings area is closed, unless automatic";
}

struct Status : Query {
    WritePanel panel;
    FragmentSettings settings;
    DiscStatusContext context;
    int offers = 0;
    void SetUp() override {
        Query::SetUp();
        panel.cmbWriterDeviceIndex = 0;
        panel.cmbWriterDevice = "1,0,0: PLEXTOR, PX";
        settings.chkUseSPTI = 1;
        context.panel = &panel;
        context.settings = &settings;
        context.offerErase = [this] {
            ++offers;
            return true;
        };
    }
    static std::string diskInfo(bool rewritable, bool blank, bool appendable) {
        std::vector<std::string> lines = {
            "That data below may not reflect the real status of the inserted medium",
            std::string("CD-RW                : ") + (rewritable ? "yes" : "no"),
            "Total Capacity       : 79:59:74 (359849 blocks, 702/807 MB)",
            std::string("CD-R empty           : ") + (blank ? "yes" : "no"),
            std::string("Appendable           : ") + (appendable ? "yes" : "no")};
        if (appendable) lines.push_back("Remaining Capacity   : 73:31:50 (330875 blocks, 646/727 MB)");
        return toolOutput(lines);
    }
};

TEST_F(Status, BlankAppendableAndTheirBlocks) {
    fake.answer(diskInfo(false, true, false));
    auto result = splitDiscStatus(discStatus(state, fake.host, context));
    EXPECT_EQ(result.status, 'E');
    EXPECT_EQ(result.blocks, 359849);
    EXPECT_EQ(fake.commands[0],
              "\"/app/external/cdrdao\" disk-info --device SPTI:1,0,0 --driver generic-mmc:0x0 ");

    fake.answer(diskInfo(false, true, true));
    const std::string text = discStatus(state, fake.host, context);
    EXPECT_EQ(text, std::string("A") + '\0' + "330875" + '\0' + "0");
    EXPECT_EQ(fake.mode, "WRITE CD");
    EXPECT_EQ(fake.statuses.back(), "Checking for writable media...");
    EXPECT_EQ(offers, 0);
}

TEST_F(Status, FailedRunNoDiscAndNoWriter) {
    fake.answer("", false);
    EXPECT_EQ(discStatus(state, fake.host, context), std::string("X") + '\0' + "0");
    EXPECT_EQ(fake.statuses.back(), "Operation Cancelled");
    fake.answer(toolOutput({"WARNING: Inserted medium is not a CD."}));
    EXPECT_EQ(discStatus(state, fake.host, context), std::string("0") + '\0' + "0");
    EXPECT_EQ(fake.statuses.back(), "No writable media found!");
    panel.cmbWriterDevice.clear();
    EXPECT_EQ(discStatus(state, fake.host, context), "");
    ASSERT_EQ(fake.dialogs.prompts.size(), 1u);
    EXPECT_EQ(fake.dialogs.prompts[0].text, "Please select a Write Device.");
    EXPECT_EQ(fake.dialogs.prompts[0].style, 48);
}

TEST_F(Status, UsedRewritableOffersErasingUntilCancelled) {
    fake.answer(diskInfo(true, false, false));
    fake.answer(diskInfo(true, true, false));
    context.offerErase = [this] {
        ++offers;
        return false;  // erased: read the disc again
    };
    auto result = splitDiscStatus(discStatus(state, fake.host, context));
    EXPECT_EQ(offers, 1);
    EXPECT_EQ(fake.commands.size(), 2u);
    EXPECT_EQ(result.status, 'E');
    EXPECT_EQ(result.rewritable, 1);

    fake.answer(diskInfo(true, false, true));
    fake.mode = "DATA CD";
    context.chkMulti = true;
    result = splitDiscStatus(discStatus(state, fake.host, context));
    EXPECT_EQ(offers, 1) << "a multi-session data disc is added to, not erased";
    EXPECT_EQ(result.status, 'A');
}

}  // namespace
