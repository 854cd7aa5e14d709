#include "GenApi/NodeMapRef.h"

#include "Base/GCException.h"
#include "GenApi/NodeMapFactory.h"
#include "GenApi/impl/NodeMap.h"

namespace GenApi_3_0_ORVANE {

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

template <class LoaderParams>
void CNodeMapRefT<LoaderParams>::Release() {
    INodeMap* const nodeMap = std::exchange(m_pNodeMap, nullptr);
    std::atomic<long>* const pRefCount = std::exchange(m_pRefCount, nullptr);
    if (nodeMap == nullptr) {
        std::atomic<long>* const _pRefCount = pRefCount;
        OV_ASSERT(_pRefCount == NULL);
        return;
    }
    m_DeviceName = "Device";
    OV_ASSERT(*pRefCount > 0);
    if (--*pRefCount == 0) {
        delete pRefCount;
        dynamic_cast<IDestroy&>(*nodeMap).Destroy();
    }
}

template <class LoaderParams>
void CNodeMapRefT<LoaderParams>::Attach(INodeMap* nodeMap) {
    m_pRefCount = new std::atomic<long>(1);
    m_pNodeMap = nodeMap;
}

template <class LoaderParams>
void CNodeMapRefT<LoaderParams>::_LoadXMLFromString(const gcstring& xmlData) {
    if (m_pNodeMap != nullptr) {
        RUNTIME_EXCEPTION("Node map already created");
    }
    CNodeMapFactory factory(xmlData);
    Attach(factory.CreateNodeMap(m_DeviceName, true));
}

template <class LoaderParams>
void CNodeMapRefT<LoaderParams>::_LoadXMLFromFile(const gcstring& fileName) {
    if (m_pNodeMap != nullptr) {
        RUNTIME_EXCEPTION("Node map already created");
    }
    CNodeMapFactory factory(ContentType_Xml, fileName);
    Attach(factory.CreateNodeMap(m_DeviceName, true));
}

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
