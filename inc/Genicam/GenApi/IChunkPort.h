#pragma once

#include "GenApi/IBase.h"

namespace GenApi_3_0_ORVANE {

/// A port node whose data may come with frames instead of from the device's memory.
struct OV_ENGINE_API IChunkPort : virtual public IBase {
    /// Returns the identifier of the chunk, in hexadecimal digits; empty for a port of the
    /// device's memory.
    virtual gcstring GetChunkID() = 0;
    /// Whether the description asks for a copy of the chunk, so that it stays readable after the
    /// frame's buffer is gone.
    virtual EYesNo CacheChunkData() = 0;
};

}  // namespace GenApi_3_0_ORVANE
