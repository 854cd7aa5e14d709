#pragma once
/// Comparisons of device lists.

#include <memory>
#include <vector>

namespace OVTLClass {

class IDevice;

class CDeviceListCompare {
public:
    using DeviceList = std::vector<std::shared_ptr<IDevice>>;

    /// The members of `known` that are not in `current`, in the order of `known`.
    static DeviceList CompareDeviceList(const DeviceList& known, const DeviceList& current);
    /// The members that are open.
    static DeviceList RemoveClosedDevice(const DeviceList& devices);
};

}  // namespace OVTLClass
