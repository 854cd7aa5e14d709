#include "gige/message/MessageReceiver.h"

#include <array>

#include "framework/Failure.h"
#include "gige/net/WaitForFiles.h"

namespace OvGige {
namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;

/// A burst of events waits here while the thread waits for a processor.
constexpr size_t kSocketBuffer = 1 << 20;

/// How long a network that doesn't work is left alone.
constexpr auto kNetworkPause = 100ms;

}  // namespace

MessageReceiver::MessageReceiver(UdpSocket socket, const Endpoint& source,
                                 std::weak_ptr<OvProducer::EventSink> sink,
                                 std::shared_ptr<const WakeFile> end)
    : m_socket(std::move(socket)),
      m_hole(source),
      m_end(std::move(end)),
      m_intake(source.ip, std::move(sink), m_account) {
    m_socket.SetReceiveBuffer(kSocketBuffer);
    m_thread = std::thread([this] { Run(); });
}

void MessageReceiver::Stop() {
    m_end->Signal();
    if (m_thread.joinable()) {
        m_thread.join();
    }
}

void MessageReceiver::Run() {
    while (!m_end->IsSignalled()) {
        try {
            Work();
        } catch (const OvProducer::Failure& failure) {
            PauseAfter(failure.what());
        }
    }
}

void MessageReceiver::Work() {
    m_hole.KeepOpen(m_socket);
    const auto datagram = m_socket.Receive(m_hole.Due(), m_end->File());
    if (!datagram) {
        return;
    }
    if (const auto answer = m_intake.Take(*datagram)) {
        m_socket.SendTo(datagram->sender, *answer);
    }
}

// An adapter that is down fails at once, again and again, until the camera is known to be lost.
void MessageReceiver::PauseAfter(const std::string& failure) {
    if (failure != m_lastFailure) {
        OvProducer::LogWarning("The camera's messages: " + failure);
        m_lastFailure = failure;
    }
    std::array<pollfd, 1> files{{{m_end->File(), POLLIN, 0}}};
    WaitForFiles(files, steady_clock::now() + kNetworkPause);
}

}  // namespace OvGige
