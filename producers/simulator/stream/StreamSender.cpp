#include "simulator/stream/StreamSender.h"

#include <algorithm>
#include <chrono>

#include "framework/Failure.h"
#include "simulator/Clock.h"
#include "simulator/stream/PacketPlan.h"

namespace OvSimulator {
namespace {

using namespace OvGige;

/// Blocks whose packets can be sent again.
constexpr size_t kBlocksKept = 4;

/// Packets that leave at once where the host wants no pause between them.
constexpr size_t kTrain = 32;

}  // namespace

StreamSender::StreamSender(OvVirtual::Camera& camera, const Faults& faults, Account& account)
    : m_camera(camera),
      m_faults(faults),
      m_account(account),
      m_spoiler(faults, account),
      m_thread([this](const std::stop_token& stop) { Run(stop); }) {}

uint16_t StreamSender::Occupy(Ipv4 address) {
    auto socket = std::make_shared<StreamSocket>(Endpoint{address, 0});
    const uint16_t port = socket->Local().port;
    const std::lock_guard lock(m_mutex);
    socket->SetDoNotFragment(m_setup.doNotFragment);
    m_socket = std::move(socket);
    return port;
}

void StreamSender::Configure(const StreamSetup& setup) {
    const std::lock_guard lock(m_mutex);
    m_setup = setup;
    if (m_socket) {
        m_socket->SetDoNotFragment(setup.doNotFragment);
    }
}

StreamSetup StreamSender::Setup() const {
    const std::lock_guard lock(m_mutex);
    return m_setup;
}

void StreamSender::Run(const std::stop_token& stop) {
    while (m_camera.WaitFrame(stop)) {
        if (Setup().IsOpen()) {
            CarryFrame(stop);
        } else {
            m_camera.DropFrame();
        }
    }
}

void StreamSender::CarryFrame(const std::stop_token& stop) {
    // At once: whoever has stopped the camera knows for how many blocks to wait.
    m_account.Add(Count::Blocks);
    const Block block = TakeBlock();
    const StreamSetup setup = Setup();
    const auto room = block->MakeRoom(m_camera.FrameSize());
    const OvProducer::FrameInfo frame = m_camera.ReadFrame(room, stop);
    if (frame.incomplete) {
        return;  // the camera is being switched off
    }
    block->Fill(setup, frame);
    m_spoiler.Spoil(*block, frame.frameId);
    Keep(block);
    const PacketPlan plan(*block, frame.frameId, m_faults, m_account);
    SendPaced(plan.Packets(), setup, stop);
}

StreamSender::Block StreamSender::TakeBlock() {
    const std::lock_guard lock(m_mutex);
    if (m_blocks.size() < kBlocksKept) {
        return std::make_shared<StreamBlock>();
    }
    const Block oldest = m_blocks.front();
    m_blocks.pop_front();
    // A block whose packets are being sent again is left to that.
    return oldest.use_count() == 1 ? oldest : std::make_shared<StreamBlock>();
}

void StreamSender::Keep(const Block& block) {
    const std::lock_guard lock(m_mutex);
    m_blocks.push_back(block);
}

StreamSender::Block StreamSender::Find(uint64_t id) const {
    const std::lock_guard lock(m_mutex);
    const auto found = std::find_if(m_blocks.rbegin(), m_blocks.rend(),
                                    [id](const Block& block) { return block->Id() == id; });
    return found == m_blocks.rend() ? nullptr : *found;
}

void StreamSender::SendPaced(std::span<const StreamPacket> packets, const StreamSetup& setup,
                             const std::stop_token& stop) {
    const size_t train = setup.delay == 0 ? kTrain : 1;
    auto due = Clock::now();
    while (!packets.empty() && !stop.stop_requested()) {
        const size_t count = std::min(train, packets.size());
        Send(packets.first(count), setup);
        packets = packets.subspan(count);
        due += std::chrono::nanoseconds(setup.delay);
        std::this_thread::sleep_until(due);
    }
}

void StreamSender::Send(std::span<const StreamPacket> packets, const StreamSetup& setup) {
    std::shared_ptr<StreamSocket> socket;
    {
        const std::lock_guard lock(m_mutex);
        socket = m_socket;
    }
    if (!socket || !setup.IsOpen()) {
        return;
    }
    try {
        const Sent sent = socket->Send(setup.destination, packets);
        m_account.Add(Count::StreamPackets, sent.packets);
        m_account.Add(Count::StreamBytes, sent.bytes);
        m_account.Add(Count::PacketsTooLarge, sent.tooLarge);
        m_account.Add(Count::NetworkFailures, sent.failures);
    } catch (const OvProducer::Failure&) {
        m_account.Add(Count::NetworkFailures);
    }
}

void StreamSender::FireTestPacket() {
    const StreamSetup setup = Setup();
    if (!setup.IsOpen()) {
        return;
    }
    StreamHeader header;
    header.isExtended = setup.isExtended;
    const size_t headers = kIpUdpHeaderSize + header.Size();
    const Bytes filling(setup.packetSize - std::min(setup.packetSize, headers));
    const StreamPacket packet(header, filling);
    Send({&packet, 1}, setup);
    m_account.Add(Count::TestPackets);
}

void StreamSender::Resend(const ResendRequest& request, bool saysMore) {
    const Block block = Find(request.blockId);
    if (!block || request.firstPacket > request.lastPacket ||
        request.lastPacket >= block->PacketCount()) {
        Refuse(request, saysMore);
        return;
    }
    std::vector<StreamPacket> packets;
    for (uint32_t id = request.firstPacket; id <= request.lastPacket; ++id) {
        StreamHeader header = block->Header(id);
        header.status = Status::PacketResend;
        header.flags = header.isExtended ? kStreamFlagResent : uint16_t{0};
        packets.emplace_back(header, block->Payload(id));
    }
    Send(packets, Setup());
    m_account.Add(Count::ResentPackets, packets.size());
}

// One packet says it for all: a range may have millions.
void StreamSender::Refuse(const ResendRequest& request, bool saysMore) {
    StreamHeader header;
    header.isExtended = request.isExtended;
    header.blockId = request.blockId;
    header.packetId = request.firstPacket;
    header.status = saysMore ? Status::PacketAndPreviousRemoved : Status::PacketUnavailable;
    const StreamPacket packet(header, {});
    Send({&packet, 1}, Setup());
    m_account.Add(Count::RefusedResends);
}

}  // namespace OvSimulator
