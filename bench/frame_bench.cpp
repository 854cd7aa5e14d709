// How long a frame takes from the producer's buffer to the application, compared to a
// bare hand-over between threads. The source draws nothing and only waits for free
// buffers.

#include <sys/resource.h>
#include <time.h>

#include <algorithm>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "CountingMemory.h"
#include "Measure.h"
#include "OvIAPI.h"
#include "OvTestControl.h"

namespace {

constexpr uint64_t kFrames = 10000;
constexpr uint64_t kWarmUp = 1000;
constexpr uint32_t kTimeOut = 10000;
constexpr int kRounds = 5;
// Large copies take long, so that only all their rounds together have that many frames.
constexpr uint64_t kCopiedFrames = kFrames / kRounds;

// The goals: CPU time of a frame in library and producer together, CPU time of the thread
// that receives it, and frames per second.
constexpr double kGoalProcess = 8e-6;
constexpr double kGoalThread = 3e-6;
constexpr double kGoalRate = 100000;

double SecondsOf(clockid_t clock) {
    timespec now{};
    clock_gettime(clock, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

/// Context switches of all threads.
double ContextSwitches() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_nvcsw + usage.ru_nivcsw);
}

/// Times and counts at one moment, or the differences between two.
struct Spent {
    double wall = SecondsOf(CLOCK_MONOTONIC);
    double process = SecondsOf(CLOCK_PROCESS_CPUTIME_ID);
    double thread = SecondsOf(CLOCK_THREAD_CPUTIME_ID);
    double switches = ContextSwitches();
    uint64_t allocations = CountOfAllocations();

    Spent Since(const Spent& begin) const {
        Spent spent = *this;
        spent.wall -= begin.wall;
        spent.process -= begin.process;
        spent.thread -= begin.thread;
        spent.switches -= begin.switches;
        spent.allocations -= begin.allocations;
        return spent;
    }
};

/// Measures some frames after a warm-up, on the thread that receives them.
class Stopwatch {
public:
    explicit Stopwatch(uint64_t frames) : m_end(kWarmUp + frames) {}

    /// Counts a frame. Returns whether it was the last.
    bool Frame() {
        const uint64_t frame = m_frames++;
        if (frame == kWarmUp) {
            m_begin = Spent();
        } else if (frame == m_end) {
            m_spent = Spent().Since(m_begin);
            return true;
        }
        return false;
    }
    const Spent& Get() const { return m_spent; }

private:
    const uint64_t m_end;
    uint64_t m_frames = 0;
    Spent m_begin;
    Spent m_spent;
};

/// The best figures of all rounds, per frame.
class Best {
public:
    explicit Best(uint64_t frames) : m_frames(static_cast<double>(frames)) {}

    void Add(const Spent& spent) {
        m_wall = std::min(m_wall, spent.wall / m_frames);
        m_process = std::min(m_process, spent.process / m_frames);
        m_thread = std::min(m_thread, spent.thread / m_frames);
        m_switches = std::min(m_switches, spent.switches / m_frames);
        m_allocations = std::min(m_allocations, static_cast<double>(spent.allocations));
    }
    double Thread() const { return m_thread; }

    void Print(const std::string& name) const {
        std::printf(
            "%-20s %7.0f frames/s  CPU %6.2f us/frame  receiver %6.2f us  switches %5.2f"
            "  allocations %g\n",
            name.c_str(), 1 / m_wall, m_process * 1e6, m_thread * 1e6, m_switches, m_allocations);
    }
    void PrintBesideGoals(const std::string& name) const {
        Print(name);
        std::printf(
            "%-20s %7.0f %s      %6.2f us %s           %6.2f us %s                   0 %s\n",
            "  goal", kGoalRate, Met(1 / m_wall >= kGoalRate), kGoalProcess * 1e6,
            Met(m_process <= kGoalProcess), kGoalThread * 1e6, Met(m_thread <= kGoalThread),
            Met(m_allocations == 0));
    }

private:
    static const char* Met(bool met) { return met ? "met   " : "missed"; }

    static constexpr double kNone = std::numeric_limits<double>::max();
    const double m_frames;
    double m_wall = kNone;
    double m_process = kNone;
    double m_thread = kNone;
    double m_switches = kNone;
    double m_allocations = kNone;
};

void Check(OV_STATUS status, const char* call) {
    if (status != OV_STATUS_SUCCESS) {
        char text[512] = {};
        size_t size = sizeof text;
        OVGetLastError(nullptr, text, &size);
        std::fprintf(stderr, "%s: %s\n", call, text);
        std::exit(1);
    }
}

/// Passes five slots back and forth between two threads, with a lock and two conditions:
/// the minimum that any hand-over costs.
Spent BareHandOver() {
    constexpr size_t kSlots = 5;
    std::mutex mutex;
    std::condition_variable free;
    std::condition_variable filled;
    size_t waiting = 0;
    bool stop = false;
    std::thread source([&] {
        std::unique_lock lock(mutex);
        for (;;) {
            free.wait(lock, [&] { return stop || waiting < kSlots; });
            if (stop) {
                return;
            }
            ++waiting;
            filled.notify_one();
        }
    });
    Stopwatch watch(kFrames);
    for (bool last = false; !last;) {
        std::unique_lock lock(mutex);
        filled.wait(lock, [&] { return waiting != 0; });
        --waiting;
        free.notify_one();
        last = watch.Frame();
    }
    {
        const std::lock_guard lock(mutex);
        stop = true;
        free.notify_one();
    }
    source.join();
    return watch.Get();
}

/// An open camera of some size.
class Camera {
public:
    Camera(TestProducer& producer, uint32_t width, uint32_t height)
        : m_producer(producer), m_payload(size_t{width} * height) {
        constexpr uint64_t kWidth = 0x400;
        constexpr uint64_t kHeight = 0x404;
        constexpr uint64_t kPayloadSize = 0x414;
        const auto size = static_cast<uint32_t>(m_payload);
        m_producer.Reset();
        m_producer.WriteMemory(0, 0, kWidth, &width, sizeof width);
        m_producer.WriteMemory(0, 0, kHeight, &height, sizeof height);
        m_producer.WriteMemory(0, 0, kPayloadSize, &size, sizeof size);
        m_producer.SetFrame(0, 0, "Draw", 0);
        m_producer.WatchCalls(0);
        Check(OVInitLib(), "OVInitLib");
        uint32_t count = 0;
        Check(OVUpdateDeviceList(&count, 1000), "OVUpdateDeviceList");
        Check(OVOpenDeviceByIndex(1, &m_handle), "OVOpenDeviceByIndex");
    }
    ~Camera() { OVCloseLib(); }
    Camera(const Camera&) = delete;
    Camera& operator=(const Camera&) = delete;

