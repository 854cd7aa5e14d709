#include "Base/Lock.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <thread>

#include "support/FailureText.h"

namespace BaseTest {
namespace {

using namespace GenICam_3_0_ORVANE;

bool AnotherThreadGets(CLock& lock) {
    bool isTaken = false;
    std::thread([&] {
        isTaken = lock.TryLock();
        if (isTaken) {
            lock.Unlock();
        }
    }).join();
    return isTaken;
}

TEST(CLock, IsTakenAgainByItsOwnThreadAndByNoOther) {
    CLock lock;
    lock.Lock();
    EXPECT_TRUE(lock.TryLock());
    EXPECT_FALSE(AnotherThreadGets(lock));
    lock.Unlock();
    EXPECT_FALSE(AnotherThreadGets(lock));
    lock.Unlock();
    EXPECT_TRUE(AnotherThreadGets(lock));
}

TEST(CLock, KeepsThreadsApart) {
    CLock lock;
    int64_t count = 0;
    const auto add = [&] {
        for (int i = 0; i < 20000; ++i) {
            const AutoLock guard(lock);
            ++count;
        }
    };
    std::thread first(add);
    std::thread second(add);
    first.join();
    second.join();
    EXPECT_EQ(count, 40000);
}

#ifndef __SANITIZE_THREAD__
TEST(CLock, ALockThatIsNotHeldCannotBeGivenBack) {
    CLock lock;
    EXPECT_EQ(FailureText<RuntimeException>([&] { lock.Unlock(); }),
              "Mutex::unlock() failed: 1 (Operation not permitted)");
}
#endif

}  // namespace
}  // namespace BaseTest
