#pragma once
/// The colour and tone arguments of the image functions.

#include <cstdint>
#include <mutex>
#include <vector>

#include "QyImageProc.h"
#include "pipeline/PipelineOptions.h"

/// A colour record, as a camera's side would fill it, from a matrix and gains
/// that go before it.
class ColourRecord {
public:
    ColourRecord(const Matrix& matrix, const Ratios& gains);

    const QyColorCorrectionRecord* Get() const { return &m_record; }

private:
    std::mutex m_mutex;
    QyColorCorrectionRecord m_record{};
};

/// @param order  of the bytes that the gains are measured on
Ratios MeasureBalance(const std::vector<uint8_t>& pixels, int32_t width, int32_t height,
                      QyChannelOrder order);

std::vector<uint32_t> GammaRecord(double gamma);
std::vector<uint32_t> ContrastRecord(int32_t contrast);

/// The table of bytes for what is given of brightness, contrast and gamma; empty
/// for nothing.
std::vector<uint8_t> ToneTable(const PipelineOptions& options);
