// Simulated cameras at the other end of a cable.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <linux/capability.h>

#include <memory>
#include <optional>

#include "NetworkThread.h"
#include "gige/control/CameraMemory.h"
#include "gige/discovery/AdapterSearch.h"
#include "gige/net/UdpLink.h"
#include "gige/protocol/Discovery.h"
#include "simulator/SimulatedCamera.h"

namespace {

using namespace OvGige;
using namespace OvSimulator;
using namespace std::chrono_literals;
using OvSimulator::Clock;

constexpr IpAddresses kNear{.ip = {0xC0A80702}, .mask = {0xFFFFFF00}, .gateway = {}};
constexpr IpAddresses kFar{.ip = {0x0A090002}, .mask = {0xFFFF0000}, .gateway = {}};

/// The host has 192.168.7.1 on h0, at the other end of which is c0, without an address.
class SimulatedNetwork : public testing::Test {
protected:
    void SetUp() override {
        try {
            m_host.emplace();
        } catch (const std::system_error& error) {
            // Where everything must be tested, nothing may be skipped.
            ASSERT_EQ(std::getenv("OV_NETWORK_TESTS"), nullptr) << error.what();
            GTEST_SKIP() << "Networks of its own are for root: " << error.what();
        }
        m_far.emplace();
        m_host->Shell("ip link add h0 type veth peer name c0");
        m_host->Shell("ip link set c0 netns " + m_far->File());
        m_host->Shell("ip addr add 192.168.7.1/24 dev h0");
        // A path filter would drop the answers of cameras with addresses of foreign subnets.
        m_host->Shell("echo 0 | tee /proc/sys/net/ipv4/conf/*/rp_filter >/dev/null");
        m_far->Shell("ip link set c0 up");
        m_host->Shell("ip link set h0 up");
    }

    /// A camera at the far end. It must end before its network does.
    std::unique_ptr<SimulatedCamera> Camera(const IpAddresses& addresses, unsigned index = 0) {
        CameraProfile profile = MakeProfile(index, addresses, kControlPort);
        profile.adapter = "c0";
        return m_far->Run([&] { return std::make_unique<SimulatedCamera>(profile); });
    }

    std::vector<FoundCamera> Search() {
        return m_host->Run([] {
            const std::vector<Adapter> adapters = AllAdapters();
            const auto h0 = std::find_if(adapters.begin(), adapters.end(),
                                         [](const auto& adapter) { return adapter.name == "h0"; });
            AdapterSearch search(*h0, kControlPort);
            FoundCameras found;
            search.Run(1000ms, {}, found);
            return found.List(*h0, SearchRange::Network, Clock::now());
        });
    }
    std::vector<std::string> FoundAddresses() {
        std::vector<std::string> addresses;
        for (const FoundCamera& camera : Search()) {
            addresses.push_back(TextOf(camera.endpoint.ip));
        }
        return addresses;
    }

    void Force(const SimulatedCamera& camera, const IpAddresses& addresses) {
        m_host->Run([&] {
            UdpSocket socket;
            socket.AllowBroadcast();
            ASSERT_TRUE(socket.BindToDevice("h0"));
            socket.Bind({});
            const Bytes payload = BuildForcedAddress({.mac = camera.Profile().mac,
                                                      .ip = addresses.ip,
                                                      .mask = addresses.mask,
                                                      .gateway = addresses.gateway});
            socket.SendTo({kEverybody, kControlPort},
                          BuildCommand({.flags = kFlagAnswerRequired | kFlagBroadcastAnswer,
                                        .command = Command::ForceIp,
                                        .requestId = 1,
                                        .payload = payload}));
            const auto answer = socket.Receive(Clock::now() + 10s);
            ASSERT_TRUE(answer);
            EXPECT_EQ(ParseAnswer(answer->bytes)->status, Status::Success);
            EXPECT_EQ(answer->sender, Endpoint(addresses.ip, kControlPort));
        });
    }

    std::vector<std::string> FarAddresses() {
        return m_far->Run([] {
            std::vector<std::string> addresses;
            for (const Adapter& adapter : AllAdapters()) {
                if (!adapter.isLoopback) {
                    addresses.push_back(TextOf(adapter.ip));
                }
            }
            return addresses;
        });
    }

