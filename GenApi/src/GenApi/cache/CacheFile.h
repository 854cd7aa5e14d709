#pragma once
/// Files of preprocessed descriptions in a folder that processes share.

#include <cstdint>
#include <optional>
#include <string>

#include "Base/GCString.h"
#include "Base/GlobalLock.h"
#include "GenApi/Types.h"
#include "cache/TrustedFolder.h"

namespace GenApi_3_0_ORVANE {

/// Holds a lock between processes for the life of a scope.
class CGlobalLockScope {
public:
    /// Waits that long.
    CGlobalLockScope(GenICam_3_0_ORVANE::CGlobalLock& lock, unsigned timeoutMilliseconds)
        : m_Lock(lock), m_IsHeld(lock.Lock(timeoutMilliseconds)) {}
    ~CGlobalLockScope() {
        if (m_IsHeld) {
            m_Lock.Unlock();
        }
    }
    CGlobalLockScope(const CGlobalLockScope&) = delete;
    CGlobalLockScope& operator=(const CGlobalLockScope&) = delete;

    bool IsHeld() const { return m_IsHeld; }

private:
    GenICam_3_0_ORVANE::CGlobalLock& m_Lock;
    bool m_IsHeld;
};

/// One cache file, locked against all other processes as long as this lives.
class CCacheFile {
public:
    /// Waits without limit. RuntimeException when the lock can't be had.
    CCacheFile(const gcstring& folder, uint32_t hash);

    /// With the folder.
    const std::string& GetName() const { return m_Name; }
    /// The bytes; nothing where there is no file to be trusted, or none any more,
    /// for a folder can be cleared at any time. RuntimeException when they can't
    /// be had.
    std::optional<std::string> Read() const;
    enum class EChecksum { Fits, Differs, Unreadable };
    /// Whether the bytes are those that were written. A file that came without
    /// its checksum is taken as it is.
    EChecksum Check(const std::string& bytes) const;
    /// False, with the old file in place, when the folder doesn't take all of it.
    bool Write(const std::string& bytes) const;

private:
    std::string m_FileName;
    std::string m_Name;
    CTrustedFolder m_Folder;
    GenICam_3_0_ORVANE::CGlobalLock m_Lock;
    CGlobalLockScope m_Scope;
};

/// The folder in use; empty when there is none.
gcstring FindCacheFolder();

/// Deletes all files of the cache but those that another process holds. False
/// without a folder in the environment. RuntimeException when the folder can't be
/// read.
bool ClearCacheFolder();

}  // namespace GenApi_3_0_ORVANE
