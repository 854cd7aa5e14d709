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
    /// Waits for the lock up to the time-out; `IsHeld` tells the result.
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

/// One cache file. While this object exists, no other process reads or writes the file;
/// clearing the folder uses another lock and may still delete it.
class CCacheFile {
public:
    /// Waits without limit. RuntimeException when the lock can't be had.
    CCacheFile(const gcstring& folder, uint32_t hash);

    /// The file's path, including the folder.
    const std::string& GetName() const { return m_Name; }
    /// Returns the file's content, or nothing if there is no file, if it has been cleared, or
    /// if it isn't trusted (`CTrustedFolder`). Throws RuntimeException if it can't be read.
    std::optional<std::string> Read() const;
    enum class EChecksum { Fits, Differs, Unreadable };
    /// Whether the bytes are those that were written. A file that came without
    /// its checksum is taken as it is.
    EChecksum Check(const std::string& bytes) const;
    /// Replaces the file. Returns false and keeps the old file if the new one can't be written
    /// as a whole; the checksum may be the new one by then.
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

/// Deletes all files of the cache, also those that are being read or written: whoever has
/// one open keeps it. Skips a file that another process is clearing. False without a folder in the
/// environment. RuntimeException when the folder can't be read.
bool ClearCacheFolder();

}  // namespace GenApi_3_0_ORVANE
