#pragma once
/// Blocks from packets, as they come.

#include <array>
#include <optional>
#include <span>

#include "gige/assembly/BlockFrame.h"
#include "gige/assembly/BlockIds.h"
#include "gige/assembly/ResendPlan.h"

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
    const DataForm& PlannedForm() const { return m_form; }
    /// The block of planned packets.
    bool IsPlanned(const StreamHeader& header, ByteView prefix, const PlannedPacket& plan) const;

    /// Asks for what is missing and gives up what is late.
    void Tick(TimePoint now);
    /// When `Tick` has something to do next.
    TimePoint Due() const;
    /// Whether a block is under way.
    bool IsBusy() const { return m_isStarted && m_oldest <= m_ids.Newest(); }
    /// Ends all blocks as they are.
    /// @param delivers  whether their buffers are delivered or given back
    void End(bool delivers);

private:
    /// Blocks whose packets are known: those under way, and the last ones of those that were
    /// delivered, so that what comes twice is told from what comes late.
    static constexpr size_t kBlocks = 32;

    Block& BlockOf(uint64_t number) { return m_blocks[number % kBlocks]; }
    const Block& BlockOf(uint64_t number) const { return m_blocks[number % kBlocks]; }

    Block* Find(const StreamHeader& header, ByteView data, TimePoint now);
    Block* FindKnown(int64_t distance);
    Block* FindNew(const StreamHeader& header, ByteView data, int64_t distance, TimePoint now);
    bool IsOfNewRun(const Block& block, const StreamHeader& header, ByteView data,
                    TimePoint now) const;
    bool IsRestart(const StreamHeader& header, ByteView data, TimePoint now) const;
    void Suspect(const StreamHeader& header, ByteView data);
    void DropSuspect();
    void Restart(const StreamHeader& header, TimePoint now);
    void Advance(const StreamHeader& header, int64_t distance, TimePoint now);
    void Open(Block& block, const StreamHeader& header, TimePoint now);

    void TakeLeader(Block& block, ByteView payload, TimePoint now);
    void TakeTrailer(Block& block, const StreamHeader& header, ByteView payload, TimePoint now);
    void TakeWhole(Block& block, ByteView payload, TimePoint now);
    void TakeData(Block& block, const StreamHeader& header, ByteView prefix, ByteView data,
                  TimePoint now);
    bool FitForm(Block& block, const StreamHeader& header, size_t length);
    void SetForm(const DataForm& form);
    void DropShort(Block& block, uint32_t followingId, TimePoint now);
    void Place(Block& block, size_t offset, ByteView data);
    void NotePacket(Block& block, bool wasAsked, TimePoint now);

    void FinishIfOver(Block& block);
    TimePoint GiveUpDue(const Block& block) const;
    void Settle(Block& block, bool delivers);
    void DeliverReady();

    const AssemblerSettings& m_settings;
    StreamAccount& m_account;
    BlockClient& m_client;
    ResendPlan m_resends;
    BlockFrame m_frame;
    std::array<Block, kBlocks> m_blocks;
    BlockIds m_ids;
    uint64_t m_oldest = 0;  ///< first number that isn't settled
    bool m_isStarted = false;
    struct {
        uint64_t blockId = 0;
        Bytes leader;
    } m_suspect;
    bool m_isHeld = false;  ///< the packet that is being taken is kept there
    uint64_t m_lastTimestamp = 0;
    TimePoint m_lastPacket{};
    DataForm m_form;
    Stride m_stride;
    uint64_t m_dropsSinceBlock = 0;
};

}  // namespace OvGige
