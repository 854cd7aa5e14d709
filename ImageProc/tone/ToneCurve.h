#pragma once
/// Makes the tables of the tone functions: 2^bits words from 0 to 2^bits - 1.
///
/// `bits` is from 8 to 16. Other numbers and values outside their range return
/// QY_PARAMETER_OUT_OF_BOUND. A failure doesn't change the table.

#include "QyImageProc.h"

namespace QyTone {

constexpr int kRecordBits = 12;
constexpr size_t kRecordWords = size_t{1} << kRecordBits;

bool IsContrast(int32_t contrast);
bool IsLightness(int32_t lightness);
bool IsGamma(double gamma);

/// An S curve around the middle, which doesn't change; for a negative contrast its
/// opposite.
QY_STATUS MakeContrastTable(int32_t contrast, int32_t bits, uint32_t* table);
/// Raises or lowers the middle.
QY_STATUS MakeLightnessTable(int32_t lightness, int32_t bits, uint32_t* table);
QY_STATUS MakeGammaTable(int32_t bits, uint32_t* table, double gamma);

}  // namespace QyTone
