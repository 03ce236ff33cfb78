// The sheet of a data stream and the DVD's room as the tools read and tell them.
#include <gtest/gtest.h>

#include "devices/KernelDriveInfo.h"
#include "discops/DataWrite.h"

using namespace saltmarrow;

TEST(DataWrite, SheetOfTheStreamAndRoomOfTheDVD) {
    EXPECT_EQ(discops::mkisofsToc(4500, false), "CD_ROM\r\nTRACK MODE1\r\nDATAFILE \"-\" 01:00:00\r\n");
    EXPECT_EQ(discops::mkisofsToc(186, true),
              "CD_ROM_XA\r\nTRACK MODE1\r\nDATAFILE \"-\" 00:02:36\r\nZERO MODE1 00:01:39\r\n");
    EXPECT_EQ(discops::totalExtents("\r\nTotal extents scheduled to be written = 17"), std::nullopt);
    EXPECT_EQ(dvdFreeBlocks(" Free Blocks:  0*2KB\n Free Blocks:  2295104*2KB\n"), 2295104);
    EXPECT_EQ(dvdFreeBlocks(" Disc status:  complete\n"), 0);
}
