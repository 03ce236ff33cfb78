#include "exec/JobQueue.h"

#include <gtest/gtest.h>

using saltmarrow::JobQueue;
using Ran = std::vector<std::string>;

TEST(JobQueue, WorkFromTheEventLoopWaitsForTheJobsAndABurstRunsOnce) {
    for (bool posting : {true, false}) {
        JobQueue jobs;
        std::vector<std::function<void()>> posted;
        if (posting) jobs.post = [&](std::function<void()> work) { posted.push_back(std::move(work)); };
        Ran ran;
        jobs.whenIdle([&] { ran.push_back("idle"); }, "medium");
        {
            const auto job = jobs.begin();
            const auto nested = jobs.begin();
            jobs.whenIdle([&] { ran.push_back("medium 1"); }, "medium");
            jobs.whenIdle([&] { ran.push_back("hand-over 1"); });
            jobs.whenIdle([&] { ran.push_back("hand-over 2"); });
            jobs.whenIdle([&] { ran.push_back("medium 2"); }, "medium");
            EXPECT_TRUE(jobs.busy());
        }
        // Posted work comes back from the event loop; without a post it runs as the jobs end.
        EXPECT_EQ(ran.size(), posting ? 1u : 4u) << posting;
        ASSERT_EQ(posted.size(), posting ? 1u : 0u);
        if (posting) posted[0]();
        EXPECT_EQ(ran, (Ran{"idle", "medium 2", "hand-over 1", "hand-over 2"})) << posting;
    }
}
