// The end of a frame's data, which says where its chunks are. Whatever it says, chunks lie within
// the frame and follow each other.

#include <cstdint>
#include <span>
#include <vector>

#include "Base/OvAssert.h"
#include "gige/protocol/ChunkSeries.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    constexpr size_t kMarkSize = 8;
    const OvGige::ByteView block = std::as_bytes(std::span(data, size));
    // What another block left behind isn't part of this one's.
    std::vector<OvGige::ChunkPlace> chunks{{1, 2, 3}};
    OvGige::FindChunks(block, chunks);
    size_t end = size;
    for (auto chunk = chunks.rbegin(); chunk != chunks.rend(); ++chunk) {
        OV_ASSERT(end > kMarkSize && chunk->length > 0 && chunk->length <= end - kMarkSize);
        OV_ASSERT(chunk->offset + chunk->length + kMarkSize == end);
        const OvGige::ByteView mark = block.subspan(end - kMarkSize, kMarkSize);
        OV_ASSERT(OvGige::ReadBig<uint32_t>(mark) == chunk->id);
        end = chunk->offset;
    }
    return 0;
}
