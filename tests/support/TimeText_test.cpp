#include "support/TimeText.h"

#include <gtest/gtest.h>

namespace saltmarrow {
namespace {

TEST(TrackTime, MillisecondsToFramesWithCarries) {
    const struct {
        long long ms;
        const char *text;
    } cases[] = {
        {-5, "00:00:00"},    {0, "00:00:00"},       {2000, "00:02:00"},
        {1020, "00:01:02"},  // 1.5 frames: half to even
        {1060, "00:01:04"},  // 4.5 frames
        {1100, "00:01:08"},  // 7.5 frames
        {59995, "01:00:00"}, {3599999, "60:00:00"}, {6000000, "100:00:00"},
    };
    for (const auto &c : cases) EXPECT_EQ(msToTrackTime(c.ms), c.text) << c.ms;
}

TEST(TrackTime, TextToMillisecondsAndMalformedTexts) {
    const struct {
        const char *text;
        int ms;
    } cases[] = {
        {"01:02:03", 62040}, {"00:00:01", 13}, {"99:99:99", 6040320}, {"", 0}, {"0", 0},
        {"00:02", 0},        {"ab:cd:ef", 0},  {"00:02:00:00", 0},
    };
    for (const auto &c : cases) EXPECT_EQ(trackTimeToMs(c.text), c.ms) << c.text;
    for (long long ms : {0LL, 2000LL, 183000LL, 3599986LL})
        EXPECT_EQ(msToTrackTime(trackTimeToMs(msToTrackTime(ms))), msToTrackTime(ms));
}

}  // namespace
}  // namespace saltmarrow
