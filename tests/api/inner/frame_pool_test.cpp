// The records of frames on loan, without frames.

#include <gtest/gtest.h>

#include <set>

#include "camera/FramePool.h"

namespace {

TEST(FramePool, LendsAsManyRecordsAsItHas) {
    CFramePool pool;
    pool.Make(2);
    EXPECT_NE(pool.Take({}), nullptr);
    EXPECT_NE(pool.Take({}), nullptr);
    EXPECT_EQ(pool.Take({}), nullptr);
}

TEST(FramePool, TakesNoRecordThatIsNotOnLoan) {
    CFramePool pool;
    pool.Make(1);
    OV_FRAME_BUFFER stranger{};
    EXPECT_FALSE(pool.Return(&stranger));
    OV_FRAME_BUFFER* const frame = pool.Take({});
    EXPECT_TRUE(pool.Return(frame));
    EXPECT_FALSE(pool.Return(frame));
}

TEST(FramePool, NeverLendsAtTheAddressOfALoanFromBefore) {
    constexpr int kRestarts = 100;
    CFramePool pool;
    std::set<OV_FRAME_BUFFER*> before;
    for (int i = 0; i < kRestarts; ++i) {
        pool.Make(5);
        for (int loan = 0; loan < 5; ++loan) {
            EXPECT_TRUE(before.insert(pool.Take({})).second) << "restart " << i;
        }
        pool.Free();
        for (OV_FRAME_BUFFER* const frame : before) {
            EXPECT_FALSE(pool.Return(frame));
        }
    }
}

}  // namespace
