#include <gtest/gtest.h>

#include "Base/Environment.h"
#include "Base/GCString.h"

namespace BaseTest {
namespace {

using namespace GenICam_3_0_ORVANE;

TEST(UrlEncode, EscapesBlanksAndTurnsBackslashes) {
    EXPECT_EQ(UrlEncode("a b"), "a%20b");
    EXPECT_EQ(UrlEncode("c:\\dir\\file"), "c:/dir/file");
}

TEST(UrlEncode, LetsColonsAndOtherSignsPass) {
    EXPECT_EQ(UrlEncode("file:///a-b_c.d~e%f\"<>{}|^`"), "file:///a-b_c.d~e%f\"<>{}|^`");
}

TEST(UrlEncode, EscapesEachReservedSign) {
    EXPECT_EQ(UrlEncode("?#[]@!$&'()*+,;="), "%3f%23%5b%5d%40%21%24%26%27%28%29%2a%2b%2c%3b%3d");
}

TEST(UrlEncode, EscapesControlsAndBytesWithTheHighBit) {
    EXPECT_EQ(UrlEncode("\x01\t\x7f\x80\xff"), "%01%09\x7f%80%ff");
}

TEST(UrlDecode, TakesEscapesBack) {
    EXPECT_EQ(UrlDecode("a%20b"), "a b");
    EXPECT_EQ(UrlDecode("%41%4a%4A%ff"), "AJJ\xff");
    EXPECT_EQ(UrlDecode("a+b"), "a+b");
}

TEST(UrlDecode, LeavesWhatIsNoEscape) {
    EXPECT_EQ(UrlDecode("100%"), "100%");
    EXPECT_EQ(UrlDecode("%4"), "%4");
    EXPECT_EQ(UrlDecode("%4g%g4%%41"), "%4g%g4%A");
    EXPECT_EQ(UrlDecode("%-1%+1% 1"), "%-1%+1% 1");
}

TEST(UrlDecode, UndoesTheEncodingOfEveryByteButTheBackslash) {
    for (int byte = 1; byte < 256; ++byte) {
        if (byte != '\\' && byte != '%') {
            const gcstring text(1, static_cast<char>(byte));
            EXPECT_EQ(UrlDecode(UrlEncode(text)), text) << byte;
        }
    }
}

}  // namespace
}  // namespace BaseTest
