#pragma once
/// What those transports have in common whose chunks are described after their data.

#include "GenApi/ChunkAdapter.h"

namespace GenApi_3_0_ORVANE {

struct ChunkLayout;

/// Walks a buffer from its end to its start, as the layout of the transport says.
class OV_ENGINE_API CChunkAdapterTrailer : public CChunkAdapter {
public:
    /// Returns false also for a buffer whose first chunk has no data: eight bytes alone could be
    /// anything.
    bool CheckBufferLayout(const uint8_t* buffer, int64_t length) override;
    /// As for CChunkAdapter.
    void AttachBuffer(uint8_t* buffer, int64_t length,
                      AttachStatistics_t* statistics = nullptr) override;

protected:
    /// @param layout  must outlive the adapter
    CChunkAdapterTrailer(const ChunkLayout& layout, INodeMap* map, int64_t maxChunkCacheSize)
        : CChunkAdapter(map, maxChunkCacheSize), m_Layout(layout) {}

private:
    const ChunkLayout& m_Layout;
};

}  // namespace GenApi_3_0_ORVANE
