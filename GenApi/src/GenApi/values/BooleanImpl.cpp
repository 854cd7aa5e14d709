// Truth values, kept as one of two numbers by another node, or by this one.

#include "values/BooleanImpl.h"

namespace GenApi_3_0_ORVANE {

/// The constant waits: the two numbers may come after it in the description.
void CBooleanImpl::SetProperty(const CProperty& property) {
    switch (property.GetPropertyID()) {
        case CPropertyID::Value_ID:
            m_Constant = property.Integer();
            break;
        case CPropertyID::pValue_ID:
            m_Value = LinkChild(property, ReadRole | WriteRole | ValueRole);
            break;
        case CPropertyID::OnValue_ID:
            m_OnValue = property.Integer();
            break;
        case CPropertyID::OffValue_ID:
            m_OffValue = property.Integer();
            break;
        default:
            CNodeImpl::SetProperty(property);
    }
}

/// Equal numbers would make every value true and false at once.
void CBooleanImpl::FinalConstruct() {
    CNodeImpl::FinalConstruct();
    if (m_OnValue == m_OffValue) {
        RUNTIME_EXCEPTION_NODE("Boolean node '%s' has identical on and off value", m_Name.c_str());
    }
    if (m_Constant) {
        m_Value = *m_Constant == 1 ? m_OnValue : m_OffValue;
    }
}

void CBooleanImpl::InternalSetValue(bool value, bool verify) {
    SetOrHold(m_Value, value ? m_OnValue : m_OffValue, verify);
}

/// A device that has a third number isn't guessed at.
bool CBooleanImpl::InternalGetValue(bool verify, bool ignoreCache) {
    const int64_t value = m_Value.GetValue(verify, ignoreCache);
    if (value != m_OnValue && value != m_OffValue) {
        LOGICAL_ERROR_EXCEPTION_NODE("Value '%ld' is neither true (%ld) nor false (%ld)", value,
                                     m_OnValue, m_OffValue);
    }
    return value == m_OnValue;
}

}  // namespace GenApi_3_0_ORVANE
