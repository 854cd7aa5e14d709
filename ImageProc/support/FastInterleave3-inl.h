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

/// Whether the instruction set has a look-up of lanes of this type across a vector that leaves
/// some lanes of its result as they are. With it, three look-ups compose a vector from three
/// others; one in two registers at once takes three times as long. Better instruction sets have
/// lower numbers.
template <class T>
constexpr bool HasLookup() {
    return (HWY_TARGET == HWY_AVX3 && sizeof(T) == 2) || HWY_TARGET <= HWY_AVX3_DL;
}

#if HWY_TARGET <= HWY_AVX3

/// How vectors are composed from three others: the places of their lanes in a source, and which
/// lanes are those of the second and of the third one.
template <class T>
struct Composition {
    static constexpr size_t kLanes = 64 / sizeof(T);

    alignas(64) std::array<T, kLanes> places[3];
    uint64_t ofSecond[3];
    uint64_t ofThird[3];

    /// @param place  returns where lane `i` of vector `k` is among the lanes of all three
    template <class Place>
    explicit constexpr Composition(const Place& place) : places(), ofSecond(), ofThird() {
        for (size_t k = 0; k < 3; ++k) {
            for (size_t i = 0; i < kLanes; ++i) {
                const size_t at = place(k, i);
                places[k][i] = static_cast<T>(at % kLanes);
                ofSecond[k] |= uint64_t{at / kLanes == 1} << i;
                ofThird[k] |= uint64_t{at / kLanes == 2} << i;
            }
        }
    }
};

template <class T>
inline constexpr Composition<T> kTakeApart([](size_t k, size_t i) { return 3 * i + k; });
template <class T>
inline constexpr Composition<T> kPutTogether([](size_t k, size_t i) {
    const size_t place = k * Composition<T>::kLanes + i;
    return place % 3 * Composition<T>::kLanes + place / 3;
});

/// Composes vector `K` of three vectors.
template <size_t K, class D, class V = hn::Vec<D>>
HWY_INLINE V Composed(D d, const Composition<hn::TFromD<D>>& how, V a, V b, V c) {
    const V places = hn::Load(d, how.places[K].data());
    if constexpr (sizeof(hn::TFromD<D>) == 2) {
        const auto ofSecond = static_cast<__mmask32>(how.ofSecond[K]);
        const auto ofThird = static_cast<__mmask32>(how.ofThird[K]);
        __m512i lanes = _mm512_permutexvar_epi16(places.raw, a.raw);
        lanes = _mm512_mask_permutexvar_epi16(lanes, ofSecond, places.raw, b.raw);
        return V{_mm512_mask_permutexvar_epi16(lanes, ofThird, places.raw, c.raw)};
    } else {
#if HWY_TARGET <= HWY_AVX3_DL
        __m512i lanes = _mm512_permutexvar_epi8(places.raw, a.raw);
        lanes = _mm512_mask_permutexvar_epi8(lanes, how.ofSecond[K], places.raw, b.raw);
        return V{_mm512_mask_permutexvar_epi8(lanes, how.ofThird[K], places.raw, c.raw)};
#else
        return places;
#endif
    }
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
        a = Composed<0>(d, kTakeApart<T>, v0, v1, v2);
        b = Composed<1>(d, kTakeApart<T>, v0, v1, v2);
        c = Composed<2>(d, kTakeApart<T>, v0, v1, v2);
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
        hn::StoreU(Composed<0>(d, kPutTogether<T>, a, b, c), d, to);
        hn::StoreU(Composed<1>(d, kPutTogether<T>, a, b, c), d, to + lanes);
        hn::StoreU(Composed<2>(d, kPutTogether<T>, a, b, c), d, to + 2 * lanes);
#endif
    } else {
        hn::StoreInterleaved3(a, b, c, d, to);
    }
}

}  // namespace HWY_NAMESPACE
}  // namespace QyBlocks
HWY_AFTER_NAMESPACE();

#endif
