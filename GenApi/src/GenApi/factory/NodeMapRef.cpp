// The counted handle to a node map. The count is a block of its own, which all handles to one map
// point to.

#include "GenApi/NodeMapRef.h"

#include <memory>

#include "Base/GCException.h"
#include "Base/Log.h"
#include "GenApi/NodeMapFactory.h"
#include "cache/CacheFile.h"
#include "map/NodeMap.h"

namespace GenApi_3_0_ORVANE {

using GenICam_3_0_ORVANE::CLog;
using GenICam_3_0_ORVANE::GenericException;

namespace {

void LogUnusedCache(const GenericException& failure) {
    if (CLog::Exist("GenApi")) {
        GCLOGWARN(CLog::GetLogger("GenApi.Cache"), "Loading without the cache : %s",
                  failure.GetDescription());
    }
}

/// Whoever names a folder for the cache wants it used. A cache that can't be used costs time and
/// nothing else, as the description is at hand: so where loading fails with the cache, whatever
/// the reason, the description alone decides.
template <class Load>
void LoadThroughCache(const Load& load) {
    if (!FindCacheFolder().empty()) {
        try {
            load(CacheUsage_Automatic);
            return;
        } catch (const GenericException& failure) {
            LogUnusedCache(failure);
        }
    }
    load(CacheUsage_Ignore);
}

}  // namespace

template <class LoaderParams>
CNodeMapRefT<LoaderParams>::CNodeMapRefT(const gcstring& deviceName) : m_DeviceName(deviceName) {}

template <class LoaderParams>
CNodeMapRefT<LoaderParams>::CNodeMapRefT(const CNodeMapRefT& other)
    : m_pNodeMap(other.m_pNodeMap),
      m_DeviceName(other.m_DeviceName),
      m_pRefCount(other.m_pRefCount) {
    if (m_pRefCount != nullptr) {
        ++*m_pRefCount;
    }
}

/// By way of a copy, so that assigning a handle's own map to it releases nothing too early.
template <class LoaderParams>
CNodeMapRefT<LoaderParams>& CNodeMapRefT<LoaderParams>::operator=(const CNodeMapRefT& other) {
    if (this != &other) {
        CNodeMapRefT copy(other);
        std::swap(m_pNodeMap, copy.m_pNodeMap);
        std::swap(m_pRefCount, copy.m_pRefCount);
        m_DeviceName.swap(copy.m_DeviceName);
    }
    return *this;
}

template <class LoaderParams>
CNodeMapRefT<LoaderParams>::~CNodeMapRefT() {
    Release();
}

/// The handle is empty before the map is destroyed: what the map's end calls may look at the
/// handle.
template <class LoaderParams>
void CNodeMapRefT<LoaderParams>::Release() {
    INodeMap* const nodeMap = std::exchange(m_pNodeMap, nullptr);
    std::atomic<long>* const _pRefCount = std::exchange(m_pRefCount, nullptr);
    if (nodeMap == nullptr) {
        OV_ASSERT(_pRefCount == NULL);  // NOLINT(modernize-use-nullptr): a failure prints it
        return;
    }
    m_DeviceName = "Device";
    const std::atomic<long>* const pRefCount = _pRefCount;
    OV_ASSERT(*pRefCount > 0);
    if (--*_pRefCount == 0) {
        delete _pRefCount;
        dynamic_cast<IDestroy&>(*nodeMap).Destroy();
    }
}

template <class LoaderParams>
void CNodeMapRefT<LoaderParams>::RefuseSecondMap() const {
    if (m_pNodeMap != nullptr) {
        RUNTIME_EXCEPTION("Node map already created");
    }
}

/// The count is made first: if there is no memory for it, there is no map to lose.
template <class LoaderParams>
void CNodeMapRefT<LoaderParams>::Attach(CNodeMapFactory factory) {
    auto refCount = std::make_unique<std::atomic<long>>(1);
    m_pNodeMap = factory.CreateNodeMap(m_DeviceName, true);
    m_pRefCount = refCount.release();
}

template <class LoaderParams>
void CNodeMapRefT<LoaderParams>::_LoadXMLFromString(const gcstring& xmlData) {
    RefuseSecondMap();
    LoadThroughCache([&](ECacheUsage_t usage) {
        Attach(CNodeMapFactory(ContentType_Xml, xmlData.c_str(), xmlData.size(), usage));
    });
}

template <class LoaderParams>
void CNodeMapRefT<LoaderParams>::_LoadXMLFromFile(const gcstring& fileName) {
    RefuseSecondMap();
    LoadThroughCache(
        [&](ECacheUsage_t usage) { Attach(CNodeMapFactory(ContentType_Xml, fileName, usage)); });
}

/// The text is that of a feature that is used without its map.
template <class LoaderParams>
INodeMap& CNodeMapRefT<LoaderParams>::MapOrThrow() const {
    if (m_pNodeMap == nullptr) {
        ACCESS_EXCEPTION("Feature not present (reference not valid)");
    }
    return *m_pNodeMap;
}

template <class LoaderParams>
gcstring CNodeMapRefT<LoaderParams>::_GetDeviceName() const {
    return MapOrThrow().GetDeviceName();
}

template <class LoaderParams>
void CNodeMapRefT<LoaderParams>::_Poll(int64_t elapsedTime) {
    MapOrThrow().Poll(elapsedTime);
}

template <class LoaderParams>
void CNodeMapRefT<LoaderParams>::_GetNodes(node_vector& nodes) const {
    MapOrThrow().GetNodes(nodes);
}

template <class LoaderParams>
INode* CNodeMapRefT<LoaderParams>::_GetNode(const gcstring& name) const {
    return MapOrThrow().GetNode(name);
}

template <class LoaderParams>
void CNodeMapRefT<LoaderParams>::_InvalidateNodes() const {
    MapOrThrow().InvalidateNodes();
}

template <class LoaderParams>
bool CNodeMapRefT<LoaderParams>::_Connect(IPort* port, const gcstring& name) const {
    return MapOrThrow().Connect(port, name);
}

template <class LoaderParams>
bool CNodeMapRefT<LoaderParams>::_Connect(IPort* port) const {
    return MapOrThrow().Connect(port);
}

template <class LoaderParams>
bool CNodeMapRefT<LoaderParams>::_ParseSwissKnifes(gcstring_vector* errorList) const {
    return MapOrThrow().ParseSwissKnifes(errorList);
}

template <class LoaderParams>
void CNodeMapRefT<LoaderParams>::_GetSupportedSchemaVersions(gcstring_vector& list) const {
    dynamic_cast<CNodeMap&>(MapOrThrow()).GetSupportedSchemaVersions(list);
}

template class CNodeMapRefT<CGeneric_XMLLoaderParams>;

}  // namespace GenApi_3_0_ORVANE
