#pragma once
/// What a producer implements: its interfaces, devices and streams. The
/// framework makes GenTL modules of them and serves the flat functions.
///
/// Backend objects are the hardware's image. They live from `GCInitLib` to
/// `GCCloseLib`, whether their modules are open or not. Their operations may be
/// called from any thread unless said otherwise, and report failures by
/// `Failure`.

#include <memory>
#include <span>
#include <string>
#include <vector>

#include "framework/Acquisition.h"
#include "framework/Functions.h"
#include "framework/Port.h"

namespace OvProducer {

/// What `TLGetInfo` tells, beside the file's name.
struct ProducerFacts {
    std::string id;
    std::string vendor;
    std::string model;
    std::string version;
    std::string tlType;
    std::string displayName;
};

/// An address as GigE Vision modules show it; all 0 elsewhere.
struct NetworkAddress {
    int64_t mac = 0;
    int64_t ip = 0;  ///< host order, first number in the top byte
    int64_t mask = 0;
    int64_t gateway = 0;
};

struct InterfaceFacts {
    std::string id;
    std::string displayName;
    std::string tlType;
    std::string description;
    NetworkAddress address;
};

struct DeviceFacts {
    std::string id;
    std::string vendor;
    std::string model;
    std::string tlType;
    std::string displayName;
    std::string userId;
    std::string serialNumber;
    std::string version;
    uint64_t timestampFrequency = 0;  ///< ticks per second
    GenTL::DEVICE_ACCESS_STATUS accessStatus = GenTL::DEVICE_ACCESS_STATUS_READWRITE;
    NetworkAddress address;
};

struct StreamFacts {
    std::string id;
    std::string tlType;
    size_t announceMinimum = 1;       ///< least buffers for a start
    size_t alignment = 1;             ///< of buffer memory, bytes
    size_t chunksMax = 0;             ///< most chunks in a buffer
    bool definesPayloadSize = false;  ///< this module, not the camera, sets the size
    size_t payloadSize = 0;           ///< bytes, when it defines it
};

/// The modules whose descriptions the framework serves.
enum class ModuleKind { System, Interface, Device, Stream };

/// Takes a device's events while the device is open.
class EventSink {
public:
    virtual ~EventSink() = default;
    /// Queues an entry (see `QueuedEvent`) if the event is registered.
    virtual void Post(GenTL::EVENT_TYPE type, std::span<const std::byte> entry) = 0;
};

class StreamBackend {
public:
    virtual ~StreamBackend() = default;
    virtual StreamFacts Facts() = 0;
    virtual FrameSource& Source() = 0;
    /// Called before the engine starts, as for a device that is gone.
    virtual void CheckUsable() = 0;
};

class DeviceBackend {
public:
    virtual ~DeviceBackend() = default;
    virtual DeviceFacts Facts() = 0;
    /// Takes control. `sink` gets the device's events until `Close`.
    virtual void Open(GenTL::DEVICE_ACCESS_FLAGS flags, std::weak_ptr<EventSink> sink) = 0;
    virtual void Close() = 0;
    virtual bool OffersEvent(GenTL::EVENT_TYPE type) = 0;
    /// The camera's own port; made anew for each open device.
    virtual std::unique_ptr<Port> MakeRemotePort() = 0;
    virtual std::vector<std::shared_ptr<StreamBackend>> Streams() = 0;
    /// Called before each access to the local device module.
    virtual void CheckUsable() = 0;
};

class InterfaceBackend {
public:
    virtual ~InterfaceBackend() = default;
    virtual InterfaceFacts Facts() = 0;
    /// The devices that answer now. May take up to `timeout` milliseconds.
    virtual std::vector<std::shared_ptr<DeviceBackend>> Discover(uint64_t timeout) = 0;
    /// A device that is not in the list but can be reached by this ID, or null.
    virtual std::shared_ptr<DeviceBackend> Reach(const std::string& id) = 0;
    /// How far a search reaches: 0 the adapter's subnets, 1 the whole network.
    /// Only GigE Vision interfaces offer the choice.
    virtual void SetSearchMode(int64_t mode) { static_cast<void>(mode); }
    /// Ends a `Discover` that runs.
    virtual void StopDiscover() {}
};

class ProducerBackend {
public:
    virtual ~ProducerBackend() = default;
    virtual ProducerFacts Facts() = 0;
    virtual std::vector<std::shared_ptr<InterfaceBackend>> Discover(uint64_t timeout) = 0;
    /// Puts a module's description and its URL into its port, which has the
    /// module's registers already. The default is the framework's own files.
    virtual void Describe(ModuleKind kind, Port& port);
};

/// Watches the flat functions; for tests that make calls fail. The default is
/// to let everything pass.
class CallObserver {
public:
    virtual ~CallObserver() = default;
    /// Before the call does anything; a `Failure` from here is its result.
    virtual void Enter(Function function) { static_cast<void>(function); }
    /// After the call succeeded; a `Failure` from here becomes its result.
    virtual void Leave(Function function) { static_cast<void>(function); }
    /// Before a command is answered; the flags of a stop are one.
    virtual void Ask(Function function, int32_t command) {
        static_cast<void>(function);
        static_cast<void>(command);
    }
    /// Changes the size that a query with a null buffer reports, and the number of
    /// bytes that an access to a port says it moved.
    virtual size_t TellSize(Function function, size_t size) {
        static_cast<void>(function);
        return size;
    }
};

/// Each producer defines these two.
///@{
std::unique_ptr<ProducerBackend> MakeProducer();
/// The observer of all calls; lives as long as the process.
CallObserver& Observer();
///@}

}  // namespace OvProducer
