#include "exec/LogDocking.h"

#include <gtest/gtest.h>

using namespace saltmarrow;

TEST(LogDocking, FollowsTheMainFormAndSnapsWithinReach) {
    WindowRect main{1500, 3000, 9000, 2120};
    const int edge = 3000 + 2120;
    DockMove follow = mainWindowMoved(main, true);
    EXPECT_TRUE(follow.move);
    EXPECT_EQ(follow.top, edge);
    EXPECT_EQ(follow.left, 1500);
    EXPECT_FALSE(mainWindowMoved(main, false).move);

    DockMove snap = logWindowMoved(main, edge + 299, 1500 - 499, false);
    EXPECT_TRUE(snap.docked);
    EXPECT_TRUE(snap.move);
    EXPECT_TRUE(snap.endDrag);
    EXPECT_EQ(snap.top, edge);
    EXPECT_EQ(snap.left, 1500);
    DockMove stay = logWindowMoved(main, edge + 10, 1500, true);
    EXPECT_TRUE(stay.docked);
    EXPECT_FALSE(stay.move);
    // The bounds are strict.
    EXPECT_FALSE(logWindowMoved(main, edge + 300, 1500, true).docked);
    EXPECT_FALSE(logWindowMoved(main, edge - 300, 1500, true).docked);
    EXPECT_FALSE(logWindowMoved(main, edge, 1500 + 500, true).docked);
    EXPECT_FALSE(logWindowMoved(main, edge, 1500 - 500, false).move);
}
