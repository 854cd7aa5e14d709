#pragma once
/// The network adapters of this machine, and which of them a user allows.

#include <istream>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "gige/protocol/Address.h"

namespace OvGige {

/// An adapter with one of its IPv4 addresses; one with two addresses is listed twice.
struct Adapter {
    std::string name;  ///< "eth0"
    int index = 0;     ///< the system's number of the adapter
    MacAddress mac;    ///< all zeros if the adapter has none
    Ipv4 ip;
    Ipv4 mask;
    Ipv4 broadcast;  ///< none where the adapter can't broadcast, such as loopback
    Ipv4 gateway;    ///< of its default route; none without one
    bool isLoopback = false;

    bool operator==(const Adapter&) const = default;
};

/// Gateways of default routes by the name of their adapter, from the system's table of routes.
std::map<std::string, Ipv4> ReadGateways(std::istream& routes);

/// All adapters that are up and have an IPv4 address, in the system's order.
std::vector<Adapter> AllAdapters();

/// Which adapters may be used, from a text with names or addresses between commas or blanks.
/// An empty text allows all but loopback, "none" allows nothing, and loopback must be named.
class AdapterChoice {
public:
    explicit AdapterChoice(std::string_view text) : m_wanted(ItemsOf(text)) {}
    bool Allows(const Adapter& adapter) const;

private:
    std::vector<std::string> m_wanted;
};

}  // namespace OvGige
