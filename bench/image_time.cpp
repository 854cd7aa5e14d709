#include "image_time.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstring>
#include <functional>
#include <iterator>
#include <stdexcept>
#include <string>
#include <thread>

#include "Measure.h"
#include "image_scene.h"

namespace ImageBench {

namespace {

constexpr double kMillisecond = 1e6;

/// A row's frame, and memory for its result.
class Frame {
public:
    Frame(const Row& row, Size size)
        : m_row(row),
          m_size(size),
          m_copied(Bytes((row.read + row.written) / 2)),
          m_source(MakeScene(row.read, size)),
          m_destination(std::max(Bytes(row.written), m_copied)) {
        m_source.resize(std::max(m_source.size(), m_copied));
    }

    /// Prepares a call; isn't timed.
    void Prepare() {
        if (m_row.isInPlace) {
            std::memcpy(m_destination.data(), m_source.data(), Bytes(m_row.written));
        }
    }
    void Call(Run run) {
        run(m_source.data(), m_destination.data(), m_size.width, m_size.height);
        Keep(m_destination.data());
    }
    void Copy() {
        std::memcpy(m_destination.data(), m_source.data(), m_copied);
        Keep(m_destination.data());
    }
    std::vector<uint8_t> Picture(Run run) {
        std::fill(m_destination.begin(), m_destination.end(), uint8_t{0});
        Prepare();
        Call(run);
        return m_destination;
    }

private:
    size_t Bytes(double bits) const {
        return static_cast<size_t>(m_size.width * bits / 8 * m_size.height);
    }

    const Row& m_row;
    Size m_size;
    size_t m_copied;
    std::vector<uint8_t> m_source;
    std::vector<uint8_t> m_destination;
};

void Check(Frame& frame, const Row& row, std::span<const Rival> rivals) {
    const std::vector<uint8_t> picture = frame.Picture(row.run);
    for (const Rival& rival : rivals) {
        if (rival.isExact && frame.Picture(rival.run) != picture) {
            throw std::runtime_error(std::string(rival.name) + " makes another picture than " +
                                     row.name);
        }
    }
}

/// Nanoseconds of a call, on average over a few in a row. Each finds the caches as the one
/// before has left them, so the first one doesn't count; it does if it takes long, since the
/// caches keep nothing of it anyway.
double TakeTurn(Frame& frame, const std::function<void()>& call) {
    constexpr int kCalls = 3;
    constexpr double kLong = 30 * kMillisecond;
    const auto once = [&] {
        frame.Prepare();
        return Nanoseconds(1, call, 1);
    };
    const double first = once();
    if (first > kLong) {
        return first;
    }
    double spent = 0;
    for (int i = 0; i < kCalls; ++i) {
        spent += once();
    }
    return spent / kCalls;
}

/// Nanoseconds of some work in time of day.
double Elapsed(const std::function<void()>& work) {
    const auto begin = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::nano>(std::chrono::steady_clock::now() - begin)
        .count();
}

}  // namespace

Times TimeRow(const Row& row, std::span<const Rival> rivals, Size size, int rounds) {
    Frame frame(row, size);
    Check(frame, row, rivals);
    std::vector<double> ofRow;
    std::vector<double> ofCopy;
    std::vector<std::vector<double>> ofRivals(rivals.size());
    for (int round = 0; round < rounds; ++round) {
        ofRow.push_back(TakeTurn(frame, [&] { frame.Call(row.run); }));
        ofCopy.push_back(TakeTurn(frame, [&] { frame.Copy(); }));
        for (size_t i = 0; i < rivals.size(); ++i) {
            ofRivals[i].push_back(TakeTurn(frame, [&] { frame.Call(rivals[i].run); }));
        }
    }
    Times times{Median(ofRow), Median(ofCopy), {}};
    std::transform(ofRivals.begin(), ofRivals.end(), std::back_inserter(times.rivals), Median);
    return times;
}

double TimeSharedRecord(Size size, int rounds) {
    constexpr int kPictures = 4;
    const Row row = SharedRecordRow();
    std::array<Frame, 2> frames = {Frame(row, size), Frame(row, size)};
    const auto work = [&row](Frame& frame) {
        for (int i = 0; i < kPictures; ++i) {
            frame.Call(row.run);
        }
    };
    std::vector<double> ratios;
    for (int round = 0; round < rounds; ++round) {
        const double one = Elapsed([&] { work(frames[0]); });
        const double two = Elapsed([&] {
            std::thread other([&] { work(frames[1]); });
            work(frames[0]);
            other.join();
        });
        ratios.push_back(two / one);
    }
    return Median(std::move(ratios));
}

}  // namespace ImageBench
