// The texts of all enumerations that properties may have, as tables. They are data of the
// description; the enumerations themselves belong to the layer above, so numbers are written out
// here.

#include "properties/PropertyEnum.h"

#include <algorithm>
#include <span>

namespace GenApi_3_0_ORVANE {
namespace {

struct Enumerator {
    int32_t number;
    std::string_view text;
};

// Existing documents hold these texts, so the misspelled ones stay.
constexpr Enumerator accessModes[] = {{0, "NI"},
                                      {1, "NA"},
                                      {2, "WO"},
                                      {3, "RO"},
                                      {4, "RW"},
                                      {5, "_UndefinedAccesMode"},
                                      {6, "_CycleDetectAccesMode"}};
constexpr Enumerator cachingModes[] = {
    {0, "NoCache"}, {1, "WriteThrough"}, {2, "WriteAround"}, {3, "_UndefinedCachingMode"}};
constexpr Enumerator displayNotations[] = {
    {0, "Automatic"}, {1, "Fixed"}, {2, "Scientific"}, {3, "_UndefinedEDisplayNotation"}};
constexpr Enumerator endianesses[] = {
    {0, "BigEndian"}, {1, "LittleEndian"}, {2, "_UndefinedEndian"}};
constexpr Enumerator nameSpaces[] = {{0, "Custom"}, {1, "Standard"}, {2, "_UndefinedNameSpace"}};
constexpr Enumerator representations[] = {
    {0, "Linear"},    {1, "Logarithmic"}, {2, "Boolean"},    {3, "PureNumber"},
    {4, "HexNumber"}, {5, "IPV4Address"}, {6, "MACAddress"}, {7, "_UndefinedRepresentation"}};
constexpr Enumerator signs[] = {{0, "Signed"}, {1, "Unsigned"}, {2, "_UndefinedSign"}};
constexpr Enumerator slopes[] = {{0, "Increasing"},
                                 {1, "Decreasing"},
                                 {2, "Varying"},
                                 {3, "Automatic"},
                                 {4, "_UndefinedESlope"}};
constexpr Enumerator standardNameSpaces[] = {{0, "None"}, {1, "GEV"},
                                             {2, "IIDC"}, {3, "CL"},
                                             {4, "USB"},  {5, "_UndefinedStandardNameSpace"}};
constexpr Enumerator visibilities[] = {
    {0, "Beginner"}, {1, "Expert"}, {2, "Guru"}, {3, "Invisible"}, {99, "_UndefinedVisibility"}};
constexpr Enumerator yesNos[] = {{0, "No"}, {1, "Yes"}, {2, "_UndefinedYesNo"}};
constexpr Enumerator inputDirections[] = {{0, "From"}, {1, "To"}, {2, "None"}};

std::span<const Enumerator> EnumeratorsOf(CProperty::EDataType_t type) {
    switch (type) {
        case CProperty::EAccessMode_ID:
            return accessModes;
        case CProperty::ECachingMode_ID:
            return cachingModes;
        case CProperty::EDisplayNotation_ID:
            return displayNotations;
        case CProperty::EEndianess_ID:
            return endianesses;
        case CProperty::ENameSpace_ID:
            return nameSpaces;
        case CProperty::ERepresentation_ID:
            return representations;
        case CProperty::ESign_ID:
            return signs;
        case CProperty::ESlope_ID:
            return slopes;
        case CProperty::EStandardNameSpace_ID:
            return standardNameSpaces;
        case CProperty::EVisibility_ID:
            return visibilities;
        case CProperty::EYesNo_ID:
            return yesNos;
        case CProperty::EInputDirection_ID:
            return inputDirections;
        default:
            return {};
    }
}

}  // namespace

/// A search: the longest table has eight entries.
std::string_view EnumNumberToText(CProperty::EDataType_t type, int32_t number) {
    const auto enumerators = EnumeratorsOf(type);
    const auto found = std::find_if(enumerators.begin(), enumerators.end(),
                                    [number](const Enumerator& e) { return e.number == number; });
    return found == enumerators.end() ? std::string_view() : found->text;
}

/// Texts with an underscore mark undefined values. They are for the engine's own use, and no
/// description may have them.
std::optional<CEnumNumber> EnumNumberFromText(CProperty::EDataType_t type, std::string_view text) {
    if (text.starts_with('_')) {
        return std::nullopt;
    }
    const auto enumerators = EnumeratorsOf(type);
    const auto found = std::find_if(enumerators.begin(), enumerators.end(),
                                    [text](const Enumerator& e) { return e.text == text; });
    return found == enumerators.end() ? std::nullopt : std::optional(CEnumNumber(found->number));
}

}  // namespace GenApi_3_0_ORVANE
