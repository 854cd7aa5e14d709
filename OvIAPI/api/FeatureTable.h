#pragma once
/// Names of features by their identifiers.

#include <map>

#include "OvIDef.h"

/// Doesn't change after its construction, so that threads need no lock.
class CFeatureTable {
public:
    CFeatureTable();

    /// The name, or null if no feature has the identifier.
    const char* Find(OV_FEATURE_ID featureID) const;
    size_t GetSize() const { return m_names.size(); }

private:
    std::map<OV_FEATURE_ID, const char*> m_names;
};
