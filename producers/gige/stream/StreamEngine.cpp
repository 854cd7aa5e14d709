#include "gige/stream/StreamEngine.h"

#include <net/if.h>
#include <netinet/in.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

#include <algorithm>
#include <cstring>

#include "gige/net/CameraSocket.h"
#include "gige/protocol/Bootstrap.h"
#include "gige/stream/PacketSizeSearch.h"
#include "gige/stream/PoolClient.h"
#include "gige/stream/StreamReceiver.h"
#include "gige/stream/ThreadTuning.h"

namespace OvGige {
namespace {

using namespace std::chrono_literals;

using OvProducer::LogWarning;

void LogObstacle(const std::string& obstacle) {
    if (!obstacle.empty()) {
        LogWarning(obstacle);
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

/// A socket for what is sent to a group, which others on this machine may receive, too.
/// @param group  port 0: any that is free
UdpSocket MakeGroupSocket(const Endpoint& group, const Adapter& adapter) {
    UdpSocket socket;
    socket.ShareAddress();
    socket.Bind(group);
    ip_mreqn request{};
    request.imr_multiaddr.s_addr = htonl(group.ip.value);
    request.imr_address.s_addr = htonl(adapter.ip.value);
    request.imr_ifindex = adapter.index;
    const int zero = 0;
    static_cast<void>(setsockopt(socket.File(), IPPROTO_IP, IP_MULTICAST_ALL, &zero, sizeof zero));
    if (setsockopt(socket.File(), IPPROTO_IP, IP_ADD_MEMBERSHIP, &request, sizeof request) != 0) {
        throw OvProducer::Failure(GenTL::GC_ERR_IO,
                                  "The group " + TextOf(group.ip) + " can't be joined");
    }
    return socket;
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

StreamEngine::StreamEngine(StreamHost& host, StreamState& state) : m_host(host), m_state(state) {}

StreamEngine::~StreamEngine() = default;

void StreamEngine::Begin() {
    m_host.CheckUsable();
    m_hole = FirewallHole();
    m_settings = m_state.Settings();
    m_facts = {};
    m_wake.Clear();
    m_state.Account().Reset();
    m_camera = m_host.CameraEndpoint();
    const Adapter adapter = m_host.HostAdapter();
    try {
        if (m_host.IsWritable()) {
            OpenAsOwner(adapter);
        } else {
            JoinAsReader(adapter);
        }
        m_assembly = MakeSettings();
    } catch (...) {
        End();
        throw;
    }
    m_state.SetFacts(m_facts);
}

void StreamEngine::OpenAsOwner(const Adapter& adapter) {
    m_channel.emplace(m_host.Memory());
    // A group that the user has set stays, so that other hosts see the stream.
    const Ipv4 group = m_channel->Destination().ip;
    const Ipv4 destination = IsGroup(group) ? group : adapter.ip;
    m_socket = IsGroup(group) ? MakeGroupSocket({group, 0}, adapter) : MakeCameraSocket(adapter);
    SizeSocket();
    m_channel->Open({destination, m_socket->Local().port});
    m_facts.packetSize = static_cast<int64_t>(NegotiatePacketSize(adapter));
    m_hole = FirewallHole({m_camera.ip, m_channel->SourcePort()});
    KeepFirewallOpen();
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
    m_socket = MakeGroupSocket(destination, adapter);
    SizeSocket();
    m_facts.packetSize = static_cast<int64_t>(channel.PacketSize());
}

void StreamEngine::SizeSocket() {
    const auto wanted = static_cast<size_t>(m_settings.socketBuffer);
    const size_t granted = m_socket->SetReceiveBuffer(wanted);
    m_facts.socketBuffer = static_cast<int64_t>(granted);
    m_facts.hostPort = m_socket->Local().port;
    if (granted < wanted) {
        LogWarning("The socket of a stream has " + std::to_string(granted) + " bytes instead of " +
                   std::to_string(wanted) + "; net.core.rmem_max limits it");
    }
}

size_t StreamEngine::NegotiatePacketSize(const Adapter& adapter) {
    const size_t present = m_channel->PacketSize();
    if (m_settings.findsPacketSize == 0 || m_host.IsPacketSizeChosen()) {
        return present;
    }
    const auto test = [&](size_t size,
                          std::chrono::milliseconds patience) -> std::optional<size_t> {
        // Late test packets of other sizes mustn't be taken for this one's.
        while (m_socket->Receive(Clock::now())) {
        }
        const auto granted = m_channel->FireTestPacket(size);
        const bool came =
            granted && AwaitTestPacket(*m_socket, *granted, m_camera.ip, Clock::now() + patience);
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
    PoolClient client(pool, run.frames, *m_socket, m_camera);
    BlockAssembler assembler(m_assembly, m_state.Account(), client);
    StreamReceiver receiver(*m_socket, assembler, m_camera.ip, m_settings.trains != 0);
    const std::stop_callback wake(run.stop, [this] { m_wake.Signal(); });
    while (!run.stop.stop_requested() && !client.IsDone()) {
        receiver.Work(m_hole.Due(), m_wake);
        KeepFirewallOpen();
    }
    // The block in progress may still be completed. The wake is over: it would end each wait.
    m_wake.Clear();
    const TimePoint end = Clock::now() + m_assembly.retention;
    while (!run.abort.stop_requested() && assembler.IsBusy() && Clock::now() < end &&
           !client.IsDone()) {
        receiver.Work(end, m_wake);
    }
    receiver.NoteLastDrops();
    assembler.End(!client.IsDone());
}

void StreamEngine::End() noexcept {
    m_channel.reset();
    m_socket.reset();
}

void StreamEngine::TuneThread() const {
    LogObstacle(SetThreadPriority(static_cast<int>(m_settings.priority)));
    LogObstacle(SetThreadProcessor(static_cast<int>(m_settings.processor)));
    const int time = static_cast<int>(m_settings.busyPoll);
    if (time != 0 &&
        setsockopt(m_socket->File(), SOL_SOCKET, SO_BUSY_POLL, &time, sizeof time) != 0) {
        LogWarning("The system doesn't let a stream's socket be polled busily");
    }
}

void StreamEngine::KeepFirewallOpen() {
    try {
        m_hole.KeepOpen(*m_socket);
    } catch (const OvProducer::Failure& failure) {
        LogWarning(std::string("The stream's way through a firewall: ") + failure.what());
    }
}

}  // namespace OvGige
