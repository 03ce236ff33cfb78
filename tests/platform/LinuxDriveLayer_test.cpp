// Drives as Debian's cdrdao scans them and the kernel's CD-ROM table
// describes them.
#include <gtest/gtest.h>

#include <filesystem>

#include "devices/KernelDriveInfo.h"
#include "platform/DriveLayer.h"
#include "testlib/TestSupport.h"

using namespace saltmarrow;
using namespace saltmarrow::platform;

namespace {

const LinuxDriveLayer kLayer{"/nonexistent/cdrom.info"};
const std::string kBanner = "Cdrdao version 1.2.4 - (C) Andreas Mueller <andreas@daneb.de>\n";

TEST(LinuxScan, OutputsThatListNoDrive) {
    EXPECT_EQ(kLayer.scanProblem(""), "msgCdrdaoFail");
    EXPECT_EQ(
        kLayer.scanProblem(kBanner + "ERROR: Unable to access sysfs filesystem at /sys/bus/scsi/devices\n"),
        "msgNoHostAdapters");
    EXPECT_EQ(kLayer.scanProblem(kBanner), "msgNoDevicesFound");
    // Error lines hold ": " but no " : " behind an address.
    EXPECT_EQ(kLayer.scanProblem(kBanner + "ERROR: Cannot setup device /dev/sr0 : x.\n"),
              "msgNoDevicesFound");
    EXPECT_FALSE(kLayer.layerLoaded(kBanner));
    EXPECT_EQ(kLayer.scanArguments(true), " scanbus");
    EXPECT_FALSE(kLayer.hasSPTILayer());
}

TEST(LinuxScan, DeviceLinesAndTheirFields) {
    const std::string scan = kBanner + "\r\n/dev/sr0 : HL-DT-ST, DVDRAM GH24NSB0, LN01\r\n" +
                             "/dev/sr1 : ASUS, DRW: 24B1ST   a, 1.00\n" +
                             "0,6,0 : PLEXTOR, CD-R   PX-W4012A, 1.01\n";
    EXPECT_EQ(kLayer.scanProblem(scan), std::nullopt);
    EXPECT_TRUE(kLayer.layerLoaded(scan));
    const auto lines = kLayer.deviceLines(scan);
    ASSERT_EQ(lines.size(), 3u);

    const ScannedDrive first = kLayer.parseScanLine(lines[0]);
    EXPECT_EQ(first.address, "/dev/sr0");
    EXPECT_EQ(first.fullName, "/dev/sr0: HL-DT-ST, DVDRAM GH24NSB0");
    EXPECT_EQ(first.deviceName, "HL-DT-ST, DVDRAM GH24NSB0");
    EXPECT_EQ(first.firmware, "LN01");
    // A model name holding ": " stays whole.
    const ScannedDrive colon = kLayer.parseScanLine(lines[1]);
    EXPECT_EQ(colon.address, "/dev/sr1");
    EXPECT_EQ(colon.deviceName, "ASUS, DRW: 24B1ST   a");
    EXPECT_EQ(kLayer.addressOf(colon.fullName), "/dev/sr1");
    EXPECT_EQ(kLayer.parseScanLine(lines[2]).address, "0,6,0");
}

TEST(LinuxScan, AddressesAndTheDeviceArguments) {
    EXPECT_EQ(kLayer.wellFormedAddress("/dev/sr0: HL-DT-ST, DVDRAM"), "/dev/sr0");
    EXPECT_EQ(kLayer.wellFormedAddress("/dev/sr0"), "/dev/sr0");
    EXPECT_EQ(kLayer.wellFormedAddress("ATA:0,0,0"), "ATA:0,0,0");
    EXPECT_EQ(kLayer.wellFormedAddress("0,6,0"), "0,6,0");
    for (const char *bad : {"", "HL-DT-ST, DVDRAM", "1,0", "0,x,0", "1,0,0,", "sr0"})
        EXPECT_EQ(kLayer.wellFormedAddress(bad), std::nullopt) << bad;
    // No layers and no locked form: the path is the whole argument.
    for (bool spti : {false, true})
        for (bool lock : {false, true}) {
            EXPECT_EQ(kLayer.cdrdaoDevice("/dev/sr0", spti, lock), "/dev/sr0");
            EXPECT_EQ(kLayer.dvdDevice("/dev/sr0", spti, lock), "/dev/sr0");
        }
    // Something that is no block device cannot be asked without a tool.
    EXPECT_EQ(kLayer.discPresent("/dev/null"), std::nullopt);
    EXPECT_EQ(kLayer.discPresent("/nonexistent/sr0"), std::nullopt);
    EXPECT_EQ(kLayer.capabilities("/dev/sr0"), std::nullopt) << "no table, nothing known";
}

TEST(KernelTable, ColumnsAreFoundByDriveName) {
    const std::string table =
        "CD-ROM information, Id: cdrom.c 3.20 2003/12/17\n\n"
        "drive name:\t\tsr1\tsr0\n"
        "drive speed:\t\t40\t48\n"
        "Can write CD-R:\t\t0\t1\n"
        "Can write CD-RW:\t0\t1\n"
        "Can read DVD:\t\t1\t1\n"
        "Can write DVD-R:\t0\t1\n"
        "Can write DVD-RAM:\t0\t1\n"
        "Can read MRW:\t\t0\t1\n"
        "Can write MRW:\t\t0\t0\n\n";
    const auto writer = parseKernelCdromInfo(table, "sr0");
    ASSERT_TRUE(writer);
    EXPECT_EQ(writer->readFeatures, "CD-R CD-RW CD-ROM DVD-ROM DVD-RAM MRW-READ ");
    EXPECT_EQ(writer->writeFeatures, "CD-R CD-RW DVD-R DVD-RAM ");
    EXPECT_TRUE(writer->writesDVD);
    EXPECT_TRUE(writer->readsDVD);
    const auto reader = parseKernelCdromInfo(table, "sr1");
    ASSERT_TRUE(reader);
    EXPECT_EQ(reader->readFeatures, "CD-R CD-RW CD-ROM DVD-ROM ");
    EXPECT_EQ(reader->writeFeatures, "");
    EXPECT_FALSE(reader->writesDVD);
    EXPECT_EQ(parseKernelCdromInfo(table, "sr2"), std::nullopt);
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
    EXPECT_EQ(layer.capabilities(dir.file("sr6")), std::nullopt);
}

TEST(KernelDriveInfo, SpeedsComeInCDOrDVDSteps) {
    const std::string info = "Maximum reading speed: 8467 kB/s\nMaximum writing speed: 7056 kB/s\n";
    EXPECT_EQ(topWriteSpeed(info, false), 40);
    EXPECT_EQ(topWriteSpeed("Maximum writing speed: 22160 kB/s\r\n", true), 16);
    EXPECT_EQ(topWriteSpeed("Maximum writing speed: 8310 kB/s", true), 6);
    EXPECT_EQ(topWriteSpeed("Maximum writing speed: 0 kB/s", false), 0);
    EXPECT_EQ(topWriteSpeed("Maximum reading speed: 8467 kB/s", false), 0);

    DeviceInfo device;
    DriveCapabilities caps;
    caps.readFeatures = "CD-R CD-RW CD-ROM DVD-ROM ";
    caps.writeFeatures = "CD-R CD-RW DVD-R ";
    caps.writesDVD = true;
    readKernelDriveInfo(device, caps, "Maximum writing speed: 22160 kB/s\nBurnProof supported: yes\n",
                        "DVD+R");
    EXPECT_EQ(device.WriteSpeeds, "16x,12x,10x,8x,6x,4x,2x,1x");
    EXPECT_TRUE(device.isWriter);
    EXPECT_TRUE(device.BufferProtection);
    EXPECT_EQ(device.LastMediaType, "DVD+R");
    EXPECT_TRUE(device.MediaInserted);
    EXPECT_EQ(device.WriteFeatures, caps.writeFeatures);

    // Emptied, the drive keeps its last type; without write features no
    // speed makes it a writer.
    caps.writeFeatures.clear();
    readKernelDriveInfo(device, caps, "Maximum writing speed: 7056 kB/s\nBurnProof supported: no\n", "n/a");
    EXPECT_FALSE(device.MediaInserted);
    EXPECT_EQ(device.LastMediaType, "DVD+R");
    EXPECT_EQ(device.WriteSpeeds, "");
    EXPECT_FALSE(device.isWriter);
    EXPECT_FALSE(device.BufferProtection);
}

TEST(KernelDriveInfo, MediumWords) {
    const std::string inquiry = "INQUIRY:                [HL-DT-ST][DVDRAM GH24NSB0 ][LN01]\n";
    EXPECT_EQ(dvdMediumType(inquiry + " Mounted Media:         1Bh, DVD+R\n"), "DVD+R");
    EXPECT_EQ(dvdMediumType(inquiry + " Mounted Media:         11h, DVD-R Sequential\n"), "DVD-R");
    EXPECT_EQ(dvdMediumType(inquiry + " Mounted Media:         13h, DVD-RW Restricted Overwrite\r\n"),
              "DVD-RW");
    EXPECT_EQ(dvdMediumType(inquiry + ":-( no media mounted, exiting...\n"), "n/a");
    EXPECT_EQ(dvdMediumType(inquiry + ":-( non-DVD media mounted, exiting...\n"), "");
    EXPECT_EQ(dvdMediumType(inquiry + " Mounted Media:         41h, BD-R SRM\n"), "");
    EXPECT_EQ(dvdMediumType("/dev/sr0: unable to open: No such file or directory\n"), "");

    const std::string read = "That data below may not reflect the real status of the inserted medium\n";
    EXPECT_EQ(cdMediumType(read + "CD-RW                : yes\nCD-R medium          : Ritek\n"), "CD-RW");
    EXPECT_EQ(cdMediumType(read + "CD-RW                : no\nCD-R medium          : Taiyo Yuden\n"), "CD-R");
    EXPECT_EQ(cdMediumType(read + "CD-RW                : no\nCD-R medium          : n/a\n"), "CD-ROM");
    EXPECT_EQ(cdMediumType("ERROR: Unit not ready, giving up.\n"), "n/a");
}

}  // namespace
