#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <thread>

#include "GigeProducerTest.h"
#include "ScriptedLink.h"
#include "gige/control/CameraMemory.h"
#include "gige/net/UdpLink.h"
#include "gige/protocol/Bootstrap.h"

namespace {

using namespace OvGige;

constexpr uint64_t kNamedAddresses = 0x0880;  // of the system module
constexpr uint64_t kSearchMode = 0x0240;      // of the interface module
constexpr uint64_t kStopSearch = 0x0248;

class GigeDiscovery : public GigeProducerTest {
protected:
    uint32_t CountInterfaces() {
        uint32_t count = 0;
        EXPECT_EQ(Api().TLUpdateInterfaceList(Way().system, nullptr, 0), 0);
        EXPECT_EQ(Api().TLGetNumInterfaces(Way().system, &count), 0);
        return count;
    }
    std::vector<std::string> ListedIds() {
        std::vector<std::string> ids;
        for (uint32_t i = 0; i < CountCameras(); ++i) {
            ids.push_back(OpenCamera::Id([&](char* text, size_t* size) {
                return Api().IFGetDeviceID(Way().iface, i, text, size);
            }));
        }
        return ids;
    }
    int32_t Status(size_t index = 0) {
        return DeviceInfo<int32_t>(IdOfCamera(index), GenTL::DEVICE_INFO_ACCESS_STATUS);
    }
    /// Searches until the camera is listed with the status.
    void AwaitStatus(int32_t status) {
        const auto end = Clock::now() + std::chrono::minutes(1);
        do {
            Find(1);
        } while (Status() != status && Clock::now() < end);
        EXPECT_EQ(Status(), status);
    }
};

/// Another host, which has the camera.
class OtherHost {
public:
    OtherHost(const Endpoint& camera, uint32_t privilege) : m_channel(Link(camera), 1) {
        CameraMemory(m_channel).WriteRegister(kRegPrivilege, privilege);
    }

private:
    static std::unique_ptr<DatagramLink> Link(const Endpoint& camera) {
        return std::make_unique<UdpLink>(LoopbackSocket(), camera);
    }
    ControlChannel m_channel;
};

TEST_F(GigeDiscovery, SaysWhatTheProducerIs) {
    const auto text = [&](GenTL::TL_INFO_CMD command) {
        return GenTLApi::Text([&](auto* type, void* out, size_t* size) {
            return Api().GCGetInfo(command, type, out, size);
        });
    };
    EXPECT_EQ(text(GenTL::TL_INFO_TLTYPE), "GEV");
    EXPECT_EQ(text(GenTL::TL_INFO_ID), "OvGVTL");
    EXPECT_EQ(text(GenTL::TL_INFO_NAME), "OvGVTL.cti");
    EXPECT_EQ(text(GenTL::TL_INFO_DISPLAYNAME), "GigE Vision cameras");
}

TEST_F(GigeDiscovery, HasNoInterfacesWithoutAdaptersAndLogsItOnce) {
    const auto log = std::filesystem::temp_directory_path() /
                     ("gige_discovery_" + std::to_string(getpid()) + ".log");
    setenv("OV_GIGE_ADAPTERS", "none", 1);
    setenv("OV_LOG", "Producer:warning", 1);
    setenv("OV_LOG_FILE", log.c_str(), 1);
    Way().OpenSystem();
    EXPECT_EQ(CountInterfaces(), 0U);
    EXPECT_EQ(CountInterfaces(), 0U);
    unsetenv("OV_LOG");
    unsetenv("OV_LOG_FILE");
    std::stringstream lines;
    lines << std::ifstream(log).rdbuf();
    EXPECT_THAT(lines.str(),
                testing::EndsWith("No network adapter can be used for GigE Vision cameras: none "
                                  "is up with an IPv4 address and allowed by OV_GIGE_ADAPTERS\n"));
    EXPECT_THAT(lines.str(), testing::Not(testing::HasSubstr("\n2")));
    std::filesystem::remove(log);
}

TEST_F(GigeDiscovery, NamesAnInterfaceByItsAdapterAndAddress) {
    Way().OpenInterface();
    EXPECT_EQ(Way().interfaceId, "lo_127.0.0.1");
    EXPECT_EQ(InterfaceText(GenTL::INTERFACE_INFO_DISPLAYNAME), "lo (127.0.0.1)");
    EXPECT_EQ(InterfaceText(GenTL::INTERFACE_INFO_TLTYPE), "GEV");
    EXPECT_EQ(ReadText(Way().iface, 0x0100, 128), "Network adapter lo with 127.0.0.1/8");
    EXPECT_EQ(Read<int64_t>(Way().iface, 0x0198), 0x7F000001);
    EXPECT_EQ(Read<int64_t>(Way().iface, 0x01A0), 0xFF000000);
}

TEST_F(GigeDiscovery, ListsCamerasByTheirMacAddress) {
    AddCamera(0);
    AddCamera(1);
    FindAll();
    std::vector<std::string> expected{IdOfCamera(0), IdOfCamera(1)};
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(ListedIds(), expected);
}

TEST_F(GigeDiscovery, SaysWhatACameraIs) {
    const auto& profile = AddCamera().Profile();
    FindAll();
    const std::string id = IdOfCamera();
    EXPECT_EQ(DeviceText(id, GenTL::DEVICE_INFO_VENDOR), "oviapi");
    EXPECT_EQ(DeviceText(id, GenTL::DEVICE_INFO_MODEL), "Simulated-5M-Color");
    EXPECT_EQ(DeviceText(id, GenTL::DEVICE_INFO_TLTYPE), "GEV");
    EXPECT_EQ(DeviceText(id, GenTL::DEVICE_INFO_SERIAL_NUMBER), profile.serialNumber);
    EXPECT_EQ(DeviceText(id, GenTL::DEVICE_INFO_VERSION), "1.0.0");
    EXPECT_EQ(DeviceText(id, GenTL::DEVICE_INFO_DISPLAYNAME),
              "Simulated-5M-Color (" + profile.serialNumber + ")");
    EXPECT_EQ(Read<int64_t>(Way().iface, 0x0220), static_cast<int64_t>(profile.mac.Value()));
    EXPECT_EQ(Read<int64_t>(Way().iface, 0x0228), 0x7F000001);
    EXPECT_EQ(Read<int64_t>(Way().iface, 0x0230), 0xFF000000);
}

TEST_F(GigeDiscovery, KnowsWhoUsesACamera) {
    AddCamera();
    FindAll();
    AwaitStatus(GenTL::DEVICE_ACCESS_STATUS_READWRITE);
    {
        const OtherHost other(Simulated().Address(), kPrivilegeControl);
        AwaitStatus(GenTL::DEVICE_ACCESS_STATUS_READONLY);
    }
}

TEST_F(GigeDiscovery, KnowsACameraThatSomebodyHasToHimself) {
    AddCamera();
    FindAll();
    const OtherHost other(Simulated().Address(), kPrivilegeExclusive);
    AwaitStatus(GenTL::DEVICE_ACCESS_STATUS_NOACCESS);
}

TEST_F(GigeDiscovery, ShowsHowACameraIsOpenHere) {
    OpenOne();
    EXPECT_EQ(Status(), GenTL::DEVICE_ACCESS_STATUS_OPEN_READWRITE);
    ASSERT_EQ(Api().DevClose(Way().device), 0);
    ASSERT_EQ(Open(IdOfCamera(), GenTL::DEVICE_ACCESS_READONLY), 0) << LastError();
    EXPECT_EQ(Status(), GenTL::DEVICE_ACCESS_STATUS_OPEN_READONLY);
}

TEST_F(GigeDiscovery, AsksCamerasThatAreNamedLater) {
    Way().OpenInterface();
    EXPECT_EQ(CountCameras(), 0U);
    AddCamera();
    const std::string address = TextOf(Simulated().Address());
    EXPECT_EQ(ReadText(Way().system, kNamedAddresses, 512), "");
    ASSERT_EQ(WriteText(Way().system, kNamedAddresses, address), 0);
    EXPECT_EQ(ReadText(Way().system, kNamedAddresses, 512), address);
    Find(1);
}

TEST_F(GigeDiscovery, RefusesNamesThatAreNoAddresses) {
    Way().OpenInterface();
    ASSERT_EQ(WriteText(Way().system, kNamedAddresses, "10.0.0.1"), 0);
    EXPECT_EQ(WriteText(Way().system, kNamedAddresses, "10.0.0.2,camera"),
              GenTL::GC_ERR_INVALID_VALUE);
    EXPECT_EQ(LastError(), "\"camera\" is no address of a camera");
    EXPECT_EQ(ReadText(Way().system, kNamedAddresses, 512), "10.0.0.1");
}

TEST_F(GigeDiscovery, HasTwoSearchModes) {
    Way().OpenInterface();
    EXPECT_EQ(Read<int64_t>(Way().iface, kSearchMode), 0);
    EXPECT_EQ(Write<int64_t>(Way().iface, kSearchMode, 1), 0);
    EXPECT_EQ(Write<int64_t>(Way().iface, kSearchMode, 2), GenTL::GC_ERR_INVALID_VALUE);
    EXPECT_EQ(Read<int64_t>(Way().iface, kSearchMode), 1);
}

TEST_F(GigeDiscovery, SearchesUntilItIsStoppedAndServesPortsMeanwhile) {
    Way().OpenInterface();
    std::atomic<bool> isOver = false;
    std::thread searching([&] {
        EXPECT_EQ(Api().IFUpdateDeviceList(Way().iface, nullptr, GenTL::GENTL_INFINITE), 0);
        isOver = true;
    });
    // A stop ends only a search that runs, and nobody knows when it does.
    while (!isOver) {
        EXPECT_EQ(Read<int64_t>(Way().iface, 0x0210), -1);
        EXPECT_EQ(Write<uint32_t>(Way().iface, kStopSearch, 1), 0);
        std::this_thread::yield();
    }
    searching.join();
}

TEST_F(GigeDiscovery, OpensACameraByItsAddress) {
    Way().OpenInterface();
    AddCamera();
    const std::string address = "IP::" + TextOf(Simulated().Address());
    ASSERT_EQ(Open(address), 0) << LastError();
    EXPECT_EQ(ReadText(Way().device, 0, 128), IdOfCamera());
    // No search finds it, so it belongs to no list.
    Find(0);
    EXPECT_EQ(Open(address), GenTL::GC_ERR_RESOURCE_IN_USE);
    EXPECT_EQ(Open(IdOfCamera()), GenTL::GC_ERR_INVALID_ID);
    ASSERT_EQ(Api().DevClose(Way().device), 0);
    Find(0);
}

TEST_F(GigeDiscovery, FindsNobodyAtAnotherAddress) {
    Way().OpenInterface();
    Endpoint nobody;
    {
        const UdpSocket gone = LoopbackSocket();
        nobody = gone.Local();
    }
    for (const std::string& id :
         {"IP::" + TextOf(nobody), std::string("IP::"), std::string("IP::camera"),
          std::string("00-00-00-00-00-01"), std::string("IP::192.0.2.1")}) {
        EXPECT_EQ(Open(id), GenTL::GC_ERR_INVALID_ID) << id;
        EXPECT_EQ(LastError(), "The interface has no device '" + id + "'");
    }
}

}  // namespace
