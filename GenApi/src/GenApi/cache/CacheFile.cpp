// Files of preprocessed descriptions in a folder that processes share. The name of a file is the
// hash of what it was made of. A file is locked between processes while it is used, and has a
// checksum in another file: its content is trusted without the checks that a description goes
// through.

#include "cache/CacheFile.h"

#include <xxhash.h>

#include <array>
#include <bit>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <limits>
#include <string_view>

#include "Base/Environment.h"
#include "Base/GCException.h"

namespace GenApi_3_0_ORVANE {

using GenICam_3_0_ORVANE::CGlobalLock;

namespace {

using EReading = CTrustedFolder::EReading;

constexpr const char* kFolderVariable = "GENICAM_CACHE_V3_0";
constexpr const char* kLockPrefix = "GenICam_XML_";
constexpr const char* kExtension = ".bin";
constexpr const char* kChecksumExtension = ".sum";
/// "0x", sixteen digits and ".bin".
constexpr size_t kNameLength = 22;
constexpr unsigned kNoLimit = std::numeric_limits<unsigned>::max();
/// How long to wait for another process that is clearing the same file.
constexpr unsigned kClearTimeoutMilliseconds = 7000;

/// The bytes of a number in their order in memory, two digits each. Names and checksums are known
/// in this form.
std::string HexOfMemory(uint64_t number) {
    static_assert(std::endian::native == std::endian::little);
    std::string text;
    for (size_t i = 0; i < sizeof number; ++i) {
        std::array<char, 3> digits{};
        std::snprintf(digits.data(), digits.size(), "%02x",
                      static_cast<unsigned>((number >> (8 * i)) & 0xFF));
        text += digits.data();
    }
    return text;
}

/// The hash has 32 bits; the rest of the digits are zeros.
std::string FileName(uint32_t hash) {
    return "0x" + HexOfMemory(hash) + kExtension;
}

std::string Checksum(const std::string& bytes) {
    return HexOfMemory(XXH64(bytes.data(), bytes.size(), 0));
}

/// Other files in the folder aren't ours to delete.
bool IsCacheFileName(const std::string& name) {
    return name.size() == kNameLength && name.starts_with("0x") && name.ends_with(kExtension);
}

/// Deletes a file, unless another process is clearing it and takes too long. This isn't the
/// lock of readers and writers: they keep the file that they have open, and a reader that
/// comes later finds none and parses the description.
void ClearFile(const CTrustedFolder& folder, const std::string& name) {
    const std::string stem = name.substr(0, name.size() - std::string_view(kExtension).size());
    CGlobalLock lock(gcstring(kLockPrefix) + stem.c_str());
    const CGlobalLockScope scope(lock, kClearTimeoutMilliseconds);
    if (scope.IsHeld()) {
        folder.Remove(name);
        folder.Remove(name + kChecksumExtension);
    }
}

}  // namespace

/// Waits as long as it takes: others hold the lock only while they read or write the file.
CCacheFile::CCacheFile(const gcstring& folder, uint32_t hash)
    : m_FileName(FileName(hash)),
      m_Name(std::string(folder.c_str()) + "/" + m_FileName),
      m_Folder(folder.c_str()),
      m_Lock(gcstring(kLockPrefix) + std::to_string(hash).c_str()),
      m_Scope(m_Lock, kNoLimit) {
    if (!m_Scope.IsHeld()) {
        RUNTIME_EXCEPTION("Timeout while trying to acquire the cache lock.");
    }
}

/// The whole file at once, so that the lock is held no longer than the reading takes.
std::optional<std::string> CCacheFile::Read() const {
    std::string bytes;
    switch (m_Folder.Read(m_FileName, bytes)) {
        case EReading::Missing:
            return std::nullopt;
        case EReading::NotOpened:
            RUNTIME_EXCEPTION("Failed to open cache file '%s'", m_Name.c_str());
        case EReading::NotRead:
            RUNTIME_EXCEPTION("Failed to read cache file '%s'.", m_Name.c_str());
        case EReading::Done:
            break;
    }
    return bytes;
}

/// A missing checksum is no failure: a file is renamed into place when it is complete, so it
/// is trusted without one, too.
auto CCacheFile::Check(const std::string& bytes) const -> EChecksum {
    std::string checksum;
    switch (m_Folder.Read(m_FileName + kChecksumExtension, checksum)) {
        case EReading::Missing:
            return EChecksum::Fits;
        case EReading::Done:
            return checksum == Checksum(bytes) ? EChecksum::Fits : EChecksum::Differs;
        case EReading::NotOpened:
        case EReading::NotRead:
            break;
    }
    return EChecksum::Unreadable;
}

bool CCacheFile::Write(const std::string& bytes) const {
    // The checksum goes first: equal descriptions make equal files, so that it fits whichever
    // file is there.
    return m_Folder.Write(m_FileName + kChecksumExtension, Checksum(bytes)) &&
           m_Folder.Write(m_FileName, bytes);
}

/// Without a folder there is no cache, which isn't a failure.
gcstring FindCacheFolder() {
    try {
        return GenICam_3_0_ORVANE::GetGenICamCacheFolder();
    } catch (const GenICam_3_0_ORVANE::RuntimeException&) {
        return {};  // neither set nor in the environment: no cache is in use
    }
}

/// A folder that only this program has set isn't cleared without the variable, which says that
/// there is a cache that processes share.
bool ClearCacheFolder() {
    if (!GenICam_3_0_ORVANE::DoesEnvironmentVariableExist(kFolderVariable)) {
        return false;
    }
    const gcstring folder = GenICam_3_0_ORVANE::GetGenICamCacheFolder();
    // Listed by name: a pattern would take the folder's name for one, too.
    const CTrustedFolder files(folder.c_str());
    std::vector<std::string> names;
    if (!files.List(names)) {
        RUNTIME_EXCEPTION("Failed to read cache folder '%s': '%s'", folder.c_str(),
                          std::strerror(errno));
    }
    for (const std::string& name : names) {
        if (IsCacheFileName(name)) {
            ClearFile(files, name);
        }
    }
    return true;
}

}  // namespace GenApi_3_0_ORVANE
