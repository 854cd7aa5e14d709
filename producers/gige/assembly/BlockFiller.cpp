#include "gige/assembly/BlockFiller.h"

#include <algorithm>
#include <cstring>

namespace OvGige {

BlockFiller::BlockFiller(const AssemblerSettings& settings, StreamAccount& account,
                         const BlockRow& row, ResendPlan& resends, JumpWatch& jumps)
    : m_settings(settings), m_account(account), m_row(row), m_resends(resends), m_jumps(jumps) {}

void BlockFiller::Open(Block& block, std::shared_ptr<OvProducer::Buffer> buffer,
                       const StreamHeader& header, TimePoint now) {
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

void BlockFiller::Take(Block& block, const StreamHeader& header, ByteView prefix, ByteView data,
                       TimePoint now) {
    if (header.format == PacketFormat::Leader) {
        TakeLeader(block, data, now);
    } else if (header.format == PacketFormat::Trailer) {
        TakeTrailer(block, header, data, now);
    } else if (header.format == PacketFormat::AllIn) {
        TakeWhole(block, data, now);
    } else if (IsData(header.format)) {
        TakeData(block, header, prefix, data, now);
    } else {
        Ignore();
    }
}

void BlockFiller::TakeLeader(Block& block, ByteView payload, TimePoint now) {
    if (block.packets.Has(0)) {
        m_account.doubled.Add();
        return;
    }
    const auto leader = ParseLeader(payload);
    if (!leader) {
        Ignore();
        return;
    }
    if (m_row.IsNewest(block)) {
        m_jumps.NoteTimestamp(leader->timestamp);
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

void BlockFiller::TakeTrailer(Block& block, const StreamHeader& header, ByteView payload,
                              TimePoint now) {
    if (block.trailer) {
        m_account.doubled.Add();
        return;
    }
    const auto trailer = ParseTrailer(payload);
    const uint32_t before = block.packets.Count();
    if (!trailer || block.state != BlockState::Open || header.packetId == 0 ||
        (header.packetId <= block.highest && !block.DropBeyond(header.packetId - 1))) {
        Ignore();
        return;
    }
    Disown(before - block.packets.Count());
    block.trailer = *trailer;
    block.dataCount = header.packetId - 1;
    DropShort(block, header.packetId - 1, now);
    if (block.highest + 1 < header.packetId || !block.HasLeader()) {
        m_resends.NoteGap(block, block.WantedEnd(), now);
    }
    NotePacket(block, block.trailerAsked, now);
}

void BlockFiller::TakeWhole(Block& block, ByteView payload, TimePoint now) {
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
    m_jumps.NoteTimestamp(whole->leader.timestamp);
    block.trailer = whole->trailer;
    block.dataCount = 0;
    Place(block, 0, whole->data);
    NotePacket(block, block.askedCount != 0, now);
}

void BlockFiller::TakeData(Block& block, const StreamHeader& header, ByteView prefix, ByteView data,
                           TimePoint now) {
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
bool BlockFiller::FitForm(Block& block, const StreamHeader& header, size_t length) {
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
    // A block may have fewer packets than its leader says, and a cut packet is followed by others.
    const bool mayBeLast = id > block.highest || (block.dataCount && id >= *block.dataCount);
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
    const uint32_t before = block.packets.Count();
    block.SetStride(block.form, m_stride);
    if (hasFirst) {
        block.packets.Insert(1);
        block.highest = 1;
        block.filledEnd = length;
    }
    Disown(before - block.packets.Count());
    return true;
}

void BlockFiller::SetForm(const DataForm& form) {
    m_form = form;
    const size_t length = DataPerPacket(m_settings.packetSize, form.isExtended, form.format);
    m_stride = {std::max<size_t>(1, length), false};
}

/// A packet that is shorter than others can only be the last one. If another one follows, it
/// was cut on its way.
void BlockFiller::DropShort(Block& block, uint32_t followingId, TimePoint now) {
    if (block.shortId != 0 && followingId > block.shortId) {
        block.packets.Erase(block.shortId);
        Disown(1);
        m_resends.NoteGap(block, block.shortId + 1, now);
        block.shortId = 0;
    }
}

void BlockFiller::Place(Block& block, size_t offset, ByteView data) {
    const size_t room = block.buffer->size - offset;
    block.isCut = block.isCut || data.size() > room;
    const size_t length = std::min(data.size(), room);
    std::byte* const place = block.buffer->base + offset;
    if (place != data.data()) {
        std::memmove(place, data.data(), length);
    }
    block.filledEnd = std::max(block.filledEnd, offset + length);
}

void BlockFiller::NotePacket(Block& block, bool wasAsked, TimePoint now) {
    m_account.used.Add();
    if (wasAsked) {
        m_account.answered.Add();
    }
    block.lastPacket = now;
}

}  // namespace OvGige
