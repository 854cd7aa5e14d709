#pragma once
/// The nodes of a camera's description beside those of the library: read through the
/// camera's raw port and never from a cache.

#include <memory>
#include <string>

#include "FeatureWalk.h"
#include "GenApi/INode.h"
#include "GenApi/INodeMap.h"
#include "GenApi/IPort.h"
#include "GenApi/NodeMapFactory.h"

namespace GenApi = GenApi_3_0_ORVANE;

struct MapEnd {
    void operator()(GenApi::INodeMap* map) const {
        dynamic_cast<GenApi::IDestroy&>(*map).Destroy();
    }
};
using MapOwner = std::unique_ptr<GenApi::INodeMap, MapEnd>;

/// The registers of an open camera as an application reaches them.
class RawPort : public GenApi::IPort {
public:
    explicit RawPort(OV_DEV_HANDLE camera) : m_camera(camera) {}

    GenApi::EAccessMode GetAccessMode() override { return GenApi::RW; }
    void Read(void* buffer, int64_t address, int64_t length) override;
    void Write(const void* buffer, int64_t address, int64_t length) override;

private:
    OV_DEV_HANDLE m_camera;
};

class ReferenceMap {
public:
    /// @param factory  of the camera's description without caching
    ReferenceMap(OV_DEV_HANDLE camera, GenApi::CNodeMapFactory& factory);
    ReferenceMap(const ReferenceMap&) = delete;
    ReferenceMap& operator=(const ReferenceMap&) = delete;

    GenApi::INodeMap& Map() const { return *m_map; }

    /// "NI" when there is none of that name.
    Answer<GenApi::EAccessMode> AccessMode(const Feature& feature) const;
    /// Whether the description gives it the type that its identifier has.
    bool HasTypeOf(const Feature& feature) const;
    /// The value, or the text of the failure. Of features of that type.
    Answer<FeatureValue> Read(const Feature& feature) const;
    /// Whether the description says that it chooses what others mean.
    bool IsSelector(const Feature& feature) const;
    /// Why no camera lets a client move a selector; empty where nothing is against it.
    std::string WhyFixed(const Feature& feature) const;

private:
    RawPort m_port;
    MapOwner m_map;
};
