#include <gtest/gtest.h>

#include <atomic>
#include <semaphore>

#include "gige/net/AdapterWatch.h"

namespace {

using namespace OvGige;

TEST(AdapterWatchTest, CallsOnceAtTheBeginning) {
    std::binary_semaphore called{0};
    const AdapterWatch watch([&] { called.release(); });
    called.acquire();
}

TEST(AdapterWatchTest, EndsWhetherItHasCalledOrNot) {
    std::atomic<int> calls = 0;
    for (int i = 0; i < 20; ++i) {
        const AdapterWatch watch([&] { ++calls; });
    }
    EXPECT_EQ(calls, 20);
}

}  // namespace
