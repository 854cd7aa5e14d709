#pragma once

#include <bit>
#include <concepts>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>

#include "Base/OvAssert.h"
#include "properties/INodeDataMap.h"
#include "properties/NodeID.h"
#include "properties/PropertyID.h"
#include "properties/ToStringStyle.h"

namespace GenApi_3_0_ORVANE {

class CCacheReader;
struct CCacheCounts;
class CCacheWriter;

/// The number of an enumeration property. The enumerations belong to the layer above, so the
/// number converts to whichever of them receives it.
class CEnumNumber {
public:
    constexpr explicit CEnumNumber(int32_t number) : m_Number(number) {}
    template <typename Enum>
    requires std::is_enum_v<Enum>
    // NOLINTNEXTLINE(google-explicit-constructor): any enumeration may be stored
    constexpr CEnumNumber(Enum value) : m_Number(static_cast<int32_t>(value)) {}

    constexpr int32_t ToNumber() const { return m_Number; }

    template <typename Enum>
    requires std::is_enum_v<Enum>
    // NOLINTNEXTLINE(google-explicit-constructor): reads as the enumeration
    constexpr operator Enum() const { return static_cast<Enum>(m_Number); }

private:
    int32_t m_Number;
};

/// One entry of a node's property list: what it is, a typed value and, rarely,
/// an attribute that qualifies it. A large description has a quarter of a
/// million of them, hence the 32 bytes.
class CProperty final {
    /// The one form in which all values are stored.
    struct Bits {
        int64_t value;
    };

public:
    /// How the value is to be read. The numbers are written to the cache.
    enum EDataType_t : uint16_t {
        String_ID = 2,
        Node_ID = 4,
        EAccessMode_ID = 6,
        ECachingMode_ID = 7,
        EDisplayNotation_ID = 8,
        EEndianess_ID = 9,
        ENameSpace_ID = 10,
        ERepresentation_ID = 11,
        ESign_ID = 12,
        ESlope_ID = 13,
        EStandardNameSpace_ID = 14,
        EVisibility_ID = 15,
        EYesNo_ID = 16,
        EInputDirection_ID = 17,
        Float_ID = 19,
        Integer_ID = 20,
        _UndefinedDataType_ID = 22
    };

    /// True for the data types whose value is the number of an enumerator.
    static constexpr bool IsEnumeration(EDataType_t type) {
        return type >= EAccessMode_ID && type <= EInputDirection_ID;
    }

    /// An empty property. In all constructors @p pNodeDataMap resolves the
    /// identifiers; it is not owned and outlives the property.
    explicit CProperty(INodeDataMap* pNodeDataMap) : m_Context{pNodeDataMap} {}
    CProperty(INodeDataMap* pNodeDataMap, CPropertyID id, StringID_t value)
        : CProperty(pNodeDataMap, id, String_ID, Bits{value.ToIndex()}) {}
    /// Enters @p text in the map.
    CProperty(INodeDataMap* pNodeDataMap, CPropertyID id, std::string_view text)
        : CProperty(pNodeDataMap, id, pNodeDataMap->SetString(text)) {}
    CProperty(INodeDataMap* pNodeDataMap, CPropertyID id, NodeID_t value)
        : CProperty(pNodeDataMap, id, Node_ID, Bits{value.ToIndex()}) {}
    CProperty(INodeDataMap* pNodeDataMap, CPropertyID id, std::integral auto value)
        : CProperty(pNodeDataMap, id, Integer_ID, Bits{static_cast<int64_t>(value)}) {}
    CProperty(INodeDataMap* pNodeDataMap, CPropertyID id, double value)
        : CProperty(pNodeDataMap, id, Float_ID, Bits{std::bit_cast<int64_t>(value)}) {}
    /// Makes a property with a value of an enumeration.
    CProperty(INodeDataMap* pNodeDataMap, CPropertyID id, EDataType_t type, CEnumNumber value)
        : CProperty(pNodeDataMap, id, type, Bits{value.ToNumber()}) {}

    /// Copies within the map: identifiers stay, the attribute is cloned.
    CProperty(const CProperty& source);
    /// Copies into another map: texts are entered there and nodes are found by
    /// name, so the target map has to know the name of a linked node.
    CProperty(const CProperty& source, INodeDataMap* pTargetMap);
    /// The source keeps no attribute. Lists of properties grow by this.
    CProperty(CProperty&& source) noexcept
        : m_PropertyID(source.m_PropertyID),
          m_DataType(source.m_DataType),
          m_HasAttribute(source.m_HasAttribute),
          m_Value(source.m_Value),
          m_Context(source.m_Context) {
        if (m_HasAttribute) [[unlikely]] {
            source.m_HasAttribute = false;
            source.m_Context.m_pNodeDataMap = GetNodeDataMap();
        }
    }
    CProperty& operator=(CProperty source) noexcept;
    ~CProperty() {
        if (m_HasAttribute) {
            delete m_Context.m_pAttribute;
        }
    }

