#pragma once

#include "Base/GCString.h"
#include "GenApi/ChunkAdapter.h"

namespace GenApi_3_0_ORVANE {

using GenICam_3_0_ORVANE::gcstring;

/// A chunk as a caller knows it. Offset and length in bytes.
struct SingleChunkData_t {
    uint64_t ChunkID;
    int64_t ChunkOffset;
    int64_t ChunkLength;
};

/// The same with an identifier of hexadecimal digits, of any width.
struct SingleChunkDataStr_t {
    gcstring ChunkID;
    int64_t ChunkOffset;
    int64_t ChunkLength;
};

/// Chunks that the caller names: whoever filled the buffer knows them best.
class OV_ENGINE_API CChunkAdapterGeneric : public CChunkAdapter {
public:
    /// As for CChunkAdapter.
    explicit CChunkAdapterGeneric(INodeMap* map = nullptr, int64_t maxChunkCacheSize = -1);

    /// There is no layout to go by: a call ends the process.
    bool CheckBufferLayout(const uint8_t* buffer, int64_t length) override;
    void AttachBuffer(uint8_t* buffer, int64_t length,
                      AttachStatistics_t* statistics = nullptr) override;

    /// Binds the chunks of the list. That they lie within the buffer, whose length
    /// is not known here, is the caller's to check. RuntimeException without a
    /// buffer or a list and for an entry that can be no chunk of any buffer;
    /// nothing changes then.
    /// @param chunks      `count` entries, read during the call only
    /// @param statistics  may be null
    void AttachBuffer(uint8_t* buffer, const SingleChunkData_t* chunks, int64_t count,
                      AttachStatistics_t* statistics = nullptr);
    /// @param chunks  identifiers of 2 to 256 digits, an even number of them;
    ///                RuntimeException for others
    void AttachBuffer(uint8_t* buffer, const SingleChunkDataStr_t* chunks, int64_t count,
                      AttachStatistics_t* statistics = nullptr);

private:
    template <class Chunk>
    void Attach(uint8_t* buffer, const Chunk* chunks, int64_t count,
                AttachStatistics_t* statistics);
};

}  // namespace GenApi_3_0_ORVANE
