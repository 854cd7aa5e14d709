#pragma once
/// Conversions of raw formats with the widest vectors that the machine has.

#include <cstddef>
#include <cstdint>

#include "support/WayOfWriting.h"
#include "support/Word.h"

namespace QyConvert {

using QySample::Word;

/// Unpacks two samples of 12 bits from every three bytes.
void Unpack12(const uint8_t* src, Word* dst, size_t pairs, const QyWriting::Machine& machine);
/// Unpacks three samples of 10 bits from every 32-bit word, fewer from the last one.
void Unpack10(const uint8_t* src, Word* dst, size_t samples, const QyWriting::Machine& machine);
/// Keeps eight bits of each sample, from bit `shift` on. Samples with higher bits become
/// 255. In place allowed.
void Reduce(const Word* src, uint8_t* dst, size_t samples, int shift,
            const QyWriting::Machine& machine);

}  // namespace QyConvert
