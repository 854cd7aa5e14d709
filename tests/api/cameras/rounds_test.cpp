// Calls on cameras beside each other, again and again.

#include <array>
#include <atomic>
#include <random>
#include <thread>

#include "CameraTest.h"
#include "support/Fetcher.h"
#include "support/FrameCounter.h"
#include "support/RandomCalls.h"
#include "support/RunRounds.h"

namespace {

constexpr double kShare = 0.25;

class CameraRounds : public CameraTest {
protected:
    static OV_STATUS Search() {
        uint32_t count = 0;
        return OVUpdateAllDeviceList(&count, Supply().SearchTime());
    }
};

class CameraFetchRounds : public CameraRounds, public testing::WithParamInterface<FetchWay> {};
INSTANTIATE_TEST_SUITE_P(Ways, CameraFetchRounds, testing::ValuesIn(kFetchWays),
                         [](const auto& test) { return std::string(test.param.name); });

TEST_P(CameraFetchRounds, AStopMeetsFetches) {
    RunRounds(
        [this](unsigned round) {
            EXPECT_OV_OK(OVSetAcqusitionBufferNumber(camera, 2 + round % 4));
            EXPECT_OV_OK(OVStreamOn(camera));
            Fetcher first(camera, GetParam());
            Fetcher second(camera, GetParam());
            first.WaitForFrames(round % 3);
            EXPECT_OV_OK(OVStreamOff(camera));
            first.ExpectEnd();
            second.ExpectEnd();
        },
        kShare);
}

TEST_P(CameraFetchRounds, ARunningCameraIsClosedAfterFetchesOfOtherThreads) {
    RunRounds(
        [this](unsigned round) {
            EXPECT_OV_OK(OVStreamOn(camera));
            Beside first([this] { return GetParam().fetch(camera); });
            Beside second([this] { return GetParam().fetch(camera); });
            EXPECT_EQ(first.Join(), OV_STATUS_SUCCESS) << first.GetText();
            EXPECT_EQ(second.Join(), OV_STATUS_SUCCESS) << second.GetText();
            EXPECT_OV_OK(OVCloseDevice(camera));
            camera = OpenQuick(1 + round % 2);
        },
        kShare);
}

TEST_F(CameraRounds, TwoCamerasLiveTheirLivesBesideSearches) {
    EXPECT_OV_OK(OVCloseDevice(camera));
    RunRounds(
        [](unsigned) {
            const auto life = [](uint32_t index) {
                const OV_DEV_HANDLE handle = OpenQuick(index);
                FrameCounter counter;
                EXPECT_OV_OK(OVRegisterCaptureCallback(handle, &counter, &FrameCounter::OnFrame));
                EXPECT_OV_OK(OVStreamOn(handle));
                counter.WaitFor(3);
                EXPECT_OV_OK(OVStreamOff(handle));
                return OVCloseDevice(handle);
            };
            Beside first([&] { return life(1); });
            Beside second([&] { return life(2); });
            EXPECT_OV_OK(Search());
            EXPECT_EQ(first.Join(), OV_STATUS_SUCCESS) << first.GetText();
            EXPECT_EQ(second.Join(), OV_STATUS_SUCCESS) << second.GetText();
        },
        kShare);
}

TEST_F(CameraRounds, FeaturesAreUsedByManyThreadsWhileFramesFlow) {
    FrameCounter counter;
    EXPECT_OV_OK(OVRegisterCaptureCallback(camera, &counter, &FrameCounter::OnFrame));
    EXPECT_OV_OK(OVStreamOn(camera));
    RunRounds(
        [this](unsigned) {
            constexpr int kCalls = 20;
            const auto often = [](const std::function<OV_STATUS(int)>& call) {
                return [call] {
                    OV_STATUS status = OV_STATUS_SUCCESS;
                    for (int i = 0; i < kCalls && status == OV_STATUS_SUCCESS; ++i) {
                        status = call(i);
                    }
                    return status;
                };
            };
            Beside writing(
                often([this](int i) { return OVSetFloat(camera, OV_FEATURE_Gain, i % 10); }));
            Beside reading(often([this](int) {
                int64_t ticks = 0;
                return OVGetInt(camera, OV_FEATURE_TimestampLatchValue, &ticks);
            }));
            Beside limits(often([this](int) {
                OV_INT_RANGE range{};
                return OVGetIntRange(camera, OV_FEATURE_OffsetX, &range);
            }));
            Beside memory(often([this](int i) {
                uint32_t value = static_cast<uint32_t>(i);
                size_t size = sizeof value;
                return OVWriteRemoteDevicePort(camera, Supply().Harmless().memory, &value, &size);
            }));
            for (Beside* const beside : {&writing, &reading, &limits, &memory}) {
                EXPECT_EQ(beside->Join(), OV_STATUS_SUCCESS) << beside->GetText();
            }
        },
        kShare);
    counter.WaitForMore(1);
    EXPECT_OV_OK(OVStreamOff(camera));
}

/// Searches for cameras while others call at random.
class Searching {
public:
    explicit Searching(const std::function<OV_STATUS()>& search)
        : m_thread([this, search] {
              while (!m_isOver) {
                  EXPECT_OV_OK(search());
              }
          }) {}
    Searching(const Searching&) = delete;
    Searching& operator=(const Searching&) = delete;
    ~Searching() {
        m_isOver = true;
        m_thread.join();
    }

private:
    std::atomic<bool> m_isOver{false};
    std::thread m_thread;
};

TEST_F(CameraRounds, AnythingIsCalledBesideAnything) {
    constexpr unsigned kThreads = 4;
    constexpr unsigned kCallsInARound = 30;
    EXPECT_OV_OK(OVCloseDevice(camera));
    std::array<SharedCamera, kCameras> cameras{SharedCamera(Records()[0].szDeviceID),
                                               SharedCamera(Records()[1].szDeviceID)};
    RandomCallers callers;
    for (unsigned seed = 0; seed < kThreads; ++seed) {
        callers.push_back(std::make_unique<RandomCaller>(
            seed, std::vector<SharedCamera*>{&cameras[0], &cameras[1]}, Supply().Harmless()));
    }
    RunRounds(
        [&](unsigned) {
            {
                const Searching searching(&Search);
                CallAtOnce(callers, kCallsInARound);
            }
            for (SharedCamera& shared : cameras) {
                EXPECT_OV_OK(shared.Close());
            }
            AwaitCameras(kCameras);
            for (uint32_t index = 1; index <= kCameras; ++index) {
                const OV_DEV_HANDLE handle = OpenQuick(index);
                EXPECT_OV_OK(OVStreamOn(handle));
                EXPECT_EQ(LendOne(handle), OV_STATUS_SUCCESS);
                EXPECT_OV_OK(OVCloseDevice(handle));
            }
        },
        kShare / 2);
    PrintCalls(callers);
}

}  // namespace
