#pragma once
/// Binds the chunks of one buffer to their ports.

#include <limits>
#include <memory>
#include <vector>

#include "GenApi/ChunkAdapter.h"
#include "GenApi/ChunkPort.h"

namespace GenApi_3_0_ORVANE {

/// Where the data of a chunk are in the buffer, in bytes.
struct ChunkPlace {
    int64_t offset;
    int64_t length;
    /// What is compared with the longest chunk that may be copied.
    int64_t cachedLength;
};

/// Serves one buffer: each chunk is offered to the ports, and at the end the ports without a chunk
/// let go of the previous buffer.
class ChunkBinder {
public:
    using Ports = std::vector<std::unique_ptr<CChunkPort>>;

    /// @param maxCacheSize  in bytes; -1 for no limit
    ChunkBinder(const Ports& ports, int64_t maxCacheSize, uint8_t* buffer)
        : m_Ports(ports),
          m_MaxCacheSize(maxCacheSize == -1 ? std::numeric_limits<int64_t>::max() : maxCacheSize),
          m_Buffer(buffer),
          m_IsAttached(ports.size()) {}

    /// Binds the chunk to every port that matches. A chunk without data isn't bound: there is
    /// nothing to read.
    /// @param matches  returns whether a port waits for this chunk
    template <class Matches>
    void Offer(const ChunkPlace& chunk, const Matches& matches) {
        ++m_Chunks;
        for (size_t i = 0; chunk.length > 0 && i < m_Ports.size(); ++i) {
            if (matches(*m_Ports[i])) {
                m_Ports[i]->AttachChunk(m_Buffer, chunk.offset, chunk.length,
                                        chunk.cachedLength <= m_MaxCacheSize);
                m_IsAttached[i] = true;
                ++m_Attached;
            }
        }
    }

    /// Detaches the ports that no chunk was bound to.
    /// @param statistics  may be null
    void Finish(AttachStatistics_t* statistics) {
        for (size_t i = 0; i < m_Ports.size(); ++i) {
            if (!m_IsAttached[i]) {
                m_Ports[i]->DetachChunk();
            }
        }
        if (statistics != nullptr) {
            *statistics = {static_cast<int32_t>(m_Ports.size()), m_Chunks, m_Attached};
        }
    }

private:
    const Ports& m_Ports;
    int64_t m_MaxCacheSize;
    uint8_t* m_Buffer;
    std::vector<bool> m_IsAttached;
    int32_t m_Chunks = 0;
    int32_t m_Attached = 0;
};

}  // namespace GenApi_3_0_ORVANE
