#include "GenApi/ChunkAdapter.h"

#include <utility>

#include "Base/GCException.h"
#include "Base/OvAssert.h"
#include "GenApi/ChunkPort.h"
#include "GenApi/IChunkPort.h"
#include "GenApi/INodeMap.h"
#include "map/EachInTurn.h"
#include "map/FaultyNodes.h"

namespace GenApi_3_0_ORVANE {

CChunkAdapter::CChunkAdapter(INodeMap* map, int64_t maxChunkCacheSize)
    : m_MaxChunkCacheSize(maxChunkCacheSize) {
    if (map != nullptr) {
        AttachNodeMap(map);
    }
}

CChunkAdapter::~CChunkAdapter() = default;

void CChunkAdapter::AttachNodeMap(INodeMap* map) {
    OV_ASSERT(map != nullptr);
    node_vector nodes;
    map->GetNodes(nodes);
    DetachNodeMap();
    std::vector<std::unique_ptr<CChunkPort>> ports;
    for (INode* const node : nodes) {
        auto* const chunk = dynamic_cast<IChunkPort*>(node);
        if (chunk != nullptr && !chunk->GetChunkID().empty()) {
            VisitUnlessFaulty(*node, [&] {
                ports.push_back(std::make_unique<CChunkPort>(dynamic_cast<IPort*>(node)));
            });
        }
    }
    m_ppChunkPorts.swap(ports);
}

void CChunkAdapter::DetachNodeMap() {
    const std::vector<std::unique_ptr<CChunkPort>> ports = std::exchange(m_ppChunkPorts, {});
    for (const auto& port : ports) {
        port->DetachPort();
    }
}

void CChunkAdapter::UpdateBuffer(uint8_t* buffer) {
    if (buffer == nullptr) {
        RUNTIME_EXCEPTION("Invalid buffer passed to chunk parser!");
    }
    ForEachInTurn(m_ppChunkPorts.begin(), m_ppChunkPorts.end(), [buffer](const auto& port) {
        port->UpdateBuffer(buffer);
        port->InvalidateNode();
    });
}

void CChunkAdapter::DetachBuffer() {
    for (const auto& port : m_ppChunkPorts) {
        port->DetachChunk();
    }
}

void CChunkAdapter::ClearCaches() {
    for (const auto& port : m_ppChunkPorts) {
        port->ClearCache();
    }
}

}  // namespace GenApi_3_0_ORVANE
