// Entries of enumerations. All that they return comes from the description.

#include "values/EnumEntryImpl.h"

namespace GenApi_3_0_ORVANE {

/// The numeric value is the value until the description has another, in whatever order the two
/// come.
void CEnumEntryImpl::SetProperty(const CProperty& property) {
    switch (property.GetPropertyID()) {
        case CPropertyID::Value_ID:
            m_Value = property.Integer();
            if (!m_HasNumericValue) {
                m_NumericValue = static_cast<double>(m_Value);
            }
            break;
        case CPropertyID::NumericValue_ID:
            m_NumericValue = property.Float();
            m_HasNumericValue = true;
            break;
        case CPropertyID::Symbolic_ID:
            m_Symbolic = property.String();
            break;
        case CPropertyID::IsSelfClearing_ID:
            m_IsSelfClearing = property.EYesNo();
            break;
        default:
            CNodeImpl::SetProperty(property);
    }
}

gcstring CEnumEntryImpl::InternalToString(bool /*verify*/, bool /*ignoreCache*/) {
    return TextOf(m_Symbolic);
}

/// An entry is a state of its enumeration and has no value of its own to set.
void CEnumEntryImpl::InternalFromString(const gcstring& value, bool /*verify*/) {
    LOGICAL_ERROR_EXCEPTION_NODE(
        "EnumEntry %s can't set value from string  : %s. Use derived class!", m_Name.c_str(),
        value.c_str());
}

}  // namespace GenApi_3_0_ORVANE
