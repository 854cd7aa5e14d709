#include "image_time.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <stdexcept>
#include <string>

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

/// Times several calls in a row, so that each finds the caches as the one before has left
/// them. Functions that take long are called fewer times: the caches keep nothing of them
/// anyway.
/// @return nanoseconds of all calls together together
double TakeTurn(Frame& frame, const std::function<void()>& call, double& best) {
    constexpr int kCalls = 4;
    constexpr double kLong = 30 * kMillisecond;
    double spent = 0;
    for (int i = 0; i < kCalls && spent < kLong; ++i) {
        frame.Prepare();
        const double time = Nanoseconds(1, call, 1);
        best = std::min(best, time);
        spent += time;
    }
    return spent;
}

}  // namespace

void TimeRow(const Row& row, std::span<const Rival> rivals, Size size, Times& times) {
    constexpr int kLeastTurns = 4;
    constexpr double kEnough = 400 * kMillisecond;
    Frame frame(row, size);
    Check(frame, row, rivals);
    times.rivals.resize(rivals.size(), kNever);
    double spent = 0;
    for (int turn = 0; turn < kLeastTurns || spent < kEnough; ++turn) {
        spent += TakeTurn(
            frame, [&] { frame.Call(row.run); }, times.row);
        spent += TakeTurn(
            frame, [&] { frame.Copy(); }, times.copy);
        for (size_t i = 0; i < rivals.size(); ++i) {
            spent += TakeTurn(
                frame, [&] { frame.Call(rivals[i].run); }, times.rivals[i]);
        }
    }
}

}  // namespace ImageBench
