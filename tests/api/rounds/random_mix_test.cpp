// Every flat function at once, in any order, on cameras that come and go.

#include <array>
#include <atomic>
#include <memory>
#include <thread>

#include "Rounds.h"
#include "support/RandomCalls.h"

namespace {

constexpr unsigned kThreads = 4;
constexpr unsigned kCallsInARound = 100;
constexpr HarmlessArguments kHarmless{.memory = 0xF000,
                                      .mode = OV_IP_CONFIGURE_LLA,
                                      .ip = "192.168.0.7",
                                      .mask = "255.255.255.0",
                                      .gateway = "0.0.0.0"};

/// Takes a camera away now and then, brings it back, and searches for cameras.
class Updating {
public:
    Updating(TestProducer& producer, unsigned seed, bool everywhere)
        : m_thread([this, &producer, seed, everywhere] {
              std::minstd_rand draw(seed + 1);
              while (!m_isOver) {
                  (draw() % 4 == 0 ? producer.LoseDevice : producer.ReturnDevice)(0, 0);
                  producer.FireExposureEnd(0, 0, 1);
                  uint32_t count = 0;
                  const OV_STATUS status = everywhere ? OVUpdateAllDeviceList(&count, 100)
                                                      : OVUpdateDeviceList(&count, 100);
                  EXPECT_OV_OK(status);
              }
              producer.ReturnDevice(0, 0);
          }) {}
    Updating(const Updating&) = delete;
    Updating& operator=(const Updating&) = delete;
    ~Updating() {
        m_isOver = true;
        m_thread.join();
    }

private:
    std::atomic<bool> m_isOver{false};
    std::thread m_thread;
};

class RandomMix : public RoundsTest {
protected:
    RandomMix() {
        for (TestProducer* const producer : {&gev, &custom}) {
            producer->SetFreeRunning(0, 0, 1);
        }
        gev.SetDeviceText(0, 0, "SerialNumber", "Of the first producer");
        for (unsigned i = 0; i < kThreads; ++i) {
            m_callers.emplace_back(std::make_unique<RandomCaller>(
                i, std::vector<SharedCamera*>{&m_cameras[0], &m_cameras[1]}, kHarmless));
        }
    }

    ~RandomMix() override { PrintCalls(m_callers); }

    void CallAtRandom(unsigned round) {
        const Updating first(gev, 2 * round, true);
        const Updating second(custom, 2 * round + 1, false);
        CallAtOnce(m_callers, kCallsInARound);
    }

    /// Whatever was before, both cameras open and deliver.
    void ExpectAllWell() {
        for (SharedCamera& camera : m_cameras) {
            camera.Close();
        }
        ExpectClosed({"Device", "Stream", "Buffer", "Event", "Acquisition"});
        EXPECT_EQ(Update(), kCameras);
        for (const SharedCamera& camera : m_cameras) {
            const OV_DEV_HANDLE handle = Open(camera.GetId());
            EXPECT_OV_OK(OVStreamOn(handle));
            OV_FRAME_BUFFER* frame = nullptr;
            EXPECT_OV_OK(OVDQBuf(handle, &frame, 10000));
            EXPECT_OV_OK(OVCloseDevice(handle));
        }
    }

private:
    std::array<SharedCamera, 2> m_cameras{SharedCamera("Gev" + IdOf(0, 0)),
                                          SharedCamera(IdOf(0, 0))};
    RandomCallers m_callers;
};

}  // namespace

TEST_F(RandomMix, LeavesCamerasThatOpenAndDeliver) {
    Run([&](unsigned round) {
        CallAtRandom(round);
        ExpectAllWell();
        gev.ClearLog();
        custom.ClearLog();
        if (round % 4 == 3) {
            EXPECT_OV_OK(OVCloseLib());
            EXPECT_OV_OK(OVInitLib());
        }
    });
}
