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

/// A pool that notes when it detaches a frame.
struct AttachingPool {
    unsigned detached = 0;
    CFramePool pool{[this] {
        ++detached;
        pool.NoteDetached();
    }};
};

TEST(FramePool, AttachesOnlyFramesOnLoan) {
    AttachingPool attaching;
    CFramePool& pool = attaching.pool;
    pool.Make(2);
    const OV_FRAME_BUFFER stranger{};
    EXPECT_FALSE(pool.Attach(&stranger));
    OV_FRAME_BUFFER* const frame = pool.Take({});
    EXPECT_TRUE(pool.Attach(frame));
    EXPECT_FALSE(pool.Attach(&stranger));
    EXPECT_EQ(attaching.detached, 0U);
    EXPECT_TRUE(pool.Attach(pool.Take({})));
    EXPECT_EQ(attaching.detached, 1U);
}

TEST(FramePool, DetachesAFrameBeforeItTakesItBack) {
    AttachingPool attaching;
    CFramePool& pool = attaching.pool;
    pool.Make(2);
    OV_FRAME_BUFFER* const frame = pool.Take({});
    OV_FRAME_BUFFER* const other = pool.Take({});
    EXPECT_TRUE(pool.Attach(frame));
    EXPECT_TRUE(pool.Return(other));
    EXPECT_EQ(attaching.detached, 0U);
    EXPECT_TRUE(pool.Return(frame));
    EXPECT_EQ(attaching.detached, 1U);
    for (const bool makes : {true, false}) {
        EXPECT_TRUE(pool.Attach(pool.Take({})));
        makes ? pool.Make(2) : pool.Free();
    }
    EXPECT_EQ(attaching.detached, 3U);
    pool.Make(1);
    EXPECT_TRUE(pool.Attach(pool.Take({})));
    pool.ReturnAll();
    EXPECT_EQ(attaching.detached, 4U);
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
