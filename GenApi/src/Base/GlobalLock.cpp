// The lock that processes share, for the cache of node maps. It has to survive that a
// holder is killed at any moment, and to work beside processes that know only the
// semaphore.

#include "Base/GlobalLock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/stat.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <thread>

#include "Base/GCException.h"
#include "Base/OvAssert.h"
#include "OpenFile.h"

namespace GenICam_3_0_ORVANE {

namespace {

/// The lock serves processes of all users.
constexpr mode_t kMode = 0777;
constexpr mode_t kLockFileMode = 0444;
/// As much of the lock's name as there is room for, so that people can tell the semaphores apart.
constexpr size_t kNameBytes = 11;

using Clock = std::chrono::steady_clock;

/// How long a semaphore may be taken by somebody without the file before that process counts as
/// dead. Processes that know of no such file hold it for less.
constexpr std::chrono::seconds kGrace(1);

/// Opens the semaphore for all users, whatever the file mode mask of the process is.
sem_t* Open(const gcstring& hashedName) {
    const mode_t mask = umask(0);
    sem_t* const semaphore = sem_open(hashedName.c_str(), O_CREAT, kMode, 1);
    umask(mask);
    return semaphore;
}

/// Opens the file beside the semaphore. All users may lock it and none may write it. In memory
/// rather than in a folder, so that it is gone after a restart, as the semaphore is.
int OpenLockFile(const gcstring& hashedName) {
    const gcstring name = hashedName + ".lock";
    // Opened without O_CREAT first: with it, the system may refuse a file that another
    // user owns.
    const auto open = [&name] { return shm_open(name.c_str(), O_RDONLY, 0); };
    int file = open();
    if (file == COpenFile::kNone && errno == ENOENT) {
        file = shm_open(name.c_str(), O_RDONLY | O_CREAT | O_EXCL, kLockFileMode);
        if (file != COpenFile::kNone) {
            fchmod(file, kLockFileMode);  // whatever the mask is
        } else if (errno == EEXIST) {
            file = open();
        }
    }
    return file;
}

/// Tries to lock that file, once for each attempt of the caller.
class CLockFile {
public:
    explicit CLockFile(const gcstring& hashedName) : m_File(OpenLockFile(hashedName)) {}

    /// True also without a file: then there is only the semaphore.
    bool TryLock() {
        if (!m_IsLocked && m_File.IsOpen() && flock(m_File.Get(), LOCK_EX | LOCK_NB) == 0) {
            m_IsLocked = true;
            m_Since = Clock::now();
        }
        return m_IsLocked || !m_File.IsOpen();
    }
    /// Whether the holder of the semaphore must have died, or knows of no file: the file
    /// has been ours for that long, and the semaphore hasn't.
    bool IsLockedForLong() const { return m_IsLocked && Clock::now() - m_Since >= kGrace; }
    int Release() { return m_File.Release(); }

private:
    COpenFile m_File;
    bool m_IsLocked = false;
    Clock::time_point m_Since;
};

/// A hash that other processes compute as well: it never changes, and its use of the sign of
/// characters is part of it.
uint64_t Hash(const gcstring& name) {
    constexpr uint64_t kBegin = 5381;
    constexpr uint64_t kFactor = 33;
    uint64_t hash = kBegin;
    for (size_t i = 0; i < name.size(); ++i) {
        // NOLINTNEXTLINE(bugprone-signed-char-misuse)
        const auto byte = static_cast<int64_t>(static_cast<signed char>(name.c_str()[i]));
        hash = (hash * kFactor) ^ static_cast<uint64_t>(byte);
    }
    return hash;
}

}  // namespace

/// The length and the hash distinguish long names that begin alike.
gcstring CGlobalLock::HashSemName(const gcstring& name) {
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "/%02x%016llx",
                  static_cast<unsigned>(name.size() & 0xFF),
                  static_cast<unsigned long long>(Hash(name)));
    return gcstring(text.data()) + name.substr(0, kNameBytes);
}

CGlobalLock::CGlobalLock(const gcstring& name)
    : m_HashedName(HashSemName(name)), m_pSemaphore(Open(m_HashedName)) {
    if (m_pSemaphore == SEM_FAILED) {
        RUNTIME_EXCEPTION("Could not create named semaphore %s", name.c_str());
    }
}

CGlobalLock::~CGlobalLock() noexcept(false) {
    OV_ASSERT(m_DebugCount == 0 &&
              "Object be in unlocked state on destruction. Check your Unlock calls.");
    if (sem_close(m_pSemaphore) != 0) {
        RUNTIME_EXCEPTION("Could not close a named semaphore.");
    }
}

/// By trying again and again: no system call waits for the file's lock and the semaphore at once,
/// and a semaphore alone doesn't show that its holder has died.
bool CGlobalLock::Lock(unsigned timeoutMilliseconds) {
    const auto begin = Clock::now();
    const std::chrono::milliseconds limit(timeoutMilliseconds);
    // The file comes before the semaphore: the kernel releases it when its holder dies,
    // so one who has it may draw conclusions from the semaphore.
    CLockFile file(m_HashedName);
    while (!file.TryLock() || (sem_trywait(m_pSemaphore) != 0 && !file.IsLockedForLong())) {
        const auto elapsed =
            std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - begin);
        if (timeoutMilliseconds == 0 || elapsed > limit) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    m_LockFile = file.Release();
    ++m_DebugCount;
    return true;
}

/// The semaphore is released before the file, so that no other process finds the file free and
/// the semaphore taken, and thinks that somebody has died.
void CGlobalLock::Unlock() {
    COpenFile file(std::exchange(m_LockFile, COpenFile::kNone));
    if (sem_post(m_pSemaphore) != 0) {
        m_LockFile = file.Release();
        RUNTIME_EXCEPTION("Could not unlock a named semaphore.");
    }
    --m_DebugCount;
    if (file.IsOpen()) {
        // A process that was forked meanwhile has the file open, too, and closing ours
        // wouldn't release it.
        flock(file.Get(), LOCK_UN);
    }
}

}  // namespace GenICam_3_0_ORVANE
