#pragma once
/// The device module, which is the host's view of a camera, and the port of the camera
/// itself.

#include <memory>
#include <mutex>

#include "framework/ChildList.h"
#include "framework/Module.h"
#include "framework/Stream.h"

namespace OvProducer {

class Interface;

/// The camera's own register space.
class RemoteDevice : public PortObject {
public:
    explicit RemoteDevice(std::unique_ptr<Port> port) : m_port(std::move(port)) {}
    const Port& GetPort() const override { return *m_port; }

private:
    std::unique_ptr<Port> m_port;
};

class Device : public Module, public EventSink, public std::enable_shared_from_this<Device> {
public:
    /// Opens the camera, and adds the module and its remote port to the handles. A camera whose
    /// port can't be made is closed again.
    static std::shared_ptr<Device> Open(Session& session, std::weak_ptr<Interface> parent,
                                        const std::shared_ptr<DeviceBackend>& backend,
                                        GenTL::DEVICE_ACCESS_FLAGS flags);
    Device(Session& session, std::weak_ptr<Interface> parent,
           std::shared_ptr<DeviceBackend> backend);

    std::shared_ptr<Interface> Parent() const;
    /// Closes the streams, removes the handles and closes the camera.
    void Close();

    void* RemoteHandle() const { return m_remote->Handle(); }
    InfoValue Info(GenTL::DEVICE_INFO_CMD command) const;

    ChildList<StreamBackend, Stream>& Streams() { return m_streams; }
    std::shared_ptr<Stream> OpenStream(const std::string& id);
    void CloseStream(const std::shared_ptr<Stream>& stream);

    void Post(GenTL::EVENT_TYPE type, std::span<const std::byte> entry) override {
        PostEvent(type, entry);
    }

protected:
    bool OffersEvent(GenTL::EVENT_TYPE type) const override { return m_backend->OffersEvent(type); }

private:
    void AddRegisters();
    void AddStreamListRegisters();
    void AddSettingRegisters();

    const std::weak_ptr<Interface> m_parent;
    const std::shared_ptr<DeviceBackend> m_backend;
    std::shared_ptr<RemoteDevice> m_remote;
    ChildList<StreamBackend, Stream> m_streams;
    std::mutex m_settings;  // guards what follows
    CommandPatience m_patience;
    bool m_isLegacy = false;
};

/// Answers a device query from the device's facts, whether it is open or not.
InfoValue DeviceInfo(const DeviceFacts& facts, GenTL::DEVICE_INFO_CMD command);

}  // namespace OvProducer
