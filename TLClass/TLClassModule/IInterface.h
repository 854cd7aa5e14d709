#pragma once
/// One interface module: a network adapter or a host controller.

#include <memory>
#include <optional>
#include <vector>

#include "TLClassInfo/InfoRecords.h"
#include "TLClassModule/GcObject.h"

namespace OVTLClass {

class ITL;
class IDevice;

class IInterface : public CGcObject {
public:
    using DeviceList = std::vector<std::shared_ptr<IDevice>>;
    using CGcObject::CGcObject;

    /// Has the producer search for cameras and renews the children, or only what is
    /// known of them when they are the same. What goes wrong is logged and leaves the
    /// list as it was; the next update renews it.
    /// @param timeout  for the producer, in milliseconds
    /// @param changed  whether the list is another now
    virtual void DoUpdateDeviceList(unsigned timeout, bool& changed) = 0;
    virtual IF_INFO DoGetInterfaceInfo() = 0;
    virtual COMMON_INTERFACE_INFO DoGetCommonInterfaceInfo() = 0;
    /// The cameras of the last update, in the producer's order.
    virtual DeviceList DoGetDeviceList() = 0;
    /// Cameras that vanished while they were open.
    virtual DeviceList DoGetLostOpenDeviceList() = 0;
    virtual std::shared_ptr<ITL> DoGetTL() = 0;
    /// Opens the interface with its description. No effect when it is open.
    virtual void DoOpenInterface() = 0;
    /// Closes all cameras, lost ones too, and then the interface. What goes wrong is
    /// logged.
    virtual void DoCloseInterface() = 0;
    virtual bool DoIsInterfaceOpen() = 0;
    /// Takes what an update of the system found out about the interface.
    virtual void DoUpdateInterfaceInformation(const IF_INFO& info) = 0;

protected:
    // What only one transport knows of the interface and of its devices.
    virtual void __DoAcquireInterfaceSpecialInformation(const IFeatureControl& control) = 0;
    virtual void __DoResetInterfaceSpecialInformation() = 0;
    virtual void __DoAcquireAllDeviceSpecialInformation(const IFeatureControl& control,
                                                        size_t count) = 0;
    virtual void __DoResetAllDeviceSpecialInformation() = 0;
    virtual std::vector<SPECIAL_INFO*> __DoGetAllDeviceSpecialInformation(size_t count) = 0;

public:
    /// The GigE Vision camera at that address, the first number in the top byte of the
    /// low 32 bits. One that isn't listed is made: the producer is asked for it when it
    /// is opened.
    /// @return null for an interface of another transport
    virtual std::shared_ptr<IDevice> DoCreateDeviceByIPAddress(int64_t ip) = 0;
    /// The adapter's own addresses. Empty for an interface of another transport.
    virtual std::optional<GEV_IF_INFO> DoGetGevInterfaceInfo() = 0;
    /// Held while the device list is replaced, and by a device that makes its
    /// streams: outside all locks of the lists.
    virtual CLock& GetDeviceListLock() = 0;
};

}  // namespace OVTLClass
