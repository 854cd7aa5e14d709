#pragma once
/// The instruction sets that the loops over whole vectors are compiled for, and the choice among
/// them. It is included before the vector library's headers and takes the place of their own
/// choice, which lies in a binary that measures the clock whenever a program is loaded.

#ifdef HWY_ARCH_X86
#error "support/InstructionSets.h must be included before the vector library"
#endif

// A table of 256 bytes fits the registers of AVX3_DL.
#define HWY_WANT_AVX3_DL
// No loop encrypts, and many a small computer has SSE4 without these instructions.
#define HWY_DISABLE_PCLMUL_AES
// What the headers assert in debug builds ends in the binary.
#define HWY_IS_DEBUG_BUILD 0

// Each set is a sixth of the code and of the time to compile it. Left out are SSSE3, whose
// few processors use the set below; what differs from a kept set only in encryption and short
// floats; and vectors whose size the compiler doesn't know, which can be neither members nor
// captured.
#define QY_NEON (HWY_NEON_WITHOUT_AES ? HWY_NEON_WITHOUT_AES : HWY_NEON)
#define QY_KEPT_SETS \
    (HWY_AVX3_DL | HWY_AVX3 | HWY_AVX2 | HWY_SSE4 | HWY_SSE2 | QY_NEON | HWY_EMU128 | HWY_SCALAR)
#define HWY_DISABLED_TARGETS (~QY_KEPT_SETS)

#include <hwy/detect_targets.h>

// Older versions of the vector library don't know these. In the preprocessor's conditions above
// they counted as nothing.
#ifndef HWY_SSE2
#define HWY_SSE2 0LL
#endif
#ifndef HWY_NEON_WITHOUT_AES
#define HWY_NEON_WITHOUT_AES 0LL
#endif

#include <array>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace QyVectors {

/// Best first. The baseline is what the compiler may use for everything.
enum class InstructionSet : size_t { Avx512Dl, Avx512, Avx2, Sse4, Baseline };
constexpr size_t kInstructionSets = 5;

/// The name in the vector library.
const char* NameOf(InstructionSet set);

/// Whether the loops are compiled for a set, and the machine and its system have it.
bool IsAvailable(InstructionSet set);

/// The best set that is available.
InstructionSet BestSet();

/// The set whose loops are called: the best one, unless Choose() was called.
InstructionSet ChosenSet();

/// Calls the loops of another available set from now on, so that tests can compare them.
void Choose(InstructionSet set);

/// A loop as it was compiled for each set; null where it wasn't.
template <class Function>
struct Variants {
    std::array<Function, kInstructionSets> of;

    template <class... Arguments>
    decltype(auto) operator()(Arguments&&... arguments) const {
        return of[static_cast<size_t>(ChosenSet())](std::forward<Arguments>(arguments)...);
    }
};

}  // namespace QyVectors

/// Defines a function that calls the loop of the same name of the chosen instruction set. Used
/// once in a source, in the namespace that holds those of the sets.
#define QY_DISPATCH(loop)                                                           \
    constexpr QyVectors::Variants<decltype(&HWY_STATIC_DISPATCH(loop))> loop {      \
        {                                                                           \
            HWY_CHOOSE_AVX3_DL(loop), HWY_CHOOSE_AVX3(loop), HWY_CHOOSE_AVX2(loop), \
                HWY_CHOOSE_SSE4(loop), &HWY_STATIC_DISPATCH(loop)                   \
        }                                                                           \
    }
