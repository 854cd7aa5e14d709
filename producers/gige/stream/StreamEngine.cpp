#include "gige/stream/StreamEngine.h"

#include <net/if.h>
#include <netinet/in.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

#include <algorithm>
#include <cstring>

#include "Base/UserLog.h"
#include "framework/BufferPool.h"
#include "gige/net/CameraSocket.h"
#include "gige/protocol/Bootstrap.h"
#include "gige/protocol/ControlPacket.h"
#include "gige/stream/PacketSizeSearch.h"
#include "gige/stream/StreamReceiver.h"
#include "gige/stream/ThreadTuning.h"

namespace OvGige {
namespace {

using namespace std::chrono_literals;

/// Firewalls forget a sender that nothing was sent to for half a minute.
constexpr auto kFirewallPeriod = 15s;

void LogWarning(const std::string& line) {
    if (!line.empty()) {
        OvProducer::ProducerLog().Write("Producer", GenICam_3_0_ORVANE::LogWarning, line);
    }
}

/// The largest packet that the adapter takes; that of every network if it doesn't say.
size_t LargestPacket(const UdpSocket& socket, const Adapter& adapter) {
    ifreq request{};
    std::strncpy(request.ifr_name, adapter.name.c_str(), sizeof request.ifr_name - 1);
    if (ioctl(socket.File(), SIOCGIFMTU, &request) != 0) {
        return kUsualPacketSize;
    }
    // The register of the camera has 16 bits, and no camera sends more than a batch takes.
    return std::min<size_t>(static_cast<size_t>(request.ifr_mtu), PacketBatch::kPacketMax);
}

bool IsGroup(Ipv4 address) {
    return IN_MULTICAST(address.value);
}

void JoinGroup(const UdpSocket& socket, Ipv4 group, const Adapter& adapter) {
    ip_mreqn request{};
    request.imr_multiaddr.s_addr = htonl(group.value);
    request.imr_address.s_addr = htonl(adapter.ip.value);
    request.imr_ifindex = adapter.index;
    const int zero = 0;
    static_cast<void>(setsockopt(socket.File(), IPPROTO_IP, IP_MULTICAST_ALL, &zero, sizeof zero));
    if (setsockopt(socket.File(), IPPROTO_IP, IP_ADD_MEMBERSHIP, &request, sizeof request) != 0) {
        throw OvProducer::Failure(GenTL::GC_ERR_IO,
                                  "The group " + TextOf(group) + " can't be joined");
    }
}

/// Waits for a test packet of a size. Whatever else comes is late or somebody else's.
bool AwaitTestPacket(UdpSocket& socket, size_t size, Ipv4 camera, Clock::time_point deadline) {
    while (const auto datagram = socket.Receive(deadline)) {
        if (datagram->sender.ip == camera && datagram->bytes.size() + kIpUdpHeaderSize == size) {
            return true;
        }
    }
    return false;
}

}  // namespace

/// Buffers of the pool, and requests to the camera.
class StreamEngine::Client : public BlockClient {
public:
    Client(OvProducer::BufferPool& pool, UdpSocket& socket, const Endpoint& camera)
        : m_pool(pool), m_socket(socket), m_camera(camera) {}

    uint64_t Delivered() const { return m_delivered; }
    void Limit(uint64_t frames) { m_limit = frames; }

