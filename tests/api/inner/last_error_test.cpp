// A thread's last error where there is no memory for its text.

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <fstream>
#include <vector>

#include "OVIError.h"

namespace {

/// As much address space as the process has, and a little more, for the life of
/// the object.
class ScarceMemory {
public:
    ScarceMemory() {
        constexpr rlim_t kMore = 4 << 20;
        rlim_t pages = 0;
        std::ifstream("/proc/self/statm") >> pages;
        getrlimit(RLIMIT_AS, &m_before);
        rlimit scarce = m_before;
        scarce.rlim_cur = pages * static_cast<rlim_t>(sysconf(_SC_PAGESIZE)) + kMore;
        setrlimit(RLIMIT_AS, &scarce);
    }
    ~ScarceMemory() { setrlimit(RLIMIT_AS, &m_before); }
    ScarceMemory(const ScarceMemory&) = delete;
    ScarceMemory& operator=(const ScarceMemory&) = delete;

private:
    rlimit m_before{};
};

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
        const ScarceMemory scarce;
        return CaughtStatus();
    }
}

TEST(LastError, IsTheOneBeforeWhereItsTextFindsNoMemory) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "a sanitizer ends a program that finds no memory";
#endif
    std::vector<char> text(64 << 20, 'x');
    text.back() = 0;
    COVIError::GetInstance().Set(OV_STATUS_TIMEOUT, "{before}");
    EXPECT_EQ(StatusOf(LongFailure(text.data())), OV_STATUS_ERROR);
    EXPECT_EQ(COVIError::GetInstance().GetText(), "{-14}{before}");
    EXPECT_EQ(COVIError::GetInstance().GetStatus(), OV_STATUS_TIMEOUT);
    COVIError::GetInstance().Reset();
}

}  // namespace
