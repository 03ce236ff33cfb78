#include <gtest/gtest.h>

#include "platform/MediumWatcher.h"

using saltmarrow::platform::mediumChange;
using saltmarrow::platform::MediumWatcher;

namespace {

const QString kDrive = QStringLiteral("org.freedesktop.UDisks2.Drive");

TEST(MediumChange, ArrivalAndRemovalOfDiscsOnly) {
    EXPECT_EQ(mediumChange(kDrive, {{"Media", "optical_cd_rw"}}), false);
    EXPECT_EQ(mediumChange(kDrive, {{"Media", ""}, {"MediaAvailable", true}}), true);
    EXPECT_EQ(mediumChange(kDrive, {{"MediaAvailable", false}}), true);
    EXPECT_EQ(mediumChange(kDrive, {{"MediaAvailable", true}}), false);
    EXPECT_EQ(mediumChange(kDrive, {{"Media", "flash_sd"}}), std::nullopt);
    EXPECT_EQ(mediumChange(kDrive, {{"TimeMediaDetected", 12}}), std::nullopt);
    EXPECT_EQ(mediumChange(QStringLiteral("org.freedesktop.UDisks2.Block"), {{"Media", ""}}), std::nullopt);
}

TEST(MediumWatcher, StaysQuietWithoutUDisks) {
    int calls = 0;
    MediumWatcher watcher([&](bool) { ++calls; });
    if (watcher.listening()) GTEST_SKIP() << "this machine has UDisks2 on its system bus";
    EXPECT_EQ(calls, 0);
}

}  // namespace
