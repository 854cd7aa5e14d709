#include "CacheFolder.h"

#include <unistd.h>
#include <xxhash.h>

#include <array>
#include <bit>
#include <cstdio>
#include <fstream>
#include <limits>

#include "Base/Environment.h"
#include "Base/GCException.h"
#include "Base/OvAssert.h"

namespace GenApi_3_0_ORVANE {

namespace {

constexpr const char* kFolderVariable = "GENICAM_CACHE_V3_0";
constexpr const char* kLockPrefix = "GenICam_XML_";
constexpr const char* kExtension = ".bin";
constexpr const char* kTemporaryExtension = ".tmp";
constexpr const char* kChecksumExtension = ".sum";
constexpr size_t kNameLength = 22;
constexpr unsigned kNoLimit = std::numeric_limits<unsigned>::max();
constexpr unsigned kClearTimeoutMilliseconds = 7000;

/// The bytes of a number in their order in memory, two digits each.
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

std::string FileName(const gcstring& folder, uint32_t hash) {
    return std::string(folder.c_str()) + "/0x" + HexOfMemory(hash) + kExtension;
}

std::string Checksum(const std::string& bytes) {
    return HexOfMemory(XXH64(bytes.data(), bytes.size(), 0));
}

/// All bytes of a stream; false when they can't be had.
bool ReadAll(std::ifstream& stream, std::string& bytes) {
    std::array<char, 65536> block{};
    while (stream.read(block.data(), block.size()).gcount() > 0) {
        bytes.append(block.data(), static_cast<size_t>(stream.gcount()));
    }
    return stream.eof() && !stream.bad();
}

void Replace(const std::string& temporary, const std::string& name) {
    if (std::rename(temporary.c_str(), name.c_str()) == 0) {
        return;
    }
    const int removeRes = std::remove(name.c_str());
    OV_ASSERT(removeRes == 0);
    const int renameRes = std::rename(temporary.c_str(), name.c_str());
    OV_ASSERT(renameRes == 0);
}

bool WriteInOneStep(const std::string& name, const std::string& bytes) {
    const std::string temporary = name + kTemporaryExtension;
    std::ofstream stream(temporary, std::ios::binary | std::ios::trunc);
    if (!stream.is_open()) {
        return false;
    }
    stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    stream.close();
    if (stream.fail()) {
        const int removeRes = std::remove(temporary.c_str());
        OV_ASSERT(removeRes == 0);
        RUNTIME_EXCEPTION("Failure while writing cache data.");
    }
    Replace(temporary, name);
    return true;
}

/// Deletes a file unless another process is at it for too long.
void ClearFile(const gcstring& folder, const gcstring& strFileName) {
    OV_ASSERT(strFileName.length() == 22 && "Invalid xml filename length");
    OV_ASSERT(strFileName.find_first_of(".bin") != gcstring::_npos() &&
              "Cache filename is missing .bin extension");
    GenICam_3_0_ORVANE::CGlobalLock lock(gcstring(kLockPrefix) +
                                         strFileName.substr(0, kNameLength - 4));
    if (!lock.Lock(kClearTimeoutMilliseconds)) {
        return;
    }
    const std::string name = std::string(folder.c_str()) + "/" + strFileName.c_str();
    std::remove(name.c_str());
    std::remove((name + kChecksumExtension).c_str());
    lock.Unlock();
}

}  // namespace

CCacheFile::CCacheFile(const gcstring& folder, uint32_t hash)
    : m_Lock(gcstring(kLockPrefix) + std::to_string(hash).c_str()) {
    if (!m_Lock.Lock(kNoLimit)) {
        RUNTIME_EXCEPTION("Timeout while trying to acquire the cache lock.");
    }
    m_Name = FileName(folder, hash);
}

CCacheFile::~CCacheFile() {
    m_Lock.Unlock();
}

std::optional<std::string> CCacheFile::Read() const {
    std::ifstream stream(m_Name, std::ios::binary);
    if (!stream.is_open()) {
        if (access(m_Name.c_str(), F_OK) != 0) {
            return std::nullopt;
        }
        RUNTIME_EXCEPTION("Failed to open cache file '%s'", m_Name.c_str());
    }
    std::string bytes;
    if (!ReadAll(stream, bytes)) {
        RUNTIME_EXCEPTION("Failed to read cache file '%s'.", m_Name.c_str());
    }
    return bytes;
}

bool CCacheFile::IsIntact(const std::string& bytes) const {
    const std::string name = m_Name + kChecksumExtension;
    std::ifstream stream(name, std::ios::binary);
    std::string checksum;
    return !stream.is_open() || (ReadAll(stream, checksum) && checksum == Checksum(bytes));
}

bool CCacheFile::Write(const std::string& bytes) const {
    // The checksum goes first: equal descriptions give equal files, so that it
    // fits whichever file it meets.
    return WriteInOneStep(m_Name + kChecksumExtension, Checksum(bytes)) &&
           WriteInOneStep(m_Name, bytes);
}

gcstring FindCacheFolder() {
    try {
        return GenICam_3_0_ORVANE::GetGenICamCacheFolder();
    } catch (const GenICam_3_0_ORVANE::RuntimeException&) {
        return {};  // neither set nor in the environment: no cache is in use
    }
}

bool ClearCacheFolder() {
    if (!GenICam_3_0_ORVANE::DoesEnvironmentVariableExist(kFolderVariable)) {
        return false;
    }
    const gcstring folder = GenICam_3_0_ORVANE::GetGenICamCacheFolder();
    gcstring_vector files;
    GenICam_3_0_ORVANE::GetFiles(folder + "/0x????????????????.bin", files);
    for (const gcstring& file : files) {
        ClearFile(folder, file);
    }
    return true;
}

}  // namespace GenApi_3_0_ORVANE
