#include "TLClassInterface/DeviceListCompare.h"

#include <algorithm>
#include <iterator>

#include "TLClassModule/ChildList.h"

namespace OVTLClass {

CDeviceListCompare::DeviceList CDeviceListCompare::CompareDeviceList(const DeviceList& known,
                                                                     const DeviceList& current) {
    return FindMissing(known, current);
}

CDeviceListCompare::DeviceList CDeviceListCompare::RemoveClosedDevice(const DeviceList& devices) {
    DeviceList open;
    std::copy_if(devices.begin(), devices.end(), std::back_inserter(open),
                 [](const auto& device) { return device->DoIsDeviceOpen(); });
    return open;
}

}  // namespace OVTLClass
