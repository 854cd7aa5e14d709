#pragma once
/// Frames from simulated cameras through the producer's file.

#include <algorithm>
#include <string>
#include <thread>

#include "GigeProducerTest.h"
#include "StreamFeatureAddress.h"
#include "simulator/device/CameraDevice.h"

/// Registers of the camera's own features.
inline constexpr uint64_t kWidth = OvSimulator::kApplicationBase + 0x310;
inline constexpr uint64_t kHeight = OvSimulator::kApplicationBase + 0x314;
inline constexpr uint64_t kStart = OvSimulator::kApplicationBase + 0x408;
inline constexpr uint64_t kStop = OvSimulator::kApplicationBase + 0x40C;
inline constexpr uint64_t kPayload = OvSimulator::kApplicationBase + 0x800;

class GigeStream : public GigeProducerTest {
protected:
    /// @param rate  frames per second; 0: as fast as the camera can
    explicit GigeStream(const char* rate = "200") { setenv("OV_VIRTUAL_FRAME_RATE", rate, 1); }
    ~GigeStream() override { unsetenv("OV_VIRTUAL_FRAME_RATE"); }

    void OpenStream(const OvSimulator::Faults& faults = {}) {
        AddCamera(0, faults);
        FindAll();
        ASSERT_EQ(Open(IdOfCamera()), 0) << LastError();
        OpenCamera& way = Way();
        ASSERT_EQ(Api().DevOpenDataStream(way.device, "Stream0", &way.stream), 0) << LastError();
        ASSERT_EQ(Write<uint32_t>(way.port, kWidth, 640), 0) << LastError();
        ASSERT_EQ(Write<uint32_t>(way.port, kHeight, 480), 0) << LastError();
    }
    uint64_t Counter(const std::string& name) {
        return Read<uint64_t>(Way().stream, StreamFeatureAddress(name));
    }
    void Set(const std::string& name, int64_t value) {
        ASSERT_EQ(Write(Way().stream, StreamFeatureAddress(name), value), 0) << LastError();
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
        while (CountedBlocks() < Simulated().Counts()[OvSimulator::Count::Blocks] &&
               Clock::now() < end) {
            std::this_thread::yield();
        }
        EXPECT_EQ(CountedBlocks(), Simulated().Counts()[OvSimulator::Count::Blocks]);
    }
};
