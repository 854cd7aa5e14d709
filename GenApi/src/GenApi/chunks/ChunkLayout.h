#pragma once
/// The layouts of chunks in a buffer, and the one walk through all of them.

#include <bit>
#include <cstdint>
#include <cstring>

#include "chunks/ChunkBinder.h"

namespace GenApi_3_0_ORVANE {

/// Each chunk is its data, followed by a trailer. Places count in bytes, back from the end of the
/// chunk.
struct ChunkLayout {
    int64_t trailer;
    /// A buffer below this length holds no chunks.
    int64_t shortestBuffer;
    int64_t identifier;
    int64_t lengthField;
    /// Where the inverted length is; 0 if there is none.
    int64_t complementField;
    std::endian order;
    /// Whether the length counts the trailer, too.
    bool isLengthOfAll;
    /// Whether bytes follow the last chunk; null for transports where none do.
    bool (*hasCRC)(const uint8_t* buffer, int64_t length);
    bool (*matches)(const CChunkPort& port, const uint8_t* identifier);
    /// The adapter's name in failures.
    const char* name;
};

constexpr int64_t kCrcBytes = 4;

inline uint32_t ReadWord(const uint8_t* bytes, std::endian order) {
    uint32_t word = 0;
    std::memcpy(&word, bytes, sizeof(word));
    return order == std::endian::native ? word : __builtin_bswap32(word);
}

/// Returns the length of the chunk that ends here, with its trailer; 0 for a trailer that
/// contradicts itself.
inline int64_t ChunkSize(const ChunkLayout& layout, const uint8_t* end) {
    const uint32_t length = ReadWord(end - layout.lengthField, layout.order);
    if (layout.complementField != 0 &&
        ReadWord(end - layout.complementField, layout.order) != ~length) {
        return 0;
    }
    return layout.isLengthOfAll ? int64_t{length} : length + layout.trailer;
}

inline int64_t EndOfChunks(const ChunkLayout& layout, const uint8_t* buffer, int64_t length) {
    const bool hasCRC = layout.hasCRC != nullptr && layout.hasCRC(buffer, length);
    return hasCRC ? length - kCrcBytes : length;
}

/// Visits the chunks from the last to the first, each with its identifier, until something isn't
/// a chunk.
/// @return whether the chunks fill the buffer
template <class Visit>
bool WalkChunks(const ChunkLayout& layout, const uint8_t* buffer, int64_t length,
                const Visit& visit) {
    if (length < layout.shortestBuffer) {
        return false;
    }
    int64_t end = EndOfChunks(layout, buffer, length);
    if (buffer == nullptr) {
        return false;
    }
    do {
        const int64_t size = ChunkSize(layout, buffer + end);
        if (size < layout.trailer || size > end) {
            return false;
        }
        const int64_t dataLength = size - layout.trailer;
        visit(ChunkPlace{end - size, dataLength, layout.isLengthOfAll ? size : dataLength},
              buffer + end - layout.identifier);
        end -= size;
    } while (end > layout.trailer);
    return end == 0;
}

}  // namespace GenApi_3_0_ORVANE
