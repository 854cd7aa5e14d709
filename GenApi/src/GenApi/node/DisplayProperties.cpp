#include "node/DisplayProperties.h"

namespace GenApi_3_0_ORVANE {

/// One switch for all kinds of numbers. The grammar decides which of them may have which property.
bool DisplayProperties::Set(const CProperty& property) {
    switch (property.GetPropertyID()) {
        case CPropertyID::Representation_ID:
            representation = property.ERepresentation();
            return true;
        case CPropertyID::Unit_ID:
            unit = property.String();
            return true;
        case CPropertyID::DisplayNotation_ID:
            notation = property.EDisplayNotation();
            return true;
        case CPropertyID::DisplayPrecision_ID:
            precision = property.Integer();
            return true;
        default:
            return false;
    }
}

}  // namespace GenApi_3_0_ORVANE
