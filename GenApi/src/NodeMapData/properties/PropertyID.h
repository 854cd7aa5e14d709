#pragma once
/// What a property says about its node. The numbers are written to the binary cache and their
/// order groups the links, so a number never changes.

#include <cstdint>
#include <iosfwd>
#include <string>

/// One row per property: name and number. Numbers 0, 7, 26, 30, 36 and 37 part
/// the groups and belong to no property.
// clang-format off
#define OV_PROPERTY_IDS(X) \
    /* links that a write follows, and with it reading and invalidation */ \
    X(pValue, 1) X(pValueCopy, 2) X(pValueIndexed, 3) X(pValueDefault, 4) X(pSwissKnifeTo, 5) \
    X(pSwissKnifeFrom, 6) \
    /* links that a read follows, and with it invalidation */ \
    X(pIsAvailable, 8) X(pIsImplemented, 9) X(pIsLocked, 10) X(pError, 11) X(pMin, 12) X(pMax, 13) \
    X(pInc, 14) X(pCommandValue, 15) X(pVariable, 16) X(pLength, 17) X(pAddress, 18) X(pIndex, 19) \
    X(pPort, 20) X(pChunkID, 21) X(p1212Parser, 22) X(pBlockPolling, 23) X(pOffset, 24) \
    X(pFeature, 25) \
    /* links that only invalidate */ \
    X(pInvalidator, 27) X(pSelecting, 28) X(pEnumEntry, 29) \
    /* links that preprocessing makes or owns, and the aliases */ \
    X(pDependent, 31) X(pAlias, 32) X(pCastAlias, 33) X(pSelected, 34) X(pTerminal, 35) \
    /* values */ \
    X(NodeType, 38) X(Name, 39) X(NameSpace, 40) X(IsFeature, 41) X(Visibility, 42) \
    X(Streamable, 43) X(Cachable, 44) X(Description, 45) X(ToolTip, 46) X(EventID, 47) \
    X(DeviceName, 48) X(ImposedAccessMode, 49) X(ImposedVisibility, 50) X(PollingTime, 51) \
    X(DocuURL, 52) X(IsDeprecated, 53) X(DisplayName, 54) X(Value, 55) X(OnValue, 56) \
    X(OffValue, 57) X(AccessMode, 58) X(Length, 59) X(Address, 60) X(CommandValue, 61) X(Min, 62) \
    X(Max, 63) X(Inc, 64) X(ValueDefault, 65) X(Representation, 66) X(ValidValueSet, 67) \
    X(Unit, 68) X(ValueIndexed, 69) X(DisplayPrecision, 70) X(DisplayNotation, 71) \
    X(NumericValue, 72) X(Symbolic, 73) X(IsSelfClearing, 74) X(Key, 75) X(FeatureID, 76) \
    X(Timeout, 77) X(Endianess, 78) X(ChunkID, 79) X(SwapEndianess, 80) X(CacheChunkData, 81) \
    X(Sign, 82) X(LSB, 83) X(MSB, 84) X(Formula, 85) X(Input, 86) X(FormulaTo, 87) \
    X(FormulaFrom, 88) X(Slope, 89) X(IsLinear, 90) X(MergePriority, 91) X(ExposeStatic, 92) \
    X(Extension, 93) X(Offset, 94) X(Index, 95) X(Comment, 96) X(InputDirection, 97) \
    X(ModelName, 98) X(VendorName, 99) X(StandardNameSpace, 100) X(SchemaMajorVersion, 101) \
    X(SchemaMinorVersion, 102) X(SchemaSubMinorVersion, 103) X(MajorVersion, 104) \
    X(MinorVersion, 105) X(SubMinorVersion, 106) X(ProductGuid, 107) X(VersionGuid, 108)
// clang-format on

namespace GenApi_3_0_ORVANE {

/// The identifier of a property. Converts to its enumeration, so that it
/// compares and switches like a plain number.
class CPropertyID {
public:
    // NOLINTNEXTLINE(performance-enum-size): 32 bits are part of the interface
    enum EProperty_ID_t : uint32_t {
#define OV_PROPERTY_ENUMERATOR(name, number) name##_ID = (number),
        OV_PROPERTY_IDS(OV_PROPERTY_ENUMERATOR)
#undef OV_PROPERTY_ENUMERATOR
            _Undefined_ID = 109,
    };

    constexpr CPropertyID() = default;
    // NOLINTNEXTLINE(google-explicit-constructor): an enumerator is a property identifier
    constexpr CPropertyID(EProperty_ID_t id) : m_ID(id) {}

    // NOLINTNEXTLINE(google-explicit-constructor): comparison and switch by value
    constexpr operator EProperty_ID_t() const {
        return m_ID;
    }

    /// True for everything but the value of a default-constructed identifier.
    constexpr bool IsInitialized() const {
        return m_ID != _Undefined_ID;
    }

    /// True for the numbers in the table above.
    constexpr bool HasName() const {
        return m_ID != 0 && m_ID < _Undefined_ID && m_ID != 7 && m_ID != 26 && m_ID != 30 &&
               m_ID != 36 && m_ID != 37;
    }

    /// A link to a node that a write of the owner goes to.
    constexpr bool IsWritingLink() const {
        return m_ID < 7U;
    }
    /// A link to a node that a read or a write of the owner goes to.
    constexpr bool IsReadingLink() const {
        return m_ID < 26U;
    }
    /// A link to a node whose change makes the owner stale.
    constexpr bool IsInvalidatingLink() const {
        return m_ID < 30U;
    }
    /// Any link to another node, those made by preprocessing included.
    constexpr bool IsLink() const {
        return m_ID < 36U;
    }

    /// The property's name, which is also its XML name; for a number without a
    /// name "Invalid PropertyID " and the number.
    std::string ToString() const;

private:
    EProperty_ID_t m_ID = _Undefined_ID;
};

/// Writes ToString().
std::ostream& operator<<(std::ostream& stream, CPropertyID id);

}  // namespace GenApi_3_0_ORVANE
