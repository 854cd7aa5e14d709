#pragma once
/// Raw formats with the widest vectors that the machine has.

#include <cstddef>
#include <cstdint>

#include "support/Word.h"

namespace QyConvert {

using QySample::Word;

/// Two samples of 12 bits from each three bytes.
void Unpack12(const uint8_t* src, Word* dst, size_t pairs);
/// Three samples of 10 bits from each 32-bit word; the last word may serve fewer.
void Unpack10(const uint8_t* src, Word* dst, size_t samples);
/// Eight bits of each sample, those from `shift` on; 255 for what lies above.
/// In place allowed.
void Reduce(const Word* src, uint8_t* dst, size_t samples, int shift);

}  // namespace QyConvert
