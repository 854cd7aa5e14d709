#pragma once
/// The callbacks that the transport model runs. The layer above derives bridges
/// from them; whoever registers one keeps it, as a clone is stored.

#include "TLClassSupport/UnCopyable.h"

namespace GenApi_3_0_ORVANE {
struct INode;
}

namespace OVTLClass {

struct BUFFER_INFO;

class IEventCallback : public CUnCopyable {
public:
    virtual ~IEventCallback() = default;
};

/// Hears of each frame, on the stream's thread.
class INewBufferCallback : public IEventCallback {
public:
    /// A copy that the caller owns.
    virtual INewBufferCallback* Clone() const = 0;
    virtual void operator()(const BUFFER_INFO& info) = 0;
};

/// Hears once that a device is gone.
class IDeviceOfflineCallback : public IEventCallback {
public:
    /// A copy that the caller owns.
    virtual IDeviceOfflineCallback* Clone() const = 0;
    virtual void operator()() = 0;
};

/// Hears that a feature may have changed, inside the engine's lock.
class IFeatureCallback : public IEventCallback {
public:
    virtual void operator()(GenApi_3_0_ORVANE::INode* node) = 0;
    /// A copy that the caller owns.
    virtual IFeatureCallback* Clone() const = 0;
};

}  // namespace OVTLClass
