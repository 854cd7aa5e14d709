#pragma once
/// A connection to a camera, from taking it to giving it back.

#include <functional>
#include <memory>
#include <mutex>
#include <string>

#include "gige/control/CameraMemory.h"
#include "gige/control/Heartbeat.h"
#include "gige/control/Privilege.h"

namespace OvGige {

/// How a connection is opened.
struct ConnectionOptions {
    Access access = Access::Control;
    Patience patience;  ///< of the accesses once the camera is open
    IsAbandoned isAbandoned;
    std::function<void(std::chrono::milliseconds)> pause;
    /// Called once when the camera is gone, on a thread of the connection. It must not end the
    /// connection.
    std::function<void()> onLoss;
};

/// All functions may be called from any thread; `Close` by one.
class CameraConnection {
public:
    /// Takes the camera and keeps it until the end of the connection.
    /// @throws OvProducer::Failure GC_ERR_ACCESS_DENIED if somebody else has it,
    ///         GC_ERR_TIMEOUT if it doesn't answer
    CameraConnection(std::unique_ptr<DatagramLink> link, ConnectionOptions options);
    /// Closes the connection.
    ~CameraConnection() { Close(); }
    CameraConnection(const CameraConnection&) = delete;
    CameraConnection& operator=(const CameraConnection&) = delete;

    /// Gives the camera back. One that is gone isn't waited for. Accesses of other threads fail
    /// from then on.
    void Close();

    CameraMemory& Memory() { return m_memory; }
    /// How long a camera is waited for in each access from now on.
    void SetPatience(Patience patience) { m_channel.SetPatience(patience); }
    ControlCounters Counters() const { return m_channel.Counters(); }
    /// Ticks per second of the camera's clock; 0 if it has none.
    uint64_t TickFrequency();

    /// @throws OvProducer::Failure GC_ERR_CUSTOM_ID once the camera is gone; the text says how
    ///         that was noticed
    void CheckUsable() const;
    bool IsLost() const;
    /// To be called after the camera's heartbeat time-out was written.
    void FollowHeartbeatTimeout();
    /// For what else notices a loss, such as an adapter that goes down.
    void Lose(const std::string& why);

private:
    bool ReadCapability();
    void Configure();

    const ConnectionOptions m_options;
    ControlChannel m_channel;
    CameraMemory m_memory{m_channel};
    mutable std::mutex m_mutex;  // guards what follows
    std::string m_loss;          // empty while the camera is there
    std::mutex m_closing;        // guards what follows, and is never taken by the heartbeat
    std::unique_ptr<Heartbeat> m_heartbeat;
};

}  // namespace OvGige
