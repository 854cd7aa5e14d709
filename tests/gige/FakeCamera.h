#pragma once
/// A camera that a script makes, on a socket of this machine.

#include <cstdint>
#include <functional>
#include <thread>
#include <vector>

#include "LoopbackSocket.h"
#include "ScriptedLink.h"
#include "gige/net/Adapters.h"
#include "gige/net/WakeFile.h"
#include "gige/protocol/Discovery.h"

/// Nobody listens there: broadcasts of these tests reach no real camera.
constexpr uint16_t kNobodysPort = 9;

inline OvGige::Adapter LoopbackAdapter() {
    return {.name = "lo",
            .index = 1,
            .mac = {},
            .ip = kLoopback,
            .mask = {0xFF000000},
            .broadcast = {},
            .gateway = {},
            .isLoopback = true};
}

inline OvGige::Bytes IdentityOf(uint8_t number) {
    OvGige::Identity identity;
    identity.mac = {{0, 0, 0, 0, 0, number}};
    identity.ip = kLoopback;
    return OvGige::BuildIdentity(identity);
}

/// Answers each packet with what a script makes of it, on a thread of its own.
class FakeCamera {
public:
    using Script = std::function<std::vector<OvGige::Bytes>(const OvGige::CommandPacket&)>;

    explicit FakeCamera(Script script)
        : m_script(std::move(script)), m_thread([this] { Serve(); }) {}
    ~FakeCamera() {
        m_stop.Signal();
        m_thread.join();
    }

    OvGige::Endpoint Address() const { return m_socket.Local(); }

private:
    void Serve() {
        while (const auto datagram =
                   m_socket.Receive(OvGige::Clock::time_point::max(), m_stop.File())) {
            const auto command = OvGige::ParseCommand(datagram->bytes);
            for (const OvGige::Bytes& packet : m_script(command.value())) {
                m_socket.SendTo(datagram->sender, packet);
            }
        }
    }

    const Script m_script;
    OvGige::WakeFile m_stop;
    OvGige::UdpSocket m_socket = LoopbackSocket();
    std::thread m_thread;  // last, since it uses the others
};
