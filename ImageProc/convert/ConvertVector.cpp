// Conversions of pixel formats in whole vectors, compiled once for each instruction set.

#include "convert/ConvertVector.h"

#include <algorithm>

#include "support/InstructionSets.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "convert/ConvertVector.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace QyConvert {
namespace HWY_NAMESPACE {

constexpr int kMask12 = 0xFFF;
constexpr int kMask10 = 0x3FF;
constexpr int kMostByte = 255;

inline Word LoadWord(const uint8_t* bytes) {
    return Word(bytes[0] | bytes[1] << 8);
}

#if HWY_TARGET == HWY_SCALAR

size_t Unpack12InVectors(const uint8_t* /*src*/, Word* /*dst*/, size_t /*pairs*/) {
    return 0;
}

size_t Unpack10InVectors(const uint8_t* /*src*/, Word* /*dst*/, size_t /*samples*/) {
    return 0;
}

size_t ReduceInVectors(const Word* /*src*/, uint8_t* /*dst*/, size_t /*samples*/, int /*shift*/) {
    return 0;
}

#else

namespace hn = hwy::HWY_NAMESPACE;

using Bytes = hn::ScalableTag<uint8_t>;
using Words = hn::Repartition<uint16_t, Bytes>;
using Quads = hn::Repartition<uint32_t, Bytes>;

constexpr size_t kBlockBytes = 16;
constexpr size_t kMostBytes = HWY_MAX_BYTES;

/// Loads a vector from `src` and arranges its 32-bit words by `indices`.
template <class Indices>
HWY_INLINE hn::Vec<Bytes> LoadBlocks(const uint8_t* src, const Indices& indices) {
    const Bytes d;
    return hn::BitCast(d, hn::TableLookupLanes(hn::BitCast(Quads(), hn::LoadU(d, src)), indices));
}

/// Indices that fill each block of 16 bytes with four words of 32 bits that follow one another,
/// from word `first(block)` on.
template <class First>
HWY_INLINE auto BlockIndices(const First& first) {
    alignas(kMostBytes) int32_t quads[kMostBytes / sizeof(int32_t)];
    for (size_t lane = 0; lane < hn::Lanes(Quads()); ++lane) {
        quads[lane] = static_cast<int32_t>(first(lane / 4) + lane % 4);
    }
    return hn::SetTableIndices(Quads(), quads);
}

HWY_INLINE hn::Vec<Words> Gather(hn::Vec<Bytes> blocks, hn::Vec<Bytes> places) {
    return hn::BitCast(Words(), hn::TableLookupBytes(blocks, places));
}

HWY_INLINE void StoreWords(hn::Vec<Words> words, Word* dst) {
    hn::StoreU(hn::BitCast(Bytes(), words), Bytes(),
               static_cast<uint8_t*>(static_cast<void*>(dst)));
}

/// Unpacks pairs as long as vectors read nothing beyond the source, and returns how many.
size_t Unpack12InVectors(const uint8_t* src, Word* dst, size_t pairs) {
    const size_t lanes = hn::Lanes(Bytes());
    alignas(kBlockBytes) static constexpr uint8_t kPlaces[kBlockBytes] = {
        0, 1, 1, 2, 3, 4, 4, 5, 6, 7, 7, 8, 9, 10, 10, 11};
    const auto places = hn::LoadDup128(Bytes(), kPlaces);
    const auto blocks = BlockIndices([](size_t block) { return block * 3; });
    const auto mask = hn::Set(Words(), kMask12);
    const size_t step = lanes / 4;
    size_t pair = 0;
    for (; pair * 3 + lanes <= pairs * 3; pair += step) {
        const auto words = Gather(LoadBlocks(src + pair * 3, blocks), places);
        StoreWords(hn::OddEven(hn::ShiftRight<4>(words), hn::And(words, mask)), dst + pair * 2);
    }
    return pair;
}

/// Where the 10-bit samples of a vector are: the two bytes of each within its block, and the
/// power of two whose product moves the sample to the top of their 16 bits.
struct Places10 {
    static constexpr size_t kBlockWords = kBlockBytes / 2;

    alignas(kMostBytes) uint8_t bytes[kMostBytes];
    alignas(kMostBytes) uint16_t factors[kMostBytes / sizeof(uint16_t)];

    /// @param before  samples of the vector's first 32-bit word that aren't in it
    explicit Places10(size_t before) {
        for (size_t lane = 0; lane < hn::Lanes(Words()); ++lane) {
            const size_t first = (before + lane / kBlockWords * kBlockWords) / 3;
            const size_t sample = before + lane;
            const size_t place = (sample / 3 - first) * 4 + sample % 3;
            bytes[lane * 2] = static_cast<uint8_t>(place);
            bytes[lane * 2 + 1] = static_cast<uint8_t>(place + 1);
            factors[lane] = static_cast<uint16_t>(64U >> (2 * (sample % 3)));
        }
    }
};

/// Where the blocks of such a vector begin.
HWY_INLINE auto BlocksOf10(size_t before) {
    return BlockIndices(
        [before](size_t block) { return (before + block * Places10::kBlockWords) / 3; });
}

/// Unpacks the 10-bit samples of one vector.
class Vector10 {
public:
    /// @param first  the vector's first sample, counted from the start of a 32-bit word
    explicit HWY_INLINE Vector10(size_t first) : Vector10(first, Places10(first % 3)) {}

