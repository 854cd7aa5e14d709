// The names of properties, which are those of their XML elements.

#include "properties/PropertyID.h"

#include <array>
#include <ostream>

namespace GenApi_3_0_ORVANE {
namespace {

/// Indexed by number; null in the gaps.
constexpr auto kNames = [] {
    std::array<const char*, CPropertyID::_Undefined_ID> table{};
#define OV_PROPERTY_NAME(name, number) table[number] = #name;
    OV_PROPERTY_IDS(OV_PROPERTY_NAME)
#undef OV_PROPERTY_NAME
    return table;
}();

}  // namespace

std::string CPropertyID::ToString() const {
    if (HasName()) {
        return kNames[m_ID];
    }
    return "Invalid PropertyID " + std::to_string(m_ID);
}

std::ostream& operator<<(std::ostream& stream, CPropertyID id) {
    return stream << id.ToString();
}

}  // namespace GenApi_3_0_ORVANE
