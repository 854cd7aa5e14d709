#pragma once
/// Chunks at the end of a block's data.

#include <cstdint>
#include <vector>

#include "gige/protocol/BigEndian.h"

namespace OvGige {

struct ChunkPlace {
    uint32_t id = 0;
    size_t offset = 0;
    size_t length = 0;

    bool operator==(const ChunkPlace&) const = default;
};

/// Finds the chunks of a block, in the order of its memory. Each chunk is followed by its id and
/// its length, so they are found from the end. What precedes a chunk whose length can't be
/// right isn't looked at.
void FindChunks(ByteView block, std::vector<ChunkPlace>& chunks);

}  // namespace OvGige
