// How a description meets the cache: its hash, and the file that the hash names. The hash covers
// everything that the result depends on: the source, the injected sources in their order and
// depth, whether texts were left out, and which subtree was extracted.

#include <memory>
#include <string>
#include <utility>

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

/// What changes the result beside the description itself, and so belongs in the hash. The
/// level keeps a description apart from the one that it is injected into.
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

/// The bytes of a description's file; none without a file, or when it couldn't be
/// checked. The lock between processes is held only while the file is read: what is made
/// of the bytes takes longer, and other processes shouldn't wait for it.
struct CachedBytes {
    CachedBytes(const gcstring& folder, uint32_t hash) {
        const CCacheFile file(folder, hash);
        name = file.GetName();
        if (auto content = file.Read()) {
            bytes = std::make_shared<const std::string>(std::move(*content));
        }
        const auto checksum = bytes ? file.Check(*bytes) : CCacheFile::EChecksum::Unreadable;
        if (checksum == CCacheFile::EChecksum::Unreadable) {
            bytes.reset();
        }
        isIntact = checksum == CCacheFile::EChecksum::Fits;
    }

    std::string name;
    std::shared_ptr<const std::string> bytes;
    bool isIntact = false;
};

/// Returns a reader that has failed already when the bytes aren't those that were
/// written. A file of another format comes first: its checksum, if it has any, means
/// nothing here.
CCacheReader MakeReader(const CachedBytes& file) {
    CCacheReader header(*file.bytes);
    header.Header();
    CCacheReader reader(*file.bytes);
    if (header.GetState() != CCacheReader::State::Foreign && !file.isIntact) {
        reader.Fail(CCacheReader::State::Corrupt);
    }
    return reader;
}

/// A file that is damaged is reported rather than replaced: somebody else may use it, and
/// something must have damaged it.
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

/// The beginning and the end of each level are part of the hash, too, so that no two nestings of
/// the same sources have the same one.
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

/// @return false if the description has to be read from its source
bool CNodeMapFactory::CNodeMapFactoryImpl::CacheRead(uint32_t hash, LiveNodes* pLiveNodes) {
    // A hash of 0 means that there is none.
    if (UsesCache() && hash != 0) {
        const CachedBytes file(m_CacheFolder, hash);
        if (file.bytes) {
            CCacheReader reader = MakeReader(file);
            // Twice: what the header and the checksum show is known before anything is
            // built, and what the lists hold only afterwards.
            RequireGood(reader, file.name);
            TakeFromCache(reader, file.bytes, pLiveNodes);
            RequireGood(reader, file.name);
            return true;
        }
    }
    if (m_CacheUsage == CacheUsage_ForceRead) {
        RUNTIME_EXCEPTION("Forced read from cache failed.");
    }
    return false;
}

/// Makes either live nodes or data of the file, as the caller wants, never both.
void CNodeMapFactory::CNodeMapFactoryImpl::TakeFromCache(CCacheReader& reader,
                                                         std::shared_ptr<const std::string> bytes,
                                                         LiveNodes* pLiveNodes) {
    if (pLiveNodes != nullptr) {
        pLiveNodes->map = CreateNodeMapDirectFromCache(reader, std::move(bytes),
                                                       pLiveNodes->deviceName, pLiveNodes->lock);
        return;
    }
    m_pMap->FromFile(reader);
    // A part of a map is worse than none.
    if (!reader.IsGood()) {
        m_pMap->Clear();
        return;
    }
    m_isLoaded = true;
    m_isPreprocessed = true;
    m_IsFromCache = true;
}

/// A cache that can't be written costs time at the next start and nothing else, unless the caller
/// insists on it.
void CNodeMapFactory::CNodeMapFactoryImpl::CacheWrite(uint32_t hash) const {
    if (UsesCache() && !TryCacheWrite(hash) && m_CacheUsage == CacheUsage_ForceWrite) {
        RUNTIME_EXCEPTION("Forced write to cache failed.");
    }
}

bool CNodeMapFactory::CNodeMapFactoryImpl::TryCacheWrite(uint32_t hash) const {
    // Identifiers have two bytes in the file and can't count further.
    if (hash == 0 || !FitsCacheFile(GetMap())) {
        return false;
    }
    // Filled before the lock is taken, so that others only wait while the file is
    // written.
    CCacheWriter writer;
    GetMap().ToFile(writer);
    return CCacheFile(m_CacheFolder, hash).Write(writer.GetBytes());
}

}  // namespace GenApi_3_0_ORVANE
