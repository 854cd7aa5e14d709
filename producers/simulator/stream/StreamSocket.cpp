#include "simulator/stream/StreamSocket.h"

#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <cerrno>

#include "gige/net/WaitForFiles.h"

namespace OvSimulator {
namespace {

using namespace OvGige;
using std::chrono::steady_clock;

/// Packets that are handed to the system at once.
constexpr size_t kBatch = 32;

/// How long the system may take to make room for a packet.
constexpr std::chrono::milliseconds kPatience{100};

/// Packets in the form that the system takes.
class Batch {
public:
    Batch(const Endpoint& to, std::span<const StreamPacket> packets) : m_count(packets.size()) {
        m_address.sin_family = AF_INET;
        m_address.sin_port = htons(to.port);
        m_address.sin_addr.s_addr = htonl(to.ip.value);
        for (size_t i = 0; i < m_count; ++i) {
            Add(i, packets[i]);
        }
    }

    std::span<mmsghdr> Messages() { return std::span(m_messages).first(m_count); }

private:
    void Add(size_t index, const StreamPacket& packet) {
        m_parts[index][0] = {const_cast<std::byte*>(packet.header.data()), packet.headerSize};
        m_parts[index][1] = {const_cast<std::byte*>(packet.payload.data()), packet.payload.size()};
        msghdr& message = m_messages[index].msg_hdr;
        message.msg_name = &m_address;
        message.msg_namelen = sizeof m_address;
        message.msg_iov = m_parts[index].data();
        message.msg_iovlen = m_parts[index].size();
    }

    const size_t m_count;
    sockaddr_in m_address{};
    std::array<std::array<iovec, 2>, kBatch> m_parts{};
    std::array<mmsghdr, kBatch> m_messages{};
};

bool WaitForRoom(int file) {
    std::array<pollfd, 1> files{{{file, POLLOUT, 0}}};
    return WaitForFiles(files, steady_clock::now() + kPatience);
}

/// Sends the first of the messages, and those after it as far as the system takes them.
/// @return how many are done with, for good or not
size_t SendSome(int file, std::span<mmsghdr> messages, Sent& sent) {
    const int count =
        sendmmsg(file, messages.data(), static_cast<unsigned>(messages.size()), MSG_NOSIGNAL);
    if (count > 0) {
        for (const mmsghdr& message : messages.first(static_cast<size_t>(count))) {
            sent.bytes += message.msg_len + kIpUdpHeaderSize;
        }
        sent.packets += static_cast<uint64_t>(count);
        return static_cast<size_t>(count);
    }
    // ECONNREFUSED is about an earlier packet, at whose port nobody listens.
    if (errno == EINTR || errno == ECONNREFUSED || (errno == EAGAIN && WaitForRoom(file))) {
        return 0;
    }
    ++(errno == EMSGSIZE ? sent.tooLarge : sent.failures);
    return 1;
}

}  // namespace

Sent& Sent::operator+=(const Sent& other) {
    packets += other.packets;
    bytes += other.bytes;
    tooLarge += other.tooLarge;
    failures += other.failures;
    return *this;
}

StreamSocket::StreamSocket(const Endpoint& local) {
    m_socket.Bind(local);
}

Sent StreamSocket::Send(const Endpoint& to, std::span<const StreamPacket> packets) const {
    Sent sent;
    while (!packets.empty()) {
        const size_t count = std::min(packets.size(), kBatch);
        Batch batch(to, packets.first(count));
        for (std::span<mmsghdr> left = batch.Messages(); !left.empty();) {
            left = left.subspan(SendSome(m_socket.File(), left, sent));
        }
        packets = packets.subspan(count);
    }
    return sent;
}

}  // namespace OvSimulator
