#pragma once

#include "GenApi/ChunkAdapterTrailer.h"

namespace GenApi_3_0_ORVANE {

/// Chunks of GigE Vision: each ends with an identifier of four bytes and its big-endian length.
class OV_ENGINE_API CChunkAdapterGEV : public CChunkAdapterTrailer {
public:
    /// As for CChunkAdapter.
    explicit CChunkAdapterGEV(INodeMap* map = nullptr, int64_t maxChunkCacheSize = -1);
};

}  // namespace GenApi_3_0_ORVANE
