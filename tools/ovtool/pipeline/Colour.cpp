#include "pipeline/Colour.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "support/Error.h"

namespace {

/// What 1.0 is in the tables, which turn 8 bits into 12.
constexpr double kUnit = 16;

int16_t Entry(double coefficient, size_t value) {
    using Limits = std::numeric_limits<int16_t>;
    const double product = std::round(coefficient * kUnit * static_cast<double>(value));
    return static_cast<int16_t>(std::clamp<double>(product, Limits::min(), Limits::max()));
}

/// Fetches a tone record by one of the getters that tell its size.
template <class Getter>
std::vector<uint32_t> ToneRecord(Getter get, const char* what) {
    int32_t size = 0;
    CheckImage(get(nullptr, &size), what);
    std::vector<uint32_t> record(static_cast<size_t>(size) / sizeof(uint32_t));
    CheckImage(get(record.data(), &size), what);
    return record;
}

}  // namespace

ColourRecord::ColourRecord(const Matrix& matrix, const Ratios& gains) {
    m_record.lock = m_mutex.native_handle();
    for (size_t k = 0; k < matrix.size(); ++k) {
        const double coefficient = matrix[k] * gains[k % gains.size()];
        for (size_t value = 0; value < 256; ++value) {
            m_record.table[k][value] = Entry(coefficient, value);
        }
    }
}

Ratios MeasureBalance(const std::vector<uint8_t>& pixels, int32_t width, int32_t height,
                      QyChannelOrder order) {
    Ratios gains{};
    CheckImage(
        QyGetWhiteBalanceRatio(pixels.data(), width, height, &gains[0], &gains[1], &gains[2]),
        "measure the white balance");
    if (order == QY_ORDER_BGR) {
        std::swap(gains[0], gains[2]);
    }
    return gains;
}

std::vector<uint32_t> GammaRecord(double gamma) {
    return ToneRecord(
        [gamma](uint32_t* record, int32_t* size) { return QyGetGammatLut(record, size, gamma); },
        "make a gamma table");
}

std::vector<uint32_t> ContrastRecord(int32_t contrast) {
    return ToneRecord(
        [contrast](uint32_t* record, int32_t* size) {
            return QyGetContrastLut(contrast, record, size);
        },
        "make a contrast table");
}

std::vector<uint8_t> ToneTable(const PipelineOptions& options) {
    if (!options.brightness && !options.contrast && !options.gamma) {
        return {};
    }
    std::vector<uint8_t> table(256);
    auto size = static_cast<uint16_t>(table.size());
    CheckImage(QyGetLut(options.contrast.value_or(0), options.brightness.value_or(0), table.data(),
                        &size, options.gamma.value_or(1)),
               "make a tone table");
    return table;
}
