#pragma once
/// Simulated cameras on loopback, in the test's own process.

#include <memory>
#include <string>
#include <vector>

#include "cameras/CameraSupply.h"
#include "simulator/SimulatedCamera.h"

/// In the order of the list.
class SimulatedCameras : public CameraSupply {
public:
    SimulatedCameras();
    ~SimulatedCameras() override;

    uint32_t SearchTime() const override { return 20; }
    uint64_t RegisterBase() const override { return OvSimulator::kApplicationBase; }
    uint64_t FirstFrame() const override { return 1; }
    OV_DEVICE_CLASS DeviceClass() const override { return OV_DEVICE_CLASS_GEV; }
    std::string ModelPrefix() const override { return "Simulated-5M-"; }
    /// They only take up the address anew that they have: no other is to be added to this
    /// machine.
    HarmlessArguments Harmless() const override {
        return {.memory = RegisterBase() + 0x4000,
                .mode = OV_IP_CONFIGURE_DHCP_LLA,
                .ip = "0.0.0.0",
                .mask = "0.0.0.0",
                .gateway = "0.0.0.0"};
    }
    void HastenLoss(OV_DEV_HANDLE camera) override;

    OvSimulator::SimulatedCamera& operator[](size_t index) { return *m_cameras.at(index); }
    /// Ends a camera, as if its power went.
    void SwitchOff(size_t index);
    /// Puts another camera in the place of one: the same, unless it has faults.
    void Replace(size_t index, const OvSimulator::Faults& faults);

private:
    void NameAddresses() const;

    std::vector<std::unique_ptr<OvSimulator::SimulatedCamera>> m_cameras;
};
