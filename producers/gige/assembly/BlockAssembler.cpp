#include "gige/assembly/BlockAssembler.h"

#include <algorithm>
#include <utility>

namespace OvGige {
namespace {

/// A late packet's block is no farther behind.
constexpr int64_t kLate = 100;
/// Most blocks that are taken for lost at once: some seconds of a fast camera.
constexpr int64_t kGapMax = 4096;
/// Blocks that follow each other when some between them are lost.
constexpr int64_t kSoon = 8;
/// No camera lives long enough for greater ids: they are damaged.
constexpr uint64_t kIdMax = uint64_t{1} << 62;

}  // namespace

BlockAssembler::BlockAssembler(const AssemblerSettings& settings, StreamAccount& account,
                               BlockClient& client)
    : m_settings(settings),
      m_account(account),
      m_client(client),
      m_resends(settings, account, client),
      m_jumps(settings, account),
      m_row(settings, account, client),
      m_filler(settings, account, m_row, m_resends, m_jumps) {}

void BlockAssembler::Take(ByteView packet, TimePoint now) {
    const auto header = ParseStreamHeader(packet);
    if (!header) {
        Ignore();
        return;
    }
    const ByteView payload = packet.subspan(header->Size());
    const size_t prefix = header->IsGood() ? PrefixSize(header->format) : 0;
    if (payload.size() < prefix) {
        Ignore();
        return;
    }
    Take(*header, payload.first(prefix), payload.subspan(prefix), now);
}

void BlockAssembler::Take(const StreamHeader& header, ByteView prefix, ByteView data,
                          TimePoint now) {
    Block* const block = Find(header, prefix, data, now);
    if (block == nullptr) {
        if (!m_jumps.TakesPacket()) {
            Ignore();
        }
        return;
    }
    if (header.IsGood()) {
        m_filler.Take(*block, header, prefix, data, now);
    } else if (!IsFailure(header.status)) {
        Ignore();
    } else {
        m_account.refused.Add();
        m_resends.Refuse(*block, header.status, header.packetId, now);
    }
    FinishIfOver(*block);
}

void BlockAssembler::NoteDrops(uint64_t count) {
    m_account.dropped.Add(count);
    m_row.NoteDrops();
}

size_t BlockAssembler::Plan(std::span<PlannedPacket> plan) const {
    if (!m_row.IsStarted()) {
        return 0;
    }
    const Block& block = m_row.Newest();
    if (block.state != BlockState::Open || block.form != PlannedForm()) {
        return 0;
    }
    const uint32_t end = std::min(block.dataCount.value_or(PacketMap::kCapacityMax - 1) + 1,
                                  block.packets.Capacity());
    size_t offset =
        HasOffset(PlannedForm().format) ? block.filledEnd : block.PlaceOf(block.highest + 1);
    size_t count = 0;
    for (uint32_t id = block.highest + 1; id < end && count < plan.size(); ++id, ++count) {
        if (offset >= block.buffer->size) {
            break;
        }
        plan[count] = {block.buffer->base + offset,
                       std::min(block.stride.size, block.buffer->size - offset), id};
        offset += block.stride.size;
    }
    return count;
}

bool BlockAssembler::IsPlanned(const StreamHeader& header, ByteView prefix,
                               const PlannedPacket& plan) const {
    const Block& block = m_row.Newest();
    return header.IsGood() && header.format == PlannedForm().format &&
           header.isExtended == PlannedForm().isExtended && header.packetId == plan.packetId &&
           header.blockId == block.id &&
           (!HasOffset(PlannedForm().format) ||
            ParseDataPrefix(PlannedForm().format, prefix).offset ==
                static_cast<size_t>(plan.place - block.buffer->base));
}

Block* BlockAssembler::Find(const StreamHeader& header, ByteView prefix, ByteView data,
                            TimePoint now) {
    // Test packets have no block.
    if (header.blockId == 0 || header.blockId > kIdMax) {
        return nullptr;
    }
    if (!m_row.IsStarted()) {
        m_row.Start(header, now);
        return &Begin(header, now);
    }
    const int64_t distance = m_row.Distance(header);
    Block* block = m_row.Known(distance);
    if (header.IsGood() && (block == nullptr || IsOfNewRun(*block, header, data, now))) {
        block = FindNew(header, prefix, data, distance, now);
    } else if (block != nullptr && block->state == BlockState::Awaited && header.IsGood()) {
        Open(*block, header, now);
    }
    if (block != nullptr) {
        m_jumps.NotePacket(now);
    }
    return block;
}

/// The block of a packet whose block isn't known.
Block* BlockAssembler::FindNew(const StreamHeader& header, ByteView prefix, ByteView data,
                               int64_t distance, TimePoint now) {
    const bool isAhead = distance > 0 && distance <= kGapMax;
    const bool isRestart = !isAhead && m_jumps.IsRestart(header, data, now);
    // The next block is what everybody expects, and one that is a single packet has no second.
    const bool isSure = header.format == PacketFormat::AllIn ? isAhead || isRestart : distance == 1;
    if (!isSure && isAhead && BeginSuspected(distance, now)) {
        return FindNew(header, prefix, data, m_row.Distance(header), now);
    }
    if (!isSure && !m_jumps.IsSuspected(header.blockId)) {
        if (header.format != PacketFormat::AllIn &&
            (isAhead || isRestart || std::abs(distance) > kLate)) {
            m_jumps.Suspect(header, prefix, data);
        }
        return nullptr;
    }
    if (isAhead) {
        m_row.Advance(header, distance, now);
    } else {
        m_account.restarts.Add();
        m_row.Start(header, now);
    }
    return &Begin(header, now);
}

/// A packet of a block soon after the suspected one says as much as a second packet of that: a
/// block may have lost all others.
bool BlockAssembler::BeginSuspected(int64_t distance, TimePoint now) {
    const StreamHeader suspected = m_jumps.Suspected();
    const int64_t before = suspected.blockId == 0 ? 0 : m_row.Distance(suspected);
    if (before <= 0 || distance <= before || distance > before + kSoon) {
        return false;
    }
    m_row.Advance(suspected, before, now);
    Begin(suspected, now);
    return true;
}

/// Whether a packet with the id of a block that is over belongs to another one.
bool BlockAssembler::IsOfNewRun(const Block& block, const StreamHeader& header, ByteView data,
                                TimePoint now) const {
    return block.state == BlockState::Over && block.HasLeader() &&
           (m_jumps.IsSuspected(header.blockId) || m_jumps.IsRestart(header, data, now));
}

/// Begins the newest block with a packet of it, and with the one that came before, if that was
/// kept.
Block& BlockAssembler::Begin(const StreamHeader& header, TimePoint now) {
    Block& block = m_row.Newest();
    Open(block, header, now);
    if (const auto kept = m_jumps.Resolve(header.blockId)) {
        m_filler.Take(block, kept->header, kept->prefix, kept->data, now);
    }
    return block;
}

void BlockAssembler::Open(Block& block, const StreamHeader& header, TimePoint now) {
    std::shared_ptr<OvProducer::Buffer> buffer = m_client.TakeBuffer();
    if (buffer) {
        m_filler.Open(block, std::move(buffer), header, now);
        return;
    }
    m_account.noBuffer.Add();
    block.state = BlockState::Over;
    m_row.DeliverReady();
}

void BlockAssembler::FinishIfOver(Block& block) {
    if (block.state == BlockState::Open && (block.IsComplete() || block.IsSettled())) {
        m_row.Settle(block, true);
        m_row.DeliverReady();
    }
}

TimePoint BlockAssembler::GiveUpDue(const Block& block) const {
    if (block.state == BlockState::Awaited) {
        return block.begin + m_settings.gapTime;
    }
    const bool isOvertaken = block.overtaken != Block::kNever;
    if (block.state != BlockState::Open || (!block.HasData() && !isOvertaken)) {
        return Block::kNever;
    }
    if (!isOvertaken) {
        return block.lastPacket + m_settings.retention;
    }
    const TimePoint last = std::max(block.lastPacket, block.overtaken);
    if (m_resends.MayAsk(block)) {
        return last + m_settings.retention;
    }
    // The last packets that could be asked for have their time to come. What was only overtaken
    // comes sooner.
    const TimePoint asked = block.repeatDue == Block::kNever ? last : block.repeatDue;
    return std::max(last + m_settings.gapTime, asked);
}

TimePoint BlockAssembler::Due() const {
    TimePoint due = Block::kNever;
    for (uint64_t number = m_row.Oldest(); number < m_row.End(); ++number) {
        const Block& block = m_row.At(number);
        due = std::min({due, m_resends.Due(block), GiveUpDue(block)});
    }
    return due;
}

void BlockAssembler::Tick(TimePoint now) {
    for (uint64_t number = m_row.Oldest(); number < m_row.End(); ++number) {
        Block& block = m_row.At(number);
        if (now >= GiveUpDue(block)) {
            m_row.Settle(block, true);
        } else {
            m_resends.Act(block, now);
        }
    }
    m_row.DeliverReady();
}

void BlockAssembler::End(bool delivers) {
    m_jumps.Drop();
    m_row.SettleAll(delivers);
}

}  // namespace OvGige
