#include <array>
#include <thread>

#include "GigeProducerTest.h"
#include "gige/control/CameraMemory.h"
#include "gige/net/UdpLink.h"
#include "gige/protocol/Bootstrap.h"

namespace {

using namespace OvGige;
using OvSimulator::Count;

/// An open camera and the calls on its ports.
class GigeControl : public GigeProducerTest {
protected:
    /// Waits until the camera is known to be lost.
    void AwaitLoss() {
        GenTL::EVENT_HANDLE event = nullptr;
        ASSERT_EQ(Api().GCRegisterEvent(Way().device, GenTL::EVENT_DEVICE_OFFLINE, &event), 0);
        // As short as cameras allow it; two beats on, the producer knows that.
        const auto& counts = Simulated().Counts();
        const uint64_t before = counts[Count::RegisterReads];
        ASSERT_EQ(WriteBigRegister(kRegHeartbeatTimeout, 500), 0) << LastError();
        while (counts[Count::RegisterReads] < before + 4) {
            std::this_thread::yield();
        }
        RemoveCameras();
        size_t size = 0;
        EXPECT_EQ(Api().EventGetData(event, nullptr, &size, 60'000), 0);
        // It comes once.
        EXPECT_EQ(Api().EventGetData(event, nullptr, &size, 0), GenTL::GC_ERR_TIMEOUT);
    }
};

TEST_F(GigeControl, ReadsAndWritesAnyBytesOfTheCamera) {
    OpenOne();
    EXPECT_EQ(ReadText(Way().port, kRegModel.address, kRegModel.width), "Simulated-5M-Color");
    ASSERT_EQ(WriteText(Way().port, kRegUserName.address, "left"), 0) << LastError();
    ASSERT_EQ(WriteText(Way().port, kRegUserName.address + 1, "ift"), 0) << LastError();
    EXPECT_EQ(ReadText(Way().port, kRegUserName.address, kRegUserName.width), "lift");
}

TEST_F(GigeControl, ServesTheDescriptionFromTheCamera) {
    OpenOne();
    const std::string url = GenTLApi::Text([&](auto* type, void* out, size_t* size) {
        return Api().GCGetPortURLInfo(Way().port, 0, GenTL::URL_INFO_URL, type, out, size);
    });
    EXPECT_THAT(url,
                testing::MatchesRegex("Local:OvSimulatedCamera_1_0_0\\.zip;[0-9A-F]+;[0-9A-F]+"));
    const auto number = [&](GenTL::URL_INFO_CMD command) {
        return GenTLApi::Number<uint64_t>([&](auto* type, void* out, size_t* size) {
            return Api().GCGetPortURLInfo(Way().port, 0, command, type, out, size);
        });
    };
    std::string file(number(GenTL::URL_INFO_FILE_SIZE), '\0');
    size_t size = file.size();
    ASSERT_EQ(Api().GCReadPort(Way().port, number(GenTL::URL_INFO_FILE_REGISTER_ADDRESS),
                               file.data(), &size),
              0)
        << LastError();
    EXPECT_EQ(file.substr(0, 2), "PK");
}

TEST_F(GigeControl, KnowsTheCamerasClockAndByteOrder) {
    OpenOne();
    EXPECT_EQ(Read<uint64_t>(Way().device, 0x03B8), 1'000'000'000U);
    const auto flag = [&](GenTL::PORT_INFO_CMD command) {
        return GenTLApi::Number<GenTL::bool8_t>([&](auto* type, void* out, size_t* size) {
            return Api().GCGetPortInfo(Way().port, command, type, out, size);
        });
    };
    EXPECT_EQ(flag(GenTL::PORT_INFO_BIG_ENDIAN), 1);
    EXPECT_EQ(flag(GenTL::PORT_INFO_LITTLE_ENDIAN), 0);
}

TEST_F(GigeControl, TakesControlAndGivesItBack) {
    OpenOne();
    EXPECT_EQ(ReadBigRegister(kRegPrivilege), kPrivilegeControl);
    ASSERT_EQ(Api().DevClose(Way().device), 0);
    EXPECT_EQ(Simulated().Counts()[Count::ControlGiven], 1U);
    ASSERT_EQ(Open(IdOfCamera(), GenTL::DEVICE_ACCESS_EXCLUSIVE), 0) << LastError();
    EXPECT_EQ(ReadBigRegister(kRegPrivilege), kPrivilegeExclusive);
}

TEST_F(GigeControl, OnlyReadsACameraThatIsOpenForReading) {
    OpenOne(GenTL::DEVICE_ACCESS_READONLY);
    EXPECT_EQ(ReadBigRegister(kRegPrivilege), 0U);
    EXPECT_EQ(WriteText(Way().port, kRegUserName.address, "left"), GenTL::GC_ERR_ACCESS_DENIED);
    EXPECT_EQ(Simulated().Counts()[Count::ControlTaken], 0U);
}

TEST_F(GigeControl, NamesTheOwnerOfACameraInUse) {
    AddCamera();
    FindAll();
    UdpSocket socket = LoopbackSocket();
    const Endpoint owner = socket.Local();
    ControlChannel channel(std::make_unique<UdpLink>(std::move(socket), Simulated().Address()), 1);
    CameraMemory(channel).WriteRegister(kRegPrivilege, kPrivilegeControl);
    EXPECT_EQ(Open(IdOfCamera()), GenTL::GC_ERR_ACCESS_DENIED);
    EXPECT_EQ(LastError(), "The camera is in use by " + TextOf(owner));
    EXPECT_EQ(Open(IdOfCamera(), GenTL::DEVICE_ACCESS_READONLY), 0) << LastError();
}

/// What a process had that has gone without giving it back.
class GigeTakeOver : public GigeControl, public testing::WithParamInterface<uint32_t> {};
INSTANTIATE_TEST_SUITE_P(Privileges, GigeTakeOver,
                         testing::Values(kPrivilegeControl, kPrivilegeExclusive));

TEST_P(GigeTakeOver, IsOfACameraWhoseProcessOfThisMachineHasGone) {
    AddCamera();
    FindAll();
    {
        ControlChannel channel(std::make_unique<UdpLink>(LoopbackSocket(), Simulated().Address()),
                               1);
        CameraMemory memory(channel);
        memory.WriteRegister(kRegPrivilege, GetParam());
        memory.WriteRegister(kRegHeartbeatTimeout, 500);
    }
    EXPECT_EQ(Open(IdOfCamera()), 0) << LastError();
    EXPECT_EQ(Simulated().Counts()[Count::ControlLost], 1U);
}

TEST_F(GigeControl, ReportsALostCameraOnceAndRefusesAllAccess) {
    OpenOne();
    AwaitLoss();
    uint32_t value = 0;
    size_t size = sizeof value;
    EXPECT_EQ(Api().GCReadPort(Way().port, 0, &value, &size), GenTL::GC_ERR_CUSTOM_ID);
    EXPECT_EQ(LastError(), "The camera hasn't answered for 500 ms");
    EXPECT_EQ(Api().GCWritePort(Way().port, kRegHeartbeatTimeout, &value, &size),
              GenTL::GC_ERR_CUSTOM_ID);
    EXPECT_EQ(Api().GCReadPort(Way().device, 0, &value, &size), GenTL::GC_ERR_CUSTOM_ID);
    EXPECT_EQ(Api().DevClose(Way().device), 0);
}

TEST_F(GigeControl, OpensALostCameraAgainOnceItIsBack) {
    OpenOne();
    const Endpoint address = Simulated().Address();
    const std::string id = IdOfCamera();
    AwaitLoss();
    EXPECT_EQ(Open(id), GenTL::GC_ERR_RESOURCE_IN_USE);
    EXPECT_EQ(Api().DevClose(Way().device), 0);
    auto profile =
        OvSimulator::MakeProfile(0, {.ip = address.ip, .mask = {0xFF000000}, .gateway = {}}, 0);
    profile.port = address.port;
    const OvSimulator::SimulatedCamera again(profile);
    Find(1);
    EXPECT_EQ(Open(id), 0) << LastError();
    EXPECT_EQ(ReadBigRegister(kRegPrivilege), kPrivilegeControl);
}

TEST_F(GigeControl, MakesCommandsAsPatientlyAsTheUserWants) {
    OpenOne();
    EXPECT_EQ(Read<int64_t>(Way().device, 0x03D0), 500);
    EXPECT_EQ(Read<int64_t>(Way().device, 0x03D8), 2);
    ASSERT_EQ(Write<int64_t>(Way().device, 0x03D0, 100), 0);
    ASSERT_EQ(Write<int64_t>(Way().device, 0x03D8, 0), 0);
    RemoveCameras();
    uint32_t value = 0;
    size_t size = sizeof value;
    EXPECT_EQ(Api().GCReadPort(Way().port, 0, &value, &size), GenTL::GC_ERR_TIMEOUT);
    EXPECT_EQ(LastError(), "The camera doesn't answer a read: 1 tries of 100 ms");
}

TEST_F(GigeControl, ReadsNumbersAsRegistersForOldDescriptions) {
    OpenOne();
    ASSERT_EQ(Write<int64_t>(Way().device, 0x03E0, 0), 0);
    const auto& counts = Simulated().Counts();
    const uint64_t before = counts[Count::MemoryReads] + counts[Count::MemoryWrites];
    ASSERT_EQ(WriteBigRegister(kRegHeartbeatTimeout, 60'000), 0) << LastError();
    EXPECT_EQ(ReadBigRegister(kRegHeartbeatTimeout), 60'000U);
    EXPECT_EQ(counts[Count::MemoryReads] + counts[Count::MemoryWrites], before);
    EXPECT_EQ(ReadText(Way().port, kRegModel.address, kRegModel.width), "Simulated-5M-Color");
    EXPECT_EQ(counts[Count::MemoryReads], before + 1);
}

TEST_F(GigeControl, EndsWithTheLibraryWhileCamerasAreOpen) {
    OpenOne();
    Way().library = false;
    EXPECT_EQ(Api().GCCloseLib(), 0);
    EXPECT_EQ(Simulated().Counts()[Count::ControlGiven], 1U);
}

}  // namespace
