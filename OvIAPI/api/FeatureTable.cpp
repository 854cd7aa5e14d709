// Filled from the one table that also makes the identifiers of the public header.

#include "api/FeatureTable.h"

CFeatureTable::CFeatureTable()
    : m_names{
#define OV_FEATURE_ROW(name, type, level, number) {OV_FEATURE_##name, #name},
          OV_FEATURE_TABLE(OV_FEATURE_ROW)
#undef OV_FEATURE_ROW
      } {
}

const char* CFeatureTable::Find(OV_FEATURE_ID featureID) const {
    const auto found = m_names.find(featureID);
    return found == m_names.end() ? nullptr : found->second;
}
