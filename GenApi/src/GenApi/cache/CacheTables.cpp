// What is in a cache file, part by part, and the operations of the data classes that write and
// read it. Identifiers have two bytes, which bounds what fits into a file.
//
// A file may have been damaged, or written by somebody else. So a reader accepts only identifiers
// that the tables have, and only properties that a node of the type can have: live nodes rely on
// both.

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
constexpr size_t kLinkBytes = 2;

/// No description nests attributes deeper than one level. Without a bound, a wrong file could
/// make the reader call itself until the stack ends.
constexpr int kMaxAttributeDepth = 8;

/// Bytes of a value by its data type, also for the numbers that no type has.
constexpr std::array<uint8_t, 21> kValueBytes{1, 2, 2, 2, 2, 4, 4, 4, 4, 4, 4,
                                              4, 4, 4, 4, 4, 4, 4, 8, 8, 8};

size_t ValueBytes(uint64_t dataType) {
    OV_ASSERT(dataType < kValueBytes.size());
    return kValueBytes[dataType];
}

/// Also keeps a wrong file from reserving more memory than a right one could.
size_t ReadCount(CCacheReader& reader) {
    const auto count = reader.Number<kCountBytes>();
    if (count > kCacheFileMaxCount) {
        reader.Fail(CCacheReader::State::Corrupt);
        return 0;
    }
    return count;
}

/// Identifiers in two bytes each, as plain numbers: a description has ten times as many of these
/// links as properties.
void WriteLinks(CCacheWriter& writer, const CNodeData::NodeIDs_t& links) {
    writer.Number(links.size(), kCountBytes);
    for (const NodeID_t link : links) {
        writer.Number(static_cast<uint32_t>(link.ToIndex()), kLinkBytes);
    }
}

/// Reads two bytes more of a value without a type than the writer writes. No property has such a
/// value, and older readers do the same.
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

/// Whether a property of this type in this file can have the value.
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

/// The value as a property keeps it. Enumerators may be negative.
int64_t Widened(CProperty::EDataType_t type, uint64_t value) {
    return CProperty::IsEnumeration(type) ? static_cast<int32_t>(value)
                                          : static_cast<int64_t>(value);
}

/// The root element comes first and nowhere else.
bool IsNodeType(uint64_t type, bool isFirst) {
    return isFirst ? type == CNodeData::RegisterDescription_ID : type <= CNodeData::IntConverter_ID;
}

}  // namespace

/// The identifiers of the nodes are in the file for the reader's benefit, and have to be those
/// that their order gives them anyway.
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
    tables.numClosureLinks = reader.Number<kCountBytes>();
    if (tables.numClosureLinks > reader.GetRest() / kLinkBytes) {
        reader.Fail(CCacheReader::State::Corrupt);
        tables.numClosureLinks = 0;
    }
    return tables;
}

size_t ReadCacheLinks(CCacheReader& reader, const CCacheCounts& counts, size_t room,
                      CNodeData::NodeIDs_t& links) {
    const size_t count = reader.Number<kCountBytes>();
    if (count + links.size() > room) {
        reader.Fail(CCacheReader::State::Corrupt);
        return 0;
    }
    const std::string_view raw = reader.Raw(count * kLinkBytes);
    links.reserve(links.size() + raw.size() / kLinkBytes);
    for (size_t at = 0; at < raw.size(); at += kLinkBytes) {
        const int32_t link = static_cast<uint8_t>(raw[at]) | static_cast<uint8_t>(raw[at + 1]) << 8;
        if (static_cast<size_t>(link) >= counts.nodes) {
            reader.Fail(CCacheReader::State::Corrupt);
            return 0;
        }
        links.emplace_back(link);
    }
    return raw.size() / kLinkBytes;
}

size_t ReadClosurePlace(CCacheReader& reader) {
    return reader.Number<kCountBytes>();
}

