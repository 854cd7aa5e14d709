#include "support/InstructionSets.h"

#include <hwy/targets.h>

#include <atomic>

namespace QyVectors {

namespace {

// What compilers use for a set on their own, and what the loops use of it. The compiler's checks
// know which registers the system saves.
#if HWY_ARCH_X86
bool HasSse4() {
    return __builtin_cpu_supports("ssse3") && __builtin_cpu_supports("sse4.1") &&
           __builtin_cpu_supports("sse4.2") && __builtin_cpu_supports("popcnt");
}

bool HasAvx2() {
    return HasSse4() && __builtin_cpu_supports("avx") && __builtin_cpu_supports("avx2") &&
           __builtin_cpu_supports("bmi") && __builtin_cpu_supports("bmi2") &&
           __builtin_cpu_supports("fma");
}

bool HasAvx512() {
    return HasAvx2() && __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512cd") &&
           __builtin_cpu_supports("avx512vl") && __builtin_cpu_supports("avx512dq") &&
           __builtin_cpu_supports("avx512bw");
}

bool HasAvx512Dl() {
    return HasAvx512() && __builtin_cpu_supports("avx512vbmi") &&
           __builtin_cpu_supports("avx512vbmi2") && __builtin_cpu_supports("avx512vnni") &&
           __builtin_cpu_supports("avx512bitalg") && __builtin_cpu_supports("avx512vpopcntdq") &&
           __builtin_cpu_supports("gfni") && __builtin_cpu_supports("vpclmulqdq");
}
#else
bool HasSse4() {
    return false;
}

bool HasAvx2() {
    return false;
}

bool HasAvx512() {
    return false;
}

bool HasAvx512Dl() {
    return false;
}
#endif

bool IsEverywhere() {
    return true;
}

struct KnownSet {
    int64_t target;
    bool (*isThere)();
};

constexpr std::array<KnownSet, kInstructionSets> kKnown = {{{HWY_AVX3_DL, HasAvx512Dl},
                                                            {HWY_AVX3, HasAvx512},
                                                            {HWY_AVX2, HasAvx2},
                                                            {HWY_SSE4, HasSse4},
                                                            {HWY_STATIC_TARGET, IsEverywhere}}};

const KnownSet& Known(InstructionSet set) {
    return kKnown[static_cast<size_t>(set)];
}

std::atomic<InstructionSet>& Chosen() {
    static std::atomic<InstructionSet> chosen = BestSet();
    return chosen;
}

}  // namespace

const char* NameOf(InstructionSet set) {
    return hwy::TargetName(Known(set).target);
}

bool IsAvailable(InstructionSet set) {
    const KnownSet& known = Known(set);
    return (known.target & HWY_TARGETS) != 0 && known.isThere();
}

InstructionSet BestSet() {
    auto set = InstructionSet::Avx512Dl;
    while (!IsAvailable(set)) {
        set = static_cast<InstructionSet>(static_cast<size_t>(set) + 1);
    }
    return set;
}

InstructionSet ChosenSet() {
    return Chosen().load(std::memory_order_relaxed);
}

void Choose(InstructionSet set) {
    Chosen().store(set, std::memory_order_relaxed);
}

}  // namespace QyVectors
