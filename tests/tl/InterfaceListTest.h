#pragma once
/// An interface of a test producer, and what its lists hold.

#include "TLClassDevice/Device.h"
#include "TLClassDevice/GevDevice.h"
#include "TLClassInterface/GevInterface.h"
#include "TLClassModule/DeviceAddress.h"
#include "TransportTest.h"

namespace OVTLClass {

class InterfaceListTest : public ProducerTest {
protected:
    explicit InterfaceListTest(const char* fileName) : ProducerTest(fileName) {}

    bool Update() {
        bool changed = false;
        owner->DoUpdateDeviceList(0, changed);
        return changed;
    }
    std::shared_ptr<IDevice> First() { return owner->DoGetDeviceList().at(0); }

    static std::vector<std::string> IdsOf(const IInterface::DeviceList& devices) {
        std::vector<std::string> ids;
        for (const auto& device : devices) {
            ids.push_back(device->DoGetDeviceInfo().id.value);
        }
        return ids;
    }
    std::vector<std::string> Present() { return IdsOf(owner->DoGetDeviceList()); }
    std::vector<std::string> LostOpen() { return IdsOf(owner->DoGetLostOpenDeviceList()); }

    /// Null until the test has made it.
    std::shared_ptr<CInterface> owner;
};

}  // namespace OVTLClass
