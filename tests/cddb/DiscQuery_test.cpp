#include "cddb/DiscQuery.h"

#include <gtest/gtest.h>

using saltmarrow::cddb::discQuery;

namespace {

std::vector<long> disc(long leadIn, int tracks, long first, long step) {
    std::vector<long> lengths{leadIn};
    for (int i = 1; i <= tracks; ++i) lengths.push_back(first + step * i);
    return lengths;
}

}  // namespace

TEST(DiscQuery, IdsAndOffsets) {
    struct Case {
        std::vector<long> lengths;
        const char *id;
        const char *offsets;
    };
    const Case cases[] = {
        {{2000, 180000, 240000}, "0d01a402", "2 150 13650 422"},
        {disc(2000, 99, 20000, 397), "9f0f6963", nullptr},
        {{2000, 2763467}, "020acb01", "1 150 2765"},
        {disc(2000, 20, 150000, 9973), "f913e614", nullptr},
        // The checksum starts from the lead-in's seconds (12), not their digit sum.
        {{12000, 60000, 1000}, "15003d02", "2 900 5400 73"},
        {{0, 1000, 1000}, "01000202", "2 0 75 2"},
        // The disc's 12.707 s round up; the checksum takes the third track's 9.507 s as 9.
        {{2000, 3000, 4507, 3200}, "10000b03", "3 150 375 713 13"},
    };
    for (const Case &c : cases) {
        const auto q = discQuery(c.lengths);
        ASSERT_TRUE(q);
        EXPECT_EQ(q->discId, c.id);
        EXPECT_EQ(q->query, "cddb query " + q->discId + " " + q->offsets + " ");
        EXPECT_EQ(q->offsets, c.offsets ? c.offsets : q->offsets);
    }
    EXPECT_FALSE(discQuery({2000}));
}
