#include "gige/stream/PacketSizeSearch.h"

#include <array>

namespace OvGige {
namespace {

using std::chrono::milliseconds;

/// Sizes are multiples of it: some cameras refuse others.
constexpr size_t kStep = 16;
/// What larger packets save below this difference isn't worth a test.
constexpr size_t kWorthwhile = 128;
constexpr size_t kLeastPacketSize = 576;

/// Some cameras take their time for a test packet.
constexpr std::array kPatience{milliseconds(10), milliseconds(50), milliseconds(300)};

std::optional<size_t> Try(size_t size, const TestPacket& test) {
    for (const milliseconds patience : kPatience) {
        if (const auto came = test(size, patience)) {
            return came;
        }
    }
    return {};
}

}  // namespace

std::optional<size_t> FindPacketSize(size_t largest, const TestPacket& test) {
    size_t tooLarge = largest / kStep * kStep;
    if (const auto came = Try(tooLarge, test)) {
        return came;
    }
    std::optional<size_t> best;
    for (const size_t size : {kUsualPacketSize / kStep * kStep, kLeastPacketSize}) {
        if (!best && size < tooLarge) {
            best = Try(size, test);
            tooLarge = best ? tooLarge : size;
        }
    }
    while (best && tooLarge > *best + kWorthwhile) {
        const size_t size = (*best + tooLarge) / 2 / kStep * kStep;
        const auto came = Try(size, test);
        // A camera that rounds down to what is known makes no progress.
        if (came && *came > *best) {
            best = came;
        } else {
            tooLarge = size;
        }
    }
    return best;
}

}  // namespace OvGige
