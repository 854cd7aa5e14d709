#pragma once
/// A camera's stream registers.

#include <optional>

#include "gige/control/CameraMemory.h"
#include "gige/protocol/Address.h"

namespace OvGige {

/// Sends the camera's packets to a port of this machine, from the channel's opening to its end.
class StreamChannel {
public:
    explicit StreamChannel(CameraMemory& camera) : m_camera(camera) {}
    ~StreamChannel() { Close(); }
    StreamChannel(const StreamChannel&) = delete;
    StreamChannel& operator=(const StreamChannel&) = delete;

    /// A stream that somebody left open is closed first.
    void Open(const Endpoint& destination);
    /// Does nothing if the channel isn't open. A camera that is gone needs no closing.
    void Close() noexcept;

    size_t PacketSize() const;
    /// Sets the packet size; the camera may round it. Returns what it has now.
    size_t SetPacketSize(size_t size);
    /// Sets the packet size, so that packets are never fragmented, and has the camera send one
    /// without data. Returns the size that it has now, or nothing if the camera refuses.
    std::optional<size_t> FireTestPacket(size_t size);
    /// The port that packets come from; 0 if the camera doesn't say it.
    uint16_t SourcePort() const;
    /// Where the camera sends to now.
    Endpoint Destination() const;

private:
    CameraMemory& m_camera;
    bool m_isOpen = false;
};

}  // namespace OvGige
