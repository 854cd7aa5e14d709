#pragma once
/// The folder of preprocessed descriptions, which processes share.

#include <cstdint>
#include <optional>
#include <string>

#include "Base/GCString.h"
#include "Base/GlobalLock.h"
#include "GenApi/Types.h"

namespace GenApi_3_0_ORVANE {

/// One cache file, locked against all other processes as long as this lives.
class CCacheFile {
public:
    /// Waits without limit. RuntimeException when the lock can't be had.
    CCacheFile(const gcstring& folder, uint32_t hash);
    ~CCacheFile();
    CCacheFile(const CCacheFile&) = delete;
    CCacheFile& operator=(const CCacheFile&) = delete;

    const std::string& GetName() const { return m_Name; }
    /// The bytes; nothing where there is no file, or none any more, for a folder
    /// can be cleared at any time. RuntimeException when they can't be had.
    std::optional<std::string> Read() const;
    /// Whether the bytes are those that were written. A file that came without
    /// its checksum is taken as it is.
    bool IsIntact(const std::string& bytes) const;
    /// Puts the file in place in one step: a reader never meets half of it.
    /// False when the folder takes no file. RuntimeException when it takes only
    /// a part.
    bool Write(const std::string& bytes) const;

private:
    GenICam_3_0_ORVANE::CGlobalLock m_Lock;
    std::string m_Name;
};

/// The folder in use; empty when there is none.
gcstring FindCacheFolder();

/// Deletes all files of the cache but those that another process holds. False
/// without a folder in the environment.
bool ClearCacheFolder();

}  // namespace GenApi_3_0_ORVANE
