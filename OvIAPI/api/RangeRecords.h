#pragma once
/// Records of the interface, filled from those of the transport model.

#include <algorithm>
#include <cstring>
#include <string>

#include "OvIDef.h"
#include "TLClassFeature/IFeatureControl.h"

/// Copies as much as fits into a zeroed field. A text that fills its field has no
/// terminating zero.
template <size_t Size>
void FillField(char (&field)[Size], const std::string& text) {
    std::memset(field, 0, Size);
    std::memcpy(field, text.data(), std::min(text.size(), Size));
}

inline void FillRecord(OV_INT_RANGE& record, const OVTLClass::FEATURE_INT_RANGE& range) {
    record.nMin = range.min;
    record.nMax = range.max;
    record.nInc = range.inc;
}

inline void FillRecord(OV_FLOAT_RANGE& record, const OVTLClass::FEATURE_FLOAT_RANGE& range) {
    record.dMin = range.min;
    record.dMax = range.max;
    record.dInc = range.inc;
    FillField(record.szUnit, range.unit);
    record.bIncIsValid = range.hasInc;
}