/// The order of the fields is the form of the file.
void CProperty::ToFile(CCacheWriter& writer) const {
    writer.Number(static_cast<uint32_t>(m_PropertyID), 1);
    writer.Number(m_DataType, 1);
    writer.Number(m_HasAttribute ? 1 : 0, 1);
    writer.Number(static_cast<uint64_t>(m_Value), ValueBytes(m_DataType));
    if (m_HasAttribute) {
        GetAttribute()->ToFile(writer);
    }
}

/// Everything is read before anything is judged, so that a file which ends too soon fails for
/// that reason.
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
    writer.Number(m_Properties.size(), kCountBytes);
    for (const CProperty& property : m_Properties) {
        property.ToFile(writer);
    }
    writer.Number(m_Closure.place, kCountBytes);
    WriteLinks(writer, m_Closure.dependents);
    WriteLinks(writer, m_Closure.terminals);
}

/// The list is as long as it will ever be.
void CNodeData::FromFile(CCacheReader& reader, const CCacheCounts& counts) {
    ReadCacheProperties(reader, counts, m_NodeType, m_pNodeDataMap,
                        [this](CProperty&& property) { AddProperty(std::move(property)); });
    ShrinkToFit();
    m_Closure.place = ReadClosurePlace(reader);
    const size_t room = reader.GetRest();
    ReadCacheLinks(reader, counts, room, m_Closure.dependents);
    ReadCacheLinks(reader, counts, room, m_Closure.terminals);
    if (m_Closure.place > m_Properties.size()) {
        reader.Fail(CCacheReader::State::Corrupt);
    }
}

/// Types and identifiers of all nodes come before the first property: a reader that makes live
/// nodes at once needs all of them before it meets the first link.
void CNodeDataMap::ToFile(CCacheWriter& writer) const {
    writer.Raw(GetCacheFileHeader());
    writer.Number(m_pStringID2String->size(), kCountBytes);
    for (const std::string_view text : *m_pStringID2String) {
        writer.Text(text);
    }
    writer.Number(m_pNodeID2NodeData->size(), kCountBytes);
    size_t numClosureLinks = 0;
    for (const auto& pNodeData : *m_pNodeID2NodeData) {
        writer.Number(pNodeData->GetNodeType(), kTypeBytes);
        writer.Number(static_cast<uint32_t>(pNodeData->GetNodeID().ToIndex()), kNodeIDBytes);
        numClosureLinks += pNodeData->GetClosure().GetNumLinks();
    }
    writer.Number(numClosureLinks, kCountBytes);
    for (const auto& pNodeData : *m_pNodeID2NodeData) {
        pNodeData->ToFile(writer);
    }
}

/// For clients that want data rather than live nodes.
void CNodeDataMap::FromFile(CCacheReader& reader) {
    const CCacheTables tables = ReadCacheTables(reader);
    const CCacheCounts counts = tables.Count();
    for (const std::string_view text : tables.strings) {
        m_pStringID2String->Add(text);
    }
    for (const CNodeData::ENodeType_t type : tables.types) {
        const NodeID_t id(m_pNodeID2NodeData->size());
        m_pNodeID2NodeData->push_back(std::make_unique<CNodeData>(type, id, this));
    }
    size_t numClosureLinks = 0;
    for (const auto& pNodeData : *m_pNodeID2NodeData) {
        pNodeData->FromFile(reader, counts);
        numClosureLinks += pNodeData->GetClosure().GetNumLinks();
    }
    if (numClosureLinks != tables.numClosureLinks) {
        reader.Fail(CCacheReader::State::Corrupt);
    }
    if (reader.IsGood()) {
        NameNodesFromFile(reader);
    }
}

/// The names of nodes are nowhere in the file but among their properties. Each must be there
/// once, and no two may be equal, since links go by name when maps are merged.
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
        const auto [name, isFirst] =
            m_pNodeName2NodeID->emplace(found->String(), pNodeData->GetNodeID());
        m_pNodeID2NodeName->push_back(&name->first);
        if (!isFirst) {
            reader.Fail(CCacheReader::State::Corrupt);
        }
    }
    if (*m_pNodeID2NodeName->front() != kRootNodeName) {
        reader.Fail(CCacheReader::State::Corrupt);
    }
}

}  // namespace GenApi_3_0_ORVANE
