// A thread's last error where there is no memory for its text.

#include <gtest/gtest.h>

#include <string>

#include "errors/OVIError.h"
#include "support/FailingMemory.h"

namespace {

class LongFailure : public std::exception {
public:
    explicit LongFailure(const char* text) : m_text(text) {}
    const char* what() const noexcept override { return m_text; }

private:
    const char* m_text;
};

OV_STATUS StatusOf(const LongFailure& failure) {
    try {
        throw failure;
    } catch (...) {
        const FailingMemory none(0, Shortage::Lasting);
        return CaughtStatus();
    }
}

TEST(LastError, IsTheOneBeforeWhereItsTextFindsNoMemory) {
    const std::string text(1000, 'x');
    COVIError::GetInstance().Set(OV_STATUS_TIMEOUT, "{before}");
    EXPECT_EQ(StatusOf(LongFailure(text.c_str())), OV_STATUS_ERROR);
    EXPECT_EQ(COVIError::GetInstance().GetText(), "{-14}{before}");
    EXPECT_EQ(COVIError::GetInstance().GetStatus(), OV_STATUS_TIMEOUT);
    COVIError::GetInstance().Reset();
}

}  // namespace
