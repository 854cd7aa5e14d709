// Chunks are data that a camera appends to a frame. Each port node with a chunk's
// identifier gets a chunk port, through which its features read the frame in place of the
// device.

#include "GenApi/ChunkAdapter.h"

#include <utility>

#include "Base/GCException.h"
#include "Base/OvAssert.h"
#include "GenApi/ChunkPort.h"
#include "GenApi/IChunkPort.h"
#include "GenApi/INodeMap.h"
#include "map/DespiteFailures.h"
#include "map/FaultyNodes.h"

namespace GenApi_3_0_ORVANE {

CChunkAdapter::CChunkAdapter(INodeMap* map, int64_t maxChunkCacheSize)
    : m_MaxChunkCacheSize(maxChunkCacheSize) {
    if (map != nullptr) {
        AttachNodeMap(map);
    }
}

CChunkAdapter::~CChunkAdapter() = default;

/// The new ports are complete before the adapter has any of them: a failure leaves an adapter
/// without a map, and never one with half of it.
void CChunkAdapter::AttachNodeMap(INodeMap* map) {
    OV_ASSERT(map != nullptr);
    node_vector nodes;
    map->GetNodes(nodes);
    DetachNodeMap();
    std::vector<std::unique_ptr<CChunkPort>> ports;
    for (INode* const node : nodes) {
        auto* const chunk = dynamic_cast<IChunkPort*>(node);
        if (chunk != nullptr && !chunk->GetChunkID().empty()) {
            // One wrong identifier must not cost the camera its other chunks.
            VisitUnlessFaulty(*node, [&] {
                ports.push_back(std::make_unique<CChunkPort>(dynamic_cast<IPort*>(node)));
            });
        }
    }
    m_ppChunkPorts.swap(ports);
}

/// Moved out first, so that no port is left in the adapter if a callback throws: the remaining
/// ones detach when the list ends.
void CChunkAdapter::DetachNodeMap() {
    const std::vector<std::unique_ptr<CChunkPort>> ports = std::exchange(m_ppChunkPorts, {});
    for (const auto& port : ports) {
        port->DetachPort();
    }
}

/// All ports are updated, whichever fails: the old buffer may be gone, and no port may read from
/// it any more.
void CChunkAdapter::UpdateBuffer(uint8_t* buffer) {
    if (buffer == nullptr) {
        RUNTIME_EXCEPTION("Invalid buffer passed to chunk parser!");
    }
    ForEachDespiteFailures(m_ppChunkPorts.begin(), m_ppChunkPorts.end(),
                           [buffer](const auto& port) {
                               port->UpdateBuffer(buffer);
                               port->InvalidateNode();
                           });
}

/// As above: a callback that fails must not leave ports with the buffer.
void CChunkAdapter::DetachBuffer() {
    ForEachDespiteFailures(m_ppChunkPorts.begin(), m_ppChunkPorts.end(),
                           [](const auto& port) { port->DetachChunk(); });
}

/// Memory that one long chunk has claimed is kept for the next until this is called.
void CChunkAdapter::ClearCaches() {
    for (const auto& port : m_ppChunkPorts) {
        port->ClearCache();
    }
}

}  // namespace GenApi_3_0_ORVANE
