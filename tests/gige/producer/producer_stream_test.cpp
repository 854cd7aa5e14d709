#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <thread>

#include "GigeProducerTest.h"
#include "framework/Backend.h"
#include "gige/stream/StreamFeatures.h"
#include "simulator/device/CameraDevice.h"

namespace {

using namespace OvGige;
using OvSimulator::Count;
using OvSimulator::Faults;

/// Registers of the camera's own features.
constexpr uint64_t kWidth = OvSimulator::kApplicationBase + 0x310;
constexpr uint64_t kHeight = OvSimulator::kApplicationBase + 0x314;
constexpr uint64_t kStart = OvSimulator::kApplicationBase + 0x408;
constexpr uint64_t kStop = OvSimulator::kApplicationBase + 0x40C;
constexpr uint64_t kPayload = OvSimulator::kApplicationBase + 0x800;

/// Frames from simulated cameras through the producer's file.
class GigeStream : public GigeProducerTest {
protected:
    /// @param rate  frames per second; 0: as fast as the camera can
    explicit GigeStream(const char* rate = "200") { setenv("OV_VIRTUAL_FRAME_RATE", rate, 1); }
    ~GigeStream() override { unsetenv("OV_VIRTUAL_FRAME_RATE"); }

    void OpenStream(const Faults& faults = {}) {
        AddCamera(0, faults);
        FindAll();
        ASSERT_EQ(Open(IdOfCamera()), 0) << LastError();
        OpenCamera& way = Way();
        ASSERT_EQ(Api().DevOpenDataStream(way.device, "Stream0", &way.stream), 0) << LastError();
        ASSERT_EQ(Write<uint32_t>(way.port, kWidth, 640), 0) << LastError();
        ASSERT_EQ(Write<uint32_t>(way.port, kHeight, 480), 0) << LastError();
    }
    uint64_t StreamAddress(const std::string& name) {
        const std::string xml =
            WithStreamFeatures(OvProducer::OwnDescription(OvProducer::ModuleKind::Stream).xml);
        const size_t at = std::min(xml.find("<IntReg Name=\"" + name + "\""),
                                   xml.find("<IntReg Name=\"" + name + "Reg\""));
        const std::string mark = "<Address>";
        return std::stoull(xml.substr(xml.find(mark, at) + mark.size(), 6), nullptr, 16);
    }
    uint64_t Counter(const std::string& name) {
        return Read<uint64_t>(Way().stream, StreamAddress(name));
    }
    void Set(const std::string& name, int64_t value) {
        ASSERT_EQ(Write(Way().stream, StreamAddress(name), value), 0) << LastError();
    }
    void Start(size_t buffers) {
        const auto payload = Read<uint32_t>(Way().port, kPayload);
        Way().Start(buffers, payload);
        ASSERT_EQ(Write<uint32_t>(Way().port, kStart, 1), 0) << LastError();
    }
    /// Fetches so many frames and returns how many were incomplete.
    int Fetch(int frames) {
        int incomplete = 0;
        for (int i = 0; i < frames; ++i) {
            const GenTL::BUFFER_HANDLE buffer = Way().NextFrame();
            incomplete += Way().BufferInfo<bool>(buffer, GenTL::BUFFER_INFO_IS_INCOMPLETE) ? 1 : 0;
            EXPECT_EQ(Api().DSQueueBuffer(Way().stream, buffer), 0);
        }
        return incomplete;
    }
    /// Stops the camera, and then the stream when all of its frames were counted.
    void StopCamera() { ASSERT_EQ(Write<uint32_t>(Way().port, kStop, 1), 0) << LastError(); }
    uint64_t CountedBlocks() {
        return Counter("StreamBlockCompleteCount") + Counter("StreamBlockIncompleteCount") +
               Counter("StreamBlockNoBufferCount") + Counter("StreamBlockLostOnWireCount") +
               Counter("StreamBlockLostInSocketCount");
    }
    /// Stops the camera and waits until each of its blocks is counted, except those at the end
    /// that no later block tells of.
    void SettleAccount() {
        StopCamera();
        const auto end = Clock::now() + std::chrono::seconds(20);
        while (CountedBlocks() < Simulated().Counts()[Count::Blocks] && Clock::now() < end) {
            std::this_thread::yield();
        }
        EXPECT_EQ(CountedBlocks(), Simulated().Counts()[Count::Blocks]);
    }
};

TEST_F(GigeStream, DeliversPictures) {
    OpenStream();
    Start(4);
    const GenTL::BUFFER_HANDLE buffer = Way().NextFrame();
    EXPECT_EQ(Way().BufferInfo<size_t>(buffer, GenTL::BUFFER_INFO_WIDTH), 640U);
    EXPECT_EQ(Way().BufferInfo<size_t>(buffer, GenTL::BUFFER_INFO_HEIGHT), 480U);
    EXPECT_FALSE(Way().BufferInfo<bool>(buffer, GenTL::BUFFER_INFO_IS_INCOMPLETE));
    EXPECT_EQ(Way().BufferInfo<uint64_t>(buffer, GenTL::BUFFER_INFO_FRAMEID), 1U);
    const auto base = Way().BufferInfo<const std::byte*>(buffer, GenTL::BUFFER_INFO_BASE);
    const auto filled = Way().BufferInfo<size_t>(buffer, GenTL::BUFFER_INFO_SIZE_FILLED);
    EXPECT_GE(filled, 640U * 480U);
    EXPECT_FALSE(
        std::all_of(base, base + filled, [&](std::byte value) { return value == base[0]; }));
    ASSERT_EQ(Api().DSQueueBuffer(Way().stream, buffer), 0);
    EXPECT_EQ(Fetch(20), 0);
    EXPECT_GT(Counter("StreamPacketSize"), 1500U) << "the loopback adapter takes larger packets";
    SettleAccount();
    EXPECT_EQ(Api().DSStopAcquisition(Way().stream, GenTL::ACQ_STOP_FLAGS_KILL), 0);
}

TEST_F(GigeStream, AsksForWhatIsLost) {
    Faults faults;
    faults.seed = 1;
    faults.stream.lost = 0.01;
    OpenStream(faults);
    Set("StreamFindPacketSize", 0);
    Start(6);
    EXPECT_EQ(Fetch(100), 0);
    SettleAccount();
    EXPECT_EQ(Counter("StreamBlockIncompleteCount"), 0U);
    EXPECT_EQ(Counter("StreamPacketAnsweredCount"), Simulated().Counts()[Count::LostPackets]);
    EXPECT_GT(Counter("StreamPacketAnsweredCount"), 0U);
}

TEST_F(GigeStream, MarksWhatIsLostWithoutResends) {
    Faults faults;
    faults.seed = 2;
    faults.stream.lost = 0.001;
    OpenStream(faults);
    Set("StreamFindPacketSize", 0);
    Set("StreamResend", 0);
    Start(8);
    Fetch(100);
    SettleAccount();
    EXPECT_EQ(Counter("StreamBlockIncompleteCount"), Simulated().Counts()[Count::DamagedBlocks]);
    EXPECT_EQ(Counter("StreamPacketMissingCount"), Simulated().Counts()[Count::LostPackets]);
}

TEST_F(GigeStream, BearsPacketsThatComeTwiceLateOrInAnotherOrder) {
    Faults faults;
    faults.seed = 3;
    faults.stream.doubled = 0.01;
    faults.stream.reordered = 0.01;
    faults.stream.delayed = 0.002;
    OpenStream(faults);
    Set("StreamFindPacketSize", 0);
    Start(6);
    EXPECT_EQ(Fetch(50), 0);
    SettleAccount();
    EXPECT_GE(Counter("StreamPacketDoubleCount"), Simulated().Counts()[Count::DoubledPackets]);
}

TEST_F(GigeStream, FollowsIdsThatJumpBack) {
    Faults faults;
    faults.seed = 4;
    faults.stream.jumpBack = 0.1;
    OpenStream(faults);
    Start(6);
    EXPECT_EQ(Fetch(100), 0);
    SettleAccount();
    EXPECT_EQ(Counter("StreamRestartCount"), Simulated().Counts()[Count::JumpsBack]);
}

TEST_F(GigeStream, MendsPacketsThatWereCut) {
    Faults faults;
    faults.seed = 5;
    faults.stream.truncated = 0.005;
    OpenStream(faults);
    Set("StreamFindPacketSize", 0);
    Start(6);
    Fetch(50);
    SettleAccount();
    EXPECT_GT(Simulated().Counts()[Count::TruncatedPackets], 0U);
}

TEST_F(GigeStream, CanBeStartedAgainAndAgain) {
    OpenStream();
    Start(4);
    for (int round = 0; round < 10; ++round) {
        EXPECT_EQ(Fetch(2), 0);
        StopCamera();
        EXPECT_EQ(Api().DSStopAcquisition(Way().stream, GenTL::ACQ_STOP_FLAGS_KILL), 0);
        EXPECT_EQ(Api().DSFlushQueue(Way().stream, GenTL::ACQ_QUEUE_ALL_DISCARD), 0);
        EXPECT_EQ(Api().DSFlushQueue(Way().stream, GenTL::ACQ_QUEUE_ALL_TO_INPUT), 0);
        ASSERT_EQ(Api().DSStartAcquisition(Way().stream, 0, GenTL::GENTL_INFINITE), 0)
            << LastError();
        ASSERT_EQ(Write<uint32_t>(Way().port, kStart, 1), 0) << LastError();
    }
}

}  // namespace
