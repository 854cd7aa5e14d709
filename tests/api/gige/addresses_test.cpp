// The addresses of cameras: what the list says of them, opening by them, changing them.

#include <unistd.h>

#include "GigeCameraTest.h"

namespace {

using OvSimulator::Count;
using OvSimulator::SimulatedCamera;

class GigeAddresses : public ClosedGigeCameraTest {
protected:
    OV_STATUS Open(const std::string& key, OV_OPEN_MODE mode) {
        return OpenBy(key, mode, OV_ACCESS_EXCLUSIVE, &camera);
    }
    uint32_t Register(uint32_t address) const {
        uint32_t value = 0;
        size_t size = sizeof value;
        EXPECT_OV_OK(OVReadRemoteDevicePort(camera, address, &value, &size));
        return __builtin_bswap32(value);
    }
};

/// An address of loopback that other processes don't have, at the port that all cameras have.
OvSimulator::CameraProfile ProfileOfItsOwnAddress() {
    const auto process = static_cast<uint32_t>(getpid());
    const OvGige::Ipv4 ip{0x7F010001 + (process / 200 % 200 << 16) + (process % 200 << 8)};
    return OvSimulator::MakeProfile(7, {.ip = ip, .mask = {0xFF000000}, .gateway = {}},
                                    OvGige::kControlPort);
}

TEST_F(GigeAddresses, AreThoseOfCameraAndAdapter) {
    for (uint32_t index = 1; index <= kCameras; ++index) {
        OV_DEVICE_IP_INFO info{};
        ASSERT_OV_OK(OVGetDeviceIPInfo(index, &info));
        EXPECT_EQ(info.szMAC, MacOf(index - 1));
        EXPECT_STREQ(info.szDeviceID, info.szMAC);
        EXPECT_STREQ(info.szIP, "127.0.0.1");
        EXPECT_STREQ(info.szSubnetMask, "255.0.0.0");
        EXPECT_STREQ(info.szGateway, "0.0.0.0");
        EXPECT_STREQ(info.szNICMAC, "00-00-00-00-00-00");
        EXPECT_STREQ(info.szNICIP, "127.0.0.1");
        EXPECT_STREQ(info.szNICSubnetMask, "255.0.0.0");
        EXPECT_STREQ(info.szNICDescription, "Network adapter lo with 127.0.0.1/8");
    }
    OV_DEVICE_IP_INFO info{};
    ExpectFailure(OVGetDeviceIPInfo(kCameras + 1, &info), OV_STATUS_OUT_OF_RANGE,
                  "Index out of range");
}

TEST_F(GigeAddresses, OpenTheCameraThatHasThem) {
    ASSERT_OV_OK(Open(MacOf(1), OV_OPEN_MAC));
    EXPECT_EQ(Register(OvGige::kRegMacLow),
              static_cast<uint32_t>(Cameras()[1].Profile().mac.Value()));
    EXPECT_OV_OK(OVCloseDevice(camera));
    ASSERT_OV_OK(Open("127.0.0.1", OV_OPEN_IP));
    EXPECT_OV_OK(OVSetInt(camera, OV_FEATURE_Width, 128));
}

TEST_F(GigeAddresses, OpenACameraThatIsInNoList) {
    const SimulatedCamera unlisted(ProfileOfItsOwnAddress());
    const std::string address = OvGige::TextOf(unlisted.Address().ip);
    ASSERT_OV_OK(Open(address, OV_OPEN_IP));
    EXPECT_OV_OK(OVSetInt(camera, OV_FEATURE_Width, 128));
    EXPECT_EQ(unlisted.Counts()[Count::ControlTaken], 1U);
    EXPECT_EQ(Update(), kCameras) << "it doesn't join the list";
    ExpectFailure(Open(address, OV_OPEN_IP), OV_STATUS_INVALID_ACCESS,
                  "The device has already been opened");
    EXPECT_OV_OK(OVCloseDevice(camera));
    EXPECT_EQ(unlisted.Counts()[Count::ControlGiven], 1U);
    ASSERT_OV_OK(Open(address, OV_OPEN_IP));
    EXPECT_OV_OK(OVCloseDevice(camera));
}

TEST_F(GigeAddresses, OpenNothingWhereNobodyIs) {
    ExpectFailure(Open("127.254.254.254", OV_OPEN_IP), OV_STATUS_NOT_FOUND_DEVICE,
                  "Can't open device by IP: 127.254.254.254");
}

TEST_F(GigeAddresses, AreKeptByTheCameraForItsNextStart) {
    ASSERT_OV_OK(OVGigEIpConfiguration(MacOf(0).c_str(), OV_IP_CONFIGURE_PERSISTENT_DHCP_LLA,
                                       "10.0.0.5", "255.0.0.0", "10.0.0.1", "left"));
    AwaitCameras(kCameras);
    EXPECT_STREQ(Records()[0].szUserID, "left");
    ASSERT_OV_OK(OVOpenDeviceByIndex(1, &camera));
    EXPECT_EQ(Register(OvGige::kRegPersistentIp), 0x0A000005U);
    EXPECT_EQ(Register(OvGige::kRegPersistentMask), 0xFF000000U);
    EXPECT_EQ(Register(OvGige::kRegPersistentGateway), 0x0A000001U);
    EXPECT_EQ(Register(OvGige::kRegCurrentIpConfig) & 7, 7U);
    EXPECT_STREQ(Records()[0].szUserID, "left");
    // Open as it is.
    ASSERT_OV_OK(OVGigEIpConfiguration(MacOf(0).c_str(), OV_IP_CONFIGURE_DHCP_LLA, nullptr, nullptr,
                                       nullptr, nullptr));
    EXPECT_EQ(Register(OvGige::kRegCurrentIpConfig) & 7, 6U);
    EXPECT_OV_OK(OVSetString(camera, OV_FEATURE_DeviceUserID, ""));
}

TEST_F(GigeAddresses, OfAnOpenCameraAreSetByItsFeatures) {
    ASSERT_OV_OK(OVOpenDeviceByIndex(1, &camera));
    ASSERT_OV_OK(OVSetDevicePersistentIpAddress(camera, "10.1.2.3", "255.0.0.0", "10.0.0.254"));
    EXPECT_EQ(Register(OvGige::kRegPersistentIp), 0x0A010203U);
    EXPECT_EQ(Register(OvGige::kRegPersistentMask), 0xFF000000U);
    EXPECT_EQ(Register(OvGige::kRegPersistentGateway), 0x0A0000FEU);
    char texts[3][16] = {};
    size_t sizes[3] = {16, 16, 16};
    ASSERT_OV_OK(OVGetDevicePersistentIpAddress(camera, texts[0], &sizes[0], texts[1], &sizes[1],
                                                texts[2], &sizes[2]));
    EXPECT_STREQ(texts[0], "10.1.2.3");
    EXPECT_STREQ(texts[1], "255.0.0.0");
    EXPECT_STREQ(texts[2], "10.0.0.254");
}

TEST_F(GigeAddresses, AreForcedOnACameraThatNobodyHas) {
    const char* const anew = "0.0.0.0";
    const uint64_t forced = Counted(Count::ForcedAddresses);
    ASSERT_OV_OK(OVGigEForceIp(MacOf(0).c_str(), anew, anew, anew));
    EXPECT_EQ(Counted(Count::ForcedAddresses), forced + 1);
    ASSERT_OV_OK(OVOpenDeviceByIndex(1, &camera));
    ExpectFailure(OVGigEForceIp(MacOf(0).c_str(), anew, anew, anew), OV_STATUS_INVALID_ACCESS,
                  "Access denied:The camera is open in this process, and keeps its address until "
                  "it is closed");
    EXPECT_EQ(Counted(Count::ForcedAddresses), forced + 1);
}

TEST_F(GigeAddresses, ThatNoCameraCanHaveAreRefused) {
    const uint64_t forced = Counted(Count::ForcedAddresses);
    ExpectFailure(OVGigEForceIp(MacOf(0).c_str(), "10.0.0.5", "255.0.255.0", "0.0.0.0"),
                  OV_STATUS_INVALID_PARAMETER,
                  "The subnet mask 255.0.255.0 isn't a row of ones before a row of zeros");
    ExpectFailure(OVGigEIpConfiguration(MacOf(0).c_str(), OV_IP_CONFIGURE_PERSISTENT_LLA,
                                        "10.0.0.0", "255.0.0.0", "0.0.0.0", nullptr),
                  OV_STATUS_INVALID_PARAMETER,
                  "A camera can't have the address 10.0.0.0 with the subnet mask 255.0.0.0");
    ExpectFailure(OVGigEForceIp("00-00-00-00-00-01", "10.0.0.5", "255.0.0.0", "0.0.0.0"),
                  OV_STATUS_NOT_FOUND_DEVICE, "Not Found Device");
    EXPECT_EQ(Counted(Count::ForcedAddresses), forced);
}

TEST_F(GigeAddresses, AreConfiguredAnewByAReset) {
    const uint64_t forced = Counted(Count::ForcedAddresses);
    EXPECT_OV_OK(OVGigEResetDevice(MacOf(0).c_str(), OV_RESET_MODE_1));
    EXPECT_EQ(Counted(Count::ForcedAddresses), forced + 1);
    const uint64_t writes = Counted(Count::MemoryWrites);
    EXPECT_OV_OK(OVGigEResetDevice(MacOf(0).c_str(), OV_RESET_MODE_2));
    EXPECT_EQ(Counted(Count::MemoryWrites), writes + 1) << "the camera's own command";
}

}  // namespace
