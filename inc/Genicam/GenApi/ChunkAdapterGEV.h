#pragma once

#include "GenApi/ChunkAdapterTrailer.h"

namespace GenApi_3_0_ORVANE {

/// Chunks of GigE Vision: big endian length behind an identifier of four bytes.
class OV_ENGINE_API CChunkAdapterGEV : public CChunkAdapterTrailer {
public:
    /// As for CChunkAdapter.
    explicit CChunkAdapterGEV(INodeMap* map = nullptr, int64_t maxChunkCacheSize = -1);
};

}  // namespace GenApi_3_0_ORVANE
