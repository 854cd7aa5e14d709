#include "cache/CacheTables.h"

#include <algorithm>
#include <array>

#include "nodes/NodeDataMap.h"
#include "properties/PropertyEnum.h"

namespace GenApi_3_0_ORVANE {

namespace {

constexpr size_t kTypeBytes = 2;
constexpr size_t kNodeIDBytes = 4;
constexpr size_t kCountBytes = 4;

/// No description nests attributes deeper than 1.
constexpr int kMaxAttributeDepth = 8;

/// Bytes of a value by its data type, unnamed types too.
constexpr std::array<uint8_t, 21> kValueBytes{1, 2, 2, 2, 2, 4, 4, 4, 4, 4, 4,
                                              4, 4, 4, 4, 4, 4, 4, 8, 8, 8};

size_t ValueBytes(uint64_t dataType) {
    OV_ASSERT(dataType < kValueBytes.size());
    return kValueBytes[dataType];
}

/// A count, none beyond what identifiers of two bytes can number.
size_t ReadCount(CCacheReader& reader) {
    const auto count = reader.Number<kCountBytes>();
    if (count > kCacheFileMaxCount) {
        reader.Fail(CCacheReader::State::Corrupt);
        return 0;
    }
    return count;
}

/// The reader takes two bytes more of a value without type than the writer
/// gives. No property has such a value, and older readers do the same.
uint64_t ReadValue(CCacheReader& reader, uint64_t dataType) {
    switch (ValueBytes(dataType)) {
        case 1: {
            const uint64_t value = reader.Number<1>();
            reader.Number<2>();
            return value;
        }
        case 2:
            return reader.Number<2>();
        case 4:
            return reader.Number<4>();
        default:
            return reader.Number<8>();
    }
}

/// Whether the value is one that a property of this type can have in this file.
bool IsMeaningful(CProperty::EDataType_t type, uint64_t value, const CCacheCounts& counts) {
    switch (type) {
        case CProperty::String_ID:
            return value < counts.strings;
        case CProperty::Node_ID:
            return value < counts.nodes;
        case CProperty::Float_ID:
        case CProperty::Integer_ID:
            return true;
        default:
            return !EnumNumberToText(type, static_cast<int32_t>(value)).empty();
    }
}

/// The value as the property keeps it: enumerators may be negative.
int64_t Widened(CProperty::EDataType_t type, uint64_t value) {
    return CProperty::IsEnumeration(type) ? static_cast<int32_t>(value)
                                          : static_cast<int64_t>(value);
}

bool IsNodeType(uint64_t type, bool isFirst) {
    return isFirst ? type == CNodeData::RegisterDescription_ID : type <= CNodeData::IntConverter_ID;
}

}  // namespace

CCacheTables ReadCacheTables(CCacheReader& reader) {
    CCacheTables tables;
    reader.Header();
    const size_t numStrings = ReadCount(reader);
    tables.strings.reserve(numStrings);
    for (size_t i = 0; i < numStrings && reader.IsGood(); ++i) {
        tables.strings.emplace_back(reader.Text());
    }
    const size_t numNodes = ReadCount(reader);
    tables.types.reserve(numNodes);
    for (size_t i = 0; i < numNodes && reader.IsGood(); ++i) {
        const uint64_t type = reader.Number<kTypeBytes>();
        const uint64_t id = reader.Number<kNodeIDBytes>();
        if (id != i || !IsNodeType(type, i == 0)) {
            reader.Fail(CCacheReader::State::Corrupt);
            break;
        }
        tables.types.push_back(static_cast<CNodeData::ENodeType_t>(type));
    }
    if (numNodes == 0) {
        reader.Fail(CCacheReader::State::Corrupt);
    }
    return tables;
}

void CProperty::ToFile(CCacheWriter& writer) const {
    writer.Number(static_cast<uint32_t>(m_PropertyID), 1);
    writer.Number(m_DataType, 1);
    writer.Number(m_HasAttribute ? 1 : 0, 1);
    writer.Number(static_cast<uint64_t>(m_Value), ValueBytes(m_DataType));
    if (m_HasAttribute) {
        GetAttribute()->ToFile(writer);
    }
}

CProperty CProperty::FromFile(CCacheReader& reader, const CCacheCounts& counts,
                              INodeDataMap* pNodeDataMap, int depth) {
    CProperty property(pNodeDataMap);
    const CPropertyID id(static_cast<CPropertyID::EProperty_ID_t>(reader.Number<1>()));
    const auto type = static_cast<EDataType_t>(reader.Number<1>());
    const bool hasAttribute = reader.Number<1>() == 1;
    if (type >= kValueBytes.size()) {
        reader.Fail(CCacheReader::State::Corrupt);
    }
    if (!reader.IsGood()) {
        return property;
    }
    const uint64_t value = ReadValue(reader, type);
    if (!id.HasName() || !IsMeaningful(type, value, counts) || depth > kMaxAttributeDepth) {
        reader.Fail(CCacheReader::State::Corrupt);
        return property;
    }
    property.m_PropertyID = id;
    property.m_DataType = type;
    property.m_Value = Widened(type, value);
    if (hasAttribute) {
        property.SetAttribute(
            std::make_unique<CProperty>(FromFile(reader, counts, pNodeDataMap, depth + 1)));
    }
    return property;
}

void CNodeData::ToFile(CCacheWriter& writer) const {
    writer.Number(m_pPropertyVector->size(), kCountBytes);
    for (const CProperty& property : *m_pPropertyVector) {
        property.ToFile(writer);
    }
}

void CNodeData::FromFile(CCacheReader& reader, const CCacheCounts& counts) {
    ReadCacheProperties(reader, counts, m_NodeType, m_pNodeDataMap,
                        [this](CProperty&& property) { AddProperty(std::move(property)); });
    ShrinkToFit();
}

void CNodeDataMap::ToFile(CCacheWriter& writer) const {
    writer.Raw(GetCacheFileHeader());
    writer.Number(m_pStringID2String->size(), kCountBytes);
    for (const std::string& text : *m_pStringID2String) {
        writer.Text(text);
    }
    writer.Number(m_pNodeID2NodeData->size(), kCountBytes);
    for (const auto& pNodeData : *m_pNodeID2NodeData) {
        writer.Number(pNodeData->GetNodeType(), kTypeBytes);
        writer.Number(static_cast<uint32_t>(pNodeData->GetNodeID().ToIndex()), kNodeIDBytes);
    }
    for (const auto& pNodeData : *m_pNodeID2NodeData) {
        pNodeData->ToFile(writer);
    }
}

void CNodeDataMap::FromFile(CCacheReader& reader) {
    CCacheTables tables = ReadCacheTables(reader);
    const CCacheCounts counts = tables.Count();
    *m_pStringID2String = std::move(tables.strings);
    for (const CNodeData::ENodeType_t type : tables.types) {
        const NodeID_t id(m_pNodeID2NodeData->size());
        m_pNodeID2NodeData->push_back(std::make_unique<CNodeData>(type, id, this));
    }
    for (const auto& pNodeData : *m_pNodeID2NodeData) {
        pNodeData->FromFile(reader, counts);
    }
    if (reader.IsGood()) {
        NameNodesFromFile(reader);
    }
}

/// The names of the nodes are nowhere in the file but among their properties.
void CNodeDataMap::NameNodesFromFile(CCacheReader& reader) {
    for (const auto& pNodeData : *m_pNodeID2NodeData) {
        const auto& properties = pNodeData->GetProperties();
        const auto isName = [](const CProperty& property) {
            return property.GetPropertyID() == CPropertyID::Name_ID;
        };
        const auto found = std::find_if(properties.begin(), properties.end(), isName);
        const bool isNamedOnce =
            found != properties.end() && std::none_of(found + 1, properties.end(), isName);
        if (!isNamedOnce) {
            reader.Fail(CCacheReader::State::Corrupt);
            return;
        }
        m_pNodeID2NodeName->push_back(found->String());
        if (!m_pNodeName2NodeID->emplace(found->String(), pNodeData->GetNodeID()).second) {
            reader.Fail(CCacheReader::State::Corrupt);
        }
    }
    if (m_pNodeID2NodeName->front() != kRootNodeName) {
        reader.Fail(CCacheReader::State::Corrupt);
    }
}

}  // namespace GenApi_3_0_ORVANE
