// The drive queries where the system tells what a drive is and cdrdao only
// its speed: Debian's cdrdao with the kernel's CD-ROM table.
#include "devices/KernelDriveInfo.h"

#include <gtest/gtest.h>

#include "ScriptedHost.h"

using namespace saltmarrow;
using saltmarrow::test::ScriptedHost;

namespace {

TEST(KernelDriveInfo, TopSpeedInCDOrDVDSteps) {
    struct Row {
        const char *output;
        bool dvd;
        long top;
    };
    const Row rows[] = {
        {"Maximum reading speed: 8467 kB/s\nMaximum writing speed: 7056 kB/s\n", false, 40},
        {"Maximum writing speed: 22160 kB/s\r\n", true, 16},
        {"Maximum writing speed: 8310 kB/s", true, 6},
        {"Maximum writing speed: 0 kB/s", false, 0},
        {"Maximum reading speed: 8467 kB/s", false, 0},
    };
    for (const Row &row : rows) EXPECT_EQ(topWriteSpeed(row.output, row.dvd), row.top) << row.output;
}

TEST(KernelDriveInfo, MediumWords) {
    const std::string inquiry = "INQUIRY:                [HL-DT-ST][DVDRAM GH24NSB0 ][LN01]\n";
    const std::pair<std::string, const char *> dvds[] = {
        {inquiry + " Mounted Media:         1Bh, DVD+R\n", "DVD+R"},
        {inquiry + " Mounted Media:         11h, DVD-R Sequential\n", "DVD-R"},
        {inquiry + " Mounted Media:         13h, DVD-RW Restricted Overwrite\r\n", "DVD-RW"},
        {inquiry + ":-( no media mounted, exiting...\n", "n/a"},
        {inquiry + ":-( non-DVD media mounted, exiting...\n", ""},
        {inquiry + " Mounted Media:         41h, BD-R SRM\n", ""},
        {"/dev/sr0: unable to open: No such file or directory\n", ""},
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
