#include "gige/assembly/Block.h"

#include <algorithm>

namespace OvGige {
namespace {

/// Multi-part blocks begin a packet with each part, so they take more packets than their size
/// does.
constexpr uint64_t kPartsMax = 256;

uint64_t CeilDivide(uint64_t value, uint64_t by) {
    return value / by + (value % by != 0 ? 1 : 0);
}

uint64_t BitsPerPixel(uint32_t pixelFormat) {
    return pixelFormat >> 16 & 0xFF;
}

uint32_t PacketCount(uint64_t bytes, size_t stride) {
    return static_cast<uint32_t>(
        std::min<uint64_t>(CeilDivide(bytes, stride), PacketMap::kCapacityMax));
}

}  // namespace

uint64_t LeastImageSize(const ImageShape& shape, uint32_t lines) {
    const uint64_t line = uint64_t{shape.sizeX} * BitsPerPixel(shape.pixelFormat);
    return CeilDivide(line * lines, 8) + uint64_t{shape.paddingX} * lines;
}

std::optional<uint64_t> DataSizeOf(const BlockLeader& leader, uint64_t partsLength) {
    if (leader.HasChunks()) {
        return {};
    }
    switch (leader.Type()) {
        case PayloadType::Image: {
            const uint64_t line = CeilDivide(
                uint64_t{leader.shape.sizeX} * BitsPerPixel(leader.shape.pixelFormat), 8);
            return (line + leader.shape.paddingX) * leader.shape.sizeY + leader.shape.paddingY;
        }
        case PayloadType::Raw:
        case PayloadType::File:
        case PayloadType::Jpeg:
        case PayloadType::Jpeg2000:
            return leader.size;
        case PayloadType::MultiPart:
            return partsLength;
        default:
            return {};
    }
}

void Block::Begin(uint64_t newNumber, uint64_t newId, uint32_t dataCountBefore, TimePoint now) {
    state = BlockState::Awaited;
    number = newNumber;
    id = newId;
    buffer.reset();
    highest = 0;
    shortId = 0;
    filledEnd = 0;
    leader.reset();
    trailer.reset();
    fileName.clear();
    partsLength = 0;
    usualCount = dataCountBefore;
    dataCount.reset();
    isCut = hasBeyond = isDamaged = wasDropping = isRefused = trailerAsked = false;
    begin = lastPacket = now;
    overtaken = gapDue = repeatDue = kNever;
    askedEnd = gapEnd = laterGapEnd = askedCount = 0;
    packets.Reset(1);
}

void Block::Open(std::shared_ptr<OvProducer::Buffer> newBuffer, DataForm newForm,
                 Stride newStride) {
    state = BlockState::Open;
    buffer = std::move(newBuffer);
    SetStride(newForm, newStride);
}

void Block::SetStride(DataForm newForm, Stride newStride) {
    const bool hadLeader = HasLeader();
    form = newForm;
    stride = newStride;
    packets.Reset(CeilDivide(buffer->size, stride.size) + 1 +
                  (HasOffset(form.format) ? kPartsMax : 0));
    if (hadLeader) {
        packets.Insert(0);
    }
    highest = 0;
    shortId = 0;
    filledEnd = 0;
    if (!trailer) {
        CountData();
    }
}

uint32_t Block::WantedEnd() const {
    const uint32_t wanted = dataCount.value_or(highest) + 1;
    return std::min(wanted, packets.Capacity());
}

bool Block::IsComplete() const {
    return trailer.has_value() && packets.Count() == WantedEnd();
}

bool Block::IsSettled() const {
    return trailer.has_value() && packets.Count() + packets.GoneCount() >= WantedEnd();
}

uint32_t Block::ExpectedCount() const {
    return dataCount.value_or(std::max(highest, usualCount));
}

uint32_t Block::MissingCount() const {
    const uint32_t wanted = std::min(ExpectedCount() + 1, packets.Capacity());
    return wanted - std::min(packets.Count(), wanted) + (trailer ? 0 : 1);
}

void Block::SetLeader(const BlockLeader& newLeader) {
    leader = newLeader;
    leader->fileName = {};
    leader->parts = {};
    fileName.assign(reinterpret_cast<const char*>(newLeader.fileName.data()),
                    newLeader.fileName.size());
    for (size_t i = 0; i < newLeader.PartCount(); ++i) {
        partsLength += newLeader.Part(i).length;
    }
    packets.Insert(0);
    if (!trailer) {
        CountData();
    }
}

bool Block::IsLarger() const {
    return isCut ||
           (dataCount && !HasOffset(form.format) ? *dataCount >= packets.Capacity() : hasBeyond);
}

std::optional<uint32_t> Block::LeaderCount() const {
    const auto size = leader ? DataSizeOf(*leader, partsLength) : std::nullopt;
    // Parts begin with packets of their own: their number is known when the trailer comes.
    if (!size || leader->Type() == PayloadType::MultiPart) {
        return {};
    }
    return PacketCount(*size, stride.size);
}

bool Block::DropBeyond(uint32_t count) {
    if (LeaderCount() != count) {
        return false;
    }
    for (uint32_t beyond = count + 1; beyond <= highest; ++beyond) {
        packets.Erase(beyond);
    }
    highest = count;
    filledEnd = std::min(filledEnd, count * stride.size);
    return true;
}

void Block::CountData() {
    dataCount = LeaderCount();
    if (dataCount && *dataCount < highest) {
        dataCount.reset();
    }
}

}  // namespace OvGige
