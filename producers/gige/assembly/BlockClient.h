#pragma once
/// What the assembly of blocks asks of its surroundings.

#include <memory>

#include "framework/Buffer.h"
#include "framework/FrameInfo.h"
#include "gige/protocol/GvspResend.h"

namespace OvGige {

class BlockClient {
public:
    virtual ~BlockClient() = default;
    /// A buffer to fill, or null if none is free.
    virtual std::shared_ptr<OvProducer::Buffer> TakeBuffer() = 0;
    /// Takes a filled buffer. Buffers come in the order of their blocks.
    virtual void Deliver(const std::shared_ptr<OvProducer::Buffer>& buffer,
                         const OvProducer::FrameInfo& frame) = 0;
    /// Takes back a buffer that isn't delivered.
    virtual void GiveBack(const std::shared_ptr<OvProducer::Buffer>& buffer) = 0;
    /// Sends a request to the camera.
    virtual void AskAgain(const ResendRequest& request) = 0;
};

}  // namespace OvGige
