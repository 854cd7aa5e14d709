// The client's handle to a description. Every handle passes on to the one object that the copies
// share; only the order of the steps to a node map is here.

#include "GenApi/NodeMapFactory.h"

#include <sstream>

#include "Base/GCException.h"
#include "cache/CacheFile.h"
#include "factory/NodeMapFactoryImpl.h"
#include "factory/NodeMapFactoryNodes.h"

namespace GenApi_3_0_ORVANE {

namespace {

/// Both styles are those for whole maps.
gcstring Print(const CNodeDataMap& map, int style) {
    std::ostringstream text;
    CNodeDataMap::Print(text, map, static_cast<EToStringStyle_t>(style));
    return text.str().c_str();
}

}  // namespace

CNodeMapFactory::CNodeMapFactory() : m_pImpl(std::make_shared<CNodeMapFactoryImpl>()) {}

CNodeMapFactory::CNodeMapFactory(std::shared_ptr<CNodeMapFactoryImpl> pImpl)
    : m_pImpl(std::move(pImpl)) {}

CNodeMapFactory::CNodeMapFactory(EContentType_t contentType, const gcstring& fileName,
                                 ECacheUsage_t cacheUsage, bool suppressStrings) {
    if (fileName.empty()) {
        INVALID_ARGUMENT_EXCEPTION(
            "The camera description file name passed to the node map factory must not be empty.");
    }
    m_pImpl = std::make_shared<CNodeMapFactoryImpl>(
        CNodeMapFactoryImpl::Source{.contentType = contentType, .fileName = fileName}, cacheUsage,
        suppressStrings);
}

CNodeMapFactory::CNodeMapFactory(EContentType_t contentType, const void* data, size_t size,
                                 ECacheUsage_t cacheUsage, bool suppressStrings)
    : m_pImpl(std::make_shared<CNodeMapFactoryImpl>(
          CNodeMapFactoryImpl::Source{.contentType = contentType, .pData = data, .size = size},
          cacheUsage, suppressStrings)) {}

CNodeMapFactory::CNodeMapFactory(const gcstring& text, ECacheUsage_t cacheUsage,
                                 bool suppressStrings) {
    if (text.empty()) {
        INVALID_ARGUMENT_EXCEPTION(
            "The camera description file data passed as string to the node map factory must not "
            "be empty.");
    }
    m_pImpl = std::make_shared<CNodeMapFactoryImpl>(CNodeMapFactoryImpl::Source{.text = text},
                                                    cacheUsage, suppressStrings);
}

CNodeMapFactory::CNodeMapFactory(const CNodeMapFactory& other) = default;
CNodeMapFactory& CNodeMapFactory::operator=(const CNodeMapFactory& other) = default;
CNodeMapFactory::~CNodeMapFactory() = default;

void CNodeMapFactory::AddInjectionData(const CNodeMapFactory& other) {
    m_pImpl->AddInjectionData(other.m_pImpl);
}

void CNodeMapFactory::LoadAndInject() {
    m_pImpl->LoadAndInject();
}

void CNodeMapFactory::Preprocess() {
    m_pImpl->Preprocess();
}

INodeMap* CNodeMapFactory::CreateNodeMap(const gcstring& deviceName, bool releaseDescription) {
    return CreateNodeMapWith(nullptr, deviceName, releaseDescription);
}

INodeMap* CNodeMapFactory::CreateNodeMap(CLock& lock, const gcstring& deviceName,
                                         bool releaseDescription) {
    return CreateNodeMapWith(&lock, deviceName, releaseDescription);
}

/// If the cache has the description, the live nodes are made straight from the file: data in
/// between would only be thrown away.
INodeMap* CNodeMapFactory::CreateNodeMapWith(CLock* lock, const gcstring& deviceName,
                                             bool releaseDescription) {
    CNodeMapFactoryImpl::LiveNodes nodes{.deviceName = deviceName, .lock = lock};
    m_pImpl->Preprocess(&nodes);
    if (nodes.map == nullptr) {
        // The next camera of the model shares the description as long as this one is there.
        nodes.map = BuildNodeMap(m_pImpl->GetSharedMap(), deviceName, lock);
    }
    if (releaseDescription) {
        ReleaseCameraDescriptionFileData();
    }
    return nodes.map.release();
}

/// Devices without a description have a map as well, so that no client has to ask whether there
/// is one.
INodeMap* CNodeMapFactory::CreateEmptyNodeMap() {
    auto map = std::make_unique<CNodeMap>("Device", nullptr);
    map->FinalConstruct();
    return map.release();
}

CNodeMapFactory CNodeMapFactory::ExtractSubtree(const gcstring& nodeName, bool renameToRoot) {
    return CNodeMapFactory(m_pImpl->ExtractIndependentSubtree(nodeName, renameToRoot));
}

CNodeMapFactory CNodeMapFactory::ApplyStyleSheet(const gcstring& styleSheetFileName) {
    return CNodeMapFactory(m_pImpl->ApplyStyleSheet(styleSheetFileName));
}

CNodeMapFactory CNodeMapFactory::CreateNodeDataFromNodeMap(INodeMap* nodeMap) {
    return CNodeMapFactory(CNodeMapFactoryImpl::FromNodeMap(nodeMap));
}

void CNodeMapFactory::GetNodeStatistics(NodeStatistics_t& statistics) {
    m_pImpl->Preprocess();
    m_pImpl->GetMap().GetNodeStatistics(statistics);
}

void CNodeMapFactory::GetSupportedSchemaVersions(gcstring_vector& list) {
    CNodeMap::ListSupportedSchemaVersions(list);
}

void CNodeMapFactory::ReleaseCameraDescriptionFileData() {
    m_pImpl->ReleaseSource();
}

bool CNodeMapFactory::IsEmpty() const {
    return m_pImpl->IsEmpty();
}

bool CNodeMapFactory::IsLoaded() const {
    return m_pImpl->IsLoaded();
}

bool CNodeMapFactory::IsPreprocessed() const {
    return m_pImpl->IsPreprocessed();
}

bool CNodeMapFactory::IsCameraDescriptionFileDataReleased() const {
    return m_pImpl->IsReleased();
}

bool CNodeMapFactory::ClearCache() {
    return ClearCacheFolder();
}

gcstring CNodeMapFactory::ToString() const {
    OV_ASSERT(IsPreprocessed() &&
              "NodeMapFactory must be preprocessed before calling this function");
    return Print(m_pImpl->GetMap(), 0);
}

gcstring CNodeMapFactory::ToXml() {
    Preprocess();
    return Print(m_pImpl->GetMap(), 1);
}

}  // namespace GenApi_3_0_ORVANE
