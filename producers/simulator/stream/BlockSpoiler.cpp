#include "simulator/stream/BlockSpoiler.h"

#include "simulator/Chance.h"

namespace OvSimulator {

void BlockSpoiler::Spoil(StreamBlock& block, uint64_t frame) {
    const Chance chance(m_faults.seed);
    const Occasion occasion{.block = frame, .packet = 0};
    if (frame == 0) {
        m_firstFrame = 0;
    } else if (chance.Hits(m_faults.stream.jumpBack, Cause::JumpBack, occasion)) {
        m_account.Add(Count::JumpsBack);
        m_firstFrame = frame;
    }
    block.Renumber(BlockIdOf(frame - m_firstFrame, block.IsExtended()));
    if (chance.Hits(m_faults.stream.wrongLeader, Cause::WrongLeader, occasion)) {
        m_account.Add(Count::WrongLeaders);
        block.SpoilLeader();
    }
    constexpr uint64_t kChoices = 1 << 16;
    if (chance.Hits(m_faults.stream.wrongChunk, Cause::WrongChunk, occasion) &&
        block.SpoilChunk(
            chance.Below(kChoices, Cause::WrongChunk, {.block = frame, .packet = 1}))) {
        m_account.Add(Count::WrongChunks);
    }
}

}  // namespace OvSimulator
