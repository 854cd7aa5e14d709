#include "gige/assembly/BlockAssembler.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace OvGige {
namespace {

/// Ids that are farther away than this aren't an effect of the network.
constexpr int64_t kNear = 100;
/// No camera lives long enough for greater ids: they are damaged.
constexpr uint64_t kIdMax = uint64_t{1} << 62;
/// Leaders are no longer, unless they have many parts.
constexpr size_t kLeaderMax = 576;

/// The id of the block that is `back` blocks before that of the packet.
uint64_t IdBefore(const StreamHeader& header, uint64_t back) {
    if (header.isExtended) {
        return header.blockId - back;
    }
    return (header.blockId - 1 + kShortBlockIdMax - back) % kShortBlockIdMax + 1;
}

}  // namespace

BlockAssembler::BlockAssembler(const AssemblerSettings& settings, StreamAccount& account,
                               BlockClient& client)
    : m_settings(settings),
      m_account(account),
      m_client(client),
      m_resends(settings, account, client),
      m_frame(settings.tickFrequency) {}

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
    Block* const block = Find(header, data, now);
    if (block == nullptr) {
        if (!std::exchange(m_isHeld, false)) {
            Ignore();
        }
        return;
    }
    if (!header.IsGood()) {
        m_account.refused.Add();
        m_resends.Refuse(*block, header.status, header.packetId, now);
    } else if (header.format == PacketFormat::Leader) {
        TakeLeader(*block, data, now);
    } else if (header.format == PacketFormat::Trailer) {
        TakeTrailer(*block, header, data, now);
    } else if (header.format == PacketFormat::AllIn) {
        TakeWhole(*block, data, now);
    } else if (IsData(header.format)) {
        TakeData(*block, header, prefix, data, now);
    } else {
        Ignore();
    }
    FinishIfOver(*block);
}

void BlockAssembler::NoteDrops(uint64_t count) {
    m_account.dropped.Add(count);
    m_dropsSinceBlock += count;
}

size_t BlockAssembler::Plan(std::span<PlannedPacket> plan) const {
    if (!m_isStarted) {
        return 0;
    }
    const Block& block = BlockOf(m_ids.Newest());
    if (block.state != BlockState::Open || block.form != m_form) {
        return 0;
    }
    const uint32_t end = std::min(block.dataCount.value_or(PacketMap::kCapacityMax - 1) + 1,
                                  block.packets.Capacity());
    size_t offset = HasOffset(m_form.format) ? block.filledEnd : block.PlaceOf(block.highest + 1);
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
    const Block& block = BlockOf(m_ids.Newest());
    return header.IsGood() && header.format == m_form.format &&
           header.isExtended == m_form.isExtended && header.packetId == plan.packetId &&
           header.blockId == block.id &&
           (!HasOffset(m_form.format) || ParseDataPrefix(m_form.format, prefix).offset ==
                                             static_cast<size_t>(plan.place - block.buffer->base));
}

// Finding a packet's block.

Block* BlockAssembler::Find(const StreamHeader& header, ByteView data, TimePoint now) {
    // Test packets have no block.
    if (header.blockId == 0 || header.blockId > kIdMax) {
        return nullptr;
    }
    if (!m_isStarted) {
        Restart(header, now);
        return &BlockOf(m_ids.Newest());
    }
    const int64_t distance = m_ids.Distance(header.blockId, header.isExtended);
    Block* block = FindKnown(distance);
    if (header.IsGood() && (block == nullptr || IsOfNewRun(*block, header, data, now))) {
        block = FindNew(header, data, distance, now);
    } else if (block != nullptr && block->state == BlockState::Awaited && header.IsGood()) {
        Open(*block, header, now);
    }
    m_lastPacket = block == nullptr ? m_lastPacket : now;
    return block;
}

Block* BlockAssembler::FindKnown(int64_t distance) {
    if (distance > 0 || distance <= -static_cast<int64_t>(kBlocks)) {
        return nullptr;
    }
    const uint64_t number = m_ids.Newest() + static_cast<uint64_t>(distance);
    Block& block = BlockOf(number);
    return block.state != BlockState::Free && block.number == number ? &block : nullptr;
}

