#pragma once
/// The blocks of a stream in the order of their numbers.

#include <array>

#include "gige/assembly/BlockClient.h"
#include "gige/assembly/BlockFrame.h"
#include "gige/assembly/BlockIds.h"
#include "gige/assembly/StreamAccount.h"

namespace OvGige {

/// Blocks leave in their order: one that is over waits for those before it.
class BlockRow {
public:
    /// Settings, account and client must outlive the row.
    BlockRow(const AssemblerSettings& settings, StreamAccount& account, BlockClient& client);

    bool IsStarted() const { return m_isStarted; }
    /// Whether a block isn't over.
    bool IsBusy() const { return m_isStarted && m_oldest <= m_ids.Newest(); }
    Block& Newest() { return At(m_ids.Newest()); }
    const Block& Newest() const { return At(m_ids.Newest()); }
    bool IsNewest(const Block& block) const { return block.number == m_ids.Newest(); }
    /// How many blocks a packet's block is ahead of the newest one; negative if it is before it.
    int64_t Distance(const StreamHeader& header) const {
        return m_ids.Distance(header.blockId, header.isExtended);
    }
    /// The block at a distance; null if it isn't known yet, or any more.
    Block* Known(int64_t distance);

    /// Ends all blocks, and begins a run of the camera with the block of a packet.
    void Start(const StreamHeader& header, TimePoint now);
    /// Begins the block of a packet, `distance` blocks after the newest one, and those between.
    void Advance(const StreamHeader& header, int64_t distance, TimePoint now);
    /// The system dropped packets: blocks of which nothing came may be among them.
    void NoteDrops() { m_isDropping = true; }

    /// The numbers of the blocks from the oldest that isn't over to the one before the end.
    ///@{
    uint64_t Oldest() const { return m_oldest; }
    uint64_t End() const { return m_isStarted ? m_ids.Newest() + 1 : m_oldest; }
    ///@}
    Block& At(uint64_t number) { return m_blocks[number % kBlocks]; }
    const Block& At(uint64_t number) const { return m_blocks[number % kBlocks]; }

    /// Ends a block as it is. It keeps its buffer until those before it are over.
    /// @param delivers  whether the buffer is delivered or given back
    void Settle(Block& block, bool delivers);
    void SettleAll(bool delivers);
    /// Delivers the blocks that are over and wait for none before them.
    void DeliverReady();

private:
    /// Blocks whose packets are known: those under way, and the last ones of those that were
    /// delivered, so that what comes twice is told from what comes late.
    static constexpr size_t kBlocks = 32;

    const AssemblerSettings& m_settings;
    StreamAccount& m_account;
    BlockClient& m_client;
    BlockFrame m_frame;
    std::array<Block, kBlocks> m_blocks;
    BlockIds m_ids;
    uint64_t m_oldest = 0;      ///< first number that isn't settled
    uint32_t m_usualCount = 0;  ///< data packets of the last whole block
    bool m_isStarted = false;
    bool m_isDropping = false;  ///< since the newest block began
};

}  // namespace OvGige
