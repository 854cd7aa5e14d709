#include <algorithm>
#include <limits>

#include "GenApi/ChunkAdapterGeneric.h"
#include "chunk_fuzz.h"

namespace ChunkFuzz {

namespace {

constexpr int64_t kMany = 300;

/// Takes numbers from the front of the input; zeros once it is used up.
class Source {
public:
    explicit Source(Bytes bytes) : m_Bytes(bytes) {}

    bool IsEmpty() const { return m_Bytes.empty(); }
    template <class Number>
    Number Take() {
        Number number{};
        const size_t size = std::min(sizeof(Number), m_Bytes.size());
        std::copy_n(m_Bytes.begin(), size, reinterpret_cast<uint8_t*>(&number));
        m_Bytes = m_Bytes.subspan(size);
        return number;
    }
    std::string TakeText(size_t length) {
        const Bytes text = m_Bytes.first(std::min(length, m_Bytes.size()));
        m_Bytes = m_Bytes.subspan(text.size());
        return {text.begin(), text.end()};
    }

private:
    Bytes m_Bytes;
};

/// Whatever may be a place is moved into the frame: that much a caller vouches for.
template <class Chunk>
void Place(Chunk& chunk, Source& source, bool isWide, int64_t frameSize) {
    chunk.ChunkOffset = isWide ? source.Take<int64_t>() : source.Take<int16_t>();
    chunk.ChunkLength = isWide ? source.Take<int64_t>() : source.Take<int16_t>();
    const bool isPlace =
        chunk.ChunkOffset >= 0 && chunk.ChunkLength >= 0 &&
        chunk.ChunkLength <= std::numeric_limits<int64_t>::max() - chunk.ChunkOffset;
    if (isPlace) {
        chunk.ChunkOffset %= frameSize + 1;
        chunk.ChunkLength = std::min(chunk.ChunkLength, frameSize - chunk.ChunkOffset);
    }
}

void TakeIdentifier(SingleChunkData_t& chunk, Source& source) {
    chunk.ChunkID = source.Take<uint64_t>();
}

void TakeIdentifier(SingleChunkDataStr_t& chunk, Source& source) {
    chunk.ChunkID = source.TakeText(source.Take<uint8_t>()).c_str();
}

template <class Chunk>
std::vector<Chunk> TakeChunks(Source source, int64_t frameSize) {
    std::vector<Chunk> chunks;
    while (!source.IsEmpty()) {
        const auto form = source.Take<uint8_t>();
        Chunk chunk{};
        TakeIdentifier(chunk, source);
        Place(chunk, source, (form & 1) != 0, frameSize);
        const bool isMany = form == 0xFF && chunks.empty();
        chunks.insert(chunks.end(), isMany ? kMany : 1, chunk);
    }
    return chunks;
}

template <class Chunk>
void Run(Bytes input, Bytes list) {
    CChunkAdapterGeneric adapter(TheCamera().Map(), input[1] == 0xFF ? -1 : input[1]);
    Stream stream(adapter, (input[0] & 2) != 0);
    // The list itself is good enough for a frame; the second is cut.
    for (const Bytes bytes : {list, list.first(list.size() / 2)}) {
        stream.Deliver(bytes, [&](const Frame& frame, AttachStatistics_t& statistics) {
            const std::vector<Chunk> chunks = TakeChunks<Chunk>(Source(list), frame.Size());
            adapter.AttachBuffer(frame.Data(), chunks.data(), static_cast<int64_t>(chunks.size()),
                                 &statistics);
        });
    }
    stream.Finish();
}

}  // namespace

}  // namespace ChunkFuzz

/// The first byte says how, the second limits the private copies, the others are
/// the list of chunks.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace ChunkFuzz;  // NOLINT(google-build-using-namespace)
    const Bytes input(data, size);
    if (size >= 2) {
        if ((input[0] & 1) != 0) {
            Run<SingleChunkData_t>(input, input.subspan(2));
        } else {
            Run<SingleChunkDataStr_t>(input, input.subspan(2));
        }
    }
    return 0;
}