    /// The text of a String_ID value, with a zero at its end; lives as long as the map has it.
    virtual std::string_view String() const;

    CPropertyID GetPropertyID() const { return m_PropertyID; }
    EDataType_t GetDataType() const { return m_DataType; }
    INodeDataMap* GetNodeDataMap() const;
    /// True once both the identifier and the data type are known.
    bool IsInitialized() const;

    /// The qualifying property, or null. Owned by this property.
    const CProperty* GetAttribute() const {
        return m_HasAttribute ? m_Context.m_pAttribute : nullptr;
    }
    /// Takes the qualifying property, which belongs to the same map, in place
    /// of the present one.
    void SetAttribute(std::unique_ptr<CProperty> pAttribute);
    /// Puts another text into a String_ID property.
    void SetStringID(StringID_t value);

    /// The number of whichever enumeration the property holds.
    int32_t EnumNumber() const {
        OV_ASSERT(IsEnumeration(m_DataType));
        return static_cast<int32_t>(m_Value);
    }

    /// @name The typed values. Each asserts that the property has its type.
    /// @{
    StringID_t StringID() const;
    NodeID_t NodeID() const;
    int64_t Integer() const;
    double Float() const;
#define OV_ENUM_ACCESSOR(Enumeration)                      \
    CEnumNumber Enumeration() const {                      \
        OV_ASSERT(m_DataType == Enumeration##_ID);         \
        return CEnumNumber(static_cast<int32_t>(m_Value)); \
    }
    OV_ENUM_ACCESSOR(EAccessMode)
    OV_ENUM_ACCESSOR(ECachingMode)
    OV_ENUM_ACCESSOR(EDisplayNotation)
    OV_ENUM_ACCESSOR(EEndianess)
    OV_ENUM_ACCESSOR(ENameSpace)
    OV_ENUM_ACCESSOR(ERepresentation)
    OV_ENUM_ACCESSOR(ESign)
    OV_ENUM_ACCESSOR(ESlope)
    OV_ENUM_ACCESSOR(EStandardNameSpace)
    OV_ENUM_ACCESSOR(EVisibility)
    OV_ENUM_ACCESSOR(EYesNo)
    OV_ENUM_ACCESSOR(EInputDirection)
#undef OV_ENUM_ACCESSOR
    /// @}

    /// Writes identifier, type, value and attribute to a cache file.
    void ToFile(CCacheWriter& writer) const;
    /// Reads them back. Of no use when the reader has failed afterwards.
    static CProperty FromFile(CCacheReader& reader, const CCacheCounts& counts,
                              INodeDataMap* pNodeDataMap, int depth = 0);

    /// Equal identifier, type and value; texts compare by content. The
    /// attribute never decides.
    bool operator==(const CProperty& other) const;

    /// Prints in the styles for properties; any other is an assertion.
    std::string ToString(EToStringStyle_t style) const;
    /// Appends what ToString returns.
    void AppendTo(std::string& text, EToStringStyle_t style) const;

private:
    CProperty(INodeDataMap* pNodeDataMap, CPropertyID id, EDataType_t type, Bits value)
        : m_PropertyID(id), m_DataType(type), m_Value(value.value), m_Context{pNodeDataMap} {}

    void Swap(CProperty& other) noexcept;
    void AppendDump(std::string& text) const;
    void AppendElement(std::string& text) const;
    void AppendValue(std::string& text) const;

    CPropertyID m_PropertyID;
    EDataType_t m_DataType = _UndefinedDataType_ID;
    bool m_HasAttribute = false;
    /// An index, an enumerator's number, an integer, or the bits of a double.
    int64_t m_Value = 0;
    /// Attributes are rare and belong to the same map, so the two pointers
    /// share a place: the map is asked of the attribute where there is one.
    union Context {
        INodeDataMap* m_pNodeDataMap;
        CProperty* m_pAttribute;
    };
    Context m_Context;
};

static_assert(sizeof(CProperty) == 32);

}  // namespace GenApi_3_0_ORVANE
