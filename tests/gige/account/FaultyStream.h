#pragma once
/// A simulated camera's packets on their way to an assembler, in a time of their own.

#include <algorithm>
#include <deque>
#include <memory>

#include "BlockStation.h"
#include "simulator/stream/BlockSpoiler.h"
#include "simulator/stream/PacketPlan.h"

namespace OvTest {

/// A socket's memory as a host that is too slow reads it.
struct SlowHost {
    size_t room = 0;    ///< packets that the socket holds; 0: any number
    size_t period = 0;  ///< packets that the camera sends until the host looks again
};

class FaultyStream {
public:
    static constexpr size_t kDataPackets = 8;
    /// Leader and trailer among them.
    static constexpr size_t kPackets = kDataPackets + 2;
    static constexpr uint32_t kSide = 64;  ///< of the square frames, in pixels of a byte

    FaultyStream(const OvSimulator::StreamFaults& faults, uint64_t seed)
        : m_faults{.seed = seed, .control = {}, .stream = faults, .message = {}} {
        constexpr size_t kFrame = size_t{kSide} * kSide;
        m_setup.packetSize =
            kFrame / kDataPackets + OvGige::kIpUdpHeaderSize + OvGige::kStreamHeaderSize;
        settings.packetSize = m_setup.packetSize;
        for (int i = 0; i < 8; ++i) {
            shelf.Announce(kFrame);
        }
    }

    /// Sends so many frames, and lets the time pass that the last one needs.
    void Run(uint64_t frames) {
        m_assembler = std::make_unique<OvGige::BlockAssembler>(settings, account, shelf);
        for (uint64_t frame = 0; frame < frames; ++frame) {
            Send(frame);
            Pass(std::chrono::milliseconds(2));
        }
        Read();
        Pass(std::chrono::seconds(1));
        m_assembler->End(true);
    }

    /// All blocks and all packets that the host knows of.
    uint64_t Blocks() const {
        return account.complete.Value() + account.incomplete.Value() + account.noBuffer.Value() +
               account.lostOnWire.Value() + account.lostInSocket.Value();
    }
    uint64_t Packets() const {
        return account.used.Value() + account.doubled.Value() + account.refused.Value() +
               account.ignored.Value();
    }
    /// Frames that aren't marked, but aren't what the camera sent either.
    size_t WrongFrames() const {
        return static_cast<size_t>(std::count_if(
            shelf.delivered.begin(), shelf.delivered.end(), [](const Delivery& delivery) {
                const Bytes& bytes = delivery.bytes;
                return !delivery.frame.incomplete &&
                       std::any_of(bytes.begin(), bytes.end(),
                                   [&](std::byte byte) { return byte != bytes[0]; });
            }));
    }

    OvGige::AssemblerSettings settings;
    OvGige::StreamAccount account;
    OvSimulator::Account camera;
    BlockShelf shelf;
    SlowHost host;
    uint64_t arrived = 0;      ///< packets that reached the assembler
    uint64_t answered = 0;     ///< of them, those that the camera sent again
    uint64_t overflow = 0;     ///< packets that didn't fit the socket
    uint64_t trailerOnly = 0;  ///< blocks of which the trailer was damaged or lost and nothing else

private:
    static constexpr std::chrono::microseconds kPacketTime{10};
    /// Blocks that the camera keeps.
    static constexpr size_t kKept = 4;

    void Send(uint64_t frame) {
        auto block = std::make_shared<OvSimulator::StreamBlock>();
        const auto room = block->MakeRoom(size_t{kSide} * kSide);
        std::fill(room.begin(), room.end(), static_cast<std::byte>(frame));
        OvProducer::FrameInfo info;
        info.width = kSide;
        info.height = kSide;
        info.pixelFormat = 0x01080001;
        info.sizeFilled = room.size();
        info.frameId = frame;
        info.timestamp = frame + 1;
        block->Fill(m_setup, info);
        m_spoiler.Spoil(*block, frame);
        m_blocks.push_back(block);
        if (m_blocks.size() > kKept) {
            m_blocks.pop_front();
        }
        const OvSimulator::PacketPlan plan(*block, frame, m_faults, camera);
        trailerOnly += LacksOnlyTrailer(*block, plan) ? 1 : 0;
        for (const OvSimulator::StreamPacket& packet : plan.Packets()) {
            Bytes bytes(packet.header.begin(),
                        packet.header.begin() + static_cast<ptrdiff_t>(packet.headerSize));
            OvGige::Append(bytes, packet.payload);
            Arrive(std::move(bytes));
            Pass(kPacketTime);
        }
        camera.Add(OvSimulator::Count::Blocks);
    }

