// Filled from the one table that also makes the identifiers of the public header. Every call of a
// feature looks its identifier up, so that the rows are found by a hash.

#include "api/FeatureTable.h"

using OVTLClass::CFeatureName;

namespace {

#define OV_FEATURE_COUNT(name, type, level, number) +1
constexpr size_t kRows = 0 OV_FEATURE_TABLE(OV_FEATURE_COUNT);
#undef OV_FEATURE_COUNT
static_assert(kRows <= CFeatureName::kNumbers, "each feature has a number of its own");

}  // namespace

CFeatureTable::CFeatureTable() {
    m_rows.reserve(kRows);
    const auto add = [this](OV_FEATURE_ID featureID, const char* name) {
        m_rows.push_back({featureID, CFeatureName(name, m_rows.size())});
        size_t place = FirstPlace(featureID);
        while (m_places[place] != 0) {
            place = NextPlace(place);
        }
        m_places[place] = static_cast<uint16_t>(m_rows.size());
    };
#define OV_FEATURE_ROW(name, type, level, number) add(OV_FEATURE_##name, #name);
    OV_FEATURE_TABLE(OV_FEATURE_ROW)
#undef OV_FEATURE_ROW
}

/// Identifiers differ in their lowest and in their highest bits. The product's upper bits depend
/// on all of them.
size_t CFeatureTable::FirstPlace(OV_FEATURE_ID featureID) {
    constexpr uint32_t kGolden = 2654435769U;
    return (featureID * kGolden) >> (32 - kPlaceBits);
}

const CFeatureName* CFeatureTable::Find(OV_FEATURE_ID featureID) const {
    for (size_t place = FirstPlace(featureID); m_places[place] != 0; place = NextPlace(place)) {
        const Row& row = m_rows[m_places[place] - 1U];
        if (row.id == featureID) {
            return &row.name;
        }
    }
    return nullptr;
}
