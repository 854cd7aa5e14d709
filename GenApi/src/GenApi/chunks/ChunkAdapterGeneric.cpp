// Chunks that the caller has found: no layout is looked at, and only what can't be a chunk of any
// buffer is refused.

#include "GenApi/ChunkAdapterGeneric.h"

#include <limits>
#include <span>
#include <string_view>

#include "Base/GCException.h"
#include "Base/OvAssert.h"
#include "chunks/ChunkBinder.h"

namespace GenApi_3_0_ORVANE {

namespace {

/// Longer than any transport's identifier; a longer text is something else by mistake.
constexpr size_t kMaxIdentifierText = 256;

/// Every number may identify a chunk.
void CheckIdentifier(const SingleChunkData_t& /*chunk*/) {}

void CheckIdentifier(const SingleChunkDataStr_t& chunk) {
    const size_t length = chunk.ChunkID.length();
    if (length == 0 || length % 2 != 0 || length > kMaxIdentifierText) {
        RUNTIME_EXCEPTION("Unexpected Chunk ID length: %d", static_cast<int>(length));
    }
}

/// The identifier in the form in which ports compare it.
uint64_t IdentifierOf(const SingleChunkData_t& chunk) {
    return chunk.ChunkID;
}

std::vector<uint8_t> IdentifierOf(const SingleChunkDataStr_t& chunk) {
    std::vector<uint8_t> bytes;
    if (!AppendHexBytes(std::string_view(chunk.ChunkID.c_str(), chunk.ChunkID.length()), bytes)) {
        RUNTIME_EXCEPTION("Invalid chunk ID delivered: %s", chunk.ChunkID.c_str());
    }
    return bytes;
}

bool Matches(const CChunkPort& port, uint64_t identifier) {
    return port.CheckChunkID(identifier);
}

bool Matches(const CChunkPort& port, const std::vector<uint8_t>& identifier) {
    return port.CheckChunkID(identifier.data(), static_cast<int64_t>(identifier.size()));
}

/// Made for all entries before the first is bound, so that a wrong list changes nothing.
template <class Chunk>
void CheckChunk(const Chunk& chunk) {
    CheckIdentifier(chunk);
    IdentifierOf(chunk);
    // The sum must not overflow: ports compute with it.
    const bool isPlace =
        chunk.ChunkOffset >= 0 && chunk.ChunkLength >= 0 &&
        chunk.ChunkLength <= std::numeric_limits<int64_t>::max() - chunk.ChunkOffset;
    if (!isPlace) {
        RUNTIME_EXCEPTION("Invalid chunk data passed to chunk adapter!");
    }
}

}  // namespace

CChunkAdapterGeneric::CChunkAdapterGeneric(INodeMap* map, int64_t maxChunkCacheSize)
    : CChunkAdapter(map, maxChunkCacheSize) {}

/// Only a programmer can mix up the adapters, and would otherwise get an answer that is wrong for
/// every buffer.
bool CChunkAdapterGeneric::CheckBufferLayout(const uint8_t* /*buffer*/, int64_t /*length*/) {
    OV_ASSERT(false && "the generic chunk adapter knows no layout");
    return false;
}

void CChunkAdapterGeneric::AttachBuffer(uint8_t* /*buffer*/, int64_t /*length*/,
                                        AttachStatistics_t* /*statistics*/) {
    OV_ASSERT(false && "the generic chunk adapter knows no layout");
}

void CChunkAdapterGeneric::AttachBuffer(uint8_t* buffer, const SingleChunkData_t* chunks,
                                        int64_t count, AttachStatistics_t* statistics) {
    Attach(buffer, chunks, count, statistics);
}

void CChunkAdapterGeneric::AttachBuffer(uint8_t* buffer, const SingleChunkDataStr_t* chunks,
                                        int64_t count, AttachStatistics_t* statistics) {
    Attach(buffer, chunks, count, statistics);
}

template <class Chunk>
void CChunkAdapterGeneric::Attach(uint8_t* buffer, const Chunk* chunks, int64_t count,
                                  AttachStatistics_t* statistics) {
    if (buffer == nullptr) {
        RUNTIME_EXCEPTION("Invalid buffer attached to chunk parser!");
    }
    if (chunks == nullptr || count < 0) {
        RUNTIME_EXCEPTION("Invalid chunk data passed to chunk adapter!");
    }
    const std::span list(chunks, static_cast<size_t>(count));
    for (const Chunk& chunk : list) {
        CheckChunk(chunk);
    }
    ChunkBinder binder(m_ppChunkPorts, m_MaxChunkCacheSize, buffer);
    for (const Chunk& chunk : list) {
        binder.Offer({chunk.ChunkOffset, chunk.ChunkLength, chunk.ChunkLength},
                     [identifier = IdentifierOf(chunk)](const CChunkPort& port) {
                         return Matches(port, identifier);
                     });
    }
    binder.Finish(statistics);
}

}  // namespace GenApi_3_0_ORVANE
