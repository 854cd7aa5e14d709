#pragma once
/// The description that all handles to it share.

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "Base/GCString.h"
#include "GenApi/NodeMapFactory.h"
#include "map/NodeMap.h"
#include "nodes/NodeDataMap.h"
#include "reader/NodeDataMapFactory.h"

namespace GenApi_3_0_ORVANE {

class CCacheReader;
class CDescriptionHash;

/// One description, from its raw form to its preprocessed data. A step that fails leaves no
/// trace: the next attempt fails in the same way. Hidden, because a nested class is otherwise
/// exported with the one around it.
class __attribute__((visibility("hidden"))) CNodeMapFactory::CNodeMapFactoryImpl {
public:
    using Pointer = std::shared_ptr<CNodeMapFactoryImpl>;

    /// Where the description comes from; at most one of the three is set.
    struct Source {
        EContentType_t contentType = ContentType_Xml;
        gcstring fileName = {};
        gcstring text = {};
        const void* pData = nullptr;  ///< the caller's
        size_t size = 0;

        bool IsGiven() const { return !fileName.empty() || !text.empty() || pData != nullptr; }
        /// The file, with the variables in the name of a zipped one replaced.
        gcstring GetFileName() const;
        /// Returns the text that is parsed, which `storage` keeps where it had to be read or
        /// unpacked.
        /// @throws RuntimeException for what can't be read
        std::string_view GetDocument(std::string& storage) const;
        /// The whole XML text. RuntimeException when it cannot be had.
        std::string Read() const;
    };

    /// Live nodes that are made straight from the cache, without a data map.
    struct LiveNodes {
        const gcstring& deviceName;
        CLock* lock;
        std::unique_ptr<CNodeMap> map = nullptr;
    };

    CNodeMapFactoryImpl();
    CNodeMapFactoryImpl(Source source, ECacheUsage_t cacheUsage, bool suppressStrings);
    /// The nodes of a live map, preprocessed.
    static Pointer FromNodeMap(INodeMap* nodeMap);

    void AddInjectionData(Pointer other);
    void LoadAndInject();
    /// @param pLiveNodes  for callers that want nodes rather than data. If the cache has the
    ///         description, its map is set, and no data is kept
    void Preprocess(LiveNodes* pLiveNodes = nullptr);
    void ReleaseSource();
    Pointer ExtractIndependentSubtree(const gcstring& nodeName, bool renameToRoot);
    Pointer ApplyStyleSheet(const gcstring& fileName) const;

    /// Returns the data, as far as the steps above have come.
    const CNodeDataMap& GetMap() const { return m_pShared != nullptr ? *m_pShared : *m_pMap; }
    /// Returns the same, preprocessed, for others to keep.
    std::shared_ptr<const CNodeDataMap> GetSharedMap() const {
        return m_pShared != nullptr ? m_pShared : m_pMap;
    }
    bool IsEmpty() const { return !m_Source.IsGiven() && !m_isLoaded && !m_isPreprocessed; }
    bool IsLoaded() const { return m_isLoaded; }
    bool IsPreprocessed() const { return m_isPreprocessed; }
    bool IsReleased() const { return m_IsReleased; }

private:
    void RequireSource(const char* operation) const;
    bool UsesCache() const { return !m_CacheFolder.empty() && m_CacheUsage != CacheUsage_Ignore; }
    void RefuseForcedCache() const;
    void PreprocessOrShare();
    void PreprocessDescription();
    uint32_t ComputeHash(const std::string& subtreeName = {}) const;
    void FeedHash(CDescriptionHash& hash, const std::string& subtreeName, int level) const;
    bool CacheRead(uint32_t hash, LiveNodes* pLiveNodes);
    void TakeFromCache(CCacheReader& reader, std::shared_ptr<const std::string> bytes,
                       LiveNodes* pLiveNodes);
    void CacheWrite(uint32_t hash) const;
    bool TryCacheWrite(uint32_t hash) const;
    bool Holds(const CNodeMapFactoryImpl& other) const;
    void Load(std::string_view document);
    void Inject();
    template <class Step>
    void ClearOnFailure(const Step& step);

    Source m_Source;
    ECacheUsage_t m_CacheUsage = CacheUsage_Ignore;
    bool m_SuppressStrings = false;
    /// This one's own data; empty while it shares others'.
    std::shared_ptr<CNodeDataMap> m_pMap = std::make_shared<CNodeDataMap>();
    std::shared_ptr<const CNodeDataMap> m_pShared;
    std::vector<Pointer> m_Injected;
    bool m_isLoaded = false;
    bool m_isPreprocessed = false;
    bool m_IsReleased = false;
    bool m_IsFromCache = false;  ///< the data, not just the nodes
    bool m_IsInjected = false;   ///< into another one
    gcstring m_CacheFolder;
};

}  // namespace GenApi_3_0_ORVANE
