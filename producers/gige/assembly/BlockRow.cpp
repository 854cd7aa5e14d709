#include "gige/assembly/BlockRow.h"

#include <algorithm>

namespace OvGige {
namespace {

/// The id of the block that is `back` blocks before that of the packet.
uint64_t IdBefore(const StreamHeader& header, uint64_t back) {
    if (header.isExtended) {
        return header.blockId - back;
    }
    return (header.blockId - 1 + kShortBlockIdMax - back) % kShortBlockIdMax + 1;
}

}  // namespace

BlockRow::BlockRow(const AssemblerSettings& settings, StreamAccount& account, BlockClient& client)
    : m_settings(settings), m_account(account), m_client(client), m_frame(settings.tickFrequency) {}

Block* BlockRow::Known(int64_t distance) {
    if (distance > 0 || distance <= -static_cast<int64_t>(kBlocks)) {
        return nullptr;
    }
    const uint64_t number = m_ids.Newest() + static_cast<uint64_t>(distance);
    Block& block = At(number);
    return block.state != BlockState::Free && block.number == number ? &block : nullptr;
}

void BlockRow::Start(const StreamHeader& header, TimePoint now) {
    SettleAll(true);
    for (Block& block : m_blocks) {
        block.state = BlockState::Free;
    }
    m_isStarted = true;
    m_ids.Start(header.blockId);
    m_oldest = header.blockId;
    Advance(header, 0, now);
}

void BlockRow::Advance(const StreamHeader& header, int64_t distance, TimePoint now) {
    const uint64_t before = m_ids.Newest();
    m_ids.Advance(header.blockId, distance);
    const uint64_t newest = m_ids.Newest();
    for (uint64_t number = m_oldest; number <= before && number < newest; ++number) {
        At(number).overtaken = std::min(At(number).overtaken, now);
    }
    for (uint64_t number = distance == 0 ? newest : before + 1; number <= newest; ++number) {
        // The place that the block takes may be that of one that isn't over.
        while (m_oldest + kBlocks <= number) {
            Settle(At(m_oldest), true);
            DeliverReady();
        }
        Block& block = At(number);
        block.Begin(number, IdBefore(header, newest - number), m_usualCount, now);
        block.overtaken = number < newest ? now : Block::kNever;
        block.wasDropping = m_isDropping;
    }
    m_isDropping = false;
}

void BlockRow::Settle(Block& block, bool delivers) {
    if (block.state == BlockState::Awaited) {
        (block.wasDropping ? m_account.lostInSocket : m_account.lostOnWire).Add();
    }
    if (block.state == BlockState::Open) {
        const bool isIncomplete = LacksData(block);
        (isIncomplete ? m_account.incomplete : m_account.complete).Add();
        m_account.missing.Add(block.MissingCount());
        m_usualCount = block.IsComplete() ? *block.dataCount : m_usualCount;
        if (!delivers || (isIncomplete && !m_settings.deliversIncomplete)) {
            m_account.leftOut.Add();
            m_client.GiveBack(block.buffer);
            block.buffer.reset();
        }
    }
    block.state = BlockState::Over;
}

void BlockRow::SettleAll(bool delivers) {
    for (uint64_t number = Oldest(); number < End(); ++number) {
        Settle(At(number), delivers);
    }
    DeliverReady();
}

void BlockRow::DeliverReady() {
    while (IsBusy()) {
        Block& block = At(m_oldest);
        if (block.number != m_oldest || block.state != BlockState::Over) {
            break;
        }
        ++m_oldest;
        if (block.buffer) {
            m_client.Deliver(block.buffer, m_frame.Describe(block));
            block.buffer.reset();
        }
    }
}

}  // namespace OvGige
