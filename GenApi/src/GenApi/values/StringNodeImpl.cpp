// Texts that the description has or another node holds.

#include "values/StringNodeImpl.h"

namespace GenApi_3_0_ORVANE {

/// What the description has is this node's value from the start, and may be changed by clients.
void CStringNodeImpl::SetProperty(const CProperty& property) {
    switch (property.GetPropertyID()) {
        case CPropertyID::Value_ID:
            m_Value = TextOf(property.String());
            break;
        case CPropertyID::pValue_ID:
            m_Value = LinkChild(property, ReadRole | WriteRole | ValueRole);
            break;
        default:
            CNodeImpl::SetProperty(property);
    }
}

}  // namespace GenApi_3_0_ORVANE
