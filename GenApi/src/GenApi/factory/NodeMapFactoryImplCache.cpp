// How a description meets the cache: its hash, and the file under that hash.

#include <optional>
#include <string>

#include "Base/GCException.h"
#include "cache/CacheFile.h"
#include "cache/CacheStream.h"
#include "cache/DescriptionHash.h"
#include "factory/NodeMapFactoryImpl.h"
#include "factory/NodeMapFactoryNodes.h"

namespace GenApi_3_0_ORVANE {

namespace {

bool FitsCacheFile(const CNodeDataMap& map) {
    return map.GetNumNodeIDs() <= kCacheFileMaxCount && map.GetNumStrings() <= kCacheFileMaxCount;
}

/// What makes more of a hash than the description itself does.
std::string Circumstances(const std::string& subtreeName, int level, bool suppressStrings) {
    std::string text;
    if (!subtreeName.empty()) {
        text += "Extracting sub tree from node " + subtreeName;
    }
    if (level > 0) {
        text += "start level " + std::to_string(level);
    }
    if (suppressStrings) {
        text += "suppressed strings";
    }
    return text;
}

/// The bytes of the file of a description; none where there is no file, or none
/// that could be checked. The lock between processes ends with the reading.
struct CachedBytes {
    CachedBytes(const gcstring& folder, uint32_t hash) {
        const CCacheFile file(folder, hash);
        name = file.GetName();
        bytes = file.Read();
        const auto checksum = bytes ? file.Check(*bytes) : CCacheFile::EChecksum::Unreadable;
        if (checksum == CCacheFile::EChecksum::Unreadable) {
            bytes.reset();
        }
        isIntact = checksum == CCacheFile::EChecksum::Fits;
    }

    std::string name;
    std::optional<std::string> bytes;
    bool isIntact = false;
};

/// A reader that has failed where the bytes are not those that were written.
CCacheReader MakeReader(const CachedBytes& file) {
    CCacheReader header(*file.bytes);
    header.Header();
    CCacheReader reader(*file.bytes);
    if (header.GetState() != CCacheReader::State::Foreign && !file.isIntact) {
        reader.Fail(CCacheReader::State::Corrupt);
    }
    return reader;
}

void RequireGood(const CCacheReader& reader, const std::string& name) {
    switch (reader.GetState()) {
        case CCacheReader::State::Good:
            return;
        case CCacheReader::State::Corrupt:
            RUNTIME_EXCEPTION(
                "Failed to read cache file '%s'. The file is incomplete or corrupted.",
                name.c_str());
        case CCacheReader::State::Foreign:
            RUNTIME_EXCEPTION("Failed to read cache file '%s'.", name.c_str());
    }
}

}  // namespace

uint32_t CNodeMapFactory::CNodeMapFactoryImpl::ComputeHash(const std::string& subtreeName) const {
    CDescriptionHash hash;
    FeedHash(hash, subtreeName, 0);
    return hash.Digest();
}

void CNodeMapFactory::CNodeMapFactoryImpl::FeedHash(CDescriptionHash& hash,
                                                    const std::string& subtreeName,
                                                    int level) const {
    if (!m_isLoaded && !m_isPreprocessed) {
        RequireSource("compute hash");
    }
    hash.Feed(Circumstances(subtreeName, level, m_SuppressStrings));
    if (!m_Source.fileName.empty()) {
        hash.FeedFile(m_Source.GetFileName().c_str());
    } else if (!m_Source.text.empty()) {
        hash.Feed({m_Source.text.c_str(), m_Source.text.size()});
    } else {
        hash.Feed({static_cast<const char*>(m_Source.pData), m_Source.size});
    }
    for (const Pointer& other : m_Injected) {
        other->FeedHash(hash, {}, level + 1);
    }
    if (level > 0) {
        hash.Feed("end level " + std::to_string(level));
    }
}

bool CNodeMapFactory::CNodeMapFactoryImpl::CacheRead(uint32_t hash, LiveNodes* pLiveNodes) {
    if (UsesCache() && hash != 0) {
        const CachedBytes file(m_CacheFolder, hash);
        if (file.bytes) {
            CCacheReader reader = MakeReader(file);
            RequireGood(reader, file.name);
            TakeFromCache(reader, pLiveNodes);
            RequireGood(reader, file.name);
            return true;
        }
    }
    if (m_CacheUsage == CacheUsage_ForceRead) {
        RUNTIME_EXCEPTION("Forced read from cache failed.");
    }
    return false;
}

void CNodeMapFactory::CNodeMapFactoryImpl::TakeFromCache(CCacheReader& reader,
                                                         LiveNodes* pLiveNodes) {
    if (pLiveNodes != nullptr) {
        pLiveNodes->map =
            CreateNodeMapDirectFromCache(reader, pLiveNodes->deviceName, pLiveNodes->lock);
        return;
    }
    m_Map.FromFile(reader);
    if (!reader.IsGood()) {
        m_Map.Clear();
        return;
    }
    m_isLoaded = true;
    m_isPreprocessed = true;
    m_IsFromCache = true;
}

void CNodeMapFactory::CNodeMapFactoryImpl::CacheWrite(uint32_t hash) const {
    if (UsesCache() && !TryCacheWrite(hash) && m_CacheUsage == CacheUsage_ForceWrite) {
        RUNTIME_EXCEPTION("Forced write to cache failed.");
    }
}

bool CNodeMapFactory::CNodeMapFactoryImpl::TryCacheWrite(uint32_t hash) const {
    // Identifiers of two bytes can't speak of more.
    if (hash == 0 || !FitsCacheFile(m_Map)) {
        return false;
    }
    // Before the lock is taken: with it held, only the file is left to be written.
    CCacheWriter writer;
    m_Map.ToFile(writer);
    return CCacheFile(m_CacheFolder, hash).Write(writer.GetBytes());
}

}  // namespace GenApi_3_0_ORVANE
