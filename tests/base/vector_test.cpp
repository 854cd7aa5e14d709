#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>

#include "Base/AutoVector.h"
#include "Base/GCStringVector.h"
#include "support/FailureText.h"

namespace BaseTest {
namespace {

using namespace GenICam_3_0_ORVANE;

gcstring_vector Abc() {
    gcstring_vector texts;
    texts.push_back("a");
    texts.push_back("b");
    texts.push_back("c");
    return texts;
}

std::string Joined(const gcstring_vector& texts) {
    std::string all;
    for (gcstring_vector::const_iterator it = texts.begin(); it != texts.end(); ++it) {
        all += it->c_str();
    }
    return all;
}

TEST(GCStringVector, GrowsAndShrinksAtEveryPlace) {
    gcstring_vector texts = Abc();
    EXPECT_EQ(Joined(texts), "abc");
    texts.insert(size_t{1}, "x");
    EXPECT_EQ(Joined(texts), "axbc");
    const auto inserted = texts.insert(texts.begin() + 4, "z");
    EXPECT_EQ(*inserted, "z");
    EXPECT_EQ(Joined(texts), "axbcz");
    const auto next = texts.erase(texts.begin() + 1);
    EXPECT_EQ(*next, "b");
    texts.erase(size_t{0});
    EXPECT_EQ(Joined(texts), "bcz");
    texts.pop_back();
    EXPECT_EQ(texts.back(), "c");
    EXPECT_EQ(texts.front(), "b");
    texts.resize(4, "r");
    EXPECT_EQ(Joined(texts), "bcrr");
    texts.clear();
    EXPECT_TRUE(texts.empty());
}

TEST(GCStringVector, AssignsCountsAndOtherVectors) {
    gcstring_vector texts;
    texts.assign(2, "q");
    EXPECT_EQ(Joined(texts), "qq");
    texts.assign(Abc());
    EXPECT_EQ(Joined(texts), "abc");
    const gcstring_vector& itself = texts;
    texts = itself;
    EXPECT_EQ(Joined(texts), "abc");
    EXPECT_EQ(Joined(gcstring_vector(3, "w")), "www");
    const gcstring_vector copy(texts);
    texts.at(0) = "changed";
    EXPECT_EQ(copy.at(0), "a");
}

TEST(GCStringVector, TellsWhatItHolds) {
    const gcstring_vector texts = Abc();
    EXPECT_TRUE(texts.contains("b"));
    EXPECT_FALSE(texts.contains("d"));
    EXPECT_EQ(texts.size(), 3U);
    EXPECT_EQ(texts.end() - texts.begin(), 3);
    EXPECT_GT(texts.max_size(), 1000U);
}

TEST(GCStringVector, ReservesRoom) {
    gcstring_vector texts;
    texts.reserve(50);
    EXPECT_GE(texts.capacity(), 50U);
    EXPECT_TRUE(texts.empty());
}

TEST(GCStringVector, CannotHoldMoreThanMemoryCould) {
    gcstring_vector texts = Abc();
    for (const size_t count : {texts.max_size(), texts.max_size() + 1, ~size_t{0}}) {
        EXPECT_THROW(texts.reserve(count), BadAllocException) << count;
        EXPECT_THROW(texts.resize(count), BadAllocException) << count;
        EXPECT_THROW(texts.assign(count, "a"), BadAllocException) << count;
        EXPECT_THROW(gcstring_vector(count, "a"), BadAllocException) << count;
    }
    EXPECT_EQ(Joined(texts), "abc");
}

TEST(GCStringVector, RefusesAnIndexBeyondTheEnd) {
    gcstring_vector texts = Abc();
    EXPECT_EQ(texts.at(2), "c");
    EXPECT_THROW(texts.at(3), OutOfRangeException);
    EXPECT_THROW(static_cast<const gcstring_vector&>(texts).at(3), OutOfRangeException);
}

TEST(AutoVector, CopiesShareTheirValues) {
    int64_autovector_t values;
    for (int64_t i = 0; i < 100; ++i) {
        values.push_back(i * i);
    }
    int64_autovector_t copy = values;
    copy[3] = -1;
    EXPECT_EQ(values[3], -1);
    EXPECT_EQ(values.size(), 100U);
    copy.push_back(7);
    EXPECT_EQ(values.size(), 101U);
    double_autovector_t doubles;
    doubles.push_back(0.5);
    EXPECT_EQ(doubles[0], 0.5);
}

}  // namespace
}  // namespace BaseTest
