#pragma once
/// The way of datagrams to one camera and back: a socket, or a test's script of one.

#include <chrono>
#include <optional>

#include "gige/protocol/BigEndian.h"

namespace OvGige {

using Clock = std::chrono::steady_clock;

/// Used by one thread at a time.
class DatagramLink {
public:
    virtual ~DatagramLink() = default;
    /// Sends a datagram.
    /// @throws OvProducer::Failure GC_ERR_IO if the network is gone
    virtual void Send(ByteView packet) = 0;
    /// Waits for a datagram of the camera; datagrams of others aren't returned. Nothing is
    /// returned once the deadline has passed.
    /// @throws OvProducer::Failure GC_ERR_IO if the network is gone
    virtual std::optional<Bytes> Receive(Clock::time_point deadline) = 0;
    /// Ends a wait that runs, and those to come. Any thread may call it at any time.
    virtual void Cancel() = 0;
    /// Lets waits last again.
    virtual void Resume() = 0;
    /// The present time, by which deadlines are made.
    virtual Clock::time_point Now() const { return Clock::now(); }
};

}  // namespace OvGige
