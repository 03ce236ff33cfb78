// The write and read panels kept in each drive's option strings.
#include "devices/DriveOptions.h"

#include <gtest/gtest.h>

using namespace saltmarrow;

namespace {

TEST(DriveOptions, DefaultsRoundTripAndTheShiftOfTwoDigitSpeeds) {
    DeviceInfo drive;
    OptionsMemory memory;
    WritePanel panel;
    panel.cmbWriterDeviceIndex = 0;
    panel.cmbBuffersIndex = 0;
    panel.chkSimulate = 1;
    combineWriteOptions(true, panel, &drive, memory);  // an empty string stands for "3000110000"
    EXPECT_EQ(panel.cmbBuffers, "256");
    EXPECT_EQ(panel.chkBurnProof + panel.chkEject + panel.chkSimulate, 2);

    panel.cmbSpeedIndex = 12;  // takes two places: a load reads every later place shifted
    panel.cmbSpeed = "16x";
    panel.ChkWriteDriverRaw = 1;
    combineWriteOptions(false, panel, &drive, memory);
    EXPECT_EQ(drive.WriterOptions, "3121011000016x");
    combineWriteOptions(true, panel, &drive, memory);
    EXPECT_EQ(memory.savedSpeedIndex, 1);
    EXPECT_EQ(panel.ChkWriteDriverRaw, 2);
    EXPECT_EQ(memory.savedSpeedText, "016x");

    ReadPanel read;
    read.cmbReaderDeviceIndex = 0;
    drive.ReaderOptions = "9x0101";  // places a control cannot take are skipped
    combineReadOptions(true, read, &drive, memory);
    EXPECT_EQ(read.cmbParanoiaIndex + read.cmbSubsIndex + read.chkReadRaw, 0);
    EXPECT_EQ(read.chkReadCDText + read.chkSimpleTOC, 2);
    read.cmbParanoiaIndex = 3;
    combineReadOptions(false, read, &drive, memory);
    EXPECT_EQ(drive.ReaderOptions, "300101");

    // Nothing while the guard is set or nothing is selected.
    memory.combiningOptions = true;
    combineWriteOptions(false, panel, &drive, memory);
    memory.combiningOptions = false;
    panel.cmbWriterDeviceIndex = -1;
    combineWriteOptions(false, panel, &drive, memory);
    EXPECT_EQ(drive.WriterOptions, "3121011000016x");
}

}  // namespace
