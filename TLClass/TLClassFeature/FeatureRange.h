#pragma once
/// The limits of nodes as records.

#include <string>

#include "GenApi/IFloat.h"
#include "GenApi/IInteger.h"
#include "TLClassFeature/IFeatureControl.h"

namespace OVTLClass {

inline std::string ToStd(const GenApi_3_0_ORVANE::gcstring& text) {
    return {text.c_str(), text.size()};
}

inline FEATURE_INT_RANGE RangeOf(GenApi_3_0_ORVANE::IInteger& node) {
    return {node.GetMin(), node.GetMax(), node.GetInc()};
}

inline FEATURE_FLOAT_RANGE RangeOf(GenApi_3_0_ORVANE::IFloat& node) {
    FEATURE_FLOAT_RANGE range;
    range.min = node.GetMin();
    range.max = node.GetMax();
    range.hasInc = node.HasInc();
    range.inc = range.hasInc ? node.GetInc() : 0;
    range.unit = ToStd(node.GetUnit());
    return range;
}

}  // namespace OVTLClass
