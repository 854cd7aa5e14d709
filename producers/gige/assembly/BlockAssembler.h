#pragma once
/// Blocks from packets, as they come.

#include <span>

#include "gige/assembly/BlockFiller.h"

namespace OvGige {

/// Where the data of a packet would lie if packets came in order.
struct PlannedPacket {
    std::byte* place = nullptr;
    size_t length = 0;  ///< full packets have so much
    uint32_t packetId = 0;
};

/// Puts packets into buffers. Packets may come in any order, twice or never; blocks are
/// delivered in their order. A block takes its buffer when its first packet comes, and is left
/// out as a whole if none is free then. Used by one thread; time is passed in.
class BlockAssembler {
public:
    /// Settings, account and client must outlive the assembler.
    BlockAssembler(const AssemblerSettings& settings, StreamAccount& account, BlockClient& client);

    /// Takes a packet from anyone, as it came.
    void Take(ByteView packet, TimePoint now);
    /// Takes a packet whose data may lie at its planned place already.
    /// @param prefix  what precedes the data, `PrefixSize(header.format)` bytes
    void Take(const StreamHeader& header, ByteView prefix, ByteView data, TimePoint now);
    /// Counts a packet that isn't one.
    void Ignore() { m_account.ignored.Add(); }
    /// The system dropped packets before the one that is taken next.
    void NoteDrops(uint64_t count);

    /// Plans the packets that come next if they come in order. Their places may be written
    /// before the next call of another function; who finds another packet there moves it away
    /// before any is taken.
    /// @return how many were planned; none unless a block is under way
    size_t Plan(std::span<PlannedPacket> plan) const;
    /// The form of planned packets.
    const DataForm& PlannedForm() const { return m_filler.Form(); }
    /// The block of planned packets.
    bool IsPlanned(const StreamHeader& header, ByteView prefix, const PlannedPacket& plan) const;

    /// Asks for what is missing and gives up what is late.
    void Tick(TimePoint now);
    /// When `Tick` has something to do next.
    TimePoint Due() const;
    /// Whether a block is under way.
    bool IsBusy() const { return m_row.IsBusy(); }
    /// Ends all blocks as they are.
    /// @param delivers  whether their buffers are delivered or given back
    void End(bool delivers);

private:
    Block* Find(const StreamHeader& header, ByteView prefix, ByteView data, TimePoint now);
    Block* FindNew(const StreamHeader& header, ByteView prefix, ByteView data, int64_t distance,
                   TimePoint now);
    bool BeginSuspected(int64_t distance, TimePoint now);
    bool IsOfNewRun(const Block& block, const StreamHeader& header, ByteView data,
                    TimePoint now) const;
    Block& Begin(const StreamHeader& header, TimePoint now);
    void Open(Block& block, const StreamHeader& header, TimePoint now);
    void FinishIfOver(Block& block);
    TimePoint GiveUpDue(const Block& block) const;

    const AssemblerSettings& m_settings;
    StreamAccount& m_account;
    BlockClient& m_client;
    ResendPlan m_resends;
    JumpWatch m_jumps;
    BlockRow m_row;
    BlockFiller m_filler;
};

}  // namespace OvGige
