#include <gtest/gtest.h>
#include <semaphore.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "Base/GlobalLock.h"
#include "failure.h"

namespace BaseTest {
namespace {

using namespace GenICam_3_0_ORVANE;

class GlobalLockTest : public testing::Test {
protected:
    ~GlobalLockTest() override { sem_unlink(CGlobalLock::HashSemName(m_name).c_str()); }

    /// Whether a process of its own gets the lock, and gives it back.
    bool AnotherProcessGetsIt() const {
        const pid_t child = fork();
        if (child == 0) {
            bool isTaken = false;
            {
                CGlobalLock lock(m_name);
                isTaken = lock.TryLock();
                if (isTaken) {
                    lock.Unlock();
                }
            }
            _exit(isTaken ? 1 : 0);
        }
        int status = 0;
        waitpid(child, &status, 0);
        EXPECT_TRUE(WIFEXITED(status));
        return WEXITSTATUS(status) == 1;
    }

    const gcstring m_name = ("lock of test " + std::to_string(getpid())).c_str();
};

TEST_F(GlobalLockTest, KeepsProcessesApart) {
    CGlobalLock lock(m_name);
    EXPECT_TRUE(AnotherProcessGetsIt());
    ASSERT_TRUE(lock.TryLock());
    EXPECT_FALSE(AnotherProcessGetsIt());
    lock.Unlock();
    EXPECT_TRUE(AnotherProcessGetsIt());
}

TEST_F(GlobalLockTest, IsNotRecursive) {
    CGlobalLock lock(m_name);
    ASSERT_TRUE(lock.Lock(0));
    EXPECT_FALSE(lock.Lock(0));
    EXPECT_FALSE(lock.Lock(3)) << "after its time";
    lock.Unlock();
    EXPECT_TRUE(lock.Lock(3));
    lock.Unlock();
}

TEST_F(GlobalLockTest, IsOpenToAllUsersWhateverTheMask) {
    const mode_t before = umask(0777);
    { const CGlobalLock lock(m_name); }
    EXPECT_EQ(umask(before), mode_t{0777}) << "the mask is back";
    struct stat found {};
    const std::string file =
        std::string("/dev/shm/sem.") + (CGlobalLock::HashSemName(m_name).c_str() + 1);
    ASSERT_EQ(stat(file.c_str(), &found), 0);
    EXPECT_EQ(found.st_mode & 0777, mode_t{0777});
}

TEST_F(GlobalLockTest, MustNotBeHeldAtItsEnd) {
    EXPECT_DEATH(
        {
            CGlobalLock lock(m_name);
            lock.TryLock();
        },
        "Object be in unlocked state on destruction\\. Check your Unlock calls\\.");
}

TEST_F(GlobalLockTest, TellsTheNameThatTheSystemRefuses) {
    EXPECT_EQ(FailureOf<RuntimeException>([] { CGlobalLock("a/b"); }),
              "Could not create named semaphore a/b");
}

TEST(HashSemName, HasTheLengthTheHashAndTheBeginning) {
    // 5381 is the hash of nothing.
    EXPECT_EQ(CGlobalLock::HashSemName(""), "/000000000000001505");
    // 5381 * 33 ^ 'a' = 0x2b5a5 ^ 0x61.
    EXPECT_EQ(CGlobalLock::HashSemName("a"), "/01000000000002b5c4a");
    EXPECT_EQ(CGlobalLock::HashSemName("0123456789ABCDEF").size(), 1U + 2 + 16 + 11);
    const gcstring hashed = CGlobalLock::HashSemName("0123456789ABCDEF");
    EXPECT_EQ(hashed.substr(0, 3), "/10");
    EXPECT_EQ(hashed.substr(19), "0123456789A");
}

TEST(HashSemName, TakesBytesAsSignedNumbers) {
    // 5381 * 33 ^ -1.
    EXPECT_EQ(CGlobalLock::HashSemName("\xFF").substr(3, 16), "fffffffffffd4a5a");
}

TEST(HashSemName, ShowsTheLowByteOfTheLength) {
    EXPECT_EQ(CGlobalLock::HashSemName(gcstring(257, 'x')).substr(0, 3), "/01");
}

}  // namespace
}  // namespace BaseTest
