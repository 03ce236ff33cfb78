// Drives as Debian's cdrdao scans them and the kernel's CD-ROM table
// describes them; the device arguments are in the fragments' test.
#include "platform/LinuxDriveLayer.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "testlib/TestSupport.h"

using namespace saltmarrow;
using namespace saltmarrow::platform;

namespace {

const LinuxDriveLayer kLayer{"/nonexistent/cdrom.info"};
const std::string kBanner = "Cdrdao version 1.2.4 - (C) Andreas Mueller <andreas@daneb.de>\n";

TEST(LinuxScan, WhatAScanOutputSays) {
    struct Row {
        std::string output;
        std::optional<std::string_view> problem;
        std::size_t drives;
    };
    const Row rows[] = {
        {"", "msgCdrdaoFail", 0},
        {kBanner + "ERROR: Unable to access sysfs filesystem at /sys/bus/scsi/devices\n", "msgNoHostAdapters",
         0},
        {kBanner, "msgNoDevicesFound", 0},
        // Error lines hold ": " but no " : " behind an address.
        {kBanner + "ERROR: Cannot setup device /dev/sr0 : x.\n", "msgNoDevicesFound", 0},
        // A device line has vendor, model and revision: two commas.
        {kBanner + "/dev/sr0 : HL-DT-ST, DVDRAM GH24NSB0\n", "msgNoDevicesFound", 0},
        {kBanner +
             "\r\n/dev/sr0 : HL-DT-ST, DVDRAM GH24NSB0, LN01\r\n/dev/sr1 : ASUS, DRW: 24B1ST   a, 1.00\n" +
             "0,6,0 : PLEXTOR, CD-R   PX-W4012A, 1.01\nATA:1,0,0 : A, B, C\n",
         std::nullopt, 4},
    };
    for (const Row &row : rows) {
        EXPECT_EQ(kLayer.scanProblem(row.output), row.problem) << row.output;
        EXPECT_EQ(kLayer.deviceLines(row.output).size(), row.drives) << row.output;
    }
}

TEST(LinuxScan, WellFormedAddresses) {
    for (const char *good : {"/dev/sr0", "ATA:0,0,0", "0,6,0", "10,0,12"})
        EXPECT_EQ(kLayer.wellFormedAddress(std::string(good) + ": A, B"), good);
    for (const char *bad :
         {"", "HL-DT-ST, DVDRAM", "1,0", "0,x,0", "1,0,0,", "1,2,3,4", "0,6,", "sr0", "/dev/sr 0", ",0,0"})
        EXPECT_EQ(kLayer.wellFormedAddress(bad), std::nullopt) << bad;
    // Something that is no block device cannot be asked without a tool.
    EXPECT_EQ(kLayer.discPresent("/dev/null"), std::nullopt);
    EXPECT_EQ(kLayer.discPresent("/nonexistent/sr0"), std::nullopt);
}

TEST(KernelTable, EachRowByDriveName) {
    const std::string table =
        "CD-ROM information, Id: cdrom.c 3.20 2003/12/17\n\n"
        "drive name:\t\tsr3\tsr2\tsr0\n"
        "drive speed:\t\t24\t40\t48\n"
        "Can write CD-R:\t\t0\t0\t1\n"
        "Can write CD-RW:\t0\t0\t1\n"
        "Can read DVD:\t\t0\t1\t1\n"
        "Can write DVD-R:\t0\t0\t1\n"
        "Can write DVD-RAM:\t0\t1\t0\n"
        "Can read MRW:\t\t0\t0\t1\n"
        "Can write MRW:\t\t0\t0\t1\n\n";
    struct Row {
        const char *drive;
        const char *reads;
        const char *writes;
        bool writesDVD, readsDVD = true;
    };
    const Row rows[] = {
        {"sr0", "CD-R CD-RW CD-ROM DVD-ROM MRW-READ ", "CD-R CD-RW DVD-R MRW-WRITE ", true},
        // A DVD-RAM writer writes DVDs, and reads DVD-RAM as well.
        {"sr2", "CD-R CD-RW CD-ROM DVD-ROM DVD-RAM ", "DVD-RAM ", true},
        {"sr3", "CD-R CD-RW CD-ROM ", "", false, false},
    };
    for (const Row &row : rows) {
        const auto caps = parseKernelCdromInfo(table, row.drive);
        ASSERT_TRUE(caps) << row.drive;
        EXPECT_EQ(caps->readFeatures, row.reads) << row.drive;
        EXPECT_EQ(caps->writeFeatures, row.writes) << row.drive;
        EXPECT_EQ(caps->writesDVD, row.writesDVD) << row.drive;
        EXPECT_EQ(caps->readsDVD, row.readsDVD) << row.drive;
    }
    EXPECT_EQ(parseKernelCdromInfo(table, "sr4"), std::nullopt);
    EXPECT_EQ(parseKernelCdromInfo("drive name:\tsr0\nCan write CD-R:\n", "sr0")->writeFeatures, "")
        << "a row short of columns is no feature";
}

TEST(KernelTable, ALinkedDeviceNameIsFollowedToTheKernelsName) {
    test::TempDir dir;
    test::writeFile(dir.file("cdrom.info"), "drive name:\t\tsr5\nCan write CD-R:\t\t1\n");
    test::writeFile(dir.file("sr5"), "");
    std::filesystem::create_symlink(dir.file("sr5"), dir.file("cdrom"));
    const LinuxDriveLayer layer(dir.file("cdrom.info"));
    const auto caps = layer.capabilities(dir.file("cdrom"));
    ASSERT_TRUE(caps) << "/dev/cdrom is usually a link to /dev/srN";
    EXPECT_EQ(caps->writeFeatures, "CD-R ");
}

}  // namespace
