// What several virtual cameras take of the machine when they stream at once: processor time,
// threads and memory, those of the cameras themselves included; and what two threads get done that
// ask two of them. Usage: cameras_bench [CAMERAS [SECONDS]]

#include <time.h>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <fstream>
#include <string>
#include <thread>

#include "FlatCall.h"
#include "Goals.h"
#include "OvIAPI.h"
#include "TwoThreads.h"

namespace {

// Small frames: those of the whole sensor would take all processors to draw.
constexpr int64_t kWidth = 640;
constexpr int64_t kHeight = 480;
constexpr uint32_t kSearchTime = 1000;

double ProcessSeconds() {
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

/// A number that the system has of this process, by the name of its line.
double StatusOf(const std::string& name) {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with(name + ":")) {
            return std::atof(line.c_str() + name.size() + 1);
        }
    }
    return 0;
}

void PrintSize(const char* moment) {
    std::printf("  %-24s %4.0f threads  %7.1f MB resident\n", moment, StatusOf("Threads"),
                StatusOf("VmRSS") / 1024);
}

/// An open camera, whose frames are counted on the thread of its capture callback.
class Camera {
public:
    explicit Camera(uint32_t index) {
        Require(OVOpenDeviceByIndex(index, &m_handle));
        Require(OVSetInt(m_handle, OV_FEATURE_Width, kWidth));
        Require(OVSetInt(m_handle, OV_FEATURE_Height, kHeight));
        Require(OVRegisterCaptureCallback(m_handle, this, &OnFrame));
    }
    ~Camera() { OVCloseDevice(m_handle); }
    Camera(const Camera&) = delete;
    Camera& operator=(const Camera&) = delete;

    /// Asks the camera itself.
    void Ask() const {
        bool reversed = false;
        Require(OVGetBool(m_handle, OV_FEATURE_ReverseY, &reversed));
    }
    void Start() { Require(OVStreamOn(m_handle)); }
    void Stop() { Require(OVStreamOff(m_handle)); }
    uint64_t Frames() const { return m_frames; }

private:
    static void OnFrame(OV_FRAME_CALLBACK_PARAM* frame) {
        ++static_cast<Camera*>(frame->pUserParam)->m_frames;
    }

    OV_DEV_HANDLE m_handle = nullptr;
    std::atomic<uint64_t> m_frames{0};
};

uint64_t FramesOf(const std::deque<Camera>& cameras) {
    uint64_t frames = 0;
    for (const Camera& camera : cameras) {
        frames += camera.Frames();
    }
    return frames;
}

void MeasureStreams(const std::deque<Camera>& cameras, double seconds) {
    using Clock = std::chrono::steady_clock;
    const Clock::time_point begin = Clock::now();
    const double spentBefore = ProcessSeconds();
    const uint64_t framesBefore = FramesOf(cameras);
    std::this_thread::sleep_for(std::chrono::duration<double>(seconds));
    const double spent = ProcessSeconds() - spentBefore;
    const auto frames = static_cast<double>(FramesOf(cameras) - framesBefore);
    const std::chrono::duration<double> time = Clock::now() - begin;
    PrintSize("while they stream");
    std::printf("  %.0f frames/s, %.1f %% of one processor, %.1f us/frame\n", frames / time.count(),
                spent / time.count() * 100, spent / frames * 1e6);
}

void MeasureTwoThreads(const std::deque<Camera>& cameras) {
    Goals goals("cameras_bench");
    const double apart = RateOfTwoApart();
    const double asked = RateOfTwo([&](size_t i) { cameras[i].Ask(); });
    std::printf("  two threads that share nothing reach %.2f times the rate of one\n", apart);
    goals.Print("two threads, two cameras that are asked: rate", asked, "", apart / asked);
}

}  // namespace

int main(int argc, char** argv) {
    const uint32_t count = argc > 1 ? static_cast<uint32_t>(std::atoi(argv[1])) : 16;
    const double seconds = argc > 2 ? std::atof(argv[2]) : 5;
    setenv("OV_VIRTUAL_CAMERAS", std::to_string(count).c_str(), 1);
    setenv("OV_VIRTUAL_STATE", "off", 1);
    std::printf("%u virtual cameras with %dx%d pixels at 30 frames a second:\n", count,
                static_cast<int>(kWidth), static_cast<int>(kHeight));
    PrintSize("before");
    Require(OVInitLib());
    uint32_t found = 0;
    Require(OVUpdateDeviceList(&found, kSearchTime));
    std::deque<Camera> cameras;
    for (uint32_t index = 1; index <= count; ++index) {
        cameras.emplace_back(index);
    }
    PrintSize("open");
    if (count >= 2) {
        MeasureTwoThreads(cameras);
    }
    for (Camera& camera : cameras) {
        camera.Start();
    }
    // The first frames of each camera draw what later ones know.
    std::this_thread::sleep_for(std::chrono::seconds(2));
    MeasureStreams(cameras, seconds);
    for (Camera& camera : cameras) {
        camera.Stop();
    }
    cameras.clear();
    Require(OVCloseLib());
    return 0;
}
