// The gate between fetches and a stop.

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

#include "camera/FetchGate.h"

namespace {

TEST(FetchGate, IsClosedUntilItIsOpened) {
    CFetchGate gate;
    EXPECT_FALSE(CFetch(gate).IsInside());
    gate.Open();
    EXPECT_TRUE(CFetch(gate).IsInside());
}

TEST(FetchGate, LetsNobodyInOnceClosed) {
    CFetchGate gate;
    gate.Open();
    EXPECT_TRUE(gate.Close()) << "nobody is inside";
    EXPECT_FALSE(CFetch(gate).IsInside());
    EXPECT_TRUE(gate.WaitUntilEmpty());
}

TEST(FetchGate, TellsThatSomebodyIsInside) {
    CFetchGate gate;
    gate.Open();
    {
        const CFetch first(gate);
        const CFetch second(gate);
        EXPECT_FALSE(gate.Close());
        EXPECT_FALSE(gate.WaitUntilEmpty());
        EXPECT_FALSE(CFetch(gate).IsInside());
    }
    EXPECT_TRUE(gate.WaitUntilEmpty());
}

TEST(FetchGate, OfARefusedEntryIsNotLeft) {
    CFetchGate gate;
    gate.Open();
    const CFetch inside(gate);
    EXPECT_FALSE(gate.Close());
    { const CFetch refused(gate); }
    EXPECT_FALSE(gate.WaitUntilEmpty()) << "the one inside is still there";
}

TEST(FetchGate, WaitsForTheLastOfMany) {
    for (int round = 0; round < 100; ++round) {
        CFetchGate gate;
        gate.Open();
        std::atomic<int> inside{0};
        std::vector<std::thread> threads;
        for (int i = 0; i < 4; ++i) {
            threads.emplace_back([&] {
                while (gate.TryEnter()) {
                    ++inside;
                    --inside;
                    gate.Leave();
                }
            });
        }
        for (bool isEmpty = gate.Close(); !isEmpty;) {
            isEmpty = gate.WaitUntilEmpty();
        }
        EXPECT_EQ(inside, 0);
        for (std::thread& thread : threads) {
            thread.join();
        }
    }
}

}  // namespace
