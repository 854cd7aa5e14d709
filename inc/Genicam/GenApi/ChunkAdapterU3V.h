#pragma once

#include "GenApi/ChunkAdapterTrailer.h"

namespace GenApi_3_0_ORVANE {

/// Chunks of USB3 Vision: laid out as those of GigE Vision, with little-endian numbers.
class OV_ENGINE_API CChunkAdapterU3V : public CChunkAdapterTrailer {
public:
    /// As for CChunkAdapter.
    explicit CChunkAdapterU3V(INodeMap* map = nullptr, int64_t maxChunkCacheSize = -1);
};

}  // namespace GenApi_3_0_ORVANE
