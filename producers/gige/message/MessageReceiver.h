#pragma once
/// Receives a camera's messages as long as the camera is open.

#include <thread>

#include "gige/message/MessageIntake.h"
#include "gige/net/FirewallHole.h"
#include "gige/net/WakeFile.h"

namespace OvGige {

/// Has a thread of its own.
class MessageReceiver {
public:
    /// @param socket  that the camera sends to
    /// @param source  where the camera's messages come from; port 0 if that isn't known
    /// @param end     once it is signalled, nothing is taken any more; that is the end of the
    ///                camera's connection, whoever notices it first
    MessageReceiver(UdpSocket socket, const Endpoint& source,
                    std::weak_ptr<OvProducer::EventSink> sink, std::shared_ptr<const WakeFile> end);
    ~MessageReceiver() { Stop(); }
    MessageReceiver(const MessageReceiver&) = delete;
    MessageReceiver& operator=(const MessageReceiver&) = delete;

    /// Nothing is handed on after that. One thread may call it.
    void Stop();
    const MessageAccount& Account() const { return m_account; }

private:
    void Run();
    void Work();
    void PauseAfter(const std::string& failure);

    UdpSocket m_socket;
    FirewallHole m_hole;
    const std::shared_ptr<const WakeFile> m_end;
    MessageAccount m_account;
    MessageIntake m_intake;
    std::string m_lastFailure;  // that was logged
    std::thread m_thread;       // last, since it uses the others
};

}  // namespace OvGige