    size_t Payload() const { return m_payload; }

    Spent ByCallback() {
        Receiver receiver;
        Check(OVRegisterCaptureCallback(m_handle, &receiver, &Receiver::OnFrame), "Register");
        Start();
        receiver.Wait();
        Stop();
        Check(OVUnregisterCaptureCallback(m_handle), "Unregister");
        return receiver.watch.Get();
    }

    Spent OnLoan() {
        return Pull(kFrames, [this] {
            OV_FRAME_BUFFER* frame = nullptr;
            Check(OVDQBuf(m_handle, &frame, kTimeOut), "OVDQBuf");
            Check(OVQBuf(m_handle, frame), "OVQBuf");
        });
    }

    Spent ByCopy(uint8_t* memory) {
        return Pull(kCopiedFrames, [this, memory] {
            OV_FRAME_DATA frame{};
            frame.pImgBuf = memory;
            Check(OVGetImage(m_handle, &frame, kTimeOut), "OVGetImage");
        });
    }

private:
    struct Receiver {
        Stopwatch watch{kFrames};
        std::mutex mutex;
        std::condition_variable done;
        bool isDone = false;

        static void OnFrame(OV_FRAME_CALLBACK_PARAM* frame) {
            auto& self = *static_cast<Receiver*>(frame->pUserParam);
            if (self.watch.Frame()) {
                const std::lock_guard lock(self.mutex);
                self.isDone = true;
                self.done.notify_one();
            }
        }
        void Wait() {
            std::unique_lock lock(mutex);
            done.wait(lock, [this] { return isDone; });
        }
    };

    template <class Take>
    Spent Pull(uint64_t frames, const Take& take) {
        Start();
        Stopwatch watch(frames);
        do {
            take();
        } while (!watch.Frame());
        Stop();
        return watch.Get();
    }
    void Start() {
        Check(OVStreamOn(m_handle), "OVStreamOn");
        m_producer.SetFreeRunning(0, 0, 1);
    }
    void Stop() {
        Check(OVStreamOff(m_handle), "OVStreamOff");
        m_producer.SetFreeRunning(0, 0, 0);
    }

    TestProducer& m_producer;
    const size_t m_payload;
    OV_DEV_HANDLE m_handle = nullptr;
};

template <class Run>
Best BestOf(const Run& run) {
    Best best(kFrames);
    for (int round = 0; round < kRounds; ++round) {
        best.Add(run());
    }
    return best;
}

/// CPU time of a bare copy from five buffers in turn, as with a camera.
class BareCopy {
public:
    explicit BareCopy(size_t size)
        : m_sources(kBuffers, std::vector<uint8_t>(size, 1)), m_target(size) {}

    double Run() {
        const Spent begin;
        for (size_t copy = 0; copy < kCopies; ++copy) {
            std::memcpy(m_target.data(), m_sources[copy % kBuffers].data(), m_target.size());
            Keep(m_target.data());
        }
        return Spent().Since(begin).thread / kCopies;
    }

private:
    static constexpr size_t kBuffers = 5;
    static constexpr size_t kCopies = 200;
    std::vector<std::vector<uint8_t>> m_sources;
    std::vector<uint8_t> m_target;
};

/// Alternates with bare copies, since the memory's speed changes with the load.
void MeasureCopies(Camera& camera, const std::string& size) {
    std::vector<uint8_t> memory(camera.Payload());
    BareCopy bare(camera.Payload());
    double bareSeconds = std::numeric_limits<double>::max();
    Best copied(kCopiedFrames);
    for (int round = 0; round < kRounds; ++round) {
        copied.Add(camera.ByCopy(memory.data()));
        bareSeconds = std::min(bareSeconds, bare.Run());
    }
    copied.Print("copy" + size);
    std::printf("%-20s %7.2f us for memcpy; the receiver takes %.2f us or %.0f %% more\n", "",
                bareSeconds * 1e6, (copied.Thread() - bareSeconds) * 1e6,
                (copied.Thread() / bareSeconds - 1) * 100);
}

void Measure(TestProducer& producer, uint32_t width, uint32_t height) {
    const std::string size = " " + std::to_string(width) + "x" + std::to_string(height);
    Camera camera(producer, width, height);
    BestOf([&] { return camera.ByCallback(); }).PrintBesideGoals("callback" + size);
    BestOf([&] { return camera.OnLoan(); }).PrintBesideGoals("loan" + size);
    MeasureCopies(camera, size);
}

}  // namespace

int main() {
    TestProducer producer(OV_BENCH_STAGE "/KwTL.cti");
    BestOf(&BareHandOver).Print("bare hand-over");
    Measure(producer, 640, 480);
    Measure(producer, 4096, 3000);
}
