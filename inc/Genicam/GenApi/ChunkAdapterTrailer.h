#pragma once
/// What the transports have in common that describe a chunk behind its data.

#include "GenApi/ChunkAdapter.h"

namespace GenApi_3_0_ORVANE {

struct ChunkLayout;

/// Walks a buffer from its end to its start by the description of a layout.
class OV_ENGINE_API CChunkAdapterTrailer : public CChunkAdapter {
public:
    /// False for what may be chunks but for a chunk without data at the start:
    /// eight bytes of GigE Vision or USB3 Vision are no buffer.
    bool CheckBufferLayout(const uint8_t* buffer, int64_t length) override;
    void AttachBuffer(uint8_t* buffer, int64_t length,
                      AttachStatistics_t* statistics = nullptr) override;

protected:
    CChunkAdapterTrailer(const ChunkLayout& layout, INodeMap* map, int64_t maxChunkCacheSize)
        : CChunkAdapter(map, maxChunkCacheSize), m_Layout(layout) {}

private:
    const ChunkLayout& m_Layout;
};

}  // namespace GenApi_3_0_ORVANE
