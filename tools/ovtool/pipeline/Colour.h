#pragma once
/// The colour and tone arguments of the image functions.

#include <cstdint>
#include <mutex>
#include <vector>

#include "QyImageProc.h"
#include "pipeline/PipelineOptions.h"

/// A colour record for the image functions: applies the gains, then the matrix.
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

/// A table of 256 entries for those of brightness, contrast and gamma that are set; empty if
/// none is.
std::vector<uint8_t> ToneTable(const PipelineOptions& options);
