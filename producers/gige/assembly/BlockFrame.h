#pragma once
/// What a consumer learns of a block.

#include "framework/FrameInfo.h"
#include "gige/assembly/Block.h"
#include "gige/protocol/ChunkSeries.h"

namespace OvGige {

/// Describes a block that is over, by its leader, trailer and packets.
class BlockFrame {
public:
    explicit BlockFrame(uint64_t tickFrequency) : m_tickFrequency(tickFrequency) {}

    /// Valid until the next call.
    const OvProducer::FrameInfo& Describe(const Block& block);

private:
    void TakeLeader(const BlockLeader& leader);
    void TakeTrailer(const BlockTrailer& trailer);
    void TakeChunks(const Block& block);
    uint64_t Nanoseconds(const Block& block) const;

    const uint64_t m_tickFrequency;
    OvProducer::FrameInfo m_frame;  // keeps the memory of its chunks
    std::vector<ChunkPlace> m_places;
};

/// Whether a block that is over lacks data.
bool LacksData(const Block& block);

}  // namespace OvGige
