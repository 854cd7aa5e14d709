#pragma once
/// A client's handle to a node map.

#include <atomic>

#include "GenApi/INodeMap.h"

namespace GenApi_3_0_ORVANE {

class CNodeMapFactory;

/// Marks the handle that loads generic descriptions.
class OV_ENGINE_API CGeneric_XMLLoaderParams {};

/// Copies share the map; it goes with the last of them. Operations on a handle
/// without a map raise AccessException.
template <class LoaderParams>
class OV_ENGINE_API CNodeMapRefT {
public:
    explicit CNodeMapRefT(const gcstring& deviceName = "Device");
    CNodeMapRefT(const CNodeMapRefT& other);
    CNodeMapRefT& operator=(const CNodeMapRefT& other);
    virtual ~CNodeMapRefT();

    /// Makes the nodes of a description given as text. RuntimeException when
    /// the handle has a map already.
    void _LoadXMLFromString(const gcstring& xmlData);
    /// The same from a file.
    void _LoadXMLFromFile(const gcstring& fileName);

    gcstring _GetDeviceName() const;
    void _Poll(int64_t elapsedTime);
    void _GetNodes(node_vector& nodes) const;
    /// Null when there is no node of that name.
    INode* _GetNode(const gcstring& name) const;
    void _InvalidateNodes() const;
    bool _Connect(IPort* port, const gcstring& name) const;
    bool _Connect(IPort* port) const;
    bool _ParseSwissKnifes(gcstring_vector* errorList = nullptr) const;
    void _GetSupportedSchemaVersions(gcstring_vector& list) const;

    /// The map; null without one. Owned by the handles.
    INodeMap* GetMap() const { return m_pNodeMap; }
    /// Gives the map back; nothing without one.
    void Release();

private:
    INodeMap& MapOrThrow() const;
    void RefuseSecondMap() const;
    void Attach(CNodeMapFactory factory);

    INodeMap* m_pNodeMap = nullptr;
    gcstring m_DeviceName;
    std::atomic<long>* m_pRefCount = nullptr;
};

extern template class CNodeMapRefT<CGeneric_XMLLoaderParams>;

class OV_ENGINE_API CNodeMapRef : public CNodeMapRefT<CGeneric_XMLLoaderParams> {
public:
    using CNodeMapRefT::CNodeMapRefT;
};

}  // namespace GenApi_3_0_ORVANE
