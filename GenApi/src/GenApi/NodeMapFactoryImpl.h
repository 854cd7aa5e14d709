#pragma once
/// What stands behind the handles of one description.

#include <memory>
#include <string>
#include <vector>

#include "Base/GCString.h"
#include "GenApi/NodeMapFactory.h"
#include "NodeMapData/NodeDataMap.h"
#include "NodeMapData/NodeDataMapFactory.h"

namespace GenApi_3_0_ORVANE {

/// One description, from its raw form to its preprocessed data. A step that
/// fails leaves nothing behind: the next attempt fails in the same way. Hidden,
/// where a nested class would be exported with the one around it.
class __attribute__((visibility("hidden"))) CNodeMapFactory::CNodeMapFactoryImpl {
public:
    using Pointer = std::shared_ptr<CNodeMapFactoryImpl>;

    /// Where the description comes from; at most one of the three is there.
    struct Source {
        EContentType_t contentType = ContentType_Xml;
        gcstring fileName = {};
        gcstring text = {};
        const void* pData = nullptr;  ///< the caller's
        size_t size = 0;

        bool IsGiven() const { return !fileName.empty() || !text.empty() || pData != nullptr; }
        /// The whole XML text. RuntimeException when it cannot be had.
        std::string Read() const;
    };

    CNodeMapFactoryImpl() = default;
    CNodeMapFactoryImpl(Source source, ECacheUsage_t cacheUsage, bool suppressStrings)
        : m_Source(std::move(source)),
          m_CacheUsage(cacheUsage),
          m_SuppressStrings(suppressStrings) {}
    /// The nodes of a live map, preprocessed.
    static Pointer FromNodeMap(INodeMap* nodeMap);

    void AddInjectionData(Pointer other);
    void LoadAndInject();
    void Preprocess();
    void ReleaseSource();
    Pointer ExtractIndependentSubtree(const gcstring& nodeName, bool renameToRoot);
    Pointer ApplyStyleSheet(const gcstring& fileName) const;

    /// Filled as far as the steps above have come.
    const CNodeDataMap& GetMap() const { return m_Map; }
    bool IsEmpty() const { return !m_Source.IsGiven() && !m_isLoaded && !m_isPreprocessed; }
    bool IsLoaded() const { return m_isLoaded; }
    bool IsPreprocessed() const { return m_isPreprocessed; }
    bool IsReleased() const { return m_IsReleased; }

private:
    void RequireSource(const char* operation) const;
    void RefuseForcedCache() const;
    void Parse();
    void Inject();
    template <class Step>
    void ClearOnFailure(const Step& step);

    Source m_Source;
    ECacheUsage_t m_CacheUsage = CacheUsage_Ignore;
    bool m_SuppressStrings = false;
    CNodeDataMap m_Map;
    std::vector<Pointer> m_Injected;
    bool m_isLoaded = false;
    bool m_isPreprocessed = false;
    bool m_IsReleased = false;
};

}  // namespace GenApi_3_0_ORVANE
