#include "discops/Fragments.h"

#include <gtest/gtest.h>

#include "platform/DriveLayer.h"

using namespace saltmarrow;

namespace {

struct Fragments : ::testing::Test {
    const platform::WindowsDriveLayer layer;
    WritePanel write;
    ReadPanel read;
    FragmentSettings settings;
    DeviceInfo drive;

    void SetUp() override {
        write.cmbWriterDeviceIndex = 0;
        write.cmbWriterDevice = "1,0,0: PLEXTOR, PX-W4012A";
        write.cmbSpeedItems = {"Max", "16x", "8x"};
        write.cmbSpeedIndex = 1;
        write.cmbSpeed = "16x";
        read.cmbReaderDeviceIndex = 0;
        read.cmbReaderDevice = "1,1,0: LITEON, DVD-ROM LTD163";
        drive.Driver = "generic-mmc";
        drive.DriverOptions = "0";
        drive.ASPIDeviceID = "0,1,0";
        drive.SPTIDeviceID = "1,0,0";
    }
    std::string device(bool useRaw = true, bool isDataDisc = false, bool lock = false) {
        return writeDevice(write, settings, drive, useRaw, isDataDisc, lock, layer);
    }
    std::string dvd(bool useRaw = true, bool isDataDisc = false, bool plain = false) {
        return writeDVDCommand(write, settings, drive, useRaw, isDataDisc, plain, layer);
    }
};

TEST(HexOr, OrsWordsWithoutPadding) {
    EXPECT_EQ(hexOr({"0", "00000040"}), "40");
    EXPECT_EQ(hexOr({"00000010", "00200000"}), "200010");
    EXPECT_EQ(hexOr({"10", "00000010"}), "10");
    EXPECT_EQ(hexOr({"ff", "100"}), "1FF");
    EXPECT_EQ(hexOr({"0"}), "0");
}

TEST_F(Fragments, WriteDeviceExampleAndOptionBits) {
    settings.chkUseSPTI = 1;
    write.chkWriteCDText = 1;
    EXPECT_EQ(device(true, false, true), " --device SPTILOCK:1,0,0 --driver generic-mmc:0x10 ");

    write.chkWriteCDText = 0;
    write.chkBurnProof = 0;
    settings.chkUseSPTI = 0;
    EXPECT_EQ(device(), " --device ASPI:1,0,0 --driver generic-mmc:0x40 ");

    // OR, not addition: a drive that already has the CD-Text bit keeps 10.
    write.chkBurnProof = 1;
    write.chkWriteCDText = 1;
    drive.DriverOptions = "10";
    EXPECT_EQ(device(), " --device ASPI:1,0,0 --driver generic-mmc:0x10 ");
    // With the box ticked and nothing to OR, the drive's word stands as it is.
    drive.DriverOptions = "0010";
    write.chkWriteCDText = 0;
    EXPECT_EQ(device(), " --device ASPI:1,0,0 --driver generic-mmc:0x0010 ");
}

TEST_F(Fragments, RawDriverTakesNoCdTextBitAndNeverWritesAMultiSessionDataDisc) {
    write.ChkWriteDriverRaw = 1;
    write.chkWriteCDText = 1;
    EXPECT_EQ(device(true), " --device ASPI:1,0,0 --driver generic-mmc-raw:0x0 ");

    write.chkMultiSession = 1;
    bool useRaw = true;
    EXPECT_EQ(writeDevice(write, settings, drive, useRaw, true, false, layer),
              " --device ASPI:1,0,0 --driver generic-mmc:0x10 ");
    EXPECT_FALSE(useRaw);
    useRaw = true;
    const std::string line = writeDVDCommand(write, settings, drive, useRaw, true, false, layer);
    const std::string ending = " -dao -gracetime=0";
    EXPECT_EQ(line.substr(line.size() - ending.size()), ending);
    EXPECT_FALSE(useRaw);
    // Not a data disc: raw stays allowed.
    EXPECT_NE(dvd(true, false).find(" -raw -gracetime=0"), std::string::npos);
}

TEST_F(Fragments, DriverTableChoice) {
    drive.Driver = "generic-mmc-raw";
    drive.DriverOptions = "20";
    EXPECT_EQ(device(), " --device ASPI:1,0,0 --driver generic-mmc:0x20 ")
        << "a stored raw driver is not used";
    drive.Driver = "plextor";
    write.chkWriteCDText = 1;
    EXPECT_EQ(device(), " --device ASPI:1,0,0 --driver plextor:0x20 ") << "only generic-mmc takes CD-Text";
    settings.UseDriverTable = false;
    write.chkWriteCDText = 0;
    EXPECT_EQ(device(), " --device ASPI:1,0,0 --driver generic-mmc:0x0 ");
    write.ChkWriteDriverRaw = 1;
    EXPECT_EQ(device(), " --device ASPI:1,0,0 --driver generic-mmc-raw:0x0 ");
}

TEST_F(Fragments, ReadDevice) {
    drive.Driver = "generic-mmc-raw";
    EXPECT_EQ(readDevice(read, settings, drive, false, false, layer),
              " --device ASPI:1,1,0 --driver generic-mmc:0x200000 ");
    read.chkReadCDText = 1;
    read.chkSimpleTOC = 1;
    read.chkSwapAudio = 1;
    settings.chkUseSPTI = 1;
    EXPECT_EQ(readDevice(read, settings, drive, true, true, layer),
              " --source-device SPTILOCK:1,1,0 --source-driver generic-mmc:0x30000 ");
    settings.UseDriverTable = false;
    drive.DriverOptions = "8";
    read.chkSimpleTOC = 0;
    read.chkSwapAudio = 0;
    EXPECT_EQ(readDevice(read, settings, drive, false, false, layer),
              " --device SPTI:1,1,0 --driver generic-mmc:0x0 ");
}

TEST_F(Fragments, WriteOptions) {
    EXPECT_EQ(WriteOptions(write, settings), " --eject --reload --speed 16 -n --buffers 256 -v 2 ");
    write.cmbSpeed = "Max";
    write.chkEject = 0;
    write.chkOverburn = write.chkSimulate = write.chkForce = write.chkMultiSession = 1;
    write.cmbBuffers = "1024";
    settings.verbosity = 3;
    EXPECT_EQ(WriteOptions(write, settings),
              " --reload --overburn --simulate --force --multi -n --buffers 1024 -v 3 ");
}

TEST_F(Fragments, ReadOptions) {
    EXPECT_EQ(ReadOptions(read), " --paranoia-mode 0 ");
    read.chkReadRaw = 1;
    read.cmbParanoiaIndex = 3;
    read.cmbSubsIndex = 1;
    EXPECT_EQ(ReadOptions(read), " --read-raw --paranoia-mode 3 --read-subchan rw ");
    read.cmbSubsIndex = 2;
    EXPECT_EQ(ReadOptions(read), " --read-raw --paranoia-mode 3 --read-subchan rw_raw ");
}

TEST_F(Fragments, DvdCommand) {
    settings.chkUseSPTI = 1;
    write.cmbSpeed = "8x";
    EXPECT_EQ(dvd(),
              " dev=SPTILOCK:1,0,0 driveropts=burnfree -v speed=8 fs=75x256f -eject -dao -gracetime=0");
    write.chkBurnProof = 0;
    write.chkSimulate = write.chkOverburn = write.chkMultiSession = write.chkForce = 1;
    write.chkEject = 0;
    write.cmbSpeed = "Max";
    settings.chkUseSPTI = 0;
    EXPECT_EQ(dvd(),
              " dev=ASPILOCK:1,0,0 driveropts=noburnfree -v -dummy -overburn fs=75x256f -multi -force -dao "
              "-gracetime=0");
    // The ProDVD tool gets the bare ASPI address of the drive.
    settings.UseProDVD = true;
    EXPECT_EQ(dvd(true, false, true).substr(0, 11), " dev=0,1,0 ");
}

TEST_F(Fragments, EmptyWriterOptionsLoadTheDefaults) {
    write.cmbBuffersIndex = 0;
    write.cmbBuffers = "32";
    write.chkBurnProof = write.chkEject = 0;
    write.chkSimulate = 1;
    OptionsMemory memory;
    memory.savedSpeedText = "old";
    combineWriteOptions(true, write, &drive, memory);
    EXPECT_EQ(write.cmbBuffersIndex, 3);
    EXPECT_EQ(write.cmbBuffers, "256");
    EXPECT_EQ(write.chkBurnProof, 1);
    EXPECT_EQ(write.chkEject, 1);
    EXPECT_EQ(write.chkSimulate, 0);
    EXPECT_EQ(memory.savedSpeedIndex, 0);
    EXPECT_EQ(memory.savedSpeedText, "");
    EXPECT_EQ(write.cmbSpeed, "16x") << "the speed box is not touched";
    EXPECT_FALSE(memory.combiningOptions);
}

TEST_F(Fragments, WriterOptionsRoundTripAndTheShiftOfTwoDigitSpeeds) {
    OptionsMemory memory;
    write.cmbBuffersIndex = 5;
    write.cmbBuffers = "1024";
    write.ChkWriteDriverRaw = write.chkForce = 1;
    write.chkEject = 0;
    combineWriteOptions(false, write, &drive, memory);
    EXPECT_EQ(drive.WriterOptions,
              "5110101000"
              "16x");

    WritePanel fresh;
    fresh.cmbWriterDeviceIndex = 0;
    combineWriteOptions(true, fresh, &drive, memory);
    EXPECT_EQ(fresh.cmbBuffers, "1024");
    EXPECT_EQ(fresh.ChkWriteDriverRaw, 1);
    EXPECT_EQ(fresh.chkEject, 0);
    EXPECT_EQ(fresh.chkForce, 1);
    EXPECT_EQ(memory.savedSpeedIndex, 1);
    EXPECT_EQ(memory.savedSpeedText, "16x");

    // Index 12 takes two places; the load reads every later place shifted.
    write.cmbSpeedIndex = 12;
    write.chkWriteCDText = 0;
    combineWriteOptions(false, write, &drive, memory);
    EXPECT_EQ(drive.WriterOptions, "5121010100016x");
    combineWriteOptions(true, fresh, &drive, memory);
    EXPECT_EQ(memory.savedSpeedIndex, 1);
    EXPECT_EQ(fresh.ChkWriteDriverRaw, 2);
    EXPECT_EQ(memory.savedSpeedText, "016x");
}

TEST_F(Fragments, GuardAndSelectionStopTheCombining) {
    OptionsMemory memory;
    memory.combiningOptions = true;
    combineWriteOptions(false, write, &drive, memory);
    combineReadOptions(false, read, &drive, memory);
    EXPECT_EQ(drive.WriterOptions, "");
    EXPECT_EQ(drive.ReaderOptions, "");
    memory.combiningOptions = false;
    write.cmbWriterDeviceIndex = -1;
    combineWriteOptions(false, write, &drive, memory);
    EXPECT_EQ(drive.WriterOptions, "");
}

TEST_F(Fragments, ReaderOptionsDefaultAndRoundTrip) {
    OptionsMemory memory;
    read.cmbParanoiaIndex = 2;
    read.chkReadRaw = 1;
    combineReadOptions(true, read, &drive, memory);
    EXPECT_EQ(read.cmbParanoiaIndex, 0);
    EXPECT_EQ(read.chkReadRaw, 0);
    read.cmbParanoiaIndex = 3;
    read.cmbSubsIndex = 2;
    read.chkSimpleTOC = 1;
    combineReadOptions(false, read, &drive, memory);
    EXPECT_EQ(drive.ReaderOptions, "320001");
    ReadPanel fresh;
    fresh.cmbReaderDeviceIndex = 0;
    drive.ReaderOptions = "9x0101";  // places a control cannot take are skipped
    combineReadOptions(true, fresh, &drive, memory);
    EXPECT_EQ(fresh.cmbParanoiaIndex, 0);
    EXPECT_EQ(fresh.cmbSubsIndex, 0);
    EXPECT_EQ(fresh.chkReadCDText, 1);
    EXPECT_EQ(fresh.chkSimpleTOC, 1);
}

}  // namespace

