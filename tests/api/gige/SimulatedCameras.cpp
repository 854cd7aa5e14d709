#include "SimulatedCameras.h"

#include <algorithm>
#include <cstdlib>
#include <thread>

#include "gige/protocol/Address.h"
#include "support/LastError.h"

namespace {

using namespace OvSimulator;

constexpr IpAddresses kOnLoopback{.ip = {0x7F000001}, .mask = {0xFF000000}, .gateway = {}};

}  // namespace

SimulatedCameras::SimulatedCameras() {
    std::vector<CameraProfile> profiles;
    for (unsigned index = 0; index < kCameras; ++index) {
        profiles.push_back(MakeProfile(index, kOnLoopback, 0));
    }
    std::sort(profiles.begin(), profiles.end(),
              [](const auto& a, const auto& b) { return a.mac.Value() < b.mac.Value(); });
    for (const CameraProfile& profile : profiles) {
        m_cameras.push_back(std::make_unique<SimulatedCamera>(profile));
    }
    setenv("OV_GIGE_ADAPTERS", "lo", 1);
    NameAddresses();
}

SimulatedCameras::~SimulatedCameras() {
    unsetenv("OV_GIGE_ADDRESSES");
    unsetenv("OV_GIGE_ADAPTERS");
}

// As short as cameras allow it. Two beats on, the producer knows that.
void SimulatedCameras::HastenLoss(OV_DEV_HANDLE camera) {
    char serial[32] = {};
    size_t size = sizeof serial;
    EXPECT_OV_OK(OVGetString(camera, OV_FEATURE_DeviceSerialNumber, serial, &size));
    const auto simulated =
        std::find_if(m_cameras.begin(), m_cameras.end(),
                     [&serial](const auto& one) { return one->Profile().serialNumber == serial; });
    ASSERT_NE(simulated, m_cameras.end()) << serial;
    const Account& counts = (*simulated)->Counts();
    const uint64_t before = counts[Count::RegisterReads];
    EXPECT_OV_OK(OVSetInt(camera, OV_FEATURE_GevHeartbeatTimeout, 500));
    while (counts[Count::RegisterReads] < before + 4) {
        std::this_thread::yield();
    }
}

void SimulatedCameras::SwitchOff(size_t index) {
    m_cameras.at(index).reset();
}

void SimulatedCameras::Replace(size_t index, const Faults& faults) {
    const OvGige::Endpoint address = m_cameras.at(index)->Address();
    CameraProfile profile = m_cameras[index]->Profile();
    m_cameras[index].reset();
    profile.faults = faults;
    profile.port = address.port;
    m_cameras[index] = std::make_unique<SimulatedCamera>(profile);
}

void SimulatedCameras::NameAddresses() const {
    std::string addresses;
    for (const auto& camera : m_cameras) {
        addresses += OvGige::TextOf(camera->Address()) + ",";
    }
    setenv("OV_GIGE_ADDRESSES", addresses.c_str(), 1);
}

std::unique_ptr<CameraSupply> CameraSupply::Make() {
    return std::make_unique<SimulatedCameras>();
}
