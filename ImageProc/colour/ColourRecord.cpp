// The record of colour correction: its lock, and its coefficients.

#include "colour/ColourRecord.h"

#include <pthread.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <functional>
#include <system_error>

namespace QyColour {

namespace {

pthread_mutex_t* MutexOf(void* lock) {
    return static_cast<pthread_mutex_t*>(lock);
}

}  // namespace

RecordLock::RecordLock(const QyColorCorrectionRecord& record) : m_mutex(record.lock) {
    const int error = m_mutex == nullptr ? EINVAL : pthread_mutex_lock(MutexOf(m_mutex));
    if (error == EOWNERDEAD) {
        // The owner of the lock died while it may have been writing the tables. Nobody
        // can trust them, but unlocking lets other threads fail as well instead of
        // waiting for ever.
        pthread_mutex_unlock(MutexOf(m_mutex));
    }
    if (error != 0) {
        throw std::system_error(error, std::generic_category(), "lock of a colour record");
    }
}

RecordLock::~RecordLock() {
    pthread_mutex_unlock(MutexOf(m_mutex));
}

}  // namespace QyColour

namespace {

constexpr size_t kCount = 9;
constexpr size_t kDiagonal = 3;
using Words = std::array<int32_t, kCount>;

/// Places in the matrix of the array's words: the diagonal comes first.
constexpr std::array<size_t, kCount> kPlaces = {0, 4, 8, 1, 5, 2, 3, 7, 6};
/// Added to the words that aren't on the diagonal, so that they aren't negative.
constexpr int32_t kWordOffset = 256;

/// The matrix at the neutral saturation, in 256ths, in the order of the array.
Words NeutralWords(const QyColorCorrectionRecord& record) {
    const QyColour::RecordLock lock(record);
    Words words{};
    for (size_t i = 0; i < kCount; ++i) {
        words[i] = record.table[kPlaces[i]][1] * 16 + (i < kDiagonal ? 0 : kWordOffset);
    }
    return words;
}

/// What is added to each word at a distance from the neutral saturation in 1024ths.
/// Quotients are truncated towards zero.
Words Shift(int32_t distance) {
    constexpr Words kWeights = {183552, 183552,  183552, -153856, -29952,
                                -29952, -153856, -79616, -103936};
    constexpr int32_t kScale = 1 << 20;
    Words shift{};
    std::transform(kWeights.begin(), kWeights.end(), shift.begin(),
                   [distance](int32_t weight) { return distance * weight / kScale; });
    return shift;
}

Words WordsOf(const QyColorCorrectionRecord& record, int32_t saturation) {
    constexpr int32_t kNeutral = 64;
    // Every row of the matrix computes the lightness.
    constexpr Words kGrey = {77, 150, 29, 406, 285, 285, 333, 406, 333};
    Words words = NeutralWords(record);
    if (saturation == 0) {
        return kGrey;
    }
    const Words shift = Shift((saturation - kNeutral) * 16);
    std::transform(words.begin(), words.end(), shift.begin(), words.begin(), std::plus<>());
    return words;
}

}  // namespace

QY_STATUS QyCalcCCParam(const QyColorCorrectionRecord* record, int16_t saturation,
                        uint16_t* coefficients, uint8_t size) {
    constexpr uint16_t kMostSaturation = 128;
    if (coefficients == nullptr || size != kCount * sizeof *coefficients) {
        return QY_PARAMETER_INVALID;
    }
    if (static_cast<uint16_t>(saturation) > kMostSaturation) {
        return QY_PARAMETER_OUT_OF_BOUND;
    }
    if (record == nullptr) {
        return QY_PARAMETER_INVALID;
    }
    const Words words = WordsOf(*record, saturation);
    std::transform(words.begin(), words.end(), coefficients,
                   [](int32_t word) { return static_cast<uint16_t>(word); });
    return QY_OK;
}
