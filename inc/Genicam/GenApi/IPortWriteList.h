#pragma once

#include "GenApi/IPort.h"

namespace GenApi_3_0_ORVANE {

/// A list of recorded writes.
struct OV_ENGINE_API IPortWriteList {
    /// Appends a write. The bytes are copied.
    /// @throws InvalidArgumentException for null and for a negative length
    virtual void Write(const void* buffer, int64_t address, int64_t length) = 0;
    /// Writes everything to a port, in the order of recording.
    virtual void Replay(IPort* port) = 0;
    /// Keeps a number with the list, for the use of its owner.
    virtual void SetCookie(int64_t cookie) = 0;
    /// Returns that number; 0 if none was set.
    virtual int64_t GetCookie() = 0;
    virtual ~IPortWriteList() = default;
};

}  // namespace GenApi_3_0_ORVANE
