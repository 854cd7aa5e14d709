#include "gige/net/UdpSocket.h"

#include <net/if.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <system_error>
#include <utility>

#include "framework/Failure.h"
#include "gige/net/WaitForFiles.h"

namespace OvGige {
namespace {

using std::chrono::steady_clock;

constexpr size_t kDatagramMax = 65536;

[[noreturn]] void ThrowSystem(const std::string& what) {
    throw OvProducer::Failure(GenTL::GC_ERR_IO,
                              what + ": " + std::generic_category().message(errno));
}

sockaddr_in SystemAddress(const Endpoint& endpoint) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(endpoint.port);
    address.sin_addr.s_addr = htonl(endpoint.ip.value);
    return address;
}

Endpoint EndpointOf(const sockaddr_in& address) {
    return {{ntohl(address.sin_addr.s_addr)}, ntohs(address.sin_port)};
}

/// The address that a datagram was sent to, from what the system says beside it.
Ipv4 Destination(msghdr& message) {
    for (cmsghdr* item = CMSG_FIRSTHDR(&message); item != nullptr;
         item = CMSG_NXTHDR(&message, item)) {
        if (item->cmsg_level == IPPROTO_IP && item->cmsg_type == IP_PKTINFO) {
            in_pktinfo info{};
            std::memcpy(&info, CMSG_DATA(item), sizeof info);
            return {ntohl(info.ipi_addr.s_addr)};
        }
    }
    return {};
}

/// Space for one IP_PKTINFO, aligned as the system wants it.
struct alignas(cmsghdr) PacketInfoSpace {
    std::array<char, CMSG_SPACE(sizeof(in_pktinfo))> bytes{};
};

/// Names the sender's address, too: the system would choose another one of the adapter's.
void NameAdapter(msghdr& message, PacketInfoSpace& space, int adapter, Ipv4 sender) {
    message.msg_control = space.bytes.data();
    message.msg_controllen = space.bytes.size();
    cmsghdr* const item = CMSG_FIRSTHDR(&message);
    item->cmsg_level = IPPROTO_IP;
    item->cmsg_type = IP_PKTINFO;
    item->cmsg_len = CMSG_LEN(sizeof(in_pktinfo));
    in_pktinfo info{};
    info.ipi_ifindex = adapter;
    info.ipi_spec_dst.s_addr = htonl(sender.value);
    std::memcpy(CMSG_DATA(item), &info, sizeof info);
}

}  // namespace

UdpSocket::UdpSocket() : m_file(socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)) {
    if (m_file < 0) {
        ThrowSystem("No socket");
    }
    try {
        SetOption(IPPROTO_IP, IP_PKTINFO, 1, "A socket without the addresses of datagrams");
    } catch (...) {
        close(m_file);
        throw;
    }
}

UdpSocket::~UdpSocket() {
    if (m_file >= 0) {
        close(m_file);
    }
}

UdpSocket::UdpSocket(UdpSocket&& other) noexcept : m_file(std::exchange(other.m_file, -1)) {}

UdpSocket& UdpSocket::operator=(UdpSocket&& other) noexcept {
    std::swap(m_file, other.m_file);
    return *this;
}

bool UdpSocket::BindToDevice(const std::string& adapter) {
    return setsockopt(m_file, SOL_SOCKET, SO_BINDTODEVICE, adapter.data(),
                      static_cast<socklen_t>(adapter.size())) == 0;
}