    std::shared_ptr<OvProducer::Buffer> TakeBuffer() override {
        std::shared_ptr<OvProducer::Buffer> buffer = m_pool.TakeInput();
        if (!buffer) {
            m_pool.CountLost();
        }
        return buffer;
    }
    void Deliver(const std::shared_ptr<OvProducer::Buffer>& buffer,
                 const OvProducer::FrameInfo& frame) override {
        if (m_delivered == m_limit) {
            m_pool.GiveBack(buffer);
            return;
        }
        m_pool.Deliver(buffer, frame);
        ++m_delivered;
    }
    void GiveBack(const std::shared_ptr<OvProducer::Buffer>& buffer) override {
        m_pool.GiveBack(buffer);
    }
    void AskAgain(const ResendRequest& request) override {
        m_requestId = static_cast<uint16_t>(std::max(1, (m_requestId + 1) & 0xFFFF));
        const Bytes payload = BuildResend(request);
        try {
            m_socket.SendTo(m_camera, BuildCommand({.flags = request.Flags(),
                                                    .command = Command::PacketResend,
                                                    .requestId = m_requestId,
                                                    .payload = payload}));
        } catch (const OvProducer::Failure&) {
            // A request that can't be sent is like one that is lost: it is repeated.
        }
    }

private:
    OvProducer::BufferPool& m_pool;
    UdpSocket& m_socket;
    const Endpoint m_camera;
    uint16_t m_requestId = 0;
    uint64_t m_delivered = 0;
    uint64_t m_limit = 0;
};

StreamEngine::StreamEngine(StreamHost& host, StreamState& state) : m_host(host), m_state(state) {}

StreamEngine::~StreamEngine() = default;

void StreamEngine::Begin() {
    m_host.CheckUsable();
    m_settings = m_state.Settings();
    m_facts = {};
    m_wake.Clear();
    m_state.Account().Reset();
    const Adapter adapter = m_host.HostAdapter();
    try {
        if (m_host.IsWritable()) {
            OpenAsOwner(adapter);
        } else {
            JoinAsReader(adapter);
        }
    } catch (...) {
        End();
        throw;
    }
    m_state.SetFacts(m_facts);
}

void StreamEngine::OpenAsOwner(const Adapter& adapter) {
    m_socket = MakeCameraSocket(adapter);
    const auto wanted = static_cast<size_t>(m_settings.socketBuffer);
    const size_t granted = m_socket->SetReceiveBuffer(wanted);
    m_facts.socketBuffer = static_cast<int64_t>(granted);
    if (granted < wanted) {
        LogWarning("The socket of a stream has " + std::to_string(granted) + " bytes instead of " +
                   std::to_string(wanted) + "; net.core.rmem_max limits it");
    }
    const uint16_t port = m_socket->Local().port;
    m_facts.hostPort = port;
    m_channel.emplace(m_host.Memory());
    m_channel->Open({adapter.ip, port});
    m_facts.packetSize = static_cast<int64_t>(NegotiatePacketSize(adapter));
    m_sourcePort = m_channel->SourcePort();
    OpenFirewall();
}

/// A second host sees a stream only if its owner sends it to a group.
void StreamEngine::JoinAsReader(const Adapter& adapter) {
    const StreamChannel channel(m_host.Memory());
    const Endpoint destination = channel.Destination();
    if (!IsGroup(destination.ip) || destination.port == 0) {
        throw OvProducer::Failure(GenTL::GC_ERR_ACCESS_DENIED,
                                  "The camera was opened for reading, and its owner doesn't send "
                                  "its stream to a group");
    }
    m_socket.emplace();
    m_socket->ShareAddress();
    m_socket->Bind(destination);
    JoinGroup(*m_socket, destination.ip, adapter);
    m_facts.socketBuffer = static_cast<int64_t>(
        m_socket->SetReceiveBuffer(static_cast<size_t>(m_settings.socketBuffer)));
    m_facts.hostPort = destination.port;
    m_facts.packetSize = static_cast<int64_t>(channel.PacketSize());
}

size_t StreamEngine::NegotiatePacketSize(const Adapter& adapter) {
    const size_t present = m_channel->PacketSize();
    if (m_settings.findsPacketSize == 0 || m_host.IsPacketSizeChosen()) {
        return present;
    }
    const Ipv4 camera = m_host.CameraEndpoint().ip;
    const auto test = [&](size_t size,
                          std::chrono::milliseconds patience) -> std::optional<size_t> {
        // Late test packets of other sizes mustn't be taken for this one's.
        while (m_socket->Receive(Clock::now())) {
        }
        const auto granted = m_channel->FireTestPacket(size);
        const bool came =
            granted && AwaitTestPacket(*m_socket, *granted, camera, Clock::now() + patience);
        return came ? granted : std::nullopt;
    };
    const size_t largest = LargestPacket(*m_socket, adapter);
    const auto found = FindPacketSize(largest, test);
    return m_channel->SetPacketSize(found.value_or(std::min(largest, kUsualPacketSize)));
}

AssemblerSettings StreamEngine::MakeSettings() const {
    AssemblerSettings settings;
    settings.packetSize = static_cast<size_t>(m_facts.packetSize);
    settings.tickFrequency = m_host.TickFrequency();
    settings.resends =
        m_settings.resends != 0 && (m_host.Memory().Capability() & kOffersResend) != 0;
    settings.deliversIncomplete = m_settings.deliversIncomplete != 0;
    settings.resendPercent = static_cast<uint32_t>(m_settings.resendPercent);
    settings.resendsPerSecond = static_cast<uint32_t>(m_settings.resendsPerSecond);
    settings.gapTime = std::chrono::microseconds(m_settings.gapTime);
    settings.packetTimeout = std::chrono::microseconds(m_settings.packetTimeout);
    settings.retention = std::chrono::microseconds(m_settings.retention);
    return settings;
}

void StreamEngine::Run(OvProducer::BufferPool& pool, const OvProducer::EngineRun& run) {
    TuneThread();
    const AssemblerSettings settings = MakeSettings();
    Client client(pool, *m_socket, m_host.CameraEndpoint());
    client.Limit(run.frames);
    BlockAssembler assembler(settings, m_state.Account(), client);
    StreamReceiver receiver(*m_socket, assembler, m_host.CameraEndpoint().ip);
    const std::stop_callback wake(run.stop, [this] { m_wake.Signal(); });
    TimePoint firewallDue = Clock::now() + kFirewallPeriod;
    while (!run.stop.stop_requested() && client.Delivered() != run.frames) {
        receiver.Work(firewallDue, m_wake);
        if (Clock::now() >= firewallDue) {
            OpenFirewall();
            firewallDue = Clock::now() + kFirewallPeriod;
        }
    }
    // The block in progress may still be completed. The wake is over: it would end each wait.
    m_wake.Clear();
    const TimePoint end = Clock::now() + settings.retention;
    while (!run.abort.stop_requested() && assembler.IsBusy() && Clock::now() < end &&
           client.Delivered() != run.frames) {
        receiver.Work(end, m_wake);
    }
    assembler.End(client.Delivered() != run.frames);
}

void StreamEngine::End() noexcept {
    m_channel.reset();
    m_socket.reset();
}

void StreamEngine::TuneThread() const {
    LogWarning(SetThreadPriority(static_cast<int>(m_settings.priority)));
    LogWarning(SetThreadProcessor(static_cast<int>(m_settings.processor)));
    const int time = static_cast<int>(m_settings.busyPoll);
    if (time != 0 &&
        setsockopt(m_socket->File(), SOL_SOCKET, SO_BUSY_POLL, &time, sizeof time) != 0) {
        LogWarning("The system doesn't let a stream's socket be polled busily");
    }
}

/// Anything sent to where the packets come from makes a firewall let them in. The camera drops
/// it.
void StreamEngine::OpenFirewall() {
    if (m_sourcePort == 0) {
        return;
    }
    try {
        const Bytes nothing(1);
        m_socket->SendTo({m_host.CameraEndpoint().ip, m_sourcePort}, nothing);
    } catch (const OvProducer::Failure& failure) {
        LogWarning(std::string("The stream's way through a firewall: ") + failure.what());
    }
}

}  // namespace OvGige
