// Conversions of pixel formats in whole vectors, compiled once for each instruction set.

#include "convert/ConvertVector.h"

#include <algorithm>

#include "support/InstructionSets.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "convert/ConvertVector.cpp"
#include <hwy/cache_control.h>
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace QyConvert {
namespace HWY_NAMESPACE {

using QyWriting::Machine;
using QyWriting::WayOfWriting;

constexpr int kMask12 = 0xFFF;
constexpr int kMask10 = 0x3FF;
constexpr int kMostByte = 255;
/// Bytes of two unpacked samples.
constexpr size_t kPairBytes = 2 * sizeof(Word);

inline Word LoadWord(const uint8_t* bytes) {
    return Word(bytes[0] | bytes[1] << 8);
}

#if HWY_TARGET == HWY_SCALAR

size_t Unpack12InVectors(const uint8_t* /*src*/, Word* /*dst*/, size_t /*pairs*/,
                         WayOfWriting& /*way*/) {
    return 0;
}

size_t Unpack10InVectors(const uint8_t* /*src*/, Word* /*dst*/, size_t /*samples*/,
                         WayOfWriting& /*way*/) {
    return 0;
}

size_t AlignedByte(const uint8_t* /*dst*/) {
    return 0;
}

size_t ReduceInVectors(const Word* /*src*/, uint8_t* /*dst*/, size_t begin, size_t /*samples*/,
                       int /*shift*/, WayOfWriting& /*way*/) {
    return begin;
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

HWY_INLINE uint8_t* BytesAt(Word* dst) {
    return static_cast<uint8_t*>(static_cast<void*>(dst));
}

/// Stores vectors through the caches.
struct Through {
    static HWY_INLINE void Store(hn::Vec<Bytes> v, uint8_t* dst) { hn::StoreU(v, Bytes(), dst); }
};

/// The same past the caches. The address is aligned.
struct Past {
    static HWY_INLINE void Store(hn::Vec<Bytes> v, uint8_t* dst) { hn::Stream(v, Bytes(), dst); }
};

template <class Way>
HWY_INLINE void StoreWords(Way way, hn::Vec<Words> words, Word* dst) {
    way.Store(hn::BitCast(Bytes(), words), BytesAt(dst));
}

/// Calls `at(way, i)` in steps from `begin` on, each of which stores so many bytes to aligned
/// addresses, as long as `fits(i)`. Returns where it ends.
template <class Fits, class At>
HWY_INLINE size_t ForEachStep(WayOfWriting& choice, size_t begin, size_t step, size_t stepBytes,
                              const Fits& fits, const At& at) {
    constexpr size_t kPartBytes = size_t{8} << 10;
    const size_t part = kPartBytes / stepBytes * step;
    size_t i = begin;
    const auto put = [&](auto way) HWY_ATTR {
        for (const size_t end = i + part; i < end && fits(i); i += step) {
            at(way, i);
        }
    };
    while (fits(i)) {
        if (choice.IsPast(kPartBytes)) {
            put(Past());
        } else {
            put(Through());
        }
    }
    hwy::FlushStream();
    return i;
}

/// Unpacks pairs as long as vectors read nothing beyond the source, and returns how many. Pairs
/// that are aligned are stored to aligned addresses after the first vector.
size_t Unpack12InVectors(const uint8_t* src, Word* dst, size_t pairs, WayOfWriting& way) {
    const size_t lanes = hn::Lanes(Bytes());
    alignas(kBlockBytes) static constexpr uint8_t kPlaces[kBlockBytes] = {
        0, 1, 1, 2, 3, 4, 4, 5, 6, 7, 7, 8, 9, 10, 10, 11};
    const auto places = hn::LoadDup128(Bytes(), kPlaces);
    const auto blocks = BlockIndices([](size_t block) { return block * 3; });
    const auto mask = hn::Set(Words(), kMask12);
    const size_t step = lanes / kPairBytes;
    const auto fits = [&](size_t pair) { return pair * 3 + lanes <= pairs * 3; };
    const auto unpack = [&](auto store, size_t pair) HWY_ATTR {
        const auto words = Gather(LoadBlocks(src + pair * 3, blocks), places);
        StoreWords(store, hn::OddEven(hn::ShiftRight<4>(words), hn::And(words, mask)),
                   dst + pair * 2);
    };
    if (!fits(0)) {
        return 0;
    }
    unpack(Through(), 0);
    const size_t begin = (lanes - reinterpret_cast<uintptr_t>(dst) % lanes) / kPairBytes;
    return ForEachStep(way, begin, step, lanes, fits, unpack);
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
    template <class Way>
    HWY_INLINE void Unpack(Way way, const uint8_t* src, Word* dst) const {
        const auto words = Gather(LoadBlocks(src + m_first / 3 * 4, m_blocks), m_places);
        StoreWords(way, hn::ShiftRight<6>(hn::Mul(words, m_factors)), dst + m_first);
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
size_t Unpack10InVectors(const uint8_t* src, Word* dst, size_t samples, WayOfWriting& way) {
    const size_t lanes = hn::Lanes(Words());
    const Vector10 first(0);
    const Vector10 second(lanes);
    const Vector10 third(2 * lanes);
    const size_t words = (samples + 2) / 3;
    // The third vector reads the furthest, by the length of a vector.
    const size_t read = 2 * lanes / 3 + hn::Lanes(Quads());
    const auto fits = [&](size_t i) { return i / 3 + read <= words && i + 3 * lanes <= samples; };
    const auto unpack = [&](auto store, size_t i) HWY_ATTR {
        const uint8_t* const in = src + i / 3 * 4;
        first.Unpack(store, in, dst + i);
        second.Unpack(store, in, dst + i);
        third.Unpack(store, in, dst + i);
    };
    if (!fits(0)) {
        return 0;
    }
    unpack(Through(), 0);
    return ForEachStep(way, AlignedSample(dst), 3 * lanes, 3 * hn::Lanes(Bytes()), fits, unpack);
}

/// The first byte that is aligned like a vector.
size_t AlignedByte(const uint8_t* dst) {
    return (0 - reinterpret_cast<uintptr_t>(dst)) % hn::Lanes(Bytes());
}

/// Reduces samples from an aligned one on. No vector overlaps another, because the source may be
/// overwritten.
size_t ReduceInVectors(const Word* src, uint8_t* dst, size_t begin, size_t samples, int shift,
                       WayOfWriting& way) {
    const Bytes d;
    const auto most = hn::Set(Words(), kMostByte);
    const auto reduce = [&](const Word* from) HWY_ATTR {
        const auto bytes =
            hn::LoadU(d, static_cast<const uint8_t*>(static_cast<const void*>(from)));
        return hn::BitCast(d,
                           hn::Min(hn::ShiftRightSame(hn::BitCast(Words(), bytes), shift), most));
    };
    const size_t half = hn::Lanes(Words());
    const auto fits = [&](size_t i) { return i + 2 * half <= samples; };
    return ForEachStep(way, begin, 2 * half, 2 * half, fits, [&](auto store, size_t i) HWY_ATTR {
        const auto lower = reduce(src + i);
        const auto upper = reduce(src + i + half);
        store.Store(hn::ConcatEven(d, upper, lower), dst + i);
    });
}

#endif

/// How a picture of words is to be written: through the caches if no vector of whole samples is
/// aligned.
WayOfWriting WayOf(const Word* dst, size_t samples, size_t alignment, const Machine& machine) {
    const bool canAlign = reinterpret_cast<uintptr_t>(dst) % alignment == 0;
    return {canAlign ? samples * sizeof(Word) : 0, machine};
}

void Unpack12Loop(const uint8_t* src, Word* dst, size_t pairs, const Machine& machine) {
    WayOfWriting way = WayOf(dst, 2 * pairs, kPairBytes, machine);
    for (size_t pair = Unpack12InVectors(src, dst, pairs, way); pair < pairs; ++pair) {
        const uint8_t* const bytes = src + pair * 3;
        dst[pair * 2] = Word(LoadWord(bytes) & kMask12);
        dst[pair * 2 + 1] = Word(LoadWord(bytes + 1) >> 4);
    }
}

void Unpack10Loop(const uint8_t* src, Word* dst, size_t samples, const Machine& machine) {
    WayOfWriting way = WayOf(dst, samples, sizeof(Word), machine);
    for (size_t i = Unpack10InVectors(src, dst, samples, way); i < samples; ++i) {
        const size_t within = i % 3;
        const Word two = LoadWord(src + i / 3 * 4 + within);
        dst[i] = Word(two >> (2 * within) & kMask10);
    }
}

void ReducePlainly(const Word* src, uint8_t* dst, size_t begin, size_t end, int shift) {
    for (size_t i = begin; i < end; ++i) {
        dst[i] = static_cast<uint8_t>(std::min(src[i] >> shift, kMostByte));
    }
}

void ReduceLoop(const Word* src, uint8_t* dst, size_t samples, int shift, const Machine& machine) {
    WayOfWriting way(samples, machine);
    const size_t first = std::min(AlignedByte(dst), samples);
    ReducePlainly(src, dst, 0, first, shift);
    const size_t rest = ReduceInVectors(src, dst, first, samples, shift, way);
    ReducePlainly(src, dst, rest, samples, shift);
}

}  // namespace HWY_NAMESPACE
}  // namespace QyConvert
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace QyConvert {

QY_DISPATCH(Unpack12Loop);
QY_DISPATCH(Unpack10Loop);
QY_DISPATCH(ReduceLoop);

void Unpack12(const uint8_t* src, Word* dst, size_t pairs, const QyWriting::Machine& machine) {
    Unpack12Loop(src, dst, pairs, machine);
}

void Unpack10(const uint8_t* src, Word* dst, size_t samples, const QyWriting::Machine& machine) {
    Unpack10Loop(src, dst, samples, machine);
}

void Reduce(const Word* src, uint8_t* dst, size_t samples, int shift,
            const QyWriting::Machine& machine) {
    ReduceLoop(src, dst, samples, shift, machine);
}

}  // namespace QyConvert
#endif
