// How long a frame takes from the producer's buffer to the application, compared to a
// bare hand-over between threads: in a flood, whose source draws nothing and only waits for free
// buffers, and at the pace of cameras.

#include <sys/resource.h>
#include <time.h>

#include <algorithm>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <optional>
#include <stop_token>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "BareProducer.h"
#include "CountingMemory.h"
#include "Goals.h"
#include "Measure.h"
#include "OvIAPI.h"
#include "OvTestControl.h"
#include "Pace.h"

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

/// The medians of all rounds, per frame.
class Medians {
public:
    explicit Medians(uint64_t frames) : m_frames(static_cast<double>(frames)) {}

    void Add(const Spent& spent) { m_rounds.push_back(spent); }
    double Thread() const {
        return Of([](const Spent& spent) { return spent.thread; });
    }

    void Print(const std::string& name) const {
        std::printf(
            "%-20s %7.0f frames/s  CPU %6.2f us/frame  receiver %6.2f us  switches %5.2f"
            "  allocations %g\n",
            name.c_str(), 1 / Wall(), Process() * 1e6, Thread() * 1e6,
            Of([](const Spent& spent) { return spent.switches; }), Allocations());
    }
    void PrintBesideGoals(const std::string& name) const {
        Print(name);
        std::printf(
            "%-20s %7.0f %s      %6.2f us %s           %6.2f us %s                   0 %s\n",
            "  goal", kGoalRate, Met(1 / Wall() >= kGoalRate), kGoalProcess * 1e6,
            Met(Process() <= kGoalProcess), kGoalThread * 1e6, Met(Thread() <= kGoalThread),
            Met(Allocations() == 0));
    }

private:
    static const char* Met(bool met) { return met ? "met   " : "missed"; }

    double Wall() const {
        return Of([](const Spent& spent) { return spent.wall; });
    }
    double Process() const {
        return Of([](const Spent& spent) { return spent.process; });
    }
    /// Of a whole round.
    double Allocations() const {
        return m_frames *
               Of([](const Spent& spent) { return static_cast<double>(spent.allocations); });
    }
    template <class Figure>
    double Of(const Figure& figure) const {
        std::vector<double> values;
        for (const Spent& round : m_rounds) {
            values.push_back(figure(round) / m_frames);
        }
        return Median(std::move(values));
    }

