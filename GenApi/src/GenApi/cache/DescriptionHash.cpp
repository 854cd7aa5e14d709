// The hash that names the cache file of a description. It isn't cryptographic: what protects
// against forged files is who owns the folder (CTrustedFolder).

#include "cache/DescriptionHash.h"

#include <xxhash.h>

#include <array>
#include <fstream>
#include <new>

#include "Base/GCException.h"
#include "cache/CacheStream.h"

namespace GenApi_3_0_ORVANE {

namespace {

using namespace std::string_view_literals;

/// Mixed into every hash, so that programs with another form of cache choose other names.
constexpr unsigned kSeed = 42;
constexpr size_t kBlockBytes = 4096;
constexpr auto kFamily = "ORVANE\0"sv;

}  // namespace

/// The header of cache files is part of the hash: when their form changes, so do their names,
/// and files of the old form are never opened.
CDescriptionHash::CDescriptionHash() : m_pState(XXH32_createState()) {
    if (m_pState == nullptr) {
        throw std::bad_alloc();
    }
    XXH32_reset(m_pState, kSeed);
    Feed(GetCacheFileHeader());
    Feed(kFamily);
}

CDescriptionHash::~CDescriptionHash() {
    XXH32_freeState(m_pState);
}

void CDescriptionHash::Feed(std::string_view bytes) {
    XXH32_update(m_pState, bytes.data(), bytes.size());
}

/// Block by block, so that a file of any size needs little memory.
void CDescriptionHash::FeedFile(const char* fileName) {
    std::ifstream file(fileName, std::ios::binary);
    if (!file.is_open()) {
        RUNTIME_EXCEPTION("Could not open file for hash computation: %s", fileName);
    }
    std::array<char, kBlockBytes> block{};
    while (file.read(block.data(), block.size()).gcount() > 0) {
        Feed({block.data(), static_cast<size_t>(file.gcount())});
    }
}

uint32_t CDescriptionHash::Digest() const {
    return XXH32_digest(m_pState);
}

}  // namespace GenApi_3_0_ORVANE