    /// @param src, dst  where samples from 0 on are
    HWY_INLINE void Unpack(const uint8_t* src, Word* dst) const {
        const auto words = Gather(LoadBlocks(src + m_first / 3 * 4, m_blocks), m_places);
        StoreWords(hn::ShiftRight<6>(hn::Mul(words, m_factors)), dst + m_first);
    }

private:
    HWY_INLINE Vector10(size_t first, const Places10& places)
        : m_first(first),
          m_blocks(BlocksOf10(first % 3)),
          m_places(hn::Load(Bytes(), places.bytes)),
          m_factors(hn::Load(Words(), places.factors)) {}

    size_t m_first;
    decltype(BlocksOf10(0)) m_blocks;
    hn::Vec<Bytes> m_places;
    hn::Vec<Words> m_factors;
};

/// The first sample that begins a 32-bit word and whose place in memory is aligned like a
/// vector; three vectors of samples if no place is.
HWY_INLINE size_t AlignedSample(const Word* dst) {
    constexpr uintptr_t kInverseOfThree = 0xAAAAAAAB;
    const size_t lanes = hn::Lanes(Words());
    const auto address = reinterpret_cast<uintptr_t>(dst);
    if (address % 2 != 0) {
        return 3 * lanes;
    }
    return 3 * ((0 - address / 2) * kInverseOfThree % lanes);
}

/// Three vectors of samples are whole 32-bit words. Stores are aligned: each would else write to
/// two cache lines.
size_t Unpack10InVectors(const uint8_t* src, Word* dst, size_t samples) {
    const size_t lanes = hn::Lanes(Words());
    const Vector10 first(0);
    const Vector10 second(lanes);
    const Vector10 third(2 * lanes);
    const size_t words = (samples + 2) / 3;
    // The third vector reads the furthest, by the length of a vector.
    const size_t read = 2 * lanes / 3 + hn::Lanes(Quads());
    const auto fits = [&](size_t i) { return i / 3 + read <= words && i + 3 * lanes <= samples; };
    const auto unpack = [&](size_t i) HWY_ATTR {
        const uint8_t* const in = src + i / 3 * 4;
        first.Unpack(in, dst + i);
        second.Unpack(in, dst + i);
        third.Unpack(in, dst + i);
    };
    if (!fits(0)) {
        return 0;
    }
    unpack(0);
    size_t i = AlignedSample(dst);
    for (; fits(i); i += 3 * lanes) {
        unpack(i);
    }
    return i;
}

size_t ReduceInVectors(const Word* src, uint8_t* dst, size_t samples, int shift) {
    const Bytes d;
    const auto most = hn::Set(Words(), kMostByte);
    const auto reduce = [&](const Word* from) HWY_ATTR {
        const auto bytes =
            hn::LoadU(d, static_cast<const uint8_t*>(static_cast<const void*>(from)));
        return hn::BitCast(d,
                           hn::Min(hn::ShiftRightSame(hn::BitCast(Words(), bytes), shift), most));
    };
    const size_t half = hn::Lanes(Words());
    size_t i = 0;
    for (; i + 2 * half <= samples; i += 2 * half) {
        const auto lower = reduce(src + i);
        const auto upper = reduce(src + i + half);
        hn::StoreU(hn::ConcatEven(d, upper, lower), d, dst + i);
    }
    return i;
}

#endif

void Unpack12Loop(const uint8_t* src, Word* dst, size_t pairs) {
    for (size_t pair = Unpack12InVectors(src, dst, pairs); pair < pairs; ++pair) {
        const uint8_t* const bytes = src + pair * 3;
        dst[pair * 2] = Word(LoadWord(bytes) & kMask12);
        dst[pair * 2 + 1] = Word(LoadWord(bytes + 1) >> 4);
    }
}

void Unpack10Loop(const uint8_t* src, Word* dst, size_t samples) {
    for (size_t i = Unpack10InVectors(src, dst, samples); i < samples; ++i) {
        const size_t within = i % 3;
        const Word two = LoadWord(src + i / 3 * 4 + within);
        dst[i] = Word(two >> (2 * within) & kMask10);
    }
}

void ReduceLoop(const Word* src, uint8_t* dst, size_t samples, int shift) {
    for (size_t i = ReduceInVectors(src, dst, samples, shift); i < samples; ++i) {
        dst[i] = static_cast<uint8_t>(std::min(src[i] >> shift, kMostByte));
    }
}

}  // namespace HWY_NAMESPACE
}  // namespace QyConvert
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace QyConvert {

QY_DISPATCH(Unpack12Loop);
QY_DISPATCH(Unpack10Loop);
QY_DISPATCH(ReduceLoop);

void Unpack12(const uint8_t* src, Word* dst, size_t pairs) {
    Unpack12Loop(src, dst, pairs);
}

void Unpack10(const uint8_t* src, Word* dst, size_t samples) {
    Unpack10Loop(src, dst, samples);
}

void Reduce(const Word* src, uint8_t* dst, size_t samples, int shift) {
    ReduceLoop(src, dst, samples, shift);
}

}  // namespace QyConvert
#endif