    double m_frames;
    std::vector<Spent> m_rounds;
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
        return Pull(kFrames, [this] { TakeOnLoan(); });
    }

    /// What one frame costs when they come at that pace.
    FrameCost OnLoanAtPace(const Placement& placement, unsigned perSecond, unsigned frames) {
        placement.MoveToOthers();
        Check(OVStreamOn(m_handle), "OVStreamOn");
        const FrameCost cost = MeasureAtPace(
            placement, perSecond, frames, [this] { m_producer.Trigger(0, 0, 1); },
            [this] { TakeOnLoan(); });
        Check(OVStreamOff(m_handle), "OVStreamOff");
        return cost;
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

    void TakeOnLoan() {
        OV_FRAME_BUFFER* frame = nullptr;
        Check(OVDQBuf(m_handle, &frame, kTimeOut), "OVDQBuf");
        Check(OVQBuf(m_handle, frame), "OVQBuf");
    }

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
Medians MediansOf(const Run& run) {
    Medians medians(kFrames);
    for (int round = 0; round < kRounds; ++round) {
        medians.Add(run());
    }
    return medians;
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
    std::vector<double> bareTimes;
    Medians copied(kCopiedFrames);
    for (int round = 0; round < kRounds; ++round) {
        copied.Add(camera.ByCopy(memory.data()));
        bareTimes.push_back(bare.Run());
    }
    const double bareSeconds = Median(std::move(bareTimes));
    copied.Print("copy" + size);
    std::printf("%-20s %7.2f us for memcpy; the receiver takes %.2f us or %.0f %% more\n", "",
                bareSeconds * 1e6, (copied.Thread() - bareSeconds) * 1e6,
                (copied.Thread() / bareSeconds - 1) * 100);
}

void Measure(TestProducer& producer, uint32_t width, uint32_t height) {
    const std::string size = " " + std::to_string(width) + "x" + std::to_string(height);
    Camera camera(producer, width, height);
    MediansOf([&] { return camera.ByCallback(); }).PrintBesideGoals("callback" + size);
    MediansOf([&] { return camera.OnLoan(); }).PrintBesideGoals("loan" + size);
    MeasureCopies(camera, size);
}

/// The same with a lock and a condition alone.
FrameCost BareAtPace(const Placement& placement, unsigned perSecond, unsigned frames) {
    std::mutex mutex;
    std::condition_variable filled;
    unsigned waiting = 0;
    return MeasureAtPace(
        placement, perSecond, frames,
        [&] {
            {
                const std::lock_guard lock(mutex);
                ++waiting;
            }
            filled.notify_one();
        },
        [&] {
            std::unique_lock lock(mutex);
            filled.wait(lock, [&] { return waiting != 0; });
            --waiting;
        });
}

/// A thread that computes all the time beside those of the frames, or none.
class SecondThread {
public:
    SecondThread(const Placement& placement, bool isThere) {
        if (isThere) {
            m_thread = std::jthread([&placement](const std::stop_token& stop) {
                placement.MoveToOthers();
                for (uint64_t number = 1; !stop.stop_requested();) {
                    number = number * 6364136223846793005U + 1;
                    Keep(number);
                }
            });
        }
    }

private:
    std::jthread m_thread;
};

FrameCost MedianCost(const std::vector<FrameCost>& rounds) {
    std::vector<double> seconds;
    std::vector<double> instructions;
    for (const FrameCost& round : rounds) {
        seconds.push_back(round.seconds);
        instructions.push_back(round.instructions.value_or(0));
    }
    FrameCost cost{Median(std::move(seconds)), std::nullopt};
    if (rounds.front().instructions) {
        cost.instructions = Median(std::move(instructions));
    }
    return cost;
}

/// What else there is while frames come at a pace.
struct PaceScene {
    const char* suffix;     ///< of the names of its rows
    bool withSecondThread;  ///< where the other threads are; it computes all the time
    bool inOneQuery;        ///< the producer answers all questions about a frame in one call
    const char* text;
};

constexpr PaceScene kPaceScenes[] = {
    {"", false, false, "nothing else runs"},
    {", one query", false, true, "nothing else runs, the producer answers all in one call"},
    {", busy", true, false, "a second thread computes there all the time"},
};

/// The producer again, for frames that are taken by its own functions.
class BareCamera {
public:
    BareCamera() : m_producer(kFile), m_stream(Prepared(), size_t{640} * 480) {}

    void OfferStack(bool offers) { m_producer.OfferStack(offers ? 1 : 0); }
    FrameCost AtPace(const Placement& placement, unsigned perSecond, unsigned frames) {
        return MeasureAtPace(
            placement, perSecond, frames, [this] { m_producer.Trigger(0, 0, 1); },
            [this] { m_stream.TakeFrame(); });
    }

private:
    // A file of its own, so that it has its own state.
    static constexpr const char* kFile = OV_BENCH_STAGE "/bare/KwTL.cti";

    const char* Prepared() {
        m_producer.Reset();
        m_producer.SetFrame(0, 0, "Draw", 0);
        m_producer.WatchCalls(0);
        return kFile;
    }

    TestProducer m_producer;
    BareStream m_stream;
};

void PrintInstructions(const FrameCost& cost) {
    if (cost.instructions) {
        std::printf("  %-46s %11.0f, without those of the system\n", "    instructions",
                    *cost.instructions);
    } else {
        std::printf("    This system doesn't let a program count instructions.\n");
    }
}

/// Rounds of library, producer and bare hand-over alternate, since the machine's load changes.
void MeasureAtPaces(TestProducer& producer, const Placement& placement, const PaceScene& scene) {
    constexpr int kPaceRounds = 5;
    Goals goals("frame_bench");
    placement.MoveToOthers();
    BareCamera bareCamera;
    bareCamera.OfferStack(scene.inOneQuery);
    Camera camera(producer, 640, 480);
    producer.OfferStack(scene.inOneQuery ? 1 : 0);
    std::printf(
        "A frame on loan beside a bare hand-over, and beside the producer's functions alone;\n"
        "medians of %d rounds, %s;\n%s:\n",
        kPaceRounds, placement.Text().c_str(), scene.text);
    const SecondThread second(placement, scene.withSecondThread);
    for (const unsigned perSecond : {30U, 200U, 1000U}) {
        std::vector<FrameCost> bare;
        std::vector<FrameCost> ofProducer;
        std::vector<FrameCost> loan;
        const unsigned frames = std::max(20U, perSecond / 4);
        for (int round = 0; round < kPaceRounds; ++round) {
            bare.push_back(BareAtPace(placement, perSecond, frames));
            ofProducer.push_back(bareCamera.AtPace(placement, perSecond, frames));
            loan.push_back(camera.OnLoanAtPace(placement, perSecond, frames));
        }
        const FrameCost cost = MedianCost(loan);
        const std::string name = std::to_string(perSecond) + " frames/s" + scene.suffix;
        const auto print = [&](const std::string& row, const std::vector<FrameCost>& reference) {
            goals.Print(row, cost.seconds * 1e6, "us",
                        cost.seconds / MedianCost(reference).seconds);
        };
        print(name, bare);
        print(name + " : its producer", ofProducer);
        PrintInstructions(cost);
    }
}

}  // namespace

int main() {
    TestProducer producer(OV_BENCH_STAGE "/KwTL.cti");
    {
        const Placement placement;
        for (const PaceScene& scene : kPaceScenes) {
            MeasureAtPaces(producer, placement, scene);
        }
    }
    MediansOf(&BareHandOver).Print("bare hand-over");
    Measure(producer, 640, 480);
    Measure(producer, 4096, 3000);
}
