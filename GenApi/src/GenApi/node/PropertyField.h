#pragma once
/// Takes a property's value into the field of a node that keeps it, and makes the property again
/// from the field, for all types of value.

#include <string_view>

#include "GenApi/Types.h"
#include "properties/Property.h"

namespace GenApi_3_0_ORVANE {

inline void TakeProperty(const CProperty& property, gcstring& field) {
    const std::string_view text = property.String();
    field.assign(text.data(), text.size());
}
inline void TakeProperty(const CProperty& property, std::string_view& field) {
    field = property.String();
}
inline void TakeProperty(const CProperty& property, int64_t& field) {
    field = property.Integer();
}
inline void TakeProperty(const CProperty& property, uint16_t& field) {
    field = static_cast<uint16_t>(property.Integer());
}

inline CProperty MakeProperty(INodeDataMap& map, CPropertyID id, const gcstring& field) {
    return {&map, id, std::string_view(field.c_str(), field.size())};
}
inline CProperty MakeProperty(INodeDataMap& map, CPropertyID id, std::string_view field) {
    return {&map, id, field};
}
inline CProperty MakeProperty(INodeDataMap& map, CPropertyID id, std::integral auto field) {
    return {&map, id, int64_t{field}};
}

// NOLINTBEGIN(bugprone-macro-parentheses): types and names take none
#define OV_ENUM_PROPERTY_FIELD(Enumeration)                                               \
    inline void TakeProperty(const CProperty& property, Enumeration& field) {             \
        field = property.Enumeration();                                                   \
    }                                                                                     \
    inline CProperty MakeProperty(INodeDataMap& map, CPropertyID id, Enumeration field) { \
        return {&map, id, CProperty::Enumeration##_ID, field};                            \
    }
// NOLINTEND(bugprone-macro-parentheses)
OV_ENUM_PROPERTY_FIELD(EAccessMode)
OV_ENUM_PROPERTY_FIELD(ECachingMode)
OV_ENUM_PROPERTY_FIELD(EDisplayNotation)
OV_ENUM_PROPERTY_FIELD(EEndianess)
OV_ENUM_PROPERTY_FIELD(ENameSpace)
OV_ENUM_PROPERTY_FIELD(ERepresentation)
OV_ENUM_PROPERTY_FIELD(ESign)
OV_ENUM_PROPERTY_FIELD(ESlope)
OV_ENUM_PROPERTY_FIELD(EStandardNameSpace)
OV_ENUM_PROPERTY_FIELD(EVisibility)
OV_ENUM_PROPERTY_FIELD(EYesNo)
#undef OV_ENUM_PROPERTY_FIELD

}  // namespace GenApi_3_0_ORVANE
