#include "simulator/message/MessageSender.h"

#include <netinet/in.h>
#include <sys/socket.h>

#include <array>

#include "framework/Failure.h"
#include "gige/net/WaitForFiles.h"
#include "virtual/CameraEvents.h"

namespace OvSimulator {
namespace {

using namespace OvGige;

/// How long a network that doesn't work is left alone.
constexpr std::chrono::milliseconds kNetworkPause{100};

/// What the virtual camera posts: the number of the event, and an item with it and more.
Happening HappeningOf(std::span<const std::byte> entry) {
    const ByteView item = entry.subspan(sizeof(uint64_t));
    return {.id = ReadBig<uint16_t>(item.subspan(2)),
            .frame = ReadBig<uint64_t>(item.subspan(16)),
            .ticks = ReadBig<uint64_t>(item.subspan(8))};
}

/// Sends from another address of the camera's subnet, which this machine needn't have if the
/// process has the right to such a thing.
void SendAsStranger(Ipv4 camera, const Endpoint& to, ByteView packet) {
    constexpr uint32_t kOtherHost = 0x80;
    UdpSocket stranger;
    const int one = 1;
    static_cast<void>(setsockopt(stranger.File(), IPPROTO_IP, IP_TRANSPARENT, &one, sizeof one));
    stranger.Bind({{camera.value ^ kOtherHost}, 0});
    stranger.SendTo(to, packet);
}

}  // namespace

MessageSender::MessageSender(const CameraProfile& profile, Account& account)
    : m_account(account), m_outbox(profile, account) {
    m_thread = std::thread([this] { Run(); });
}

MessageSender::~MessageSender() {
    {
        const std::lock_guard lock(m_mutex);
        m_isEnding = true;
    }
    m_wake.Signal();
    m_thread.join();
}

uint16_t MessageSender::Occupy(Ipv4 address) {
    auto socket = std::make_shared<UdpSocket>();
    socket->Bind({address, 0});
    const uint16_t port = socket->Local().port;
    {
        const std::lock_guard lock(m_mutex);
        m_socket = std::move(socket);
    }
    m_wake.Signal();
    return port;
}

void MessageSender::Configure(const MessageSetup& setup) {
    {
        const std::lock_guard lock(m_mutex);
        m_outbox.Configure(setup);
    }
    m_wake.Signal();
}

void MessageSender::Post(GenTL::EVENT_TYPE type, std::span<const std::byte> entry) {
    if (type != GenTL::EVENT_REMOTE_DEVICE) {
        Configure({});
        return;
    }
    {
        const std::lock_guard lock(m_mutex);
        m_outbox.Add(HappeningOf(entry));
    }
    m_wake.Signal();
}

void MessageSender::Run() {
    while (!IsEnding()) {
        try {
            Work(Plan());
        } catch (const OvProducer::Failure&) {
            // The network is down; it may come back.
            m_account.Add(Count::NetworkFailures);
            std::array<pollfd, 1> files{{{m_wake.File(), POLLIN, 0}}};
            WaitForFiles(files, Clock::now() + kNetworkPause);
        }
    }
}

bool MessageSender::IsEnding() const {
    const std::lock_guard lock(m_mutex);
    return m_isEnding;
}

MessageSender::Round MessageSender::Plan() {
    m_wake.Clear();
    const std::lock_guard lock(m_mutex);
    Round round{.socket = m_socket,
                .destination = m_outbox.Setup().destination,
                .packets = m_socket ? m_outbox.SendDue(Clock::now()) : std::vector<Outgoing>(),
                .due = Clock::time_point::max()};
    if (m_socket) {
        round.due = m_outbox.Due().value_or(round.due);
    }
    return round;
}

void MessageSender::Work(const Round& round) {
    if (!round.socket) {
        std::array<pollfd, 1> files{{{m_wake.File(), POLLIN, 0}}};
        WaitForFiles(files, round.due);
        return;
    }
    for (const Outgoing& packet : round.packets) {
        Send(round, packet);
    }
    const auto datagram = round.socket->Receive(round.due, m_wake.File());
    if (datagram && datagram->sender == round.destination) {
        const std::lock_guard lock(m_mutex);
        m_outbox.Take(datagram->bytes);
    }
}

void MessageSender::Send(const Round& round, const Outgoing& packet) {
    try {
        if (packet.isFromStranger) {
            SendAsStranger(round.socket->Local().ip, round.destination, packet.packet);
        } else {
            round.socket->SendTo(round.destination, packet.packet);
        }
    } catch (const OvProducer::Failure&) {
        m_account.Add(Count::NetworkFailures);
    }
}

}  // namespace OvSimulator
