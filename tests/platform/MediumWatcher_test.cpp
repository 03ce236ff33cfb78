#include "platform/MediumWatcher.h"

#include <gtest/gtest.h>

using namespace saltmarrow::platform;

TEST(MediumChange, OnlyArrivalAndRemovalCount) {
    std::vector<bool> seen;
    MediumWatcher watcher([&](bool removed) { seen.push_back(removed); });
    watcher.deviceChange(DBT_DEVICEARRIVAL);
    watcher.deviceChange(DBT_DEVICEREMOVECOMPLETE);
    watcher.deviceChange(32771);  // removal pending
    EXPECT_EQ(seen, (std::vector<bool>{false, true}));
}

TEST(MediumChange, UDisksDrivePropertiesMapToTheEvents) {
    const QString drive = "org.freedesktop.UDisks2.Drive";
    EXPECT_EQ(udisksDriveEvent(drive, {{"MediaAvailable", true}}), DBT_DEVICEARRIVAL);
    EXPECT_EQ(udisksDriveEvent(drive, {{"MediaAvailable", false}, {"Size", 0}}), DBT_DEVICEREMOVECOMPLETE);
    EXPECT_EQ(udisksDriveEvent(drive, {{"Size", 734003200}}), 0);
    EXPECT_EQ(udisksDriveEvent("org.freedesktop.UDisks2.Block", {{"MediaAvailable", true}}), 0);
    // "Media" names the kind of medium; only discs count.
    EXPECT_EQ(udisksDriveEvent(drive, {{"Media", "optical_cd_rw"}}), DBT_DEVICEARRIVAL);
    EXPECT_EQ(udisksDriveEvent(drive, {{"Media", ""}, {"MediaAvailable", true}}), DBT_DEVICEREMOVECOMPLETE);
    EXPECT_EQ(udisksDriveEvent(drive, {{"Media", "flash_sd"}}), 0);
}