Block* BlockAssembler::FindNew(const StreamHeader& header, ByteView data, int64_t distance,
                               TimePoint now) {
    if (distance > 0 && distance <= kNear) {
        Advance(header, distance, now);
        return &BlockOf(m_ids.Newest());
    }
    if (header.blockId != m_suspect.blockId && header.format != PacketFormat::AllIn) {
        if (std::abs(distance) > kNear || IsRestart(header, data, now)) {
            Suspect(header, data);
        }
        return nullptr;
    }
    if (header.format == PacketFormat::AllIn && !IsRestart(header, data, now)) {
        return nullptr;
    }
    m_account.restarts.Add();
    Restart(header, now);
    return &BlockOf(m_ids.Newest());
}

/// Whether a packet with the id of a block that is over belongs to another one.
bool BlockAssembler::IsOfNewRun(const Block& block, const StreamHeader& header, ByteView data,
                                TimePoint now) const {
    return block.state == BlockState::Over && block.HasLeader() &&
           (m_suspect.blockId == header.blockId || IsRestart(header, data, now));
}

/// Whether a block that isn't next is from a camera that began to count anew. A leader that was
/// only late is older than the newest one.
bool BlockAssembler::IsRestart(const StreamHeader& header, ByteView data, TimePoint now) const {
    if (header.format != PacketFormat::Leader && header.format != PacketFormat::AllIn) {
        return false;
    }
    const auto leader = ParseLeader(data);
    return leader &&
           (leader->timestamp > m_lastTimestamp || now - m_lastPacket >= m_settings.retention);
}

/// Keeps the first packet of what may be another run of the camera. It may as well be a damaged
/// one: only a second packet of the same block says that it isn't.
void BlockAssembler::Suspect(const StreamHeader& header, ByteView data) {
    DropSuspect();
    m_isHeld = header.format == PacketFormat::Leader && !data.empty() && data.size() <= kLeaderMax;
    m_suspect.blockId = header.blockId;
    m_suspect.leader.assign(data.begin(), m_isHeld ? data.end() : data.begin());
}

void BlockAssembler::DropSuspect() {
    if (!m_suspect.leader.empty()) {
        Ignore();
    }
    m_suspect.blockId = 0;
    m_suspect.leader.clear();
}

/// Begins a run of the camera with the block of a packet.
void BlockAssembler::Restart(const StreamHeader& header, TimePoint now) {
    const Bytes leader = std::exchange(m_suspect.leader, {});
    const bool isOfBlock = m_suspect.blockId == header.blockId;
    End(true);
    for (Block& block : m_blocks) {
        block.state = BlockState::Free;
    }
    m_isStarted = true;
    m_ids.Start(header.blockId);
    m_oldest = header.blockId;
    Advance(header, 0, now);
    if (isOfBlock && !leader.empty()) {
        TakeLeader(BlockOf(m_ids.Newest()), leader, now);
    } else if (!leader.empty()) {
        Ignore();
    }
}

/// Begins the block of a packet, `distance` blocks after the newest one, and those between.
void BlockAssembler::Advance(const StreamHeader& header, int64_t distance, TimePoint now) {
    const uint64_t before = m_ids.Newest();
    m_ids.Advance(header.blockId, distance);
    const uint64_t newest = m_ids.Newest();
    for (uint64_t number = m_oldest; number <= before && number < newest; ++number) {
        BlockOf(number).overtaken = std::min(BlockOf(number).overtaken, now);
    }
    for (uint64_t number = distance == 0 ? newest : before + 1; number <= newest; ++number) {
        // The place that the block takes may be that of one that isn't over.
        while (m_oldest + kBlocks <= number) {
            Settle(BlockOf(m_oldest), true);
            DeliverReady();
        }
        Block& block = BlockOf(number);
        block.Begin(number, IdBefore(header, newest - number), now);
        block.overtaken = number < newest ? now : Block::kNever;
        block.wasDropping = m_dropsSinceBlock != 0;
    }
    m_dropsSinceBlock = 0;
    Open(BlockOf(newest), header, now);
}

void BlockAssembler::Open(Block& block, const StreamHeader& header, TimePoint now) {
    std::shared_ptr<OvProducer::Buffer> buffer = m_client.TakeBuffer();
    if (!buffer) {
        m_account.noBuffer.Add();
        block.state = BlockState::Over;
        DeliverReady();
        return;
    }
    DataForm form = m_form;
    if (IsData(header.format)) {
        form.format = header.format;
    }
    form.isExtended = header.isExtended;
    if (form != m_form || m_stride.size == 0) {
        SetForm(form);
    }
    block.Open(std::move(buffer), m_form, m_stride);
    block.begin = now;
}

// What packets say.

