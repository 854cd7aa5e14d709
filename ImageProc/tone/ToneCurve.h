#pragma once
/// The tables behind the tone functions: 2^bits words from and to 0 .. 2^bits - 1.
///
/// Bits from 8 to 16 are served, others and values outside their range give
/// QY_PARAMETER_OUT_OF_BOUND, and a failure leaves the table as it was.

#include "QyImageProc.h"

namespace QyTone {

constexpr int kRecordBits = 12;
constexpr size_t kRecordWords = size_t{1} << kRecordBits;

bool IsContrast(int32_t contrast);
bool IsLightness(int32_t lightness);
bool IsGamma(double gamma);

/// An S curve around the fixed middle, or with a negative contrast its opposite.
QY_STATUS MakeContrastTable(int32_t contrast, int32_t bits, uint32_t* table);
/// Lifts the middle or pulls it down.
QY_STATUS MakeLightnessTable(int32_t lightness, int32_t bits, uint32_t* table);
QY_STATUS MakeGammaTable(int32_t bits, uint32_t* table, double gamma);

}  // namespace QyTone
