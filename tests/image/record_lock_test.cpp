// For how long a picture holds the lock of its colour record.

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <optional>

#include "Bytes.h"
#include "QyImageProc.h"
#include "TestColourRecord.h"

namespace {

/// A page of memory. The first access to it finds out whether a lock is free, in the thread
/// and at the moment of the access.
class AskingPage {
public:
    explicit AskingPage(pthread_mutex_t* mutex)
        : m_mutex(mutex),
          m_size(static_cast<size_t>(sysconf(_SC_PAGESIZE))),
          m_page(mmap(nullptr, m_size, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0)) {
        EXPECT_NE(m_page, MAP_FAILED);
        asked = this;
        struct sigaction action {};
        action.sa_handler = Ask;
        // An access to other memory ends the test.
        action.sa_flags = static_cast<int>(SA_RESETHAND);
        EXPECT_EQ(sigaction(SIGSEGV, &action, &m_old), 0);
    }
    AskingPage(const AskingPage&) = delete;
    AskingPage& operator=(const AskingPage&) = delete;
    ~AskingPage() {
        EXPECT_EQ(sigaction(SIGSEGV, &m_old, nullptr), 0);
        EXPECT_EQ(munmap(m_page, m_size), 0);
        asked = nullptr;
    }

    uint8_t* Data() const { return static_cast<uint8_t*>(m_page); }
    size_t Size() const { return m_size; }
    /// The answer; nothing if the page wasn't accessed.
    std::optional<bool> WasFree() const { return m_wasFree; }

private:
    static void Ask(int /*signal*/) {
        const int error = pthread_mutex_trylock(asked->m_mutex);
        if (error == 0) {
            pthread_mutex_unlock(asked->m_mutex);
        }
        asked->m_wasFree = error == 0;
        mprotect(asked->m_page, asked->m_size, PROT_READ | PROT_WRITE);
    }

    static AskingPage* asked;

    pthread_mutex_t* m_mutex;
    size_t m_size;
    void* m_page;
    std::optional<bool> m_wasFree;
    struct sigaction m_old {};
};

AskingPage* AskingPage::asked = nullptr;

/// Corrects an image into a page that asks, and expects the lock to be held by then.
void ExpectHeld(TestRecord& record) {
    constexpr int kWidth = 20;
    constexpr int kHeight = 10;
    const auto image = MakeBytes(size_t{kWidth} * kHeight * 3, Content::Random);
    const AskingPage page(record.Mutex());
    ASSERT_GE(page.Size(), image.size());
    ASSERT_EQ(QyImageImprovment(image.data(), page.Data(), kWidth, kHeight, &record.record, nullptr,
                                nullptr),
              QY_OK);
    EXPECT_EQ(page.WasFree(), std::optional(false));
}

TEST(RecordLock, IsHeldWhileThePixelsOfAMatrixAreWritten) {
    TestRecord record;
    record.SetMatrix({25, -6, -3, -4, 22, -2, 1, -9, 24});
    ExpectHeld(record);
}

TEST(RecordLock, IsHeldWhileThePixelsOfTablesAreWritten) {
    TestRecord record;
    record.SetNoise(1, -2000, 4000);
    ExpectHeld(record);
}

}  // namespace
