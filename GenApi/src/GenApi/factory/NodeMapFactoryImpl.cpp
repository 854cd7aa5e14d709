// One description on its way from its source to preprocessed data. Each step leaves either its
// whole result or nothing: after a failure the next attempt begins at the start, and fails in the
// same way.

#include "factory/NodeMapFactoryImpl.h"

#include <algorithm>

#include "Base/Environment.h"
#include "Base/GCException.h"
#include "cache/CacheFile.h"
#include "factory/NodeMapFactoryNodes.h"
#include "factory/NodeMapFactoryStyleSheet.h"
#include "factory/SharedDescriptions.h"
#include "zip/ZipReader.h"

namespace GenApi_3_0_ORVANE {

/// Only names of zipped files have ever been allowed to hold variables.
gcstring CNodeMapFactory::CNodeMapFactoryImpl::Source::GetFileName() const {
    gcstring name = fileName;
    // The parser does the same with this name, and nothing with that of a plain file: the
    // hash has to be of the file that is parsed.
    if (contentType == ContentType_ZippedXml) {
        GenICam_3_0_ORVANE::ReplaceEnvironmentVariables(name);
    }
    return name;
}

/// At most one of the three sources is there.
std::string_view CNodeMapFactory::CNodeMapFactoryImpl::Source::GetDocument(
    std::string& storage) const {
    if (!fileName.empty()) {
        storage = CNodeDataMapFactory::ReadXmlFile(contentType, fileName.c_str());
        return storage;
    }
    if (!text.empty()) {
        return text.c_str();
    }
    return CNodeDataMapFactory::ReadXmlBuffer(contentType, pData, size, storage);
}

/// For style sheets, which need the whole text.
std::string CNodeMapFactory::CNodeMapFactoryImpl::Source::Read() const {
    if (!text.empty()) {
        return text.c_str();
    }
    std::string description;
    const bool isFile = !fileName.empty();
    if (contentType == ContentType_ZippedXml) {
        const auto result = isFile ? CZipReader::ReadFile(GetFileName().c_str(), description)
                                   : CZipReader::ReadMemory(pData, size, description);
        if (result != CZipReader::Result::Done) {
            RUNTIME_EXCEPTION("Could not read from '%s'", fileName.c_str());
        }
        return description;
    }
    return isFile ? ReadTextFile(fileName.c_str())
                  : std::string(static_cast<const char*>(pData), size);
}

CNodeMapFactory::CNodeMapFactoryImpl::CNodeMapFactoryImpl() : m_CacheFolder(FindCacheFolder()) {}

CNodeMapFactory::CNodeMapFactoryImpl::CNodeMapFactoryImpl(Source source, ECacheUsage_t cacheUsage,
                                                          bool suppressStrings)
    : m_Source(std::move(source)),
      m_CacheUsage(cacheUsage),
      m_SuppressStrings(suppressStrings),
      m_CacheFolder(FindCacheFolder()) {}

/// The nodes of a map have everything that preprocessing would add.
auto CNodeMapFactory::CNodeMapFactoryImpl::FromNodeMap(INodeMap* nodeMap) -> Pointer {
    auto factory = std::make_shared<CNodeMapFactoryImpl>();
    DescribeNodeMap(nodeMap, *factory->m_pMap);
    factory->m_isPreprocessed = true;
    return factory;
}

/// A circle of injections would never end, so it is refused when it would be closed.
void CNodeMapFactory::CNodeMapFactoryImpl::AddInjectionData(Pointer other) {
    if (other->m_isPreprocessed) {
        RUNTIME_EXCEPTION("Injected camera description file data must not be preprocessed.");
    }
    if (other->Holds(*this)) {
        INVALID_ARGUMENT_EXCEPTION("A camera description can't be injected into itself.");
    }
    // From now on its own description is needed, which a cache file can't tell apart from
    // what preprocessing has added.
    other->m_IsInjected = true;
    m_Injected.push_back(std::move(other));
}

/// Injected descriptions may have others injected into them.
bool CNodeMapFactory::CNodeMapFactoryImpl::Holds(const CNodeMapFactoryImpl& other) const {
    return this == &other ||
           std::any_of(m_Injected.begin(), m_Injected.end(),
                       [&](const Pointer& injected) { return injected->Holds(other); });
}

/// A client that has released its description gets another text than one that never had any.
void CNodeMapFactory::CNodeMapFactoryImpl::RequireSource(const char* operation) const {
    if (m_IsReleased) {
        LOGICAL_ERROR_EXCEPTION(
            "Cannot %s, the camera description file data has already been released.", operation);
    }
    if (!m_Source.IsGiven()) {
        LOGICAL_ERROR_EXCEPTION(
            "Cannot %s, no camera description file data has been provided to the node map "
            "factory.",
            operation);
    }
}

/// Runs a step. One that fails undoes the steps before it, whose result alone is of no use.
template <class Step>
void CNodeMapFactory::CNodeMapFactoryImpl::ClearOnFailure(const Step& step) {
    try {
        step();
    } catch (...) {
        m_pMap->Clear();
        m_isLoaded = false;
        throw;
    }
}

void CNodeMapFactory::CNodeMapFactoryImpl::LoadAndInject() {
    if (m_isLoaded || m_isPreprocessed) {
        return;
    }
    RequireSource("load and inject");
    std::string storage;
    Load(m_Source.GetDocument(storage));
}

void CNodeMapFactory::CNodeMapFactoryImpl::Load(std::string_view document) {
    ClearOnFailure([&] {
        CNodeDataMapFactory::ParseXml(m_pMap.get(), document, m_SuppressStrings);
        Inject();
    });
    m_isLoaded = true;
}

/// In the order in which clients added them: where two define one node, the later one decides
/// which of them stays. What comes preprocessed from the cache can't be merged.
void CNodeMapFactory::CNodeMapFactoryImpl::Inject() {
    for (const Pointer& other : m_Injected) {
        other->LoadAndInject();
        if (other->m_IsFromCache) {
            RUNTIME_EXCEPTION("Injected camera description file data must not be preprocessed.");
        }
        // Only what is complete in itself is merged: a dangling link would otherwise be
        // blamed on the camera's description.
        other->GetMap().CheckConsistency();
        m_pMap->Inject(other->GetMap());
    }
}

/// The hash needs the raw source, so a description that was loaded before has none, and isn't
/// cached.
void CNodeMapFactory::CNodeMapFactoryImpl::Preprocess(LiveNodes* pLiveNodes) {
    if (m_isPreprocessed) {
        return;
    }
    RequireSource("preprocess");
    // Before anything is read: a caller that insists on the cache shouldn't wait for a
    // description first.
    RefuseForcedCache();
    if (!UsesCache()) {
        PreprocessOrShare();
        return;
    }
    uint32_t hash = 0;
    if (!m_isLoaded) {
        hash = ComputeHash();
        // What comes from the cache can't be merged: nothing in it shows what the
        // description itself gave.
        const bool isToBeMerged =
            m_IsInjected && pLiveNodes == nullptr && m_CacheUsage != CacheUsage_ForceRead;
        if (!isToBeMerged && CacheRead(hash, pLiveNodes)) {
            return;
        }
    }
    // Nothing is written to the cache that isn't consistent: whoever reads it doesn't check
    // again.
    LoadAndInject();
    // Preprocessing checks the same with another text. Callers that use a cache get this
    // one.
    ClearOnFailure([this] { m_pMap->CheckConsistency(); });
    PreprocessDescription();
    CacheWrite(hash);
}

/// Cameras of one model have equal descriptions. What one of them took long to load serves all
/// that are opened while it is. A description that others are injected into isn't its text alone.
void CNodeMapFactory::CNodeMapFactoryImpl::PreprocessOrShare() {
    if (m_isLoaded || !m_Injected.empty()) {
        LoadAndInject();
        PreprocessDescription();
        return;
    }
    std::string storage;
    const std::string_view document = m_Source.GetDocument(storage);
    CSharedDescriptions& shared = CSharedDescriptions::Get();
    m_pShared = shared.Find(document, m_SuppressStrings);
    if (m_pShared == nullptr) {
        Load(document);
        PreprocessDescription();
        m_pShared = shared.Enter(document, m_SuppressStrings, m_pMap);
        m_pMap = std::make_shared<CNodeDataMap>();
    }
    m_isLoaded = true;
    m_isPreprocessed = true;
}

void CNodeMapFactory::CNodeMapFactoryImpl::PreprocessDescription() {
    ClearOnFailure([this] { CNodeDataMapFactory::PreProcessNodeDataMap(m_pMap.get()); });
    m_isPreprocessed = true;
}

/// A caller that insists on the cache learns that there is none.
void CNodeMapFactory::CNodeMapFactoryImpl::RefuseForcedCache() const {
    if (!m_CacheFolder.empty()) {
        return;
    }
    if (m_CacheUsage == CacheUsage_ForceRead) {
        RUNTIME_EXCEPTION("Forced read from cache failed.");
    }
    if (m_CacheUsage == CacheUsage_ForceWrite) {
        RUNTIME_EXCEPTION("Forced write to cache failed.");
    }
}

/// Injected descriptions have no other use than this one.
void CNodeMapFactory::CNodeMapFactoryImpl::ReleaseSource() {
    m_Source = Source();
    m_pShared.reset();
    // Not cleared: nodes may still refer to it.
    m_pMap = std::make_shared<CNodeDataMap>();
    m_isLoaded = false;
    m_isPreprocessed = false;
    m_IsReleased = true;
    for (const Pointer& other : m_Injected) {
        other->ReleaseSource();
    }
}

/// Subtrees have cache files of their own: the name of the node is part of the hash.
auto CNodeMapFactory::CNodeMapFactoryImpl::ExtractIndependentSubtree(const gcstring& nodeName,
                                                                     bool renameToRoot) -> Pointer {
    if (!m_isPreprocessed && !m_IsReleased) {
        RequireSource("extract subtree");
    }
    RefuseForcedCache();
    auto subtree = std::make_shared<CNodeMapFactoryImpl>();
    subtree->m_CacheUsage = CacheUsage_Automatic;
    // A part has no description of its own, so what needs one is refused.
    subtree->m_IsReleased = true;
    uint32_t hash = 0;
    // A part that the cache has spares even the loading of the whole.
    if (UsesCache() && !m_IsReleased) {
        hash = ComputeHash(nodeName.c_str() + std::string(renameToRoot ? " renamed to Root" : ""));
        if (subtree->CacheRead(hash, nullptr)) {
            return subtree;
        }
    }
    Preprocess();
    GetMap().ExtractIndependentSubtree(*subtree->m_pMap, nodeName.c_str(), renameToRoot);
    subtree->m_isPreprocessed = true;
    subtree->CacheWrite(hash);
    return subtree;
}

/// Makes a new description, which knows nothing of the one it came from.
auto CNodeMapFactory::CNodeMapFactoryImpl::ApplyStyleSheet(const gcstring& fileName) const
    -> Pointer {
    if (!m_Source.IsGiven()) {
        LOGICAL_ERROR_EXCEPTION(
            "Cannot apply stylesheet, no camera description file data has been provided to the "
            "node map factory.");
    }
    CheckStyleSheet(fileName);
    Source transformed;
    transformed.text = Transform(m_Source.Read(), fileName.c_str()).c_str();
    return std::make_shared<CNodeMapFactoryImpl>(std::move(transformed), m_CacheUsage,
                                                 m_SuppressStrings);
}

}  // namespace GenApi_3_0_ORVANE
