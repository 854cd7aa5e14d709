#include "TLClassInterface/DeviceListCompare.h"

#include <algorithm>
#include <iterator>

#include "TLClassModule/IDevice.h"

namespace OVTLClass {

CDeviceListCompare::DeviceList CDeviceListCompare::CompareDeviceList(const DeviceList& known,
                                                                     const DeviceList& current) {
    DeviceList missing;
    std::copy_if(known.begin(), known.end(), std::back_inserter(missing),
                 [&current](const auto& device) {
                     return std::find(current.begin(), current.end(), device) == current.end();
                 });
    return missing;
}

CDeviceListCompare::DeviceList CDeviceListCompare::RemoveClosedDevice(const DeviceList& devices) {
    DeviceList open;
    std::copy_if(devices.begin(), devices.end(), std::back_inserter(open),
                 [](const auto& device) { return device->DoIsDeviceOpen(); });
    return open;
}

}  // namespace OVTLClass
