#pragma once
/// The interfaces that a producer implements: for itself, its interfaces, devices and
/// streams. The framework makes GenTL modules of them and implements the flat functions.
///
/// Backend objects represent the hardware. They live from `GCInitLib` to `GCCloseLib`,
/// whether their modules are open or not. Any thread may call their operations unless a
/// comment says otherwise. They throw `Failure`.

#include <chrono>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "framework/FrameCopier.h"
#include "framework/Functions.h"
#include "framework/Port.h"

namespace OvProducer {

/// The answers of `TLGetInfo`, except the file's name.
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
    int64_t ip = 0;  ///< in host order, the first number in the highest byte
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
    size_t announceMinimum = 1;       ///< buffers that a start needs
    size_t alignment = 1;             ///< of buffers, in bytes
    size_t chunksMax = 0;             ///< most chunks of a frame
    bool definesPayloadSize = false;  ///< whether this module, not the camera, knows the size
    size_t payloadSize = 0;           ///< in bytes, if the module knows it
};

/// The kinds of modules for which the framework has descriptions.
enum class ModuleKind { System, Interface, Device, Stream };

/// How long a device may take for a command, and how often one without an answer is repeated.
struct CommandPatience {
    std::chrono::milliseconds timeout{1000};
    int64_t retries = 3;
};

/// The framework's own description of such modules.
Description OwnDescription(ModuleKind kind);
/// Where a module's description is stored: beyond all its registers.
constexpr uint64_t kDescriptionAddress = 0x10000;

/// Receives a device's events while the device is open.
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
    /// Makes what fills the buffers. Is called when the stream is opened; the engine lives until
    /// it is closed.
    virtual std::unique_ptr<FrameEngine> MakeEngine() = 0;
    /// Is called before the engine starts. Throws if the stream can't be used, for
    /// instance because the device is gone.
    virtual void CheckUsable() = 0;
    /// Is called when a consumer has waited in vain. Throws if no frame can come any more.
    virtual void CheckAfterTimeout() {}
    /// Adds registers to those that the streams of all producers have.
    virtual void AddRegisters(RegisterSpace& registers) { static_cast<void>(registers); }
};

/// A stream whose frames are copied from a source.
class CopyingStream : public StreamBackend {
public:
    virtual FrameSource& Source() = 0;
    std::unique_ptr<FrameEngine> MakeEngine() override {
        return std::make_unique<FrameCopier>(Source());
    }
};

class DeviceBackend {
public:
    virtual ~DeviceBackend() = default;
    virtual DeviceFacts Facts() = 0;
    /// Opens the device for the host. `sink` receives the device's events until `Close`.
    virtual void Open(GenTL::DEVICE_ACCESS_FLAGS flags, std::weak_ptr<EventSink> sink) = 0;
    virtual void Close() = 0;
    virtual bool OffersEvent(GenTL::EVENT_TYPE type) = 0;
    /// Makes the camera's own port. Is called each time the device is opened.
    virtual std::unique_ptr<Port> MakeRemotePort() = 0;
    virtual std::vector<std::shared_ptr<StreamBackend>> Streams() = 0;
    /// Is called before each access to the local device module. Throws if the device is
    /// gone.
    virtual void CheckUsable() = 0;
    /// What the device begins with when it is opened.
    virtual CommandPatience InitialPatience() { return {}; }
    virtual void SetPatience(const CommandPatience& patience) { static_cast<void>(patience); }
    /// Sets whether the camera's numbers of four bytes are read as registers (true), as the
    /// descriptions of old GigE Vision cameras expect it, or as memory.
    virtual void SetLegacyEndianess(bool isLegacy) { static_cast<void>(isLegacy); }
    /// Adds registers to those that the devices of all producers have. They are used while the
    /// backend lives.
    virtual void AddRegisters(RegisterSpace& registers) { static_cast<void>(registers); }
};

class InterfaceBackend {
public:
    virtual ~InterfaceBackend() = default;
    virtual InterfaceFacts Facts() = 0;
    /// Searches for devices, for up to `timeout` milliseconds.
    virtual std::vector<std::shared_ptr<DeviceBackend>> Discover(uint64_t timeout) = 0;
    /// Returns a device that isn't in the list but can be reached by this ID, or null.
    virtual std::shared_ptr<DeviceBackend> Reach(const std::string& id) = 0;
    /// Sets how far a search reaches: 0 for the adapter's subnets, 1 for the whole
    /// network. Only GigE Vision interfaces have the choice.
    virtual void SetSearchMode(int64_t mode) { static_cast<void>(mode); }
    /// Ends a `Discover` that is running on another thread.
    virtual void StopDiscover() {}
    /// Gives a device of this interface another address until its next start. Only GigE Vision
    /// devices have addresses.
    virtual void ForceAddress(DeviceBackend& device, const NetworkAddress& address);
    /// Adds registers to those that the interfaces of all producers have. They are used while the
    /// backend lives.
    virtual void AddRegisters(RegisterSpace& registers) { static_cast<void>(registers); }
};

class ProducerBackend {
public:
    virtual ~ProducerBackend() = default;
    virtual ProducerFacts Facts() = 0;
    virtual std::vector<std::shared_ptr<InterfaceBackend>> Discover(uint64_t timeout) = 0;
    /// Addresses of devices that no broadcast reaches, as the user wrote them. Only GigE Vision
    /// devices have addresses.
    ///@{
    virtual std::string NamedAddresses() { return {}; }
    virtual void SetNamedAddresses(const std::string& addresses);
    ///@}
    /// Adds a module's description and its URL to the module's port, which has its
    /// registers already. By default the framework's own files are added.
    virtual void Describe(ModuleKind kind, Port& port);
};

/// Is called around the flat functions, so that tests can make calls fail. By default it
/// does nothing.
class CallObserver {
public:
    virtual ~CallObserver() = default;
    /// Before the call does anything. If it throws a `Failure`, the call fails with it.
    virtual void Enter(Function function) { static_cast<void>(function); }
    /// After the call has succeeded. If it throws a `Failure`, the call fails with it.
    virtual void Leave(Function function) { static_cast<void>(function); }
    /// Before an information command is answered. The flags of a stop count as a command.
    virtual void Ask(Function function, int32_t command) {
        static_cast<void>(function);
        static_cast<void>(command);
    }
    /// Whether the stacked buffer query is answered. Producers of older versions haven't got it.
    virtual bool OffersStack() { return true; }
    /// Changes the size that a query with a null buffer reports, and the number of bytes
    /// that an access to a port reports.
    virtual size_t ReportedSize(Function function, size_t size) {
        static_cast<void>(function);
        return size;
    }
};

/// Every producer defines these two functions.
///@{
std::unique_ptr<ProducerBackend> MakeProducer();
/// The observer of all calls, which lives as long as the process.
CallObserver& Observer();
///@}

}  // namespace OvProducer
