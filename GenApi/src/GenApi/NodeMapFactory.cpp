#include "GenApi/NodeMapFactory.h"

#include <sstream>
#include <string>
#include <vector>

#include "Base/GCException.h"
#include "GenApi/impl/NodeMap.h"
#include "NodeCreation.h"

namespace GenApi_3_0_ORVANE {

namespace {

using NodeMapPointer = std::unique_ptr<CNodeMap>;

gcstring DeviceNameOr(const gcstring& deviceName) {
    return deviceName.empty() ? gcstring("Device") : deviceName;
}

/// All nodes, registered and without properties: links may point forward.
void RegisterNodes(CNodeMap& map, const CNodeDataMap& data) {
    for (size_t i = 1; i < data.GetNumNodeIDs(); ++i) {
        const CNodeData& node = *data.GetNodeData(NodeID_t(i));
        map.RegisterNode(CreateNode(node.GetNodeType()).release(), node.GetNodeType(),
                         node.GetNodeID());
    }
}

void SetProperties(CNodeMap& map, const CNodeDataMap& data) {
    for (size_t i = 1; i < data.GetNumNodeIDs(); ++i) {
        INodePrivate& node = *map.GetNodeByID(NodeID_t(i));
        for (const CProperty& property : data.GetNodeData(NodeID_t(i))->GetProperties()) {
            node.SetProperty(property);
        }
    }
}

NodeMapPointer BuildNodeMap(const CNodeDataMap& data, const gcstring& deviceName, CLock* lock) {
    auto map = std::make_unique<CNodeMap>(DeviceNameOr(deviceName), lock);
    map->SetNumNodes(data.GetNumNodeIDs());
    const CNodeData* const itNodeData = data.GetNodeData(NodeID_t(0));
    OV_ASSERT(itNodeData->GetName() == "_RegisterDescription");
    for (const CProperty& property : itNodeData->GetProperties()) {
        map->SetProperty(property);
    }
    RegisterNodes(*map, data);
    SetProperties(*map, data);
    for (size_t i = 1; i < data.GetNumNodeIDs(); ++i) {
        map->GetNodeByID(NodeID_t(i))->FinalConstruct();
    }
    map->FinalConstruct();
    return map;
}

}  // namespace

/// One description, from its raw form to its preprocessed data.
class CNodeMapFactory::CNodeMapFactoryImpl {
public:
    EContentType_t contentType = ContentType_Xml;
    gcstring fileName;
    gcstring text;
    const void* pData = nullptr;
    size_t size = 0;
    ECacheUsage_t cacheUsage = CacheUsage_Ignore;
    bool suppressStrings = false;
    CNodeDataMap map;
    std::vector<std::shared_ptr<CNodeMapFactoryImpl>> injected;
    bool m_isLoaded = false;
    bool m_isPreprocessed = false;
    bool isReleased = false;

    bool HasSource() const { return !fileName.empty() || !text.empty() || pData != nullptr; }

    void LoadAndInject() {
        if (m_isLoaded || m_isPreprocessed) {
            return;
        }
        if (isReleased) {
            LOGICAL_ERROR_EXCEPTION(
                "Cannot load and inject, the camera description file data has "
                "already been released.");
        }
        if (!HasSource()) {
            LOGICAL_ERROR_EXCEPTION(
                "Cannot load and inject, no camera description file data has "
                "been provided to the node map factory.");
        }
        Parse();
        for (const auto& other : injected) {
            other->LoadAndInject();
            other->map.CheckConsistency();
            map.Inject(other->map);
        }
        m_isLoaded = true;
    }

    void Preprocess() {
        if (m_isPreprocessed) {
            return;
        }
        if (isReleased) {
            LOGICAL_ERROR_EXCEPTION(
                "Cannot preprocess, the camera description file data has "
                "already been released.");
        }
        if (!HasSource()) {
            LOGICAL_ERROR_EXCEPTION(
                "Cannot preprocess, no camera description file data has been "
                "provided to the node map factory.");
        }
        RefuseForcedCache();
        LoadAndInject();
        CNodeDataMapFactory::PreProcessNodeDataMap(&map);
        m_isPreprocessed = true;
    }

    void Release() {
        fileName = "";
        text = "";
        pData = nullptr;
        size = 0;
        map.Clear();
        isReleased = true;
        for (const auto& other : injected) {
            other->Release();
        }
    }

private:
    void Parse() {
        if (!fileName.empty()) {
            CNodeDataMapFactory::ParseXmlFile(&map, contentType, fileName.c_str(), suppressStrings);
        } else if (!text.empty()) {
            CNodeDataMapFactory::ParseXmlString(&map, text.c_str(), suppressStrings);
        } else {
            CNodeDataMapFactory::ParseXmlBuffer(&map, contentType, pData, size, suppressStrings);
        }
    }

