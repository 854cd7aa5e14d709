#pragma once

#include "GenApi/IPort.h"

namespace GenApi_3_0_ORVANE {

/// Writes that were recorded.
struct OV_ENGINE_API IPortWriteList {
    virtual void Write(const void* buffer, int64_t address, int64_t length) = 0;
    virtual void Replay(IPort* port) = 0;
    /// A number that the client keeps with the list.
    virtual void SetCookie(int64_t cookie) = 0;
    virtual int64_t GetCookie() = 0;
    virtual ~IPortWriteList() = default;
};

}  // namespace GenApi_3_0_ORVANE