void BlockAssembler::TakeLeader(Block& block, ByteView payload, TimePoint now) {
    if (block.packets.Has(0)) {
        m_account.doubled.Add();
        return;
    }
    const auto leader = ParseLeader(payload);
    if (!leader) {
        Ignore();
        return;
    }
    if (block.number == m_ids.Newest()) {
        m_lastTimestamp = leader->timestamp;
    }
    if (block.state != BlockState::Open) {
        block.packets.Insert(0);
        Ignore();
        return;
    }
    const bool wasAsked = block.packets.WasAsked(0);
    block.SetLeader(*leader);
    NotePacket(block, wasAsked, now);
}

void BlockAssembler::TakeTrailer(Block& block, const StreamHeader& header, ByteView payload,
                                 TimePoint now) {
    if (block.trailer) {
        m_account.doubled.Add();
        return;
    }
    const auto trailer = ParseTrailer(payload);
    if (!trailer || block.state != BlockState::Open || header.packetId == 0 ||
        (header.packetId <= block.highest && !block.DropBeyond(header.packetId - 1))) {
        Ignore();
        return;
    }
    block.trailer = *trailer;
    block.dataCount = header.packetId - 1;
    DropShort(block, header.packetId - 1, now);
    if (block.highest + 1 < header.packetId || !block.HasLeader()) {
        m_resends.NoteGap(block, block.WantedEnd(), now);
    }
    NotePacket(block, block.trailerAsked, now);
}

void BlockAssembler::TakeWhole(Block& block, ByteView payload, TimePoint now) {
    if (block.packets.Has(0)) {
        m_account.doubled.Add();
        return;
    }
    const auto whole = ParseWholeBlock(payload);
    if (!whole || block.state != BlockState::Open) {
        Ignore();
        return;
    }
    block.SetLeader(whole->leader);
    m_lastTimestamp = whole->leader.timestamp;
    block.trailer = whole->trailer;
    block.dataCount = 0;
    Place(block, 0, whole->data);
    NotePacket(block, block.askedCount != 0, now);
}

void BlockAssembler::TakeData(Block& block, const StreamHeader& header, ByteView prefix,
                              ByteView data, TimePoint now) {
    const uint32_t id = header.packetId;
    if (id == 0 || data.empty() || (block.trailer && id > *block.dataCount)) {
        Ignore();
        return;
    }
    if (id < block.packets.Capacity() && block.packets.Has(id)) {
        m_account.doubled.Add();
        return;
    }
    if (block.state != BlockState::Open || !FitForm(block, header, data.size())) {
        Ignore();
        return;
    }
    const bool hasOffset = HasOffset(header.format);
    const size_t offset =
        hasOffset ? ParseDataPrefix(header.format, prefix).offset : block.PlaceOf(id);
    if (id >= block.packets.Capacity() || offset >= block.buffer->size) {
        block.hasBeyond = true;
        block.lastPacket = now;
        Ignore();
        return;
    }
    // The leader's size was too small.
    if (block.dataCount && id > *block.dataCount) {
        block.dataCount.reset();
    }
    if (!hasOffset) {
        DropShort(block, id, now);
        block.shortId =
            data.size() < block.stride.size ? std::max(block.shortId, id) : block.shortId;
    }
    Place(block, offset, data);
    if (id > block.highest + 1 || (block.highest == 0 && !block.HasLeader())) {
        // A damaged number mustn't make the rest of the block look lost.
        m_resends.NoteGap(block, std::min(id, block.LeaderCount().value_or(id - 1) + 1), now);
    }
    const bool wasAsked = block.packets.WasAsked(id);
    block.packets.Insert(id);
    block.highest = std::max(block.highest, id);
    NotePacket(block, wasAsked, now);
}

/// Makes the block's form that of a data packet. False for a packet that was cut.
bool BlockAssembler::FitForm(Block& block, const StreamHeader& header, size_t length) {
    const DataForm form{header.isExtended, header.format};
    // Later packets of another form are answers of cameras that send them so.
    if (form != block.form && block.highest == 0) {
        SetForm(form);
        block.SetStride(m_form, m_stride);
    }
    if (length == block.stride.size) {
        block.stride.isSeen = m_stride.isSeen = true;
        return true;
    }
    const uint32_t id = header.packetId;
    const bool mayBeLast = block.dataCount ? id >= *block.dataCount : id > block.highest;
    if (length < block.stride.size) {
        // Parts end with short packets, too.
        if (HasOffset(form.format) || (mayBeLast && (block.stride.isSeen || block.shortId == 0))) {
            return true;
        }
        if (block.stride.isSeen) {
            return false;
        }
    }
    m_stride = {length, false};
    if (HasOffset(form.format)) {
        block.stride = m_stride;
        return true;
    }
    // Packets have another length than the camera's packet size said. Only the first one lies
    // where it belongs.
    const bool hasFirst = block.shortId == 1 && block.filledEnd == length;
    block.SetStride(block.form, m_stride);
    if (hasFirst) {
        block.packets.Insert(1);
        block.highest = 1;
        block.filledEnd = length;
    }
    return true;
}

