// The virtual cameras of a program, which remember nothing.

#include <cstdlib>

#include "cameras/CameraSupply.h"

namespace {

class VirtualCameras : public CameraSupply {
public:
    VirtualCameras() {
        setenv("OV_VIRTUAL_STATE", "off", 1);
        setenv("OV_VIRTUAL_CAMERAS", std::to_string(kCameras).c_str(), 1);
    }
    OV_DEVICE_CLASS DeviceClass() const override { return OV_DEVICE_CLASS_CUSTOM; }
    std::string ModelPrefix() const override { return "Virtual-5M-"; }
    /// Nobody asks them for an address.
    HarmlessArguments Harmless() const override { return {.memory = 0x4000}; }
};

}  // namespace

std::unique_ptr<CameraSupply> CameraSupply::Make() {
    return std::make_unique<VirtualCameras>();
}
