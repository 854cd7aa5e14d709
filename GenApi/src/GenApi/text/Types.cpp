// How the modes of nodes combine, and the texts of the enumerations.

#include "GenApi/Types.h"

#include <algorithm>
#include <iterator>

namespace GenApi_3_0_ORVANE {

namespace {

/// Returns the text at an index of a table, or the last text for any other number.
template <size_t Size>
const char* TextAt(const char* const (&texts)[Size], int number) {
    return texts[std::clamp(number, 0, static_cast<int>(Size) - 1)];
}

}  // namespace

/// The stricter of the two wins. A node that one may only read, through one that one may
/// only write, can't be used at all.
EAccessMode Combine(EAccessMode Peter, EAccessMode Paul) {
    // What hardly any client restricts is asked for in every step of every call.
    if (Paul == RW && Peter <= RW) {
        return Peter;
    }
    const auto either = [&](EAccessMode mode) { return Peter == mode || Paul == mode; };
    if (either(NI)) {
        return NI;
    }
    if (either(NA) || (either(RO) && either(WO))) {
        return NA;
    }
    if (either(WO)) {
        return WO;
    }
    return either(RO) ? RO : RW;
}

/// The stricter one: what was written may only be kept if both take it as it is.
ECachingMode Combine(ECachingMode Peter, ECachingMode Paul) {
    if (Peter == NoCache || Paul == NoCache) {
        return NoCache;
    }
    return Peter == WriteAround || Paul == WriteAround ? WriteAround : WriteThrough;
}

const char* EAccessModeClass::ToString(EAccessMode mode) {
    static constexpr const char* kTexts[] = {"NI", "NA", "WO", "RO", "RW", "_UndefinedAccessMode"};
    return TextAt(kTexts, mode);
}

const char* ECachingModeClass::ToString(ECachingMode mode) {
    static constexpr const char* kTexts[] = {"NoCache", "WriteThrough", "WriteAround",
                                             "_UndefinedCachingMode"};
    return TextAt(kTexts, mode);
}

const char* EStandardNameSpaceClass::ToString(EStandardNameSpace nameSpace) {
    static constexpr const char* kTexts[] = {"None", "GEV", "IIDC",
                                             "CL",   "USB", "_UndefinedStandardNameSpace"};
    return TextAt(kTexts, nameSpace);
}

}  // namespace GenApi_3_0_ORVANE
