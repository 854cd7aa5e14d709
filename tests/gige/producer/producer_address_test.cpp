#include <array>
#include <atomic>

#include "FakeCamera.h"
#include "GigeProducerTest.h"
#include "gige/producer/AddressChange.h"
#include "gige/protocol/Bootstrap.h"

namespace {

using namespace OvGige;
using OvProducer::Failure;
using OvSimulator::Count;

/// The functions that work on cameras that nobody has opened.
class GigeAddress : public GigeProducerTest {
protected:
    GenTL::GC_ERROR Force(const char* ip, const char* mask, const char* gateway) {
        return Api().IFForceIp(Way().iface, IdOfCamera().c_str(), ip, mask, gateway);
    }
    GenTL::GC_ERROR Configure(int32_t mode, const char* ip, const char* mask, const char* gateway,
                              const char* name) {
        return Api().IFIpConfiguration(Way().iface, IdOfCamera().c_str(), mode, ip, mask, gateway,
                                       name);
    }
    GenTL::GC_ERROR Reset(int32_t mode) {
        return Api().IFResetDevice(Way().iface, IdOfCamera().c_str(), mode);
    }
    uint32_t Register(uint32_t address) {
        std::array<std::byte, 4> bytes{};
        size_t size = bytes.size();
        EXPECT_EQ(Api().GCReadPort(Way().port, address, bytes.data(), &size), 0) << LastError();
        return ReadBig<uint32_t>(bytes);
    }
    void AddAndFind() {
        AddCamera();
        FindAll();
    }
};

TEST_F(GigeAddress, MakesACameraConfigureItsAddressAnew) {
    AddAndFind();
    EXPECT_EQ(Force("0.0.0.0", "0.0.0.0", "0.0.0.0"), 0) << LastError();
    EXPECT_EQ(Simulated().Counts()[Count::ForcedAddresses], 1U);
    EXPECT_EQ(Reset(1), 0) << LastError();
    EXPECT_EQ(Simulated().Counts()[Count::ForcedAddresses], 2U);
}

struct BadAddress {
    const char* ip;
    const char* mask;
    const char* gateway;
    const char* text;
};

TEST_F(GigeAddress, RefusesToForceWhatNoCameraCanHave) {
    AddAndFind();
    for (const auto& bad :
         {BadAddress{"10.0.0", "255.0.0.0", "0.0.0.0",
                     "The address \"10.0.0\" isn't of the form 192.168.1.10"},
          BadAddress{"10.0.0.5", "255.0.255.0", "0.0.0.0",
                     "The subnet mask 255.0.255.0 isn't a row of ones before a row of zeros"},
          BadAddress{"10.0.0.0", "255.0.0.0", "0.0.0.0",
                     "A camera can't have the address 10.0.0.0 with the subnet mask 255.0.0.0"},
          BadAddress{"10.0.0.5", "255.0.0.0", "11.0.0.1",
                     "The gateway 11.0.0.1 isn't in the subnet of 10.0.0.5"},
          BadAddress{"10.0.0.5", "255.0.0.0", nullptr, "The gateway must not be null"}}) {
        EXPECT_EQ(Force(bad.ip, bad.mask, bad.gateway), GenTL::GC_ERR_INVALID_PARAMETER);
        EXPECT_EQ(LastError(), bad.text);
    }
    EXPECT_EQ(Simulated().Counts()[Count::ForcedAddresses], 0U);
}

TEST_F(GigeAddress, ForcesNothingOnACameraThatIsOpenHere) {
    OpenOne();
    EXPECT_EQ(Reset(1), GenTL::GC_ERR_ACCESS_DENIED);
    EXPECT_EQ(LastError(),
              "The camera is open in this process, and keeps its address until it is closed");
    EXPECT_EQ(Simulated().Counts()[Count::ForcedAddresses], 0U);
}

TEST_F(GigeAddress, KnowsNoOtherCamerasAndResets) {
    AddAndFind();
    EXPECT_EQ(Api().IFForceIp(Way().iface, "00-00-00-00-00-01", "0.0.0.0", "0.0.0.0", "0.0.0.0"),
              GenTL::GC_ERR_INVALID_ID);
    EXPECT_EQ(Reset(3), GenTL::GC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(LastError(), "There is no reset mode 3");
}

TEST_F(GigeAddress, ResetsACameraByItsDescriptionsCommand) {
    AddAndFind();
    const auto& counts = Simulated().Counts();
    const uint64_t before = counts[Count::MemoryWrites];
    EXPECT_EQ(Reset(2), 0) << LastError();
    EXPECT_EQ(counts[Count::MemoryWrites], before + 1);
    EXPECT_EQ(counts[Count::Refusals], 0U);
}

TEST_F(GigeAddress, KeepsAnAddressForTheNextStart) {
    AddAndFind();
    ASSERT_EQ(Configure(5, "10.0.0.5", "255.0.0.0", "10.0.0.1", "left"), 0) << LastError();
    ASSERT_EQ(Open(IdOfCamera(), GenTL::DEVICE_ACCESS_READONLY), 0) << LastError();
    EXPECT_EQ(Register(kRegPersistentIp), 0x0A000005U);
    EXPECT_EQ(Register(kRegPersistentMask), 0xFF000000U);
    EXPECT_EQ(Register(kRegPersistentGateway), 0x0A000001U);
    EXPECT_EQ(Register(kRegCurrentIpConfig) & 7, 5U);
    EXPECT_EQ(ReadText(Way().port, kRegUserName.address, kRegUserName.width), "left");
    // The answer that proves the settings counts for the list.
    EXPECT_EQ(Api().IFUpdateDeviceList(Way().iface, nullptr, 0), 0);
    EXPECT_EQ(DeviceText(IdOfCamera(), GenTL::DEVICE_INFO_USER_DEFINED_NAME), "left");
}

TEST_F(GigeAddress, NeedsNoAddressForOtherWays) {
    AddAndFind();
    ASSERT_EQ(Configure(6, nullptr, nullptr, nullptr, nullptr), 0) << LastError();
    ASSERT_EQ(Configure(4, "", "", "", ""), 0) << LastError();
    ASSERT_EQ(Open(IdOfCamera(), GenTL::DEVICE_ACCESS_READONLY), 0) << LastError();
    EXPECT_EQ(Register(kRegCurrentIpConfig) & 7, 4U);
    EXPECT_EQ(Register(kRegPersistentIp), 0U);
}

TEST_F(GigeAddress, WritesNoSettingsThatMakeNoSense) {
    AddAndFind();
    const uint64_t before = Simulated().Counts()[Count::RegisterWrites];
    EXPECT_EQ(Configure(5, "10.0.0.5", "255.0.255.0", "0.0.0.0", ""),
              GenTL::GC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(Configure(3, "10.0.0.5", "255.0.0.0", "0.0.0.0", ""),
              GenTL::GC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(LastError(), "There is no IP configuration 3");
    EXPECT_EQ(Configure(4, "", "", "", "a name of sixteen"), GenTL::GC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(LastError(), "The name \"a name of sixteen\" is longer than 15 bytes");
    EXPECT_EQ(Simulated().Counts()[Count::RegisterWrites], before);
}

TEST_F(GigeAddress, ConfiguresACameraThatIsOpenHereByItsConnection) {
    OpenOne();
    EXPECT_EQ(Configure(6, "", "", "", ""), 0) << LastError();
    EXPECT_EQ(Register(kRegCurrentIpConfig) & 7, 6U);
    EXPECT_EQ(Simulated().Counts()[Count::ControlTaken], 1U);
}

TEST_F(GigeAddress, ConfiguresNothingThroughAReader) {
    OpenOne(GenTL::DEVICE_ACCESS_READONLY);
    EXPECT_EQ(Configure(6, "", "", "", ""), GenTL::GC_ERR_ACCESS_DENIED);
    EXPECT_EQ(LastError(), "The camera is open in this process for reading only");
}

TEST_F(GigeAddress, ForcesTheSelectedCameraByFeatures) {
    AddAndFind();
    ASSERT_EQ(Write<int64_t>(Way().iface, 0x0580, 0x0A000005), 0);
    ASSERT_EQ(Write<int64_t>(Way().iface, 0x0588, 0xFF00FF00), 0);
    EXPECT_EQ(Write<uint32_t>(Way().iface, 0x0598, 1), GenTL::GC_ERR_INVALID_PARAMETER);
    ASSERT_EQ(Write<int64_t>(Way().iface, 0x0580, 0), 0);
    EXPECT_EQ(Write<uint32_t>(Way().iface, 0x0598, 1), 0) << LastError();
    EXPECT_EQ(Simulated().Counts()[Count::ForcedAddresses], 1U);
}

/// A camera that says that it has whatever address it was given.
class AddressChange : public testing::Test {
protected:
    AddressChange() {
        m_identity.mac = {{0, 0, 0, 0, 0, 1}};
        m_identity.ip = kLoopback;
    }

    std::vector<Bytes> Serve(const CommandPacket& command) {
        if (command.command == Command::ForceIp) {
            const auto forced = ParseForcedAddress(command.payload).value();
            ++m_forced;
            if (m_isObedient && forced.mac == m_identity.mac) {
                m_identity.ip = forced.ip;
            }
            return {AnswerOf(command)};
        }
        return {AnswerOf(command, BuildIdentity(m_identity))};
    }
    FoundCamera Found(const FakeCamera& camera) const {
        return {.identity = m_identity, .endpoint = camera.Address(), .isNamed = true};
    }
    ForcedAddress Wanted() const {
        return {.mac = m_identity.mac, .ip = {0x0A000005}, .mask = {0xFF000000}, .gateway = {}};
    }

    std::atomic<bool> m_isObedient = true;
    std::atomic<int> m_forced = 0;
    Identity m_identity;
    FoundCameras m_found;
};

TEST_F(AddressChange, IsProvedByTheCamerasNextAnswer) {
    FakeCamera camera([this](const CommandPacket& command) { return Serve(command); });
    ForceCameraAddress(LoopbackAdapter(), Found(camera), Wanted(), m_found);
    const auto list = m_found.List(LoopbackAdapter(), SearchRange::Network, Clock::now());
    ASSERT_EQ(list.size(), 1U);
    EXPECT_EQ(list.front().identity.ip.value, 0x0A000005U);
}

TEST_F(AddressChange, IsNotProvedByACameraThatKeepsItsAddress) {
    m_isObedient = false;
    FakeCamera camera([this](const CommandPacket& command) { return Serve(command); });
    try {
        ForceCameraAddress(LoopbackAdapter(), Found(camera), Wanted(), m_found);
        FAIL();
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.Code(), GenTL::GC_ERR_TIMEOUT);
        EXPECT_STREQ(failure.what(),
                     "The camera doesn't answer with the address 10.0.0.5; one that somebody has "
                     "opened keeps the address that it has");
    }
    EXPECT_EQ(m_forced, 1);
}

TEST_F(AddressChange, NeedsAnAdapterThatSends) {
    Adapter gone = LoopbackAdapter();
    gone.name = "no-such-adapter";
    gone.index = 0x7FFFFFFF;
    FoundCamera camera;
    camera.identity = m_identity;
    camera.endpoint = {{0x0A000009}, 9};
    try {
        ForceCameraAddress(gone, camera, Wanted(), m_found);
        FAIL();
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.Code(), GenTL::GC_ERR_IO);
        EXPECT_STREQ(failure.what(), "Nothing can be sent by no-such-adapter");
    }
}

}  // namespace
