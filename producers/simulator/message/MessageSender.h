#pragma once
/// Sends a virtual camera's events to a host.

#include <memory>
#include <mutex>
#include <thread>

#include "framework/Backend.h"
#include "gige/net/UdpSocket.h"
#include "gige/net/WakeFile.h"
#include "simulator/message/MessageOutbox.h"

namespace OvSimulator {

/// Has a thread of its own. Any thread may call all operations.
class MessageSender : public OvProducer::EventSink {
public:
    MessageSender(const CameraProfile& profile, Account& account);
    ~MessageSender() override;

    /// Takes the camera's address, and a port that is free.
    /// @return the port
    uint16_t Occupy(OvGige::Ipv4 address);
    void Configure(const MessageSetup& setup);
    /// An event of the camera, or that it drops off the bus: then nothing is sent any more.
    void Post(GenTL::EVENT_TYPE type, std::span<const std::byte> entry) override;

private:
    /// What the thread does in one round, as of one moment.
    struct Round {
        std::shared_ptr<OvGige::UdpSocket> socket;  ///< null until there is an address
        OvGige::Endpoint destination;
        std::vector<Outgoing> packets;
        Clock::time_point due;
    };

    void Run();
    Round Plan();
    void Work(const Round& round);
    void Send(const Round& round, const Outgoing& packet);
    bool IsEnding() const;

    Account& m_account;
    const OvGige::WakeFile m_wake;
    mutable std::mutex m_mutex;  // guards what follows
    bool m_isEnding = false;
    std::shared_ptr<OvGige::UdpSocket> m_socket;
    MessageOutbox m_outbox;
    std::thread m_thread;  // last, since it uses the others
};

}  // namespace OvSimulator
