// The write and read panels kept in each drive's option strings.
#include "devices/DriveOptions.h"

#include <gtest/gtest.h>

using namespace saltmarrow;

namespace {

struct Options : ::testing::Test {
    WritePanel write;
    ReadPanel read;
    DeviceInfo drive;
    OptionsMemory memory;
    void SetUp() override {
        write.cmbWriterDeviceIndex = 0;
        write.cmbSpeedIndex = 1;
        write.cmbSpeed = "16x";
        read.cmbReaderDeviceIndex = 0;
    }
};

TEST_F(Options, AnEmptyStringLoadsTheDefaults) {
    write.cmbBuffersIndex = 0;
    write.chkBurnProof = write.chkEject = 0;
    write.chkSimulate = 1;
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

    read.cmbParanoiaIndex = 2;
    read.chkReadRaw = 1;
    combineReadOptions(true, read, &drive, memory);
    EXPECT_EQ(read.cmbParanoiaIndex, 0);
    EXPECT_EQ(read.chkReadRaw, 0);
}

TEST_F(Options, WriterOptionsRoundTripAndTheShiftOfTwoDigitSpeeds) {
    write.cmbBuffersIndex = 5;
    write.ChkWriteDriverRaw = write.chkForce = 1;
    write.chkEject = 0;
    combineWriteOptions(false, write, &drive, memory);
    EXPECT_EQ(drive.WriterOptions, "5110101000" "16x");

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

TEST_F(Options, ReaderOptionsRoundTripAndPlacesNoControlTakes) {
    read.cmbParanoiaIndex = 3;
    read.cmbSubsIndex = 2;
    read.chkSimpleTOC = 1;
    combineReadOptions(false, read, &drive, memory);
    EXPECT_EQ(drive.ReaderOptions, "320001");
    ReadPanel fresh;
    fresh.cmbReaderDeviceIndex = 0;
    drive.ReaderOptions = "9x0101";
    combineReadOptions(true, fresh, &drive, memory);
    EXPECT_EQ(fresh.cmbParanoiaIndex, 0);
    EXPECT_EQ(fresh.cmbSubsIndex, 0);
    EXPECT_EQ(fresh.chkReadCDText, 1);
    EXPECT_EQ(fresh.chkSimpleTOC, 1);
}

TEST_F(Options, TheGuardAndNoSelectionStopTheCombining) {
    memory.combiningOptions = true;
    combineWriteOptions(false, write, &drive, memory);
    combineReadOptions(false, read, &drive, memory);
    memory.combiningOptions = false;
    write.cmbWriterDeviceIndex = -1;
    combineWriteOptions(false, write, &drive, memory);
    WritePanel none;
    combineWriteOptions(false, none, nullptr, memory);
    EXPECT_EQ(drive.WriterOptions, "");
    EXPECT_EQ(drive.ReaderOptions, "");
}

}  // namespace
