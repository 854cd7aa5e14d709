// The library with no producer beside it.

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "OvIAPI.h"

TEST(InitLib, WithoutAProducerIsNotFoundTL) {
    EXPECT_EQ(OVInitLib(), OV_STATUS_NOT_FOUND_TL);
    size_t size = 0;
    ASSERT_EQ(OVGetLastError(nullptr, nullptr, &size), OV_STATUS_SUCCESS);
    std::vector<char> text(size);
    int32_t status = 0;
    ASSERT_EQ(OVGetLastError(&status, text.data(), &size), OV_STATUS_SUCCESS);
    EXPECT_EQ(status, OV_STATUS_NOT_FOUND_TL);
    EXPECT_NE(std::string(text.data()).find("}{Not found TL library}"), std::string::npos);
    EXPECT_EQ(std::string(text.data()).find("{-2}{__GetFilePath:line["), 0U);
}

TEST(InitLib, CanBeTriedAgain) {
    EXPECT_EQ(OVInitLib(), OV_STATUS_NOT_FOUND_TL);
    EXPECT_EQ(OVInitLib(), OV_STATUS_NOT_FOUND_TL);
    EXPECT_EQ(OVCloseLib(), OV_STATUS_SUCCESS);
}
