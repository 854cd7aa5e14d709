// From texts that the grammar admits to typed values. Failures are thrown without a place: the
// reader knows line and column.

#include "builder/Conversion.h"

#include <string>

#include "Base/GCException.h"
#include "properties/PropertyEnum.h"

namespace GenApi_3_0_ORVANE {

/// Numbers, names and choices may have blanks around them, as people indent their XML. Blanks in
/// texts may be meant.
std::string_view Checked(Facet facet, std::string_view text) {
    const bool keepsBlanks = facet == Facet::AnyText || facet == Facet::NonEmptyText;
    const std::string_view value = keepsBlanks ? text : Trimmed(text);
    if (const char* const error = CheckFacet(facet, value)) {
        throw ValueError{error};
    }
    return value;
}

/// A text that is no integer of 64 bits has an exception of its own, which names the property.
int64_t IntegerOf(std::string_view text, uint32_t propertyNumber) {
    int64_t value = 0;
    if (!TextToInteger(text, value)) {
        const std::string type =
            CPropertyID(static_cast<CPropertyID::EProperty_ID_t>(propertyNumber)).ToString();
        PROPERTY_EXCEPTION("Error in property of type '%s': cannot convert '%s' to int64_t",
                           type.c_str(), std::string(text).c_str());
    }
    return value;
}

double RealOf(std::string_view text) {
    double value = 0;
    if (!TextToDouble(text, value)) {
        throw ValueError{"invalid double value"};
    }
    return value;
}

/// The grammar only says that there is a choice; the texts are those of the enumeration.
CEnumNumber ChoiceOf(CProperty::EDataType_t type, std::string_view text) {
    const auto value = EnumNumberFromText(type, text);
    if (!value) {
        throw ValueError{"value is not in enumeration"};
    }
    return *value;
}

}  // namespace GenApi_3_0_ORVANE
