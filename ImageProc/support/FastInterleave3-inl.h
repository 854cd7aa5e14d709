// Loads and stores pixels of three samples. Included once for each instruction set, within
// foreach_target.

#if defined(QY_FAST_INTERLEAVE3_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef QY_FAST_INTERLEAVE3_INL_H
#undef QY_FAST_INTERLEAVE3_INL_H
#else
#define QY_FAST_INTERLEAVE3_INL_H
#endif

#include <hwy/highway.h>

#include <array>

HWY_BEFORE_NAMESPACE();
namespace QyBlocks {
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

/// Whether the instruction set has a look-up of lanes of this type in two registers at
/// once. With it, two look-ups compose each of three vectors from three others. Better
/// instruction sets have lower numbers.
template <class T>
constexpr bool HasLookup() {
    return (HWY_TARGET == HWY_AVX3 && sizeof(T) == 2) || HWY_TARGET <= HWY_AVX3_DL;
}

#if HWY_TARGET <= HWY_AVX3

/// Tables that compose vectors from three others: the first look-up takes lanes of the
/// first two, the second one lanes of its result and of the third.
template <class T>
struct InterleaveTables {
    static constexpr size_t kLanes = 64 / sizeof(T);
    using Table = std::array<T, kLanes>;

    alignas(64) Table first[3];
    alignas(64) Table second[3];

    /// @param place  returns where lane `i` of vector `k` is among the lanes of all three
    template <class Place>
    explicit constexpr InterleaveTables(const Place& place) : first(), second() {
        for (size_t k = 0; k < 3; ++k) {
            for (size_t i = 0; i < kLanes; ++i) {
                const size_t at = place(k, i);
                first[k][i] = static_cast<T>(at % (2 * kLanes));
                second[k][i] = static_cast<T>(at < 2 * kLanes ? i : at - kLanes);
            }
        }
    }
};

template <class T>
inline constexpr InterleaveTables<T> kTakeApart([](size_t k, size_t i) { return 3 * i + k; });
template <class T>
inline constexpr InterleaveTables<T> kPutTogether([](size_t k, size_t i) {
    const size_t place = k * InterleaveTables<T>::kLanes + i;
    return place % 3 * InterleaveTables<T>::kLanes + place / 3;
});

template <class D, class V = hn::Vec<D>>
HWY_INLINE V Among(D d, V a, V b, const hn::TFromD<D>* places) {
    const V index = hn::Load(d, places);
    if constexpr (sizeof(hn::TFromD<D>) == 2) {
        return V{_mm512_permutex2var_epi16(a.raw, index.raw, b.raw)};
    } else {
#if HWY_TARGET <= HWY_AVX3_DL
        return V{_mm512_permutex2var_epi8(a.raw, index.raw, b.raw)};
#else
        return index;
#endif
    }
}

/// Composes vector `K` of three vectors.
template <size_t K, class D, class V = hn::Vec<D>>
HWY_INLINE V Arranged(D d, const InterleaveTables<hn::TFromD<D>>& tables, V a, V b, V c) {
    return Among(d, Among(d, a, b, tables.first[K].data()), c, tables.second[K].data());
}

#endif

/// Loads three vectors of pixels, and separates their samples.
template <class D, class V = hn::Vec<D>>
HWY_INLINE void FastLoadInterleaved3(D d, const hn::TFromD<D>* from, V& a, V& b, V& c) {
    using T = hn::TFromD<D>;
    if constexpr (HasLookup<T>()) {
#if HWY_TARGET <= HWY_AVX3
        const size_t lanes = hn::Lanes(d);
        const V v0 = hn::LoadU(d, from);
        const V v1 = hn::LoadU(d, from + lanes);
        const V v2 = hn::LoadU(d, from + 2 * lanes);
        a = Arranged<0>(d, kTakeApart<T>, v0, v1, v2);
        b = Arranged<1>(d, kTakeApart<T>, v0, v1, v2);
        c = Arranged<2>(d, kTakeApart<T>, v0, v1, v2);
#endif
    } else {
        hn::LoadInterleaved3(d, from, a, b, c);
    }
}

/// The same, into the members of a record. A record without values isn't made: the compiler
/// writes its constructor for the plainest instruction set, into which those of arm64's
/// vectors can't be inlined.
template <class Record, class D>
HWY_INLINE Record FastLoadInterleaved3Into(D d, const hn::TFromD<D>* from) {
    hn::Vec<D> a;
    hn::Vec<D> b;
    hn::Vec<D> c;
    FastLoadInterleaved3(d, from, a, b, c);
    return Record{a, b, c};
}

/// Stores three vectors of samples as pixels.
template <class D, class V = hn::Vec<D>>
HWY_INLINE void FastStoreInterleaved3(V a, V b, V c, D d, hn::TFromD<D>* to) {
    using T = hn::TFromD<D>;
    if constexpr (HasLookup<T>()) {
#if HWY_TARGET <= HWY_AVX3
        const size_t lanes = hn::Lanes(d);
        hn::StoreU(Arranged<0>(d, kPutTogether<T>, a, b, c), d, to);
        hn::StoreU(Arranged<1>(d, kPutTogether<T>, a, b, c), d, to + lanes);
        hn::StoreU(Arranged<2>(d, kPutTogether<T>, a, b, c), d, to + 2 * lanes);
#endif
    } else {
        hn::StoreInterleaved3(a, b, c, d, to);
    }
}

}  // namespace HWY_NAMESPACE
}  // namespace QyBlocks
HWY_AFTER_NAMESPACE();

#endif
