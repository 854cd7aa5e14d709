#pragma once
/// What a stream needs of an open camera.

#include <cstdint>

#include "gige/control/CameraMemory.h"
#include "gige/net/Adapters.h"
#include "gige/protocol/Address.h"

namespace OvGige {

/// The device module that a stream belongs to. Any thread may call its functions while the
/// device is open. What they return stays as it is until the device is closed, which happens
/// only after the stream was stopped.
class StreamHost {
public:
    virtual ~StreamHost() = default;

    /// @throws OvProducer::Failure if the camera isn't open or is gone
    ///@{
    virtual void CheckUsable() = 0;
    /// The camera's registers. Commands and time-outs are those of the control channel.
    virtual CameraMemory& Memory() = 0;
    ///@}

    /// Where the camera listens for commands.
    virtual Endpoint CameraEndpoint() = 0;
    /// The adapter that reaches the camera; its address is the one that the camera can send to.
    virtual Adapter HostAdapter() = 0;
    /// Ticks per second of the camera's clock; 0 if it has none.
    virtual uint64_t TickFrequency() = 0;
    /// Whether the device was opened for writing. A reader can't set up a stream.
    virtual bool IsWritable() = 0;
    /// Whether the user has written the camera's packet size register (`kRegStreamPacketSize`)
    /// through the camera's port since the camera was opened. It isn't negotiated then.
    virtual bool IsPacketSizeChosen() = 0;
};

}  // namespace OvGige
