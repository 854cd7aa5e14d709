#include <gtest/gtest.h>

extern "C" int InterpolateInC(const unsigned char* raw, unsigned char* rgb);

TEST(ImageHeaderInC, InterpolatesAFrame) {
    const unsigned char raw[16] = {7, 7, 7, 7, 7, 7, 7, 7, 7, 7, 7, 7, 7, 7, 7, 7};
    unsigned char rgb[48] = {};
    EXPECT_EQ(InterpolateInC(raw, rgb), 0);
    EXPECT_EQ(rgb[47], 7);
}