void BlockAssembler::SetForm(const DataForm& form) {
    m_form = form;
    const size_t length = DataPerPacket(m_settings.packetSize, form.isExtended, form.format);
    m_stride = {std::max<size_t>(1, length), false};
}

/// A packet that is shorter than others can only be the last one. If another one follows, it
/// was cut on its way.
void BlockAssembler::DropShort(Block& block, uint32_t followingId, TimePoint now) {
    if (block.shortId != 0 && followingId > block.shortId) {
        block.packets.Erase(block.shortId);
        m_resends.NoteGap(block, block.shortId + 1, now);
        block.shortId = 0;
    }
}

void BlockAssembler::Place(Block& block, size_t offset, ByteView data) {
    const size_t room = block.buffer->size - offset;
    block.isCut = block.isCut || data.size() > room;
    const size_t length = std::min(data.size(), room);
    std::byte* const place = block.buffer->base + offset;
    if (place != data.data()) {
        std::memmove(place, data.data(), length);
    }
    block.filledEnd = std::max(block.filledEnd, offset + length);
}

void BlockAssembler::NotePacket(Block& block, bool wasAsked, TimePoint now) {
    m_account.used.Add();
    if (wasAsked) {
        m_account.answered.Add();
    }
    block.lastPacket = now;
}

// The end of blocks.

void BlockAssembler::FinishIfOver(Block& block) {
    if (block.state == BlockState::Open && (block.IsComplete() || block.IsSettled())) {
        if (block.IsComplete()) {
            m_resends.SetUsualCount(*block.dataCount);
        }
        Settle(block, true);
        DeliverReady();
    }
}

TimePoint BlockAssembler::GiveUpDue(const Block& block) const {
    if (block.state == BlockState::Awaited) {
        return block.begin + m_settings.packetTimeout;
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
    // The last packets that could be asked for have their time to come.
    const TimePoint asked = block.repeatDue == Block::kNever ? last : block.repeatDue;
    return std::max(last + m_settings.packetTimeout, asked);
}

TimePoint BlockAssembler::Due() const {
    TimePoint due = Block::kNever;
    for (uint64_t number = m_oldest; m_isStarted && number <= m_ids.Newest(); ++number) {
        const Block& block = BlockOf(number);
        due = std::min({due, m_resends.Due(block), GiveUpDue(block)});
    }
    return due;
}

void BlockAssembler::Tick(TimePoint now) {
    for (uint64_t number = m_oldest; m_isStarted && number <= m_ids.Newest(); ++number) {
        Block& block = BlockOf(number);
        if (now >= GiveUpDue(block)) {
            Settle(block, true);
        } else {
            m_resends.Act(block, now);
        }
    }
    DeliverReady();
}

void BlockAssembler::End(bool delivers) {
    DropSuspect();
    for (uint64_t number = m_oldest; m_isStarted && number <= m_ids.Newest(); ++number) {
        Settle(BlockOf(number), delivers);
    }
    DeliverReady();
}

/// Ends a block as it is. It keeps its buffer until those before it are over.
void BlockAssembler::Settle(Block& block, bool delivers) {
    if (block.state == BlockState::Awaited) {
        (block.wasDropping ? m_account.lostInSocket : m_account.lostOnWire).Add();
    }
    if (block.state == BlockState::Open) {
        const bool isIncomplete = LacksData(block);
        (isIncomplete ? m_account.incomplete : m_account.complete).Add();
        m_account.missing.Add(isIncomplete ? block.MissingCount() : 0);
        if (!delivers || (isIncomplete && !m_settings.deliversIncomplete)) {
            m_account.leftOut.Add();
            m_client.GiveBack(block.buffer);
            block.buffer.reset();
        }
    }
    block.state = BlockState::Over;
}

void BlockAssembler::DeliverReady() {
    while (m_oldest <= m_ids.Newest()) {
        Block& block = BlockOf(m_oldest);
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
