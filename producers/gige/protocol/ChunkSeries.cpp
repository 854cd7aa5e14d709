#include "gige/protocol/ChunkSeries.h"

#include <algorithm>

namespace OvGige {

void FindChunks(ByteView block, std::vector<ChunkPlace>& chunks) {
    constexpr size_t kMarkSize = 8;  // id and length
    chunks.clear();
    while (block.size() >= kMarkSize) {
        const ByteView mark = block.last(kMarkSize);
        const size_t length = ReadBig<uint32_t>(mark.subspan(sizeof(uint32_t)));
        const size_t end = block.size() - kMarkSize;
        if (length == 0 || length > end) {
            break;
        }
        chunks.push_back({ReadBig<uint32_t>(mark), end - length, length});
        block = block.first(end - length);
    }
    std::reverse(chunks.begin(), chunks.end());
}

}  // namespace OvGige