void UdpSocket::Bind(const Endpoint& local) {
    const sockaddr_in address = SystemAddress(local);
    if (bind(m_file, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
        ThrowSystem("The address " + TextOf(local) + " can't be used");
    }
}

void UdpSocket::AllowBroadcast() {
    SetOption(SOL_SOCKET, SO_BROADCAST, 1, "No broadcasts");
}

void UdpSocket::ShareAddress() {
    SetOption(SOL_SOCKET, SO_REUSEADDR, 1, "No shared address");
}

void UdpSocket::SetDoNotFragment(bool on) {
    SetOption(IPPROTO_IP, IP_MTU_DISCOVER, on ? IP_PMTUDISC_PROBE : IP_PMTUDISC_DONT,
              "No choice of fragments");
}

size_t UdpSocket::SetReceiveBuffer(size_t bytes) {
    const int wanted = static_cast<int>(std::min(bytes, size_t{0x3FFFFFFF}));
    // Beyond the system's limit only with the right to it; up to the limit for everybody.
    if (setsockopt(m_file, SOL_SOCKET, SO_RCVBUFFORCE, &wanted, sizeof wanted) != 0) {
        SetOption(SOL_SOCKET, SO_RCVBUF, wanted, "No receive buffer");
    }
    int granted = 0;
    socklen_t size = sizeof granted;
    if (getsockopt(m_file, SOL_SOCKET, SO_RCVBUF, &granted, &size) != 0) {
        ThrowSystem("The size of a receive buffer");
    }
    return static_cast<size_t>(granted);
}

Endpoint UdpSocket::Local() const {
    sockaddr_in address{};
    socklen_t size = sizeof address;
    if (getsockname(m_file, reinterpret_cast<sockaddr*>(&address), &size) != 0) {
        ThrowSystem("The address of a socket");
    }
    return EndpointOf(address);
}

void UdpSocket::SetOption(int level, int name, int value, const char* what) {
    if (setsockopt(m_file, level, name, &value, sizeof value) != 0) {
        ThrowSystem(what);
    }
}

void UdpSocket::SendTo(const Endpoint& to, ByteView packet, int via) {
    sockaddr_in address = SystemAddress(to);
    iovec part{const_cast<std::byte*>(packet.data()), packet.size()};
    msghdr message{};
    message.msg_name = &address;
    message.msg_namelen = sizeof address;
    message.msg_iov = &part;
    message.msg_iovlen = 1;
    PacketInfoSpace space;
    if (via > 0) {
        NameAdapter(message, space, via, Local().ip);
    }
    // ECONNREFUSED is about an earlier datagram, to a port that nobody had; it says nothing of
    // this one.
    for (int attempt = 0; sendmsg(m_file, &message, MSG_NOSIGNAL) < 0; ++attempt) {
        if (errno != EINTR && (errno != ECONNREFUSED || attempt > 0)) {
            ThrowSystem("Nothing can be sent to " + TextOf(to));
        }
    }
}

std::optional<Datagram> UdpSocket::Receive(steady_clock::time_point deadline, int wake) {
    while (WaitReadable(deadline, wake)) {
        if (auto datagram = Take()) {
            return datagram;
        }
    }
    return {};
}

bool UdpSocket::WaitReadable(steady_clock::time_point deadline, int wake) const {
    std::array<pollfd, 2> files{{{m_file, POLLIN, 0}, {wake, POLLIN, 0}}};
    return WaitForFiles(files, deadline) && files[1].revents == 0;
}

// A socket may be readable and yet have nothing: a datagram with a wrong checksum is dropped
// only now, and an ICMP message about an earlier one counts as an error.
std::optional<Datagram> UdpSocket::Take() {
    Datagram datagram;
    datagram.bytes.resize(kDatagramMax);
    iovec part{datagram.bytes.data(), datagram.bytes.size()};
    sockaddr_in sender{};
    PacketInfoSpace space;
    msghdr message{};
    message.msg_name = &sender;
    message.msg_namelen = sizeof sender;
    message.msg_iov = &part;
    message.msg_iovlen = 1;
    message.msg_control = space.bytes.data();
    message.msg_controllen = space.bytes.size();
    const ssize_t length = recvmsg(m_file, &message, 0);
    if (length < 0) {
        if (errno == EAGAIN || errno == EINTR || errno == ECONNREFUSED) {
            return {};
        }
        ThrowSystem("Receiving a datagram");
    }
    datagram.bytes.resize(static_cast<size_t>(length));
    datagram.sender = EndpointOf(sender);
    datagram.arrivedAt = Destination(message);
    return datagram;
}

}  // namespace OvGige
