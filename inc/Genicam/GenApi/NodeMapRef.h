#pragma once
/// A client's shared handle to a node map.

#include <atomic>

#include "GenApi/INodeMap.h"

namespace GenApi_3_0_ORVANE {

class CNodeMapFactory;

/// Marks the handle that loads descriptions of any device.
class OV_ENGINE_API CGeneric_XMLLoaderParams {};

/// A counted handle: copies share the map, and the last one to go destroys it. Different threads
/// may use different handles to one map; one handle belongs to one thread at a time.
///
/// The operations that begin with "_" and need a map are those of INodeMap of the same name.
/// @throws AccessException  from those operations, for a handle without a map
template <class LoaderParams>
class OV_ENGINE_API CNodeMapRefT {
public:
    /// Makes a handle without a map.
    /// @param deviceName  for the map that will be loaded
    explicit CNodeMapRefT(const gcstring& deviceName = "Device");
    /// Shares the other handle's map.
    CNodeMapRefT(const CNodeMapRefT& other);
    /// Releases this handle's map and shares the other's.
    CNodeMapRefT& operator=(const CNodeMapRefT& other);
    virtual ~CNodeMapRefT();

    /// Makes the nodes of a description given as text, or of what the cache has of it, where the
    /// environment variable GENICAM_CACHE_V3_0 or SetGenICamCacheFolder names a folder for that.
    /// @throws RuntimeException if the handle has a map already, or if the description is wrong
    void _LoadXMLFromString(const gcstring& xmlData);
    /// The same from an XML file.
    void _LoadXMLFromFile(const gcstring& fileName);

    /// Returns the device name.
    gcstring _GetDeviceName() const;
    /// Sets those nodes invalid whose polling interval is over.
    /// @param elapsedTime  since the last call, in milliseconds
    void _Poll(int64_t elapsedTime);
    /// Replaces the list with all nodes.
    void _GetNodes(node_vector& nodes) const;
    /// Returns a node by its name; null if there is none.
    INode* _GetNode(const gcstring& name) const;
    /// Drops the caches of all nodes and runs all callbacks.
    void _InvalidateNodes() const;
    /// Connects a transport to the port node of that name.
    /// @return false if there is no such node
    bool _Connect(IPort* port, const gcstring& name) const;
    /// The same for the port node "Device".
    bool _Connect(IPort* port) const;
    /// Compiles all formulas.
    /// @param errorList  a text for each that is wrong is appended; may be null
    /// @return whether all are right
    bool _ParseSwissKnifes(gcstring_vector* errorList = nullptr) const;
    /// Replaces the list with the versions of the schema that a description may follow.
    void _GetSupportedSchemaVersions(gcstring_vector& list) const;

    /// Returns the map, which the handles own; null if there is none.
    INodeMap* GetMap() const { return m_pNodeMap; }
    /// Gives up this handle's share of the map. Nothing happens if there is none.
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

/// The handle that programs use.
class OV_ENGINE_API CNodeMapRef : public CNodeMapRefT<CGeneric_XMLLoaderParams> {
public:
    using CNodeMapRefT::CNodeMapRefT;
};

}  // namespace GenApi_3_0_ORVANE
