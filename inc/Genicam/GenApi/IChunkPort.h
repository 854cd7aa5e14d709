#pragma once

#include "GenApi/IBase.h"

namespace GenApi_3_0_ORVANE {

/// A port whose data comes with frames.
struct OV_ENGINE_API IChunkPort : virtual public IBase {
    /// In hexadecimal; empty for a port of the device itself.
    virtual gcstring GetChunkID() = 0;
    virtual EYesNo CacheChunkData() = 0;
};

}  // namespace GenApi_3_0_ORVANE
