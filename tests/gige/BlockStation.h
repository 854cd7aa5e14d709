#pragma once
/// An assembler with buffers, and the packets of a camera for it.

#include <deque>
#include <memory>
#include <vector>

#include "gige/assembly/BlockAssembler.h"

namespace OvTest {

using OvGige::Bytes;
using OvGige::ByteView;

/// Packets of 100 bytes with 8 bytes of data each, unless a test wants others.
inline constexpr size_t kDataSize = 8;

/// A delivered buffer, as it was then.
struct Delivery {
    OvProducer::FrameInfo frame;
    Bytes bytes;
};

/// Keeps what the assembler delivers and asks for.
class BlockShelf : public OvGige::BlockClient {
public:
    void Announce(size_t size) {
        auto buffer = std::make_shared<OvProducer::Buffer>();
        buffer->ownMemory.resize(size);
        buffer->base = buffer->ownMemory.data();
        buffer->size = size;
        free.push_back(std::move(buffer));
    }
    std::shared_ptr<OvProducer::Buffer> TakeBuffer() override {
        if (free.empty()) {
            return nullptr;
        }
        auto buffer = free.front();
        free.pop_front();
        return buffer;
    }
    void Deliver(const std::shared_ptr<OvProducer::Buffer>& buffer,
                 const OvProducer::FrameInfo& frame) override {
        delivered.push_back({frame, buffer->ownMemory});
        free.push_back(buffer);
    }
    void GiveBack(const std::shared_ptr<OvProducer::Buffer>& buffer) override {
        ++givenBack;
        free.push_back(buffer);
    }
    void AskAgain(const OvGige::ResendRequest& request) override { requests.push_back(request); }

    std::deque<std::shared_ptr<OvProducer::Buffer>> free;
    std::vector<Delivery> delivered;
    std::vector<OvGige::ResendRequest> requests;
    int givenBack = 0;
};

/// Builds packets and passes them to an assembler, at a time that only the test moves.
class BlockStation {
public:
    explicit BlockStation(size_t buffers = 4, size_t bufferSize = 64) {
        settings.packetSize = kDataSize + OvGige::kIpUdpHeaderSize + OvGige::kStreamHeaderSize;
        for (size_t i = 0; i < buffers; ++i) {
            shelf.Announce(bufferSize);
        }
    }

    OvGige::BlockAssembler& Assembler() {
        if (!m_assembler) {
            m_assembler = std::make_unique<OvGige::BlockAssembler>(settings, account, shelf);
        }
        return *m_assembler;
    }
    void Pass(std::chrono::microseconds time) {
        now += time;
        Assembler().Tick(now);
    }
    void Send(const OvGige::StreamHeader& header, ByteView payload) {
        Bytes packet(header.Size());
        OvGige::WriteStreamHeader(packet, header);
        OvGige::Append(packet, payload);
        Assembler().Take(packet, now);
        ++sent;
    }
    OvGige::StreamHeader Header(uint64_t block, uint32_t packet,
                                OvGige::PacketFormat format) const {
        return {.isExtended = isExtended, .format = format, .blockId = block, .packetId = packet};
    }
    /// The leader of raw data.
    void Leader(uint64_t block, uint64_t size) {
        OvGige::BlockLeader leader;
        leader.payloadType = static_cast<uint16_t>(OvGige::PayloadType::Raw);
        leader.timestamp = ++ticks;
        leader.size = size;
        Leader(block, leader);
    }
    void Leader(uint64_t block, const OvGige::BlockLeader& leader) {
        Send(Header(block, 0, OvGige::PacketFormat::Leader), OvGige::BuildLeader(leader));
    }
    /// A data packet whose bytes are its number.
    void Data(uint64_t block, uint32_t packet, size_t length = kDataSize) {
        Send(Header(block, packet, OvGige::PacketFormat::Data),
             Bytes(length, static_cast<std::byte>(packet)));
    }
    void Trailer(uint64_t block, uint32_t packet) {
        Trailer(block, packet, {.payloadType = static_cast<uint16_t>(OvGige::PayloadType::Raw)});
    }
    void Trailer(uint64_t block, uint32_t packet, const OvGige::BlockTrailer& trailer) {
        Send(Header(block, packet, OvGige::PacketFormat::Trailer), OvGige::BuildTrailer(trailer));
    }
    /// A status in place of a packet.
    void Refusal(uint64_t block, uint32_t packet, OvGige::Status status) {
        OvGige::StreamHeader header = Header(block, packet, OvGige::PacketFormat::Data);
        header.status = status;
        Send(header, {});
    }
    /// All of a block of raw data in packets of the usual size.
    void Whole(uint64_t block, uint32_t packets = 2) {
        Leader(block, packets * kDataSize);
        for (uint32_t id = 1; id <= packets; ++id) {
            Data(block, id);
        }
        Trailer(block, packets + 1);
    }
    /// A leader, and the packets of the list out of so many.
    void Some(uint64_t block, uint32_t packets, const std::vector<uint32_t>& ids) {
        Leader(block, packets * kDataSize);
        for (const uint32_t id : ids) {
            Data(block, id);
        }
    }

    std::vector<uint64_t> DeliveredIds() const {
        std::vector<uint64_t> ids;
        for (const Delivery& delivery : shelf.delivered) {
            ids.push_back(delivery.frame.frameId);
        }
        return ids;
    }
    /// All packets that were counted.
    uint64_t CountedPackets() const {
        return account.used.Value() + account.doubled.Value() + account.refused.Value() +
               account.ignored.Value();
    }
    /// All blocks that were counted.
    uint64_t CountedBlocks() const {
        return account.complete.Value() + account.incomplete.Value() + account.noBuffer.Value() +
               account.lostOnWire.Value() + account.lostInSocket.Value();
    }

    OvGige::AssemblerSettings settings;
    OvGige::StreamAccount account;
    BlockShelf shelf;
    OvGige::TimePoint now{std::chrono::hours(1)};
    bool isExtended = false;
    uint64_t ticks = 0;
    uint64_t sent = 0;

private:
    std::unique_ptr<OvGige::BlockAssembler> m_assembler;
};

}  // namespace OvTest