    /// Without a cache a caller that insists on one is told so.
    void RefuseForcedCache() const {
        if (cacheUsage == CacheUsage_ForceRead) {
            RUNTIME_EXCEPTION("Forced read from cache failed.");
        }
        if (cacheUsage == CacheUsage_ForceWrite) {
            RUNTIME_EXCEPTION("Forced write to cache failed.");
        }
    }
};

CNodeMapFactory::CNodeMapFactory() : m_pImpl(std::make_shared<CNodeMapFactoryImpl>()) {}

CNodeMapFactory::CNodeMapFactory(EContentType_t contentType, const gcstring& fileName,
                                 ECacheUsage_t cacheUsage, bool suppressStrings)
    : CNodeMapFactory() {
    if (fileName.empty()) {
        INVALID_ARGUMENT_EXCEPTION(
            "The camera description file name passed to the node map factory must not be empty.");
    }
    m_pImpl->contentType = contentType;
    m_pImpl->fileName = fileName;
    m_pImpl->cacheUsage = cacheUsage;
    m_pImpl->suppressStrings = suppressStrings;
}

CNodeMapFactory::CNodeMapFactory(EContentType_t contentType, const void* data, size_t size,
                                 ECacheUsage_t cacheUsage, bool suppressStrings)
    : CNodeMapFactory() {
    m_pImpl->contentType = contentType;
    m_pImpl->pData = data;
    m_pImpl->size = size;
    m_pImpl->cacheUsage = cacheUsage;
    m_pImpl->suppressStrings = suppressStrings;
}

CNodeMapFactory::CNodeMapFactory(const gcstring& text, ECacheUsage_t cacheUsage,
                                 bool suppressStrings)
    : CNodeMapFactory() {
    if (text.empty()) {
        INVALID_ARGUMENT_EXCEPTION(
            "The camera description file data passed as string to the node "
            "map factory must not be empty.");
    }
    m_pImpl->text = text;
    m_pImpl->cacheUsage = cacheUsage;
    m_pImpl->suppressStrings = suppressStrings;
}

CNodeMapFactory::CNodeMapFactory(const CNodeMapFactory& other) = default;
CNodeMapFactory& CNodeMapFactory::operator=(const CNodeMapFactory& other) = default;
CNodeMapFactory::~CNodeMapFactory() = default;

void CNodeMapFactory::AddInjectionData(const CNodeMapFactory& other) {
    if (other.IsPreprocessed()) {
        RUNTIME_EXCEPTION("Injected camera description file data must not be preprocessed.");
    }
    m_pImpl->injected.push_back(other.m_pImpl);
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

INodeMap* CNodeMapFactory::CreateNodeMapWith(CLock* lock, const gcstring& deviceName,
                                             bool releaseDescription) {
    m_pImpl->Preprocess();
    NodeMapPointer map = BuildNodeMap(m_pImpl->map, deviceName, lock);
    if (releaseDescription) {
        ReleaseCameraDescriptionFileData();
    }
    return map.release();
}

void CNodeMapFactory::GetNodeStatistics(NodeStatistics_t& statistics) {
    m_pImpl->Preprocess();
    m_pImpl->map.GetNodeStatistics(statistics);
}

void CNodeMapFactory::GetSupportedSchemaVersions(gcstring_vector& list) {
    list.clear();
    list.push_back("1.0");
    list.push_back("1.1");
}

void CNodeMapFactory::ReleaseCameraDescriptionFileData() {
    m_pImpl->Release();
}

bool CNodeMapFactory::IsEmpty() const {
    return !m_pImpl->HasSource() && !m_pImpl->m_isLoaded && !m_pImpl->m_isPreprocessed;
}

bool CNodeMapFactory::IsLoaded() const {
    return m_pImpl->m_isLoaded;
}

bool CNodeMapFactory::IsPreprocessed() const {
    return m_pImpl->m_isPreprocessed;
}

bool CNodeMapFactory::IsCameraDescriptionFileDataReleased() const {
    return m_pImpl->isReleased;
}

gcstring CNodeMapFactory::ToString() const {
    OV_ASSERT(IsPreprocessed() &&
              "NodeMapFactory must be preprocessed before calling this function");
    std::ostringstream text;
    CNodeDataMap::Print(text, m_pImpl->map, static_cast<EToStringStyle_t>(0));
    return text.str().c_str();
}

gcstring CNodeMapFactory::ToXml() {
    Preprocess();
    std::ostringstream text;
    CNodeDataMap::Print(text, m_pImpl->map, static_cast<EToStringStyle_t>(1));
    return text.str().c_str();
}

}  // namespace GenApi_3_0_ORVANE
