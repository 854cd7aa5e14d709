#include <fcntl.h>
#include <gtest/gtest.h>
#include <semaphore.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <thread>
#include <vector>

#include "Base/GlobalLock.h"
#include "support/FailureText.h"

namespace BaseTest {
namespace {

using namespace GenICam_3_0_ORVANE;

class GlobalLockTest : public testing::Test {
protected:
    ~GlobalLockTest() override {
        sem_unlink(Name().c_str());
        shm_unlink((Name() + ".lock").c_str());
    }
    std::string Name() const { return CGlobalLock::HashSemName(m_name).c_str(); }

    /// Takes the lock in a process that ends with it.
    void DieWithIt() const {
        const pid_t child = fork();
        if (child == 0) {
            CGlobalLock lock(m_name);
            _exit(lock.TryLock() ? 0 : 1);
        }
        int status = -1;
        waitpid(child, &status, 0);
        ASSERT_EQ(status, 0);
    }

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

TEST_F(GlobalLockTest, IsTakenOverFromAProcessThatDiedWithIt) {
    DieWithIt();
    CGlobalLock lock(m_name);
    EXPECT_FALSE(lock.TryLock()) << "nothing is taken over at once";
    ASSERT_TRUE(lock.Lock(60000));
    EXPECT_FALSE(AnotherProcessGetsIt()) << "as if nobody had died";
    lock.Unlock();
    EXPECT_TRUE(AnotherProcessGetsIt());
}

TEST_F(GlobalLockTest, IsTakenOverByOneOfAllThatWait) {
    DieWithIt();
    int inside = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([this, &inside] {
            CGlobalLock lock(m_name);
            ASSERT_TRUE(lock.Lock(60000));
            EXPECT_EQ(++inside, 1);
            --inside;
            lock.Unlock();
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

TEST_F(GlobalLockTest, IsLeftToAHolderThatKnowsOfNoFile) {
    sem_t* const semaphore = sem_open(Name().c_str(), O_CREAT, 0777, 1);
    ASSERT_EQ(sem_trywait(semaphore), 0);
    CGlobalLock lock(m_name);
    EXPECT_FALSE(lock.Lock(50));
    sem_post(semaphore);
    EXPECT_TRUE(lock.Lock(50));
    lock.Unlock();
    sem_close(semaphore);
}

TEST_F(GlobalLockTest, EndsForAProcessThatWasForkedMeanwhile) {
    CGlobalLock lock(m_name);
    ASSERT_TRUE(lock.TryLock());
    int ends[2] = {};
    ASSERT_EQ(pipe(ends), 0);
    const pid_t child = fork();
    if (child == 0) {
        char byte = 0;
        close(ends[1]);
        _exit(read(ends[0], &byte, 1) == 0 ? 0 : 1);  // until the parent lets go
    }
    lock.Unlock();
    EXPECT_TRUE(AnotherProcessGetsIt());
    close(ends[1]);
    close(ends[0]);
    waitpid(child, nullptr, 0);
}

TEST_F(GlobalLockTest, HasAFileThatAllUsersMayLock) {
    const mode_t before = umask(0777);
    CGlobalLock lock(m_name);
    ASSERT_TRUE(lock.TryLock());
    umask(before);
    struct stat found {};
    ASSERT_EQ(stat(("/dev/shm" + Name() + ".lock").c_str(), &found), 0);
    EXPECT_EQ(found.st_mode & 0777, mode_t{0444});
    lock.Unlock();
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
    EXPECT_EQ(FailureText<RuntimeException>([] { CGlobalLock("a/b"); }),
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
