// The way through a buffer whose chunks are described after their data. It is the same for all
// transports; their differences are rows of a table (ChunkLayout.cpp).

#include "GenApi/ChunkAdapterTrailer.h"

#include "Base/GCException.h"
#include "chunks/ChunkLayout.h"

namespace GenApi_3_0_ORVANE {

bool CChunkAdapterTrailer::CheckBufferLayout(const uint8_t* buffer, int64_t length) {
    const auto ignore = [](const ChunkPlace& /*chunk*/, const uint8_t* /*identifier*/) {};
    return WalkChunks(m_Layout, buffer, length, ignore);
}

/// Walks twice: the last chunk met decides whether the buffer is one, and nothing may be bound
/// before that is known. The walk reads a few bytes for each chunk only.
void CChunkAdapterTrailer::AttachBuffer(uint8_t* buffer, int64_t length,
                                        AttachStatistics_t* statistics) {
    if (buffer == nullptr) {
        RUNTIME_EXCEPTION("Invalid buffer attached to chunk %s!", m_Layout.name);
    }
    if (!CheckBufferLayout(buffer, length)) {
        RUNTIME_EXCEPTION("Invalid layout of buffer attached to chunk %s!", m_Layout.name);
    }
    ChunkBinder binder(m_ppChunkPorts, m_MaxChunkCacheSize, buffer);
    WalkChunks(m_Layout, buffer, length, [&](const ChunkPlace& chunk, const uint8_t* identifier) {
        binder.Offer(chunk, [this, identifier](const CChunkPort& port) {
            return m_Layout.matches(port, identifier);
        });
    });
    binder.Finish(statistics);
}

}  // namespace GenApi_3_0_ORVANE
