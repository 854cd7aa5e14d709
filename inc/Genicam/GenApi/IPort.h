#pragma once
/// The bridge between the node graph and a device's registers.

#include "GenApi/IBase.h"

namespace GenApi_3_0_ORVANE {

/// A client's transport derives from this. What it throws leaves the engine
/// unchanged.
struct OV_ENGINE_API IPort : virtual public IBase {
    virtual void Read(void* buffer, int64_t address, int64_t length) = 0;
    virtual void Write(const void* buffer, int64_t address, int64_t length) = 0;
};

/// A port that passes on to another.
struct OV_ENGINE_API IPortConstruct : virtual public IPort {
    virtual void SetPortImpl(IPort* port) = 0;
    virtual EYesNo GetSwapEndianess() = 0;
};

/// A port whose data comes with frames.
struct OV_ENGINE_API IChunkPort : virtual public IBase {
    /// In hexadecimal; empty for a port of the device itself.
    virtual gcstring GetChunkID() = 0;
    virtual EYesNo CacheChunkData() = 0;
};

/// Writes that were recorded.
struct OV_ENGINE_API IPortWriteList {
    virtual void Write(const void* buffer, int64_t address, int64_t length) = 0;
    virtual void Replay(IPort* port) = 0;
    /// A number that the client keeps with the list.
    virtual void SetCookie(int64_t cookie) = 0;
    virtual int64_t GetCookie() = 0;
    virtual ~IPortWriteList() = default;
};

struct OV_ENGINE_API IPortReplay : virtual public IBase {
    /// @param invalidate  drop all caches afterwards
    virtual void Replay(IPortWriteList* list, bool invalidate = true) = 0;
};

struct OV_ENGINE_API IPortRecorder : virtual public IPortReplay {
    virtual void StartRecording(IPortWriteList* list) = 0;
    virtual void StopRecording() = 0;
};

}  // namespace GenApi_3_0_ORVANE
