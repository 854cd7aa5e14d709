#pragma once
/// The interface module: one adapter, and the devices that are connected to it.

#include <atomic>
#include <memory>

#include "framework/ChildList.h"
#include "framework/Device.h"
#include "framework/Module.h"

namespace OvProducer {

class System;

class Interface : public Module, public std::enable_shared_from_this<Interface> {
public:
    Interface(Session& session, std::weak_ptr<System> parent,
              std::shared_ptr<InterfaceBackend> backend);

    std::shared_ptr<System> Parent() const;
    void Close();

    InfoValue Info(GenTL::INTERFACE_INFO_CMD command) const;
    /// Returns whether the set of device IDs has changed.
    bool UpdateDevices(uint64_t timeout);
    ChildList<DeviceBackend, Device>& Devices() { return m_devices; }
    /// Fails with -1007 if there is no such device.
    std::shared_ptr<DeviceBackend> DeviceNamed(const std::string& id) const;
    std::shared_ptr<Device> OpenDevice(const std::string& id, GenTL::DEVICE_ACCESS_FLAGS flags);
    void CloseDevice(const std::shared_ptr<Device>& device);

    InterfaceBackend& Backend() { return *m_backend; }

protected:
    bool OffersEvent(GenTL::EVENT_TYPE type) const override {
        static_cast<void>(type);
        return false;
    }

private:
    void AddRegisters();
    void AddDeviceListRegisters();
    void AddForceRegisters();

    /// What the command that gives the selected device another address uses.
    struct ForcedAddress {
        std::atomic<int64_t> ip = 0;
        std::atomic<int64_t> mask = 0;
        std::atomic<int64_t> gateway = 0;
    };

    const std::weak_ptr<System> m_parent;
    const std::shared_ptr<InterfaceBackend> m_backend;
    ChildList<DeviceBackend, Device> m_devices;
    std::atomic<int64_t> m_searchMode = 0;
    ForcedAddress m_forced;
};

/// Answers an interface query from the interface's facts, whether it is open or not.
InfoValue InterfaceInfo(const InterfaceFacts& facts, GenTL::INTERFACE_INFO_CMD command);

}  // namespace OvProducer
