#include "virtual/Chunks.h"

#include <algorithm>
#include <bit>

#include "virtual/BigEndian.h"

namespace OvVirtual {
namespace {

/// Bytes of a chunk's identifier and length.
constexpr size_t kTrailerSize = 8;
/// Lengths in the layout are multiples of a word.
constexpr size_t kWord = 4;

struct ValueChunk {
    Chunk chunk;
    size_t length;
    uint64_t (*bits)(const ChunkValues& values);
};

constexpr ValueChunk kValueChunks[] = {
    {Chunk::FrameId, 8, [](const ChunkValues& values) { return values.frameId; }},
    {Chunk::Timestamp, 8, [](const ChunkValues& values) { return values.timestamp; }},
    {Chunk::ExposureTime, 8,
     [](const ChunkValues& values) { return std::bit_cast<uint64_t>(values.exposure); }},
    {Chunk::Gain, 8,
     [](const ChunkValues& values) { return std::bit_cast<uint64_t>(values.gain); }},
    {Chunk::LineStatusAll, 4,
     [](const ChunkValues& values) { return uint64_t{values.lineStatus}; }},
};

size_t WholeWords(size_t size) {
    return (size + kWord - 1) / kWord * kWord;
}

/// Writes chunks one after the other.
class ChunkWriter {
public:
    explicit ChunkWriter(std::span<std::byte> memory) : m_memory(memory) {}

    void Number(uint64_t value, size_t length) {
        PutBigEndian(m_memory.subspan(m_position, length), value);
        m_position += length;
    }
    /// Makes a chunk of the bytes since the last one.
    void Close(Chunk chunk) {
        const size_t length = m_position - m_begin;
        m_chunks.push_back({ChunkId(chunk), static_cast<int64_t>(m_begin), length});
        Number(ChunkId(chunk), kTrailerSize / 2);
        Number(length, kTrailerSize / 2);
        m_begin = m_position;
    }
    /// Makes the first chunk of the image, which is there already, and pads it to whole
    /// words.
    void CloseImage(size_t size) {
        const size_t end = WholeWords(size);
        std::fill(m_memory.begin() + static_cast<ptrdiff_t>(size),
                  m_memory.begin() + static_cast<ptrdiff_t>(end), std::byte{0});
        m_position = end;
        Close(Chunk::Image);
    }
    std::vector<GenTL::S_SINGLE_CHUNK_DATA> Take() { return std::move(m_chunks); }

private:
    std::span<std::byte> m_memory;
    size_t m_begin = 0;
    size_t m_position = 0;
    std::vector<GenTL::S_SINGLE_CHUNK_DATA> m_chunks;
};

}  // namespace

uint32_t LineStatus(const CameraSettings& settings) {
    return settings.triggerActivation == 0 ? 0 : 1;
}

size_t PayloadSize(const CameraSettings& settings, size_t imageSize) {
    if (settings.chunkMode == 0) {
        return imageSize;
    }
    size_t size = WholeWords(imageSize) + kTrailerSize;
    for (const ValueChunk& entry : kValueChunks) {
        if ((settings.chunksEnabled & BitOf(entry.chunk)) != 0) {
            size += entry.length + kTrailerSize;
        }
    }
    return size;
}

std::vector<GenTL::S_SINGLE_CHUNK_DATA> AppendChunks(std::span<std::byte> memory, size_t imageSize,
                                                     int64_t enabled, const ChunkValues& values) {
    ChunkWriter writer(memory);
    writer.CloseImage(imageSize);
    for (const ValueChunk& entry : kValueChunks) {
        if ((enabled & BitOf(entry.chunk)) != 0) {
            writer.Number(entry.bits(values), entry.length);
            writer.Close(entry.chunk);
        }
    }
    return writer.Take();
}

}  // namespace OvVirtual
