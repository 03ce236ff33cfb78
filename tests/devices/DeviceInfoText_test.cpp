// What the device dialog shows of a drive and of the disc in it.
#include "devices/DeviceInfoText.h"

#include <gtest/gtest.h>

using namespace saltmarrow;

namespace {

TEST(DeviceTab, FeatureBoxesAndTheKindOfDrive) {
    struct Row {
        const char *reads;
        const char *writes;
        bool protection;
        const char *type;
        std::vector<int> readBoxes, writeBoxes;
    };
    const Row rows[] = {
        {"CD-R CD-RW CD-ROM DVD-ROM ", "CD-R DVD-R DVD+RW ", false, "DVD\\CD Writer", {0, 1, 7}, {0, 3, 6}},
        {"CD-R CD-RW CD-ROM DVD-ROM MRW-READ ", "", false, "DVD\\CD Reader", {0, 1, 7, 8}, {}},
        {"CD-ROM ", "", false, "", {}, {}},  // no box is ticked: the type stays empty
        {"CD-RW ", "", true, "", {1}, {7}},  // the protection box has no word to tell the kind
    };
    for (const Row &row : rows) {
        DeviceInfo d;
        d.ReadFeatures = row.reads;
        d.WriteFeatures = row.writes;
        d.BufferProtection = row.protection;
        const DeviceTab tab = ShowDeviceInfo(d);
        std::vector<int> reads, writes;
        for (int i = 0; i < 9; ++i) {
            if (tab.chkReadFeature[i]) reads.push_back(i);
            if (tab.chkWriteFeature[i]) writes.push_back(i);
        }
        EXPECT_EQ(tab.lblTypeValue, row.type) << row.reads << "/" << row.writes;
        EXPECT_EQ(reads, row.readBoxes) << row.reads;
        EXPECT_EQ(writes, row.writeBoxes) << row.writes;
    }
    // A CD writer, its caption and its firmware are read by the dialog's test.
    DeviceInfo d;
    d.BufferSize = "2048";
    EXPECT_EQ(ShowDeviceInfo(d).lblBufferValue, "2048kb");
    d.BufferSize.clear();
    EXPECT_EQ(ShowDeviceInfo(d).lblBufferValue, "n/a") << "Debian's cdrdao names no buffer size";
}

TEST(MediaTab, ValuesOfTheDiscReport) {
    const std::string used =
        "\r\nThat data below may not reflect the real status of the inserted medium"
        "\r\nCD-RW                : yes\r\nTotal Capacity       : 79:57:74 (359849 blocks, 702/807 MB)"
        "\r\nCD-R medium          : Ritek  Co.\r\n                       Short Strategy Type\r\nRecording "
        "Speed      : 4X"
        "\r\nCD-R empty           : no\r\nToc Type             : CD-ROM XA\r\nSessions             : 2"
        "\r\nLast Track           : 7\r\nAppendable           : yes";
    DeviceInfo cd;
    cd.LastMediaType = "CD-RW";
    cd.WriteSpeeds = "24x,16x";
    const MediaTab tab = MediaInfo(cd, used, 0);
    EXPECT_EQ(tab.chkMedia, (std::array<bool, 3>{true, false, false}))
        << "the appendable key never matches the tool's padded line";
    EXPECT_EQ(tab.lblCapacityValue, "79:57:74 (359849s, 702/807 MB)");
    EXPECT_EQ(tab.lblManufacturerValue.substr(0, 11), "RitekCo.\r\n ")
        << "up to the next colon, double blanks gone";
    EXPECT_EQ(tab.lblTOCTypeValue, "CD-ROM XA");
    EXPECT_EQ(tab.lblSessionsValue, "2");
    EXPECT_EQ(tab.lblTracksValue, "7");
    EXPECT_EQ(tab.lblWriteSpeedValue, "24x, 16x");

    // A DVD: nothing of the CD report counts, not even one read before the
    // disc changed; the room a DVD has is read by the dialog's test.
    DeviceInfo dvd;
    dvd.LastMediaType = "DVD-ROM";
    const MediaTab other = MediaInfo(dvd, used, 0);
    EXPECT_EQ(other.chkMedia, (std::array<bool, 3>{}));
    for (const std::string &value :
         {other.lblCapacityValue, other.lblManufacturerValue, other.lblTOCTypeValue, other.lblSessionsValue,
          other.lblTracksValue, other.lblWriteSpeedValue})
        EXPECT_EQ(value, "n/a");
    EXPECT_TRUE(isDVDMediaType("DVD+RW"));
    EXPECT_FALSE(isDVDMediaType("DVD-RAM"));
}

// A drive that is not ready is stopped in the dialog's test.
TEST(MediaTab, TheQueryStopsAtTheseLines) {
    EXPECT_TRUE(mediaInfoStopsAt("Starting to write CD/DVD"));
    EXPECT_FALSE(mediaInfoStopsAt("ERROR: Unit not ready, giving up."));
}

}  // namespace
