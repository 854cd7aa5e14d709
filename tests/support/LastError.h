#pragma once
/// The parts of the last error.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "OvIAPI.h"

/// The calling thread's last failure.
struct LastError {
    int32_t status = 0;
    std::string text;
    /// The third brace group of the text, without braces.
    std::string message;

    static LastError Get() {
        LastError error;
        size_t size = 0;
        OVGetLastError(nullptr, nullptr, &size);
        std::vector<char> text(size);
        OVGetLastError(&error.status, text.data(), &size);
        error.text = text.data();
        const size_t begin = error.text.rfind("}{");
        error.message = begin == std::string::npos
                            ? error.text
                            : error.text.substr(begin + 2, error.text.size() - begin - 3);
        return error;
    }
};

/// Expects a status and, for a failure, its message.
inline void ExpectFailure(OV_STATUS status, OV_STATUS expected, const std::string& message) {
    EXPECT_EQ(status, expected);
    EXPECT_EQ(LastError::Get().message, message);
    EXPECT_EQ(LastError::Get().status, expected);
}

#define EXPECT_OV_OK(call) EXPECT_EQ((call), OV_STATUS_SUCCESS) << LastError::Get().text
#define ASSERT_OV_OK(call) ASSERT_EQ((call), OV_STATUS_SUCCESS) << LastError::Get().text
