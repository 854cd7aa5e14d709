#include "gige/assembly/ResendPlan.h"

#include <algorithm>
#include <chrono>

namespace OvGige {
namespace {

/// Packets of a block that may be asked for even if it has few.
constexpr uint32_t kLeastLimit = 16;
/// Most requests at a time; the next ones follow after the gap time.
constexpr int kRequestsMax = 64;

}  // namespace

void ResendPlan::NoteGap(Block& block, uint32_t end, TimePoint now) const {
    block.laterGapEnd = std::max(block.laterGapEnd, end);
    // Packets of one batch came at one time.
    if (block.gapDue == Block::kNever || block.gapDue == now + m_settings.gapTime) {
        block.gapEnd = block.laterGapEnd;
        block.gapDue = now + m_settings.gapTime;
    }
}

void ResendPlan::Refuse(Block& block, Status status, uint32_t packetId, TimePoint now) const {
    switch (status) {
        case Status::PacketUnavailable:
        case Status::PacketAndPreviousRemoved:
            block.isRefused = true;
            break;
        case Status::PacketRemoved:
            if (packetId < block.packets.Capacity() && !block.packets.Has(packetId)) {
                block.packets.MarkGone(packetId);
            }
            break;
        case Status::PacketNotYetAvailable:
        case Status::PacketTemporarilyUnavailable:
            block.repeatDue = now + 2 * m_settings.packetTimeout;
            block.lastPacket = now;
            break;
        case Status::DataOverrun:
            block.isDamaged = true;
            break;
        default:
            break;
    }
}

uint32_t ResendPlan::Limit(const Block& block) const {
    const uint64_t share = uint64_t{block.ExpectedCount()} * m_settings.resendPercent / 100;
    return m_settings.resendPercent == 0 ? 0 : std::max(kLeastLimit, static_cast<uint32_t>(share));
}

bool ResendPlan::MayAsk(const Block& block) const {
    return m_settings.resends && block.state == BlockState::Open && !block.isRefused &&
           block.askedCount < Limit(block);
}

TimePoint ResendPlan::TailDue(const Block& block) const {
    if (block.trailerAsked || block.trailer) {
        return Block::kNever;
    }
    if (block.overtaken != Block::kNever) {
        return block.overtaken + m_settings.gapTime;
    }
    return block.HasData() ? block.lastPacket + m_settings.packetTimeout : Block::kNever;
}

TimePoint ResendPlan::Due(const Block& block) const {
    return MayAsk(block) ? std::min({block.gapDue, block.repeatDue, TailDue(block)})
                         : Block::kNever;
}

void ResendPlan::Act(Block& block, TimePoint now) {
    if (now < Due(block)) {
        return;
    }
    if (now >= block.repeatDue) {
        Repeat(block, now);
    }
    if (now >= block.gapDue) {
        AskGaps(block, now);
    }
    if (now >= TailDue(block)) {
        AskTail(block, now);
    }
    Send(block);
}

void ResendPlan::AskGaps(Block& block, TimePoint now) {
    const uint32_t end = block.gapEnd;
    block.askedEnd = std::max(block.askedEnd, AskMissing(block, block.askedEnd, end, now));
    const bool isDone = block.askedEnd >= end && block.laterGapEnd <= end;
    block.gapDue = isDone ? Block::kNever : now + m_settings.gapTime;
    block.gapEnd = block.laterGapEnd;
}

void ResendPlan::AskTail(Block& block, TimePoint now) {
    const uint32_t end = std::min(block.ExpectedCount() + 1, block.packets.Capacity());
    block.askedEnd = std::max(block.askedEnd, AskMissing(block, block.askedEnd, end, now));
    block.trailerAsked = true;
    AskTrailer(block, now);
}

void ResendPlan::Repeat(Block& block, TimePoint now) {
    block.repeatDue = Block::kNever;
    AskMissing(block, 0, block.askedEnd, now);
    if (block.trailerAsked && !block.trailer) {
        AskTrailer(block, now);
    }
}

uint32_t ResendPlan::AskMissing(Block& block, uint32_t from, uint32_t end, TimePoint now) {
    for (int requests = 0; requests < kRequestsMax; ++requests) {
        const uint32_t first = block.packets.FirstMissing(from, end);
        if (first >= end) {
            return end;
        }
        const uint32_t wanted = block.packets.FirstSettled(first, end) - first;
        const uint32_t granted = Grant(block, wanted, now);
        for (uint32_t id = first; id < first + granted; ++id) {
            block.packets.MarkAsked(id);
        }
        Add(block, {first, granted});
        from = first + granted;
        if (granted < wanted) {
            break;
        }
    }
    return from;
}

void ResendPlan::AskTrailer(Block& block, TimePoint now) {
    Add(block, {block.ExpectedCount() + 1, Grant(block, 1, now)});
}

/// How many of the wanted packets may be asked for now. What isn't granted in this second is
/// asked for when the packets are asked for again.
uint32_t ResendPlan::Grant(Block& block, uint32_t wanted, TimePoint now) {
    if (now - m_secondBegin >= std::chrono::seconds(1)) {
        m_secondBegin = now;
        m_askedInSecond = 0;
    }
    const uint32_t ofBlock = Limit(block) - std::min(Limit(block), block.askedCount);
    const uint32_t ofSecond =
        m_settings.resendsPerSecond - std::min(m_settings.resendsPerSecond, m_askedInSecond);
    const uint32_t granted = std::min({wanted, ofBlock, ofSecond});
    block.askedCount += granted;
    m_askedInSecond += granted;
    m_account.asked.Add(granted);
    block.repeatDue = now + m_settings.packetTimeout;
    return granted;
}

/// Runs that follow each other become one request.
void ResendPlan::Add(const Block& block, Run run) {
    if (run.count == 0) {
        return;
    }
    if (m_pending.count != 0 && m_pending.first + m_pending.count == run.first) {
        m_pending.count += run.count;
        return;
    }
    Send(block);
    m_pending = run;
}

void ResendPlan::Send(const Block& block) {
    if (m_pending.count == 0) {
        return;
    }
    m_client.AskAgain({.channel = m_settings.channel,
                       .isExtended = block.form.isExtended,
                       .blockId = block.id,
                       .firstPacket = m_pending.first,
                       .lastPacket = m_pending.first + m_pending.count - 1});
    m_pending = {};
}

}  // namespace OvGige
