#pragma once

#include "Base/GCString.h"
#include "GenApi/ChunkAdapter.h"

namespace GenApi_3_0_ORVANE {

using GenICam_3_0_ORVANE::gcstring;

/// A chunk that the caller has found, by the number that identifies it.
struct SingleChunkData_t {
    /// The identifier.
    uint64_t ChunkID;
    /// Where the chunk begins in the buffer, in bytes.
    int64_t ChunkOffset;
    /// The length of the chunk, in bytes.
    int64_t ChunkLength;
};

/// The same with an identifier that may be longer than a number.
struct SingleChunkDataStr_t {
    /// The identifier: 2 to 256 hexadecimal digits, an even number of them.
    gcstring ChunkID;
    /// Where the chunk begins in the buffer, in bytes.
    int64_t ChunkOffset;
    /// The length of the chunk, in bytes.
    int64_t ChunkLength;
};

/// Chunks that the caller has found, for transports whose layout the engine doesn't know.
class OV_ENGINE_API CChunkAdapterGeneric : public CChunkAdapter {
public:
    /// As for CChunkAdapter.
    explicit CChunkAdapterGeneric(INodeMap* map = nullptr, int64_t maxChunkCacheSize = -1);

    /// Not for this adapter, which knows no layout: a call ends the process.
    bool CheckBufferLayout(const uint8_t* buffer, int64_t length) override;
    /// Not for this adapter either.
    void AttachBuffer(uint8_t* buffer, int64_t length,
                      AttachStatistics_t* statistics = nullptr) override;

    /// Binds the listed chunks. The caller has checked that they are within the buffer, whose
    /// length isn't known here.
    /// @param chunks      `count` entries, read during the call only
    /// @param statistics  may be null
    /// @throws RuntimeException for a null buffer or list, and for an entry that can't be a chunk
    ///         of any buffer; nothing changes then
    void AttachBuffer(uint8_t* buffer, const SingleChunkData_t* chunks, int64_t count,
                      AttachStatistics_t* statistics = nullptr);
    /// The same with identifiers as text.
    /// @throws RuntimeException also for an identifier that isn't a valid one
    void AttachBuffer(uint8_t* buffer, const SingleChunkDataStr_t* chunks, int64_t count,
                      AttachStatistics_t* statistics = nullptr);

private:
    template <class Chunk>
    void Attach(uint8_t* buffer, const Chunk* chunks, int64_t count,
                AttachStatistics_t* statistics);
};

}  // namespace GenApi_3_0_ORVANE