// On Linux every tool takes the device path, whatever the SPTI and lock
// choices say; the rest of each fragment is what the Windows layer gives.
TEST_F(Fragments, LinuxDevicePathsInEveryFragment) {
    const platform::LinuxDriveLayer linux;
    const auto swap = [](std::string text, const std::string &from, const std::string &to) {
        const std::size_t at = text.find(from);
        return at == std::string::npos ? text : text.replace(at, from.size(), to);
    };
    for (int spti : {0, 1})
        for (bool lock : {false, true}) {
            settings.chkUseSPTI = spti;
            const std::string windowsWriter = layer.cdrdaoDevice("1,0,0", spti == 1, lock);
            const std::string windowsReader = layer.cdrdaoDevice("1,1,0", spti == 1, lock);
            bool useRaw = true;
            const std::string w = writeDevice(write, settings, drive, useRaw, false, lock, layer);
            const std::string r = readDevice(read, settings, drive, true, lock, layer);
            const std::string d = writeDVDCommand(write, settings, drive, useRaw, false, false, layer);

            write.cmbWriterDevice = "/dev/sr1: HL-DT-ST, DVDRAM GH24NSB0";
            read.cmbReaderDevice = "/dev/sr0: ASUS, DRW: 24B1ST";
            useRaw = true;
            EXPECT_EQ(writeDevice(write, settings, drive, useRaw, false, lock, linux),
                      swap(w, " --device " + windowsWriter + " ", " --device /dev/sr1 "));
            EXPECT_EQ(readDevice(read, settings, drive, true, lock, linux),
                      swap(r, " --source-device " + windowsReader + " ", " --source-device /dev/sr0 "));
            EXPECT_EQ(writeDVDCommand(write, settings, drive, useRaw, false, false, linux),
                      swap(d, " dev=" + layer.dvdDevice("1,0,0", spti == 1, false) + " ", " dev=/dev/sr1 "));
            SetUp();
        }
}
