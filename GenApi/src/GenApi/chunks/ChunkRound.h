#pragma once
/// The chunks of one buffer on the way to their ports.

#include <limits>
#include <memory>
#include <vector>

#include "GenApi/ChunkAdapter.h"
#include "GenApi/ChunkPort.h"

namespace GenApi_3_0_ORVANE {

/// Where a chunk's data lie in the buffer, in bytes.
struct ChunkPlace {
    int64_t offset;
    int64_t length;
    /// What the limit of private copies is held against.
    int64_t cachedLength;
};

class ChunkRound {
public:
    using Ports = std::vector<std::unique_ptr<CChunkPort>>;

    /// @param maxCacheSize  in bytes; -1 for no limit
    ChunkRound(const Ports& ports, int64_t maxCacheSize, uint8_t* buffer)
        : m_Ports(ports),
          m_MaxCacheSize(maxCacheSize == -1 ? std::numeric_limits<int64_t>::max() : maxCacheSize),
          m_Buffer(buffer),
          m_IsAttached(ports.size()) {}

    /// Binds the chunk to every port that matches. A chunk without data gives
    /// its ports nothing to read.
    /// @param matches  tells whether a port waits for this chunk
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

    /// Unbinds the ports that got nothing.
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
