#include "simulator/net/CameraSockets.h"

#include <net/if.h>
#include <poll.h>

#include <algorithm>

#include "framework/Failure.h"
#include "gige/net/WaitForFiles.h"

namespace OvSimulator {
namespace {

using namespace OvGige;

/// All of 127.0.0.0/8 belongs to the loopback adapter.
bool Has(const Adapter& adapter, Ipv4 address) {
    return adapter.ip == address ||
           (adapter.isLoopback && IsSameSubnet(adapter.ip, address, adapter.mask));
}

/// It may be down, or have no address yet.
Adapter AdapterNamed(const std::string& name) {
    Adapter adapter;
    adapter.name = name;
    adapter.index = static_cast<int>(if_nametoindex(name.c_str()));
    if (adapter.index == 0) {
        throw OvProducer::Failure(GenTL::GC_ERR_NOT_AVAILABLE, "There is no adapter " + name);
    }
    return adapter;
}

}  // namespace

Adapter AdapterFor(const std::string& name, Ipv4 address) {
    if (!name.empty()) {
        return AdapterNamed(name);
    }
    const std::vector<Adapter> adapters = AllAdapters();
    const auto found = std::find_if(adapters.begin(), adapters.end(),
                                    [&](const Adapter& adapter) { return Has(adapter, address); });
    if (found == adapters.end()) {
        throw OvProducer::Failure(GenTL::GC_ERR_NOT_AVAILABLE,
                                  "No adapter of this machine has the address " + TextOf(address));
    }
    return *found;
}

bool IsOwnAddress(Ipv4 address) {
    const std::vector<Adapter> adapters = AllAdapters();
    return std::any_of(adapters.begin(), adapters.end(),
                       [&](const Adapter& adapter) { return Has(adapter, address); });
}

CameraSockets::CameraSockets(const Adapter& adapter, const IpAddresses& addresses, uint16_t port)
    : m_adapter(adapter) {
    m_own.AllowBroadcast();
    m_own.Bind({addresses.ip, port});
    const uint16_t granted = m_own.Local().port;
    Listen(kEverybody, granted);
    Listen({addresses.ip.value | ~addresses.mask.value}, granted);
}

void CameraSockets::Listen(Ipv4 broadcast, uint16_t port) {
    UdpSocket socket;
    // Without that right, the camera would hear the broadcasts of all networks of this
    // machine; it is still found by its address.
    if (!socket.BindToDevice(m_adapter.name)) {
        return;
    }
    socket.ShareAddress();
    socket.Bind({broadcast, port});
    m_broadcasts.push_back(std::move(socket));
}

void CameraSockets::Send(const Endpoint& to, ByteView packet) {
    m_own.SendTo(to, packet, to.ip == kEverybody ? m_adapter.index : 0);
}

void CameraSockets::SendAsStranger(const Endpoint& to, ByteView packet) const {
    UdpSocket stranger;
    stranger.AllowBroadcast();
    stranger.Bind({Local().ip, 0});
    stranger.SendTo(to, packet, to.ip == kEverybody ? m_adapter.index : 0);
}

std::optional<Packet> CameraSockets::Take() {
    if (auto datagram = m_own.Receive(Clock::time_point())) {
        return Packet{.datagram = std::move(*datagram), .wasBroadcast = false};
    }
    for (UdpSocket& socket : m_broadcasts) {
        if (auto datagram = socket.Receive(Clock::time_point())) {
            return Packet{.datagram = std::move(*datagram), .wasBroadcast = true};
        }
    }
    return {};
}

std::optional<Packet> CameraSockets::Receive(Clock::time_point deadline, int wake) {
    std::vector<pollfd> files{{wake, POLLIN, 0}, {m_own.File(), POLLIN, 0}};
    for (const UdpSocket& socket : m_broadcasts) {
        files.push_back({socket.File(), POLLIN, 0});
    }
    while (WaitForFiles(files, deadline) && files[0].revents == 0) {
        if (auto packet = Take()) {
            return packet;
        }
    }
    return {};
}

}  // namespace OvSimulator
