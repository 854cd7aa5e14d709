#pragma once
/// A block on its way.

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "framework/Buffer.h"
#include "gige/assembly/AssemblerSettings.h"
#include "gige/assembly/PacketMap.h"
#include "gige/protocol/Gvsp.h"
#include "gige/protocol/GvspBlock.h"

namespace OvGige {

/// The form of a stream's data packets.
struct DataForm {
    bool isExtended = false;
    PacketFormat format = PacketFormat::Data;

    bool operator==(const DataForm&) const = default;
    /// Bytes before the data.
    size_t HeadSize() const {
        return (isExtended ? kExtendedStreamHeaderSize : kStreamHeaderSize) + PrefixSize(format);
    }
};

/// How many bytes of data there are in each packet but the last.
struct Stride {
    size_t size = 0;
    bool isSeen = false;  ///< in a packet; otherwise computed from the packet size
};

enum class BlockState : uint8_t {
    Free,
    Awaited,  ///< a later block came first
    Open,     ///< has a buffer
    Over,     ///< waits for those before it, or has left
};

/// A block and what is known of it. Blocks are used again, with their memory.
struct Block {
    static constexpr TimePoint kNever = TimePoint::max();

    BlockState state = BlockState::Free;
    uint64_t number = 0;  ///< see `BlockIds`
    uint64_t id = 0;
    std::shared_ptr<OvProducer::Buffer> buffer;

    DataForm form;
    Stride stride;
    PacketMap packets;     ///< leader and data
    uint32_t highest = 0;  ///< data packet
    uint32_t shortId = 0;  ///< a data packet that is shorter than others; 0 if there is none
    size_t filledEnd = 0;  ///< bytes
    std::optional<BlockLeader> leader;  ///< without what belongs to its packet
    std::optional<BlockTrailer> trailer;
    std::string fileName;
    uint64_t partsLength = 0;  ///< of a multi-part block
    uint32_t usualCount = 0;   ///< data packets of whole blocks before it; 0 if there were none
    /// Data packets: as the trailer says, or as many as the leader's size takes. None if
    /// neither is known.
    std::optional<uint32_t> dataCount;
    bool isCut = false;        ///< data didn't fit the buffer
    bool hasBeyond = false;    ///< a packet came whose number doesn't fit the buffer
    bool isDamaged = false;    ///< by the camera
    bool wasDropping = false;  ///< the system dropped packets before it was noticed

    TimePoint begin = kNever;
    TimePoint lastPacket = kNever;
    TimePoint overtaken = kNever;  ///< when a newer block began

    // Packets that are asked for again.
    uint32_t askedEnd = 0;     ///< all missing packets below it were asked for
    uint32_t gapEnd = 0;       ///< missing packets below it are asked for at `gapDue`
    uint32_t laterGapEnd = 0;  ///< of gaps that were noticed after those
    TimePoint gapDue = kNever;
    TimePoint repeatDue = kNever;  ///< when those below `askedEnd` are asked for again
    uint32_t askedCount = 0;
    bool isRefused = false;  ///< the camera has no more of it
    bool trailerAsked = false;

    /// Begins a block of which nothing is known.
    /// @param dataCountBefore  data packets of whole blocks before it
    void Begin(uint64_t newNumber, uint64_t newId, uint32_t dataCountBefore, TimePoint now);
    /// Takes the buffer and the form of packets, and makes room for as many as can be in it.
    void Open(std::shared_ptr<OvProducer::Buffer> newBuffer, DataForm newForm, Stride newStride);
    /// Forgets data packets, since they were in the wrong places.
    void SetStride(DataForm newForm, Stride newStride);

    bool HasLeader() const { return packets.Has(0); }
    /// Whether anything but the leader came.
    bool HasData() const { return highest > 0 || trailer.has_value(); }
    /// Numbers of the packets that must come lie below this one: the leader and the data that
    /// fits the buffer.
    uint32_t WantedEnd() const;
    bool IsComplete() const;
    /// Whether nothing more can come.
    bool IsSettled() const;
    /// Whether it is larger than its buffer. A single packet beyond the end that leader or
    /// trailer name is a damaged one.
    bool IsLarger() const;
    /// How many data packets it has, as far as anybody knows.
    uint32_t ExpectedCount() const;
    /// Packets that haven't come, the trailer among them.
    uint32_t MissingCount() const;
    /// Where the data of a packet belongs.
    size_t PlaceOf(uint32_t packetId) const { return (packetId - 1) * stride.size; }

    void SetLeader(const BlockLeader& newLeader);
    /// How many data packets the leader's size takes.
    std::optional<uint32_t> LeaderCount() const;
    /// Derives the number of data packets from the leader.
    void CountData();
    /// Forgets packets beyond the number that leader and trailer agree on: they were damaged.
    /// False if the leader doesn't say that number.
    bool DropBeyond(uint32_t count);
};

/// Bytes of a block's data by its leader; none if only the trailer says it.
std::optional<uint64_t> DataSizeOf(const BlockLeader& leader, uint64_t partsLength);
/// The least bytes that an image of so many lines has. Images of packed pixels may lack the gaps
/// between lines.
uint64_t LeastImageSize(const ImageShape& shape, uint32_t lines);

}  // namespace OvGige
