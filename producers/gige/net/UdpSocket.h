#pragma once
/// A UDP socket over IPv4.

#include <netinet/in.h>

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

#include "gige/protocol/Address.h"
#include "gige/protocol/BigEndian.h"

namespace OvGige {

struct Datagram {
    Endpoint sender;
    Ipv4 arrivedAt;  ///< the address that it was sent to, which may be a broadcast address
    Bytes bytes;
};

/// Failures of the system are `OvProducer::Failure`s with GC_ERR_IO and the system's words,
/// unless something else is said.
class UdpSocket {
public:
    UdpSocket();
    ~UdpSocket();
    UdpSocket(UdpSocket&& other) noexcept;
    UdpSocket& operator=(UdpSocket&& other) noexcept;
    UdpSocket(const UdpSocket&) = delete;
    UdpSocket& operator=(const UdpSocket&) = delete;

    /// Makes the socket use one adapter only, whatever the routes say. False if the system
    /// doesn't allow it.
    bool BindToDevice(const std::string& adapter);
    /// Takes an address of this machine (none: all of them) and a port (0: any that is free).
    void Bind(const Endpoint& local);
    void AllowBroadcast();
    /// Lets other sockets have the same address, before `Bind`. A broadcast then arrives at all
    /// of them.
    void ShareAddress();
    /// Asks for a receive buffer; the system may allow less. Returns the bytes that it allows.
    size_t SetReceiveBuffer(size_t bytes);
    /// Whether datagrams may be split on their way. One that is too large and may not is
    /// refused.
    void SetDoNotFragment(bool on);
    Endpoint Local() const;
    /// The system's number of the socket, for waits for several.
    int File() const { return m_file; }

    /// @param via  adapter by which the datagram leaves; 0: by route
    void SendTo(const Endpoint& to, ByteView packet, int via = 0);
    /// Waits for a datagram. Nothing is returned once the deadline has passed, or as soon as
    /// `wake`, if it isn't negative, is a file descriptor with something to read. Datagrams
    /// larger than 64 KiB don't exist.
    std::optional<Datagram> Receive(std::chrono::steady_clock::time_point deadline, int wake = -1);

private:
    void SetOption(int level, int name, int value, const char* what);
    bool WaitReadable(std::chrono::steady_clock::time_point deadline, int wake) const;
    std::optional<Datagram> Take();

    int m_file;
};

}  // namespace OvGige
