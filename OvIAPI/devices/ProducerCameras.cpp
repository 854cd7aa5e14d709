#include "devices/ProducerCameras.h"

#include <algorithm>

#include "TLClassModule/DeviceAddress.h"
#include "TLClassModule/IDevice.h"
#include "TLClassModule/IInterface.h"
#include "TLClassModule/ITL.h"

using namespace OVTLClass;

namespace {

std::shared_ptr<COvDeviceInfo> ReadDevice(const std::shared_ptr<IDevice>& device,
                                          const std::string& tlId) {
    const DEV_INFO info = device->DoGetDeviceInfo();
    const COMMON_DEVICE_INFO common = device->DoGetCommonDeviceInfo();
    auto entry = std::make_shared<COvDeviceInfo>();
    entry->SetDevice(device);
    entry->SetDeviceClass(info.tlType.value, tlId);
    entry->SetAccessStatus(info.accessStatus.value);
    entry->SetUserId(common.userId.value);
    entry->deviceId = info.id.value;
    entry->displayName = info.displayName.value;
    entry->modelName = info.model.value;
    entry->vendorName = info.vendor.value;
    entry->serialNumber = common.serialNumber.value;
    return entry;
}

void ReadAddresses(COvDeviceInfo& entry, IDevice& device, IInterface& owner) {
    if (const auto addresses = device.DoGetGevDeviceInfo()) {
        entry.deviceAddresses.Set(*addresses);
    }
    if (const auto addresses = owner.DoGetGevInterfaceInfo()) {
        entry.adapterAddresses.Set(*addresses);
    }
    entry.adapterDescription = owner.DoGetCommonInterfaceInfo().description.value;
}

/// Cameras without a MAC address count as different ones.
bool HasMac(const OvDeviceInfoList& list, int64_t mac) {
    return mac != 0 && std::any_of(list.begin(), list.end(), [mac](const auto& entry) {
               return entry->deviceAddresses.mac == mac;
           });
}

OvDeviceInfoList ReadGevDevices(ITL& tl, const std::string& tlId) {
    OvDeviceInfoList list;
    for (const auto& owner : tl.DoGetInterfaceList()) {
        for (const auto& device : owner->DoGetDeviceList()) {
            // Made by a program that opened an address; no search has found it.
            if (IsMadeForAddress(*device)) {
                continue;
            }
            auto entry = ReadDevice(device, tlId);
            ReadAddresses(*entry, *device, *owner);
            // A camera that two adapters see is listed once.
            if (!HasMac(list, entry->deviceAddresses.mac)) {
                list.push_back(std::move(entry));
            }
        }
    }
    // Programs open cameras by their place in the list, which mustn't depend on who
    // answers first.
    std::stable_sort(list.begin(), list.end(), [](const auto& left, const auto& right) {
        return static_cast<uint64_t>(left->deviceAddresses.mac) <
               static_cast<uint64_t>(right->deviceAddresses.mac);
    });
    return list;
}

OvDeviceInfoList ReadGenericDevices(ITL& tl, const std::string& tlId) {
    OvDeviceInfoList list;
    for (const auto& owner : tl.DoGetInterfaceList()) {
        for (const auto& device : owner->DoGetDeviceList()) {
            auto entry = ReadDevice(device, tlId);
            // A producer of several transports may list such cameras, too.
            if (entry->GetDeviceClass() == OV_DEVICE_CLASS_GEV) {
                ReadAddresses(*entry, *device, *owner);
            }
            list.push_back(std::move(entry));
        }
    }
    return list;
}

}  // namespace

OvDeviceInfoList ListCamerasOf(ITL& tl) {
    const TL_INFO info = tl.DoGetTLInfo();
    return info.tlType.value == "GEV" ? ReadGevDevices(tl, info.id.value)
                                      : ReadGenericDevices(tl, info.id.value);
}
