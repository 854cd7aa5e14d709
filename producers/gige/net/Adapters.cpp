#include "gige/net/Adapters.h"

#include <ifaddrs.h>
#include <net/if.h>
#include <netinet/in.h>
#include <netpacket/packet.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <memory>
#include <sstream>
#include <system_error>

#include "framework/Failure.h"

namespace OvGige {
namespace {

using SystemList = std::unique_ptr<ifaddrs, decltype(&freeifaddrs)>;

SystemList ReadSystemList() {
    ifaddrs* first = nullptr;
    if (getifaddrs(&first) != 0) {
        throw OvProducer::Failure(
            GenTL::GC_ERR_IO, "The list of adapters: " + std::generic_category().message(errno));
    }
    return {first, &freeifaddrs};
}

/// The address in a record of the system, or none if it isn't one of IPv4.
Ipv4 AddressOf(const sockaddr* address) {
    if (address == nullptr || address->sa_family != AF_INET) {
        return {};
    }
    return {ntohl(reinterpret_cast<const sockaddr_in*>(address)->sin_addr.s_addr)};
}

/// Hardware addresses by the name of their adapter.
std::map<std::string, MacAddress> ReadMacs(const ifaddrs* list) {
    std::map<std::string, MacAddress> macs;
    for (const ifaddrs* entry = list; entry != nullptr; entry = entry->ifa_next) {
        if (entry->ifa_addr == nullptr || entry->ifa_addr->sa_family != AF_PACKET) {
            continue;
        }
        const auto* const link = reinterpret_cast<const sockaddr_ll*>(entry->ifa_addr);
        MacAddress mac;
        if (link->sll_halen == mac.bytes.size()) {
            std::copy_n(link->sll_addr, mac.bytes.size(), mac.bytes.begin());
        }
        macs[entry->ifa_name] = mac;
    }
    return macs;
}

template <typename Value>
Value ValueAt(const std::map<std::string, Value>& values, const std::string& name) {
    const auto found = values.find(name);
    return found == values.end() ? Value() : found->second;
}

/// The system's, or where it was configured without one, the last address of the subnet. A
/// subnet of one or two addresses has none.
Ipv4 BroadcastOf(const ifaddrs& entry) {
    if ((entry.ifa_flags & IFF_BROADCAST) == 0) {
        return {};
    }
    const Ipv4 own = AddressOf(entry.ifa_addr);
    const Ipv4 configured = AddressOf(entry.ifa_broadaddr);
    // Without one the system's record has the adapter's own address in its place.
    if (!configured.IsNone() && configured != own) {
        return configured;
    }
    constexpr uint32_t kLargestMaskWithOne = 0xFFFFFFFC;
    const uint32_t mask = AddressOf(entry.ifa_netmask).value;
    return mask <= kLargestMaskWithOne ? Ipv4{own.value | ~mask} : Ipv4();
}

bool IsUsable(const ifaddrs& entry) {
    return (entry.ifa_flags & IFF_UP) != 0 && !AddressOf(entry.ifa_addr).IsNone();
}

}  // namespace

// A line has the adapter, the destination and the gateway, the latter two as the number that
// the address's bytes make in the machine's memory. The first line is a heading.
std::map<std::string, Ipv4> ReadGateways(std::istream& routes) {
    std::map<std::string, Ipv4> gateways;
    std::string line;
    while (std::getline(routes, line)) {
        std::istringstream fields(line);
        std::string name;
        uint32_t destination = 0;
        uint32_t gateway = 0;
        fields >> name >> std::hex >> destination >> gateway;
        if (fields && destination == 0 && gateway != 0) {
            gateways.try_emplace(name, Ipv4{ntohl(gateway)});
        }
    }
    return gateways;
}

std::vector<Adapter> AllAdapters() {
    const SystemList list = ReadSystemList();
    const std::map<std::string, MacAddress> macs = ReadMacs(list.get());
    std::ifstream routes("/proc/net/route");
    const std::map<std::string, Ipv4> gateways = ReadGateways(routes);
    std::vector<Adapter> adapters;
    for (const ifaddrs* entry = list.get(); entry != nullptr; entry = entry->ifa_next) {
        if (!IsUsable(*entry)) {
            continue;
        }
        const std::string name = entry->ifa_name;
        adapters.push_back({.name = name,
                            .index = static_cast<int>(if_nametoindex(entry->ifa_name)),
                            .mac = ValueAt(macs, name),
                            .ip = AddressOf(entry->ifa_addr),
                            .mask = AddressOf(entry->ifa_netmask),
                            .broadcast = BroadcastOf(*entry),
                            .gateway = ValueAt(gateways, name),
                            .isLoopback = (entry->ifa_flags & IFF_LOOPBACK) != 0});
    }
    return adapters;
}

bool AdapterChoice::Allows(const Adapter& adapter) const {
    if (m_wanted.empty()) {
        return !adapter.isLoopback;
    }
    return std::any_of(m_wanted.begin(), m_wanted.end(), [&](const std::string& wanted) {
        return wanted == adapter.name || wanted == TextOf(adapter.ip);
    });
}

}  // namespace OvGige
