#include "Base/GlobalLock.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstdio>
#include <thread>

#include "Base/GCException.h"
#include "Base/OvAssert.h"

namespace GenICam_3_0_ORVANE {

namespace {

constexpr mode_t kMode = 0777;
constexpr size_t kNameBytes = 11;

/// Opens the semaphore for all users, whatever the process lets its files be.
sem_t* Open(const gcstring& hashedName) {
    const mode_t mask = umask(0);
    sem_t* const semaphore = sem_open(hashedName.c_str(), O_CREAT, kMode, 1);
    umask(mask);
    return semaphore;
}

uint64_t Hash(const gcstring& name) {
    uint64_t hash = 5381;
    for (size_t i = 0; i < name.size(); ++i) {
        // The sign is part of the hash, which other processes reckon alike.
        // NOLINTNEXTLINE(bugprone-signed-char-misuse)
        const auto byte = static_cast<int64_t>(static_cast<signed char>(name.c_str()[i]));
        hash = (hash * 33) ^ static_cast<uint64_t>(byte);
    }
    return hash;
}

}  // namespace

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

bool CGlobalLock::Lock(unsigned timeoutMilliseconds) {
    using Clock = std::chrono::steady_clock;
    const auto begin = Clock::now();
    const std::chrono::milliseconds limit(timeoutMilliseconds);
    while (sem_trywait(m_pSemaphore) != 0) {
        const auto elapsed =
            std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - begin);
        if (timeoutMilliseconds == 0 || elapsed > limit) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    ++m_DebugCount;
    return true;
}

void CGlobalLock::Unlock() {
    if (sem_post(m_pSemaphore) != 0) {
        RUNTIME_EXCEPTION("Could not unlock a named semaphore.");
    }
    --m_DebugCount;
}

}  // namespace GenICam_3_0_ORVANE
