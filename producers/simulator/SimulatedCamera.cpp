#include "simulator/SimulatedCamera.h"

#include <poll.h>

#include <algorithm>
#include <array>

#include "framework/Failure.h"
#include "gige/net/WaitForFiles.h"
#include "simulator/message/MessageRegisters.h"
#include "simulator/stream/StreamRegisters.h"

namespace OvSimulator {
namespace {

using namespace OvGige;

/// How often a camera looks whether it fell off the bus or its owner silent.
constexpr std::chrono::milliseconds kRound{100};

}  // namespace

SimulatedCamera::SimulatedCamera(const CameraProfile& profile)
    : m_profile(profile),
      m_adapter(AdapterFor(profile.adapter, profile.address.ip)),
      m_device(profile),
      m_stream(m_device.Camera(), profile.faults, m_account),
      m_messages(std::make_shared<MessageSender>(profile, m_account)),
      m_server(m_device, profile.faults.control, *this, m_account),
      m_answers(profile.faults, m_account) {
    ConnectStreamRegisters(
        m_device.Bootstrap(), [this](const StreamSetup& setup) { m_stream.Configure(setup); },
        [this] { m_stream.FireTestPacket(); });
    ConnectMessageRegisters(m_device.Bootstrap(), profile.messages,
                            [this](const MessageSetup& setup) { m_messages->Configure(setup); });
    m_device.Camera().Link().Open(m_messages);
    Occupy(profile.address);
    m_thread = std::thread([this] { Run(); });
}

SimulatedCamera::~SimulatedCamera() {
    m_stop.Signal();
    m_thread.join();
}

Endpoint SimulatedCamera::Address() const {
    const std::lock_guard lock(m_mutex);
    return m_address;
}

void SimulatedCamera::Occupy(const IpAddresses& addresses) {
    if (!IsOwnAddress(addresses.ip)) {
        // Addresses stay until the camera's end: the system would take others of the same
        // subnet away with the first.
        m_leases.emplace_back(m_adapter.index, addresses);
    }
    // The new place may be the old one with another subnet.
    m_sockets.reset();
    const uint16_t port = Address().port != 0 ? Address().port : m_profile.port;
    m_sockets.emplace(m_adapter, addresses, port);
    m_device.Bootstrap().Set(kRegStreamSourcePort, m_stream.Occupy(addresses.ip));
    const uint16_t messagePort = m_messages->Occupy(addresses.ip);
    if (m_profile.messages != MessageKind::None) {
        m_device.Bootstrap().Set(kRegMessageSourcePort, messagePort);
    }
    const std::lock_guard lock(m_mutex);
    m_address = m_sockets->Local();
}

bool SimulatedCamera::TryToOccupy(const IpAddresses& addresses) {
    try {
        Occupy(addresses);
        return true;
    } catch (const OvProducer::Failure&) {
        return false;
    }
}

bool SimulatedCamera::Move(const IpAddresses& addresses) {
    const IpAddresses before = m_device.Addresses();
    if (addresses == before || TryToOccupy(addresses)) {
        return true;
    }
    Occupy(before);
    return false;
}

void SimulatedCamera::Run() {
    while (!m_stop.IsSignalled()) {
        try {
            Serve();
        } catch (const OvProducer::Failure&) {
            // The network is down; it may come back.
            m_account.Add(Count::NetworkFailures);
            std::array<pollfd, 1> files{{{m_stop.File(), POLLIN, 0}}};
            WaitForFiles(files, Clock::now() + kRound);
        }
    }
}

void SimulatedCamera::Serve() {
    const auto now = Clock::now();
    m_server.Expire(now);
    m_server.RunDueActions();
    SendDue(now);
    auto deadline = std::min({now + kRound, m_server.ExpiryTime().value_or(now + kRound),
                              m_server.ActionTime(now).value_or(now + kRound)});
    if (!m_waiting.empty()) {
        deadline = std::min(deadline, m_waiting.begin()->first);
    }
    const auto packet = m_sockets->Receive(deadline, m_stop.File());
    if (!packet) {
        return;
    }
    if (!IsOnBus()) {
        m_account.Add(Count::UnheardPackets);
        return;
    }
    Answer(*packet);
    Misbehave();
}

void SimulatedCamera::Answer(const Packet& packet) {
    const Arrival arrival{.sender = packet.datagram.sender,
                          .wasBroadcast = packet.wasBroadcast,
                          .packet = packet.datagram.bytes};
    const auto now = Clock::now();
    for (const Reply& reply : m_server.Handle(arrival, now)) {
        for (TimedReply& timed : m_answers.Apply(reply, m_server.KnowsPatience(), now)) {
            m_waiting.emplace(timed.time, std::move(timed));
        }
    }
    SendDue(now);
}

void SimulatedCamera::SendDue(Clock::time_point now) {
    const auto end = m_waiting.upper_bound(now);
    std::for_each(m_waiting.begin(), end, [this](const auto& entry) { Send(entry.second); });
    m_waiting.erase(m_waiting.begin(), end);
}

void SimulatedCamera::Misbehave() {
    const ControlFaults& faults = m_profile.faults.control;
    const uint64_t commands = m_account[Count::Commands];
    if (faults.diesAfter != 0 && commands >= faults.diesAfter) {
        m_account.Add(Count::Deaths);
        m_isDead = true;
        m_waiting.clear();
        m_server.Forget();
    }
    if (faults.movesAfter != 0 && commands >= faults.movesAfter &&
        m_account[Count::AddressChanges] == 0) {
        m_account.Add(Count::AddressChanges);
        m_server.ChangeAddress(faults.movesTo);
    }
}

bool SimulatedCamera::IsOnBus() {
    OvVirtual::CameraLink& link = m_device.Camera().Link();
    if (m_isDead || !link.IsOnBus()) {
        return false;
    }
    if (link.IsLost()) {
        // It comes back as a camera that was switched off and on.
        link.Open(m_messages);
        m_server.Forget();
    }
    return true;
}

void SimulatedCamera::Send(const TimedReply& timed) {
    const Reply& reply = timed.reply;
    try {
        if (timed.isFromStranger) {
            m_sockets->SendAsStranger(reply.to, reply.packet);
        } else {
            m_sockets->Send(reply.to, reply.packet);
        }
        m_account.Add(Count::Answers);
    } catch (const OvProducer::Failure&) {
        m_account.Add(Count::NetworkFailures);
    }
}

}  // namespace OvSimulator
