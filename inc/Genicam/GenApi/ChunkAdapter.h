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
    /// Ports that received a chunk. One chunk may serve several ports.
    int32_t NumAttachedChunks = 0;
};

/// Finds the chunks in a buffer and binds each to the port nodes that name its identifier.
///
/// A client calls AttachBuffer for each frame, reads the features, and calls DetachBuffer before
/// it hands the frame's memory back. The features of a chunk that a frame lacks become NA. One
/// thread at a time drives an adapter. Other threads may read features meanwhile: each port
/// changes under the lock of the map. The map must outlive the adapter, or be detached before it
/// ends.
class OV_ENGINE_API CChunkAdapter {
public:
    virtual ~CChunkAdapter();
    CChunkAdapter(const CChunkAdapter&) = delete;
    CChunkAdapter& operator=(const CChunkAdapter&) = delete;

    /// Whether the buffer consists of chunks alone, from its first byte to its last.
    /// @param length  in bytes
    virtual bool CheckBufferLayout(const uint8_t* buffer, int64_t length) = 0;
    /// Binds the chunks of a buffer. The caller keeps the buffer until DetachBuffer, or until the
    /// next one is attached.
    /// @param length      in bytes
    /// @param statistics  may be null
    /// @throws RuntimeException for null and for a buffer that isn't made of chunks; nothing
    ///         changes then
    virtual void AttachBuffer(uint8_t* buffer, int64_t length,
                              AttachStatistics_t* statistics = nullptr) = 0;

    /// Takes the place of the transport at all port nodes that name a chunk. A map that was
    /// attached before is detached.
    /// @param map  never null
    void AttachNodeMap(INodeMap* map);
    /// Leaves the port nodes without a transport.
    void DetachNodeMap();
    /// Binds the chunks that are bound now to the same places of another buffer. The caller
    /// vouches that they are there.
    /// @throws RuntimeException for null
    void UpdateBuffer(uint8_t* buffer);
    /// Lets go of the buffer. Chunks with a private copy stay readable.
    void DetachBuffer();
    /// Frees the private copies.
    void ClearCaches();

protected:
    /// @param map                attached at once; may be null
    /// @param maxChunkCacheSize  the longest chunk that is copied, in bytes; -1 for no limit
    CChunkAdapter(INodeMap* map, int64_t maxChunkCacheSize);

    /// One for each port node of the attached map that names a chunk.
    std::vector<std::unique_ptr<CChunkPort>> m_ppChunkPorts;
    /// The longest chunk that is copied, in bytes; -1 for no limit.
    int64_t m_MaxChunkCacheSize;
};

}  // namespace GenApi_3_0_ORVANE
