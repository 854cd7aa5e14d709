#pragma once
/// All features that have identifiers, from the header.

#include "OvIDef.h"

struct FeatureRow {
    const char* name;
    OV_FEATURE_ID id;
};

inline constexpr FeatureRow kFeatureRows[] = {
#define OV_TEST_ROW(name, type, level, number) {#name, OV_FEATURE_##name},
    OV_FEATURE_TABLE(OV_TEST_ROW)
#undef OV_TEST_ROW
};