    static bool LacksOnlyTrailer(const OvSimulator::StreamBlock& block,
                                 const OvSimulator::PacketPlan& plan) {
        const auto leaves = [&](uint32_t id) {
            const ByteView payload = block.Payload(id);
            return std::any_of(plan.Packets().begin(), plan.Packets().end(),
                               [&](const OvSimulator::StreamPacket& packet) {
                                   return packet.payload.data() == payload.data() &&
                                          packet.payload.size() == payload.size();
                               });
        };
        uint32_t whole = 0;
        while (whole < block.PacketCount() && leaves(whole)) {
            ++whole;
        }
        return whole + 1 == block.PacketCount();
    }

    void Arrive(Bytes packet) {
        if (host.room != 0 && m_socket.size() >= host.room) {
            ++overflow;
        } else {
            m_socket.push_back(std::move(packet));
        }
        if (++m_sinceRead >= host.period) {
            Read();
        }
    }
    void Read() {
        m_sinceRead = 0;
        if (overflow != m_overflowSeen) {
            m_overflowNew = overflow - m_overflowSeen;
            m_overflowSeen = overflow;
        }
        while (!m_socket.empty()) {
            const Bytes packet = std::move(m_socket.front());
            m_socket.pop_front();
            ++arrived;
            m_assembler->Take(packet, m_now);
        }
        // The system says with the next packet what it dropped before it.
        if (m_overflowNew != 0) {
            m_assembler->NoteDrops(std::exchange(m_overflowNew, 0));
        }
    }

    /// Does what is due until then. Answers of the camera come at once.
    void Pass(std::chrono::microseconds time) {
        const OvGige::TimePoint end = m_now + time;
        for (m_now = std::min(end, m_assembler->Due()); m_now < end;
             m_now = std::min(end, std::max(m_now, m_assembler->Due()))) {
            m_assembler->Tick(m_now);
            Answer();
        }
    }
    void Answer() {
        for (const OvGige::ResendRequest& request : std::exchange(shelf.requests, {})) {
            const auto block =
                std::find_if(m_blocks.rbegin(), m_blocks.rend(),
                             [&](const auto& kept) { return kept->Id() == request.blockId; });
            for (uint32_t id = request.firstPacket; id <= request.lastPacket; ++id) {
                AnswerPacket(block == m_blocks.rend() ? nullptr : block->get(), request, id);
            }
        }
    }
    void AnswerPacket(const OvSimulator::StreamBlock* block, const OvGige::ResendRequest& request,
                      uint32_t id) {
        const bool isThere = block != nullptr && id < block->PacketCount();
        OvGige::StreamHeader header;
        header.blockId = request.blockId;
        if (isThere) {
            header = block->Header(id);
        }
        header.packetId = id;
        header.status =
            isThere ? OvGige::Status::PacketResend : OvGige::Status::PacketAndPreviousRemoved;
        Bytes packet(header.Size());
        OvGige::WriteStreamHeader(packet, header);
        if (isThere) {
            OvGige::Append(packet, block->Payload(id));
        }
        answered += isThere ? 1 : 0;
        ++arrived;
        m_assembler->Take(packet, m_now);
    }

    const OvSimulator::Faults m_faults;
    OvSimulator::BlockSpoiler m_spoiler{m_faults, camera};
    OvSimulator::StreamSetup m_setup;
    std::deque<std::shared_ptr<OvSimulator::StreamBlock>> m_blocks;
    std::deque<Bytes> m_socket;
    size_t m_sinceRead = 0;
    uint64_t m_overflowSeen = 0;
    uint64_t m_overflowNew = 0;
    OvGige::TimePoint m_now{std::chrono::hours(1)};
    std::unique_ptr<OvGige::BlockAssembler> m_assembler;
};

}  // namespace OvTest
