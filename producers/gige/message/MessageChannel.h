#pragma once
/// A camera's registers for the messages that it sends on its own.

#include "gige/control/CameraMemory.h"
#include "gige/protocol/Address.h"

namespace OvGige {

/// Closing it isn't needed: whoever gives the camera back closes its channels.
class MessageChannel {
public:
    explicit MessageChannel(CameraMemory& camera) : m_camera(camera) {}

    /// Whether the camera has such a channel.
    bool IsThere() const;
    /// The port that messages come from; 0 if the camera doesn't say it.
    uint16_t SourcePort() const;
    /// Has the camera send messages to a port of this machine, and send those again that nobody
    /// acknowledged. A channel that somebody left open is closed first.
    void Open(const Endpoint& destination);

private:
    CameraMemory& m_camera;
};

}  // namespace OvGige
