// What floats have beyond NumericNodeImpl.cpp: how they are displayed. What the description
// leaves open comes from the node that holds the value.

#include "values/FloatImpl.h"

namespace GenApi_3_0_ORVANE {

void CFloatImpl::SetProperty(const CProperty& property) {
    switch (property.GetPropertyID()) {
        case CPropertyID::DisplayNotation_ID:
            m_DisplayNotation = property.EDisplayNotation();
            break;
        case CPropertyID::DisplayPrecision_ID:
            m_DisplayPrecision = property.Integer();
            break;
        default:
            CNumericNodeImpl::SetProperty(property);
    }
}

EDisplayNotation CFloatImpl::InternalGetDisplayNotation() {
    return m_DisplayNotation != _UndefinedEDisplayNotation ? m_DisplayNotation
                                                           : GetSource().GetDisplayNotation();
}

int64_t CFloatImpl::InternalGetDisplayPrecision() {
    return m_DisplayPrecision >= 0 ? m_DisplayPrecision : GetSource().GetDisplayPrecision();
}

}  // namespace GenApi_3_0_ORVANE
