#pragma once
/// Names of features by their identifiers.

#include <array>
#include <cstdint>
#include <vector>

#include "OvIDef.h"
#include "TLClassFeature/FeatureName.h"

/// Doesn't change after its construction, so that threads need no lock.
class CFeatureTable {
public:
    CFeatureTable();

    /// The name, or null if no feature has the identifier.
    const OVTLClass::CFeatureName* Find(OV_FEATURE_ID featureID) const;
    size_t GetSize() const { return m_rows.size(); }

private:
    struct Row {
        OV_FEATURE_ID id;
        OVTLClass::CFeatureName name;
    };
    /// Four times as many as there are features, so that nearly each has its own.
    static constexpr unsigned kPlaceBits = 10;
    using Places = std::array<uint16_t, size_t{1} << kPlaceBits>;

    /// The place where the search for an identifier begins.
    static size_t FirstPlace(OV_FEATURE_ID featureID);
    static size_t NextPlace(size_t place) { return (place + 1) % Places().size(); }

    std::vector<Row> m_rows;
    /// Numbers of rows from 1, each at its first place or at the next one that was free; 0 for
    /// none.
    Places m_places{};
};
