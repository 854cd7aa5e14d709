#pragma once
/// Makes the metadata that a device appends to its frames readable by features.

#include <cstdint>
#include <memory>
#include <vector>

#include "Base/Export.h"

namespace GenApi_3_0_ORVANE {

class CChunkPort;
struct INodeMap;

/// What became of the chunks of one buffer.
struct AttachStatistics_t {
    /// Port nodes that wait for chunks.
    int32_t NumChunkPorts = 0;
    /// Chunks in the buffer.
    int32_t NumChunks = 0;
    /// Ports that got a chunk; one chunk may serve several.
    int32_t NumAttachedChunks = 0;
};

/// Finds the chunks in a buffer and binds each to the port nodes that name its
/// identifier.
///
/// A client calls AttachBuffer for each frame and DetachBuffer before it gives
/// the frame back; the features of a chunk that a frame lacks become NA. An
/// adapter is driven from one thread at a time; features may be read meanwhile,
/// each port changes under the lock of the map. The map must outlive the adapter
/// or be detached before it goes.
class OV_ENGINE_API CChunkAdapter {
public:
    virtual ~CChunkAdapter();
    CChunkAdapter(const CChunkAdapter&) = delete;
    CChunkAdapter& operator=(const CChunkAdapter&) = delete;

    /// Whether the buffer consists of chunks alone, from its first byte to its last.
    /// @param length  in bytes
    virtual bool CheckBufferLayout(const uint8_t* buffer, int64_t length) = 0;
    /// Binds the chunks of a buffer, which the caller keeps. RuntimeException
    /// without a buffer and for one that isn't made of chunks; nothing changes then.
    /// @param length      in bytes
    /// @param statistics  may be null
    virtual void AttachBuffer(uint8_t* buffer, int64_t length,
                              AttachStatistics_t* statistics = nullptr) = 0;

    /// Takes the place of the transport at all port nodes that name a chunk. An
    /// earlier map is detached.
    /// @param map  never null
    void AttachNodeMap(INodeMap* map);
    /// The port nodes are left without a transport.
    void DetachNodeMap();
    /// The bound chunks lie at the same places of another buffer now; the caller
    /// vouches for that. RuntimeException without a buffer.
    void UpdateBuffer(uint8_t* buffer);
    /// Lets the buffer go. Chunks with a private copy stay readable.
    void DetachBuffer();
    /// Frees the private copies.
    void ClearCaches();

protected:
    /// @param map                may be null
    /// @param maxChunkCacheSize  the bytes of the longest chunk that is copied; -1
    ///                           for no limit
    CChunkAdapter(INodeMap* map, int64_t maxChunkCacheSize);

    std::vector<std::unique_ptr<CChunkPort>> m_ppChunkPorts;
    int64_t m_MaxChunkCacheSize;
};

}  // namespace GenApi_3_0_ORVANE
