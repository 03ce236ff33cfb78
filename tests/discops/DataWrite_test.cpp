// The pieces of a data disc write that are read from the tools or written for them.
#include <gtest/gtest.h>

#include "devices/KernelDriveInfo.h"
#include "discops/DataWrite.h"

using namespace saltmarrow;
using namespace saltmarrow::discops;

TEST(DataWrite, SheetSizeAndRoom) {
    EXPECT_EQ(mkisofsToc(4500, false), "CD_ROM\r\nTRACK MODE1\r\nDATAFILE \"-\" 01:00:00\r\n");
    EXPECT_EQ(mkisofsToc(186, true), "CD_ROM_XA\r\nTRACK MODE1\r\nDATAFILE \"-\" 00:02:36\r\nZERO MODE1 00:01:39\r\n");
    EXPECT_EQ(mkisofsToc(300, false), "CD_ROM\r\nTRACK MODE1\r\nDATAFILE \"-\" 00:04:00\r\n");
    EXPECT_EQ(totalExtents("\r\nx\r\nTotal extents scheduled to be written = 2097576\r\n2097576"), 2097576);
    EXPECT_EQ(totalExtents("\r\nTotal extents scheduled to be written = 17"), std::nullopt);
    EXPECT_EQ(totalExtents("\r\n17 extents written"), std::nullopt);
    EXPECT_EQ(dvdFreeBlocks("READ TRACK INFORMATION[#1]:\n Free Blocks:           0*2KB\n"
                            "READ TRACK INFORMATION[#2]:\n Free Blocks:           2295104*2KB\n"),
              2295104);
    EXPECT_EQ(dvdFreeBlocks(" Disc status:           complete\n"), 0);
}
