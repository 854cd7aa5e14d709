#pragma once
/// The socket that a camera's frames leave by.

#include <array>
#include <span>

#include "gige/net/UdpSocket.h"
#include "gige/protocol/Gvsp.h"

namespace OvSimulator {

/// A packet of a stream. The payload must live until it is sent.
struct StreamPacket {
    StreamPacket(const OvGige::StreamHeader& fields, OvGige::ByteView content)
        : headerSize(fields.Size()), payload(content) {
        OvGige::WriteStreamHeader(header, fields);
    }

    std::array<std::byte, OvGige::kExtendedStreamHeaderSize> header{};
    size_t headerSize;
    OvGige::ByteView payload;
};

/// What came of packets.
struct Sent {
    uint64_t packets = 0;
    uint64_t bytes = 0;     ///< of IP, UDP and what they carry
    uint64_t tooLarge = 0;  ///< packets that the network doesn't take in one piece
    uint64_t failures = 0;

    Sent& operator+=(const Sent& other);
};

/// Any thread may send.
class StreamSocket {
public:
    /// @param local  port 0: any that is free
    explicit StreamSocket(const OvGige::Endpoint& local);

    OvGige::Endpoint Local() const { return m_socket.Local(); }
    void SetDoNotFragment(bool on) { m_socket.SetDoNotFragment(on); }
    /// Sends packets in order, and waits where the system's memory for them is full.
    Sent Send(const OvGige::Endpoint& to, std::span<const StreamPacket> packets) const;

private:
    OvGige::UdpSocket m_socket;
};

}  // namespace OvSimulator
