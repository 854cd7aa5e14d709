#include "simulator/net/AddressLease.h"

#include <linux/netlink.h>
#include <linux/rtnetlink.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <bit>
#include <cerrno>
#include <cstring>
#include <system_error>

#include "framework/Failure.h"

namespace OvSimulator {
namespace {

using OvProducer::Failure;

/// A request to the system's routing tables.
struct Request {
    nlmsghdr header;
    ifaddrmsg address;
    std::array<std::byte, 64> attributes;
};

/// The system's own connection, closed at the end.
class RoutingSocket {
public:
    RoutingSocket() : m_file(socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC, NETLINK_ROUTE)) {}
    ~RoutingSocket() {
        if (m_file >= 0) {
            close(m_file);
        }
    }
    RoutingSocket(const RoutingSocket&) = delete;
    RoutingSocket& operator=(const RoutingSocket&) = delete;

    /// @return the system's error number; 0 after success
    int Exchange(const Request& request) const {
        std::array<std::byte, 1024> answer{};
        if (send(m_file, &request, request.header.nlmsg_len, 0) < 0 ||
            recv(m_file, answer.data(), answer.size(), 0) <
                static_cast<ssize_t>(sizeof(nlmsghdr) + sizeof(nlmsgerr))) {
            return errno == 0 ? EIO : errno;
        }
        nlmsgerr result{};
        std::memcpy(&result, answer.data() + sizeof(nlmsghdr), sizeof result);
        return -result.error;
    }

private:
    const int m_file;
};

void AppendAddress(Request& request, uint16_t type, OvGige::Ipv4 address) {
    const uint32_t value = htonl(address.value);
    const rtattr attribute{.rta_len = RTA_LENGTH(sizeof value), .rta_type = type};
    std::byte* const end =
        reinterpret_cast<std::byte*>(&request) + NLMSG_ALIGN(request.header.nlmsg_len);
    std::memcpy(end, &attribute, sizeof attribute);
    std::memcpy(end + sizeof attribute, &value, sizeof value);
    request.header.nlmsg_len += static_cast<uint32_t>(RTA_SPACE(sizeof value));
}

int Change(uint16_t what, uint16_t flags, int adapter, const IpAddresses& addresses) {
    Request request{};
    request.header.nlmsg_len = NLMSG_LENGTH(sizeof(ifaddrmsg));
    request.header.nlmsg_type = what;
    request.header.nlmsg_flags = static_cast<uint16_t>(NLM_F_REQUEST | NLM_F_ACK | flags);
    request.address.ifa_family = AF_INET;
    request.address.ifa_prefixlen = static_cast<uint8_t>(std::popcount(addresses.mask.value));
    request.address.ifa_index = static_cast<uint32_t>(adapter);
    AppendAddress(request, IFA_LOCAL, addresses.ip);
    AppendAddress(request, IFA_ADDRESS, addresses.ip);
    AppendAddress(request, IFA_BROADCAST, {addresses.ip.value | ~addresses.mask.value});
    return RoutingSocket().Exchange(request);
}

}  // namespace

AddressLease::AddressLease(int adapter, const IpAddresses& addresses)
    : m_adapter(adapter), m_addresses(addresses) {
    const int error = Change(RTM_NEWADDR, NLM_F_CREATE | NLM_F_EXCL, adapter, addresses);
    if (error != 0) {
        throw Failure(error == EPERM ? GenTL::GC_ERR_ACCESS_DENIED : GenTL::GC_ERR_IO,
                      "The address " + TextOf(addresses.ip) + " can't be added to the adapter: " +
                          std::generic_category().message(error));
    }
}

AddressLease::~AddressLease() {
    // An address that has gone with its adapter needs no removal.
    static_cast<void>(Change(RTM_DELADDR, 0, m_adapter, m_addresses));
}

}  // namespace OvSimulator
