#include "TLClassModule/DeviceAddress.h"

#include <string_view>

#include "TLClassModule/IDevice.h"
#include "TLClassSupport/OvString.h"

namespace OVTLClass {

namespace {

constexpr std::string_view kAddressId = "IP::";

}  // namespace

std::string IdOfAddress(int64_t ip) {
    return std::string(kAddressId) + COvString::ConvertInt32ToIPString(static_cast<int32_t>(ip));
}

bool IsMadeForAddress(IDevice& device) {
    return device.DoGetDeviceInfo().id.value.starts_with(kAddressId);
}

}  // namespace OVTLClass
