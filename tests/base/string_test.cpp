#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>

#include "Base/GCString.h"
#include "support/FailureText.h"

namespace BaseTest {
namespace {

using namespace GenICam_3_0_ORVANE;

TEST(GCString, NullCountsAsEmpty) {
    const char* const null = nullptr;
    EXPECT_STREQ(gcstring(null).c_str(), "");
    gcstring text("x");
    text.assign(null);
    EXPECT_TRUE(text.empty());
    text += null;
    EXPECT_EQ(text, "");
    EXPECT_TRUE(text == null);
}

TEST(GCString, IsMadeInEveryForm) {
    EXPECT_STREQ(gcstring().c_str(), "");
    EXPECT_STREQ(gcstring("abcdef", 3).c_str(), "abc");
    EXPECT_STREQ(gcstring(3, 'x').c_str(), "xxx");
    const gcstring first("first");
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): it is the subject
    const gcstring copy(first);
    EXPECT_EQ(copy, first);
    EXPECT_NE(copy.c_str(), first.c_str());
}

TEST(GCString, KeepsItsMirrorFreshThroughEveryChange) {
    gcstring text;
    const auto expect = [&text](const std::string& expected) {
        EXPECT_EQ(std::string(text.c_str()), expected);
        EXPECT_EQ(text.c_str(), static_cast<const char*>(text));
        EXPECT_EQ(text.size(), expected.size());
        EXPECT_EQ(text.length(), expected.size());
    };
    text.append("0123456789").append(30, 'a');
    expect("0123456789" + std::string(30, 'a'));
    text.assign("short");
    expect("short");
    text.assign("longer", 4);
    expect("long");
    text.assign(40, 'b');
    expect(std::string(40, 'b'));
    text.assign(gcstring("c"));
    expect("c");
    text += gcstring("d");
    text += "e";
    text += 'f';
    expect("cdef");
    text.resize(2);
    expect("cd");
    text = gcstring("new");
    expect("new");
    const gcstring& itself = text;
    text = itself;
    expect("new");
    text += itself;
    expect("newnew");
}

TEST(GCString, SwapsTextsOfAnyLength) {
    gcstring small("s");
    gcstring large(100, 'l');
    small.swap(large);
    EXPECT_EQ(small, gcstring(100, 'l'));
    EXPECT_STREQ(large.c_str(), "s");
    EXPECT_STREQ(static_cast<const char*>(large), "s");
}

TEST(GCString, FindsWhatStandsInIt) {
    const gcstring text("one two one");
    EXPECT_EQ(text.find('t'), 4U);
    EXPECT_EQ(text.find('o', 1), 6U);
    EXPECT_EQ(text.find("one", 1), 8U);
    EXPECT_EQ(text.find(gcstring("one"), 1), 8U);
    EXPECT_EQ(text.find("onx", 0, 2), 0U);
    EXPECT_EQ(text.find(gcstring("twx"), 0, 2), 4U);
    EXPECT_EQ(text.find("three"), gcstring::npos);
    EXPECT_EQ(gcstring::npos, gcstring::_npos());
    EXPECT_EQ(text.find_first_of("tw"), 4U);
    EXPECT_EQ(text.find_first_not_of("one "), 4U);
}

TEST(GCString, ComparesInEveryForm) {
    const gcstring a("a");
    const gcstring b("b");
    EXPECT_TRUE(a == gcstring("a"));
    EXPECT_TRUE(a == "a");
    EXPECT_TRUE(a != b);
    EXPECT_TRUE(a != "b");
    EXPECT_TRUE(a < b);
    EXPECT_TRUE(b > a);
    EXPECT_LT(a.compare(b), 0);
    EXPECT_EQ(a.compare("a"), 0);
}

TEST(GCString, AddsInEveryMix) {
    const gcstring a("a");
    EXPECT_EQ(a + a, "aa");
    EXPECT_EQ(a + "b", "ab");
    EXPECT_EQ("b" + a, "ba");
}

TEST(GCString, GivesPartsAndRefusesAStartBeyondTheEnd) {
    const gcstring text("0123");
    EXPECT_EQ(text.substr(1, 2), "12");
    EXPECT_EQ(text.substr(4), "");
    try {
        text.substr(5);
        FAIL();
    } catch (const std::out_of_range& failure) {
        EXPECT_EQ(std::string(failure.what()).rfind("basic_string::substr", 0), 0U);
    }
}

TEST(GCString, KeepsTextWithNulBytes) {
    const gcstring text("a\0b", 3);
    EXPECT_EQ(text.size(), 3U);
    EXPECT_EQ(gcstring(text).size(), 3U);
}

TEST(GCString, ALengthBeyondAllMemoryIsABadAllocation) {
    gcstring text("kept");
    EXPECT_THROW(text.resize(text.max_size() + 1), BadAllocException);
    EXPECT_EQ(text, "kept");
}

TEST(GCString, LivesOnTheEnginesOwnHeapOrInAGivenPlace) {
    const std::unique_ptr<gcstring> owned(new gcstring("heap"));
    EXPECT_EQ(*owned, "heap");
    alignas(gcstring) unsigned char place[sizeof(gcstring)];
    auto* const placed = new (place) gcstring("place");
    EXPECT_EQ(*placed, "place");
    placed->~gcstring();
}

}  // namespace
}  // namespace BaseTest
