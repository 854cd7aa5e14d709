// What a frame takes from the producer's buffer to the application, beside a bare
// hand-over from thread to thread. The source draws nothing and is paced by
// nothing but free buffers.

#include <time.h>

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <mutex>
#include <new>
#include <string>
#include <thread>
#include <vector>

#include "Measure.h"
#include "OvIAPI.h"
#include "OvTestControl.h"

namespace {

constexpr uint64_t kFrames = 10000;
constexpr uint64_t kWarmUp = 1000;
constexpr uint32_t kTimeOut = 10000;
constexpr int kRounds = 5;

std::atomic<uint64_t> g_allocations{0};

double SecondsOf(clockid_t clock) {
    timespec now{};
    clock_gettime(clock, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

/// What has passed since the start of some frames, and its differences.
struct Spent {
    double wall = SecondsOf(CLOCK_MONOTONIC);
    double process = SecondsOf(CLOCK_PROCESS_CPUTIME_ID);
    double thread = SecondsOf(CLOCK_THREAD_CPUTIME_ID);
    uint64_t allocations = g_allocations;

    Spent Since(const Spent& begin) const {
        Spent spent = *this;
        spent.wall -= begin.wall;
        spent.process -= begin.process;
        spent.thread -= begin.thread;
        spent.allocations -= begin.allocations;
        return spent;
    }
};

/// Takes the times of `kFrames` frames behind a warm-up, on the thread that gets
/// them.
class Stopwatch {
public:
    /// Whether that was the last.
    bool Frame() {
        const uint64_t frame = m_frames++;
        if (frame == kWarmUp) {
            m_begin = Spent();
        } else if (frame == kWarmUp + kFrames) {
            m_spent = Spent().Since(m_begin);
            return true;
        }
        return false;
    }
    const Spent& Get() const { return m_spent; }

private:
    uint64_t m_frames = 0;
    Spent m_begin;
    Spent m_spent;
};

/// The best of the rounds in each figure.
class Best {
public:
    void Add(const Spent& spent) {
        m_wall.push_back(spent.wall);
        m_process.push_back(spent.process);
        m_thread.push_back(spent.thread);
        m_allocations.push_back(static_cast<double>(spent.allocations));
    }
    void Print(const std::string& name) const {
        std::printf("%-34s %9.0f frames/s  CPU %6.2f us/frame  receiver %7.2f us  allocations %g\n",
                    name.c_str(), kFrames / Least(m_wall), Least(m_process) / kFrames * 1e6,
                    Least(m_thread) / kFrames * 1e6, Least(m_allocations));
    }

private:
    static double Least(const std::vector<double>& values) {
        return *std::min_element(values.begin(), values.end());
    }
    std::vector<double> m_wall;
    std::vector<double> m_process;
    std::vector<double> m_thread;
    std::vector<double> m_allocations;
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

/// Five slots that go round between two threads by a lock and two conditions:
/// what any hand-over costs.
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
    Stopwatch watch;
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
        return Pull([this] {
            OV_FRAME_BUFFER* frame = nullptr;
            Check(OVDQBuf(m_handle, &frame, kTimeOut), "OVDQBuf");
            Check(OVQBuf(m_handle, frame), "OVQBuf");
        });
    }

    Spent ByCopy(uint8_t* memory) {
        return Pull([this, memory] {
            OV_FRAME_DATA frame{};
            frame.pImgBuf = memory;
            Check(OVGetImage(m_handle, &frame, kTimeOut), "OVGetImage");
        });
    }

private:
    struct Receiver {
        Stopwatch watch;
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
    Spent Pull(const Take& take) {
        Start();
        Stopwatch watch;
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
void Report(const std::string& name, const Run& run, int rounds = kRounds) {
    Best best;
    for (int round = 0; round < rounds; ++round) {
        best.Add(run());
    }
    best.Print(name);
}

/// CPU time of the copy alone: frames go round in five buffers, as with a camera.
double CopyMicroseconds(size_t size) {
    constexpr size_t kBuffers = 5;
    constexpr int kCopies = 50;
    const std::vector<std::vector<uint8_t>> sources(kBuffers, std::vector<uint8_t>(size, 1));
    std::vector<uint8_t> target(size);
    double best = std::numeric_limits<double>::max();
    for (int round = 0; round < kRounds; ++round) {
        const Spent begin;
        for (size_t copy = 0; copy < kCopies; ++copy) {
            std::memcpy(target.data(), sources[copy % kBuffers].data(), size);
            Keep(target.data());
        }
        best = std::min(best, Spent().Since(begin).thread);
    }
    return best / kCopies * 1e6;
}

void Measure(TestProducer& producer, uint32_t width, uint32_t height) {
    const std::string size = " " + std::to_string(width) + "x" + std::to_string(height);
    Camera camera(producer, width, height);
    std::vector<uint8_t> memory(camera.Payload());
    Report("callback" + size, [&] { return camera.ByCallback(); });
    Report("loan" + size, [&] { return camera.OnLoan(); });
    Report(
        "copy" + size, [&] { return camera.ByCopy(memory.data()); }, 1);
    std::printf("%-34s %9.2f us\n", ("memcpy" + size).c_str(), CopyMicroseconds(memory.size()));
}

}  // namespace

// Counts what every library of the process allocates.
void* operator new(size_t size) {
    ++g_allocations;
    if (void* const memory = std::malloc(size == 0 ? 1 : size)) {
        return memory;
    }
    throw std::bad_alloc();
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, size_t /*size*/) noexcept {
    std::free(memory);
}

int main() {
    TestProducer producer(OV_BENCH_STAGE "/KwTL.cti");
    Report("bare hand-over", &BareHandOver);
    Measure(producer, 640, 480);
    Measure(producer, 4096, 3000);
}