    std::optional<NetworkThread> m_host;
    std::optional<NetworkThread> m_far;
};

TEST_F(SimulatedNetwork, HasTheAddressesOfItsCamerasAsLongAsTheyAreThere) {
    EXPECT_THAT(FarAddresses(), testing::IsEmpty());
    const auto first = Camera(kNear);
    auto second = Camera(kFar, 1);
    EXPECT_THAT(FarAddresses(), testing::UnorderedElementsAre("192.168.7.2", "10.9.0.2"));
    m_far->Run([&] { second.reset(); });
    EXPECT_THAT(FarAddresses(), testing::ElementsAre("192.168.7.2"));
}

TEST_F(SimulatedNetwork, FindsCamerasOfAllSubnets) {
    const auto first = Camera(kNear);
    const auto second = Camera(kFar, 1);
    EXPECT_THAT(FoundAddresses(), testing::UnorderedElementsAre("192.168.7.2", "10.9.0.2"));
}

TEST_F(SimulatedNetwork, GivesACameraAnAddressByWhichItCanBeReached) {
    const auto camera = Camera(kFar);
    constexpr IpAddresses kForced{.ip = {0xC0A80764}, .mask = {0xFFFFFF00}, .gateway = {}};
    Force(*camera, kForced);
    EXPECT_THAT(FoundAddresses(), testing::ElementsAre("192.168.7.100"));
    EXPECT_EQ(camera->Address(), Endpoint(kForced.ip, kControlPort));
    const uint32_t address = m_host->Run([&] {
        UdpSocket socket;
        socket.Bind({});
        ControlChannel channel(
            std::make_unique<UdpLink>(std::move(socket), Endpoint(kForced.ip, kControlPort)), 1);
        return CameraMemory(channel).ReadRegister(kRegCurrentIp);
    });
    EXPECT_EQ(address, kForced.ip.value);
}

TEST_F(SimulatedNetwork, FindsSixtyFourCameras) {
    std::vector<std::unique_ptr<SimulatedCamera>> cameras;
    std::vector<std::string> expected;
    for (unsigned i = 0; i < 64; ++i) {
        const IpAddresses addresses{.ip = {kNear.ip.value + i}, .mask = kNear.mask, .gateway = {}};
        cameras.push_back(Camera(addresses, i));
        expected.push_back(TextOf(addresses.ip));
    }
    EXPECT_THAT(FoundAddresses(), testing::UnorderedElementsAreArray(expected));
}

TEST_F(SimulatedNetwork, CarriesTestPacketsUpToItsLimit) {
    const auto camera = Camera(kNear);
    m_host->Run([&] {
        UdpSocket stream;
        stream.Bind({{0xC0A80701}, 0});
        UdpSocket socket;
        socket.Bind({});
        ControlChannel channel(std::make_unique<UdpLink>(std::move(socket), camera->Address()), 1);
        CameraMemory memory(channel);
        memory.WriteRegister(kRegPrivilege, kPrivilegeControl);
        memory.WriteRegister(kRegStreamDestination, 0xC0A80701);
        memory.WriteRegister(kRegStreamPort, stream.Local().port);
        memory.WriteRegister(kRegStreamPacketSize, 0xC0000000 | 1504);
        memory.WriteRegister(kRegStreamPacketSize, 0xC0000000 | 1500);
        EXPECT_EQ(stream.Receive(Clock::now() + 10s)->bytes.size(), 1500 - kIpUdpHeaderSize);
    });
    EXPECT_EQ(camera->Counts()[Count::PacketsTooLarge], 1U);
    EXPECT_EQ(camera->Counts()[Count::TestPackets], 2U);
    EXPECT_EQ(camera->Counts()[Count::StreamPackets], 1U);
}

TEST_F(SimulatedNetwork, SaysThatItMayNotAddAnAddress) {
    m_far->Run([] {
        __user_cap_header_struct header{.version = _LINUX_CAPABILITY_VERSION_3, .pid = 0};
        __user_cap_data_struct none[2] = {};
        ASSERT_EQ(syscall(SYS_capset, &header, none), 0);
    });
    try {
        Camera(kNear);
        FAIL();
    } catch (const OvProducer::Failure& failure) {
        EXPECT_EQ(failure.Code(), GenTL::GC_ERR_ACCESS_DENIED);
        EXPECT_STREQ(failure.what(),
                     "The address 192.168.7.2 can't be added to the adapter: Operation not "
                     "permitted");
    }
}

TEST_F(SimulatedNetwork, LacksAdaptersThatAreNotThere) {
    CameraProfile profile = MakeProfile(0, kNear, kControlPort);
    profile.adapter = "c9";
    try {
        m_far->Run([&] { SimulatedCamera camera(profile); });
        FAIL();
    } catch (const OvProducer::Failure& failure) {
        EXPECT_STREQ(failure.what(), "There is no adapter c9");
    }
}

}  // namespace
