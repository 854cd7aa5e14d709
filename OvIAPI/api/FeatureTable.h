#pragma once
/// From a feature's identifier to its name.

#include <map>

#include "OvIDef.h"

/// Constant after construction.
class CFeatureTable {
public:
    CFeatureTable();

    /// The name, or null for an identifier of no feature.
    const char* Find(OV_FEATURE_ID featureID) const;
    size_t GetSize() const { return m_names.size(); }

private:
    std::map<OV_FEATURE_ID, const char*> m_names;
};
