#pragma once
/// A camera on the network of this machine, for tests of programs and networks.

#include <atomic>
#include <list>
#include <map>
#include <mutex>
#include <thread>

#include "gige/net/WakeFile.h"
#include "simulator/control/AnswerFaults.h"
#include "simulator/control/CommandServer.h"
#include "simulator/message/MessageSender.h"
#include "simulator/net/AddressLease.h"
#include "simulator/net/CameraSockets.h"
#include "simulator/stream/StreamSender.h"

namespace OvSimulator {

/// Is there from its construction to its end. Any thread may call all operations.
class SimulatedCamera : private NetworkPlace {
public:
    /// @throws OvProducer::Failure if the camera's address can't be had on this machine
    explicit SimulatedCamera(const CameraProfile& profile);
    ~SimulatedCamera() override;

    /// The camera's present address.
    OvGige::Endpoint Address() const;
    const CameraProfile& Profile() const { return m_profile; }
    const Account& Counts() const { return m_account; }

private:
    bool Move(const IpAddresses& addresses) override;
    void Resend(const OvGige::ResendRequest& request, bool saysMore) override {
        m_stream.Resend(request, saysMore);
    }
    void Occupy(const IpAddresses& addresses);
    bool TryToOccupy(const IpAddresses& addresses);
    void Run();
    void Serve();
    /// Whether the camera hears anything: its features let it drop off the bus for a while.
    bool IsOnBus();
    void Answer(const Packet& packet);
    /// Falls silent, or takes another address, when it is time.
    void Misbehave();
    void SendDue(Clock::time_point now);
    void Send(const TimedReply& timed);

    const CameraProfile m_profile;
    const OvGige::Adapter m_adapter;
    Account m_account;
    CameraDevice m_device;
    StreamSender m_stream;
    const std::shared_ptr<MessageSender> m_messages;
    CommandServer m_server;
    AnswerFaults m_answers;
    std::multimap<Clock::time_point, TimedReply> m_waiting;  // by the time at which they leave
    bool m_isDead = false;
    std::list<AddressLease> m_leases;
    std::optional<CameraSockets> m_sockets;
    mutable std::mutex m_mutex;
    OvGige::Endpoint m_address;  // guarded by the mutex
    OvGige::WakeFile m_stop;
    std::thread m_thread;
};

}  // namespace OvSimulator
