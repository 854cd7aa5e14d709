// Locks are taken in the order of their ranks, which debug builds watch.

#include <gtest/gtest.h>

#include "Base/Lock.h"
#include "Base/LockRank.h"

#ifndef NDEBUG

namespace {

using GenICam_3_0_ORVANE::AutoLock;
using GenICam_3_0_ORVANE::CLock;
using OvBase::CApplicationCall;
using OvBase::LockRank;

constexpr const char* kComplaint = "A lock is taken under one that comes after it";

class LockOrder : public testing::Test {
protected:
    LockOrder() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }

    CLock outer{LockRank::Device};
    CLock inner{LockRank::NodeMap};
    int camera = 0;
};

void TakeBoth(CLock& first, CLock& second) {
    const AutoLock held(first);
    const AutoLock alsoHeld(second);
}

TEST_F(LockOrder, MayRise) {
    TakeBoth(outer, inner);
    const AutoLock held(inner);
}

TEST_F(LockOrder, MayNotFall) {
    EXPECT_DEATH(TakeBoth(inner, outer), kComplaint);
}

TEST_F(LockOrder, HasOneLockOfARank) {
    CLock other(LockRank::Device);
    EXPECT_DEATH(TakeBoth(outer, other), kComplaint);
}

TEST_F(LockOrder, LetsAThreadTakeAgainWhatItHolds) {
    const AutoLock held(outer);
    TakeBoth(inner, outer);
}

TEST_F(LockOrder, ForgetsWhatWasReleased) {
    inner.Lock();
    inner.Lock();
    inner.Unlock();
    EXPECT_DEATH(outer.Lock(), kComplaint);
    inner.Unlock();
    TakeBoth(outer, inner);
}

TEST_F(LockOrder, LetsALockBeTriedThatNobodyWaitsFor) {
    const AutoLock held(inner);
    EXPECT_TRUE(outer.TryLock());
    outer.Unlock();
}

TEST_F(LockOrder, CountsALockThatWasTried) {
    ASSERT_TRUE(inner.TryLock());
    EXPECT_DEATH(outer.Lock(), kComplaint);
    inner.Unlock();
}

TEST_F(LockOrder, DoesNotKnowALockWithoutARank) {
    CLock own;
    TakeBoth(inner, own);
    TakeBoth(own, outer);
}

TEST_F(LockOrder, BeginsAnewInAnApplicationsCallback) {
    const AutoLock held(inner);
    const CApplicationCall call(&camera);
    TakeBoth(outer, inner);
    CLock third(LockRank::Stream);
    EXPECT_DEATH(TakeBoth(third, outer), kComplaint);
}

TEST_F(LockOrder, OfACameraHoldsInItsOwnCallback) {
    const AutoLock held(inner);
    const CApplicationCall call(&camera);
    const CApplicationCall nested(this);
    EXPECT_DEATH(OvBase::CheckLockOrder(&outer, LockRank::Device, &camera), kComplaint);
    OvBase::CheckLockOrder(&outer, LockRank::OfflineChannel, &camera);
}

}  // namespace

#endif
