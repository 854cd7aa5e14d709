// Prints a whole map, for people and for tools that compare two versions of a
// description. The document isn't meant to be parsed again: it also has what
// preprocessing has derived.

#include <ostream>

#include "Base/OvAssert.h"
#include "nodes/NodeDataMap.h"

namespace GenApi_3_0_ORVANE {
namespace {

constexpr const char* nodeIndent = "    ";
constexpr const char* propertyIndent = "        ";

/// Properties that are attributes of the element, or that only a merge needs.
bool IsInStartTag(CPropertyID id) {
    return id == CPropertyID::Name_ID || id == CPropertyID::NameSpace_ID ||
           id == CPropertyID::MergePriority_ID || id == CPropertyID::ExposeStatic_ID;
}

/// All that the root element says is in attributes. Its name is ours and no part of the document.
std::string RootTag(const CNodeData& root) {
    std::string tag = "<RegisterDescription";
    root.ForEachProperty([&tag](const CProperty& property) {
        if (property.GetPropertyID() != CPropertyID::Name_ID) {
            tag += ' ';
            property.AppendTo(tag, tssXmlAttribute);
        }
    });
    return tag + ">\n";
}

/// @param isFeatureSeen one flag for the whole document and not one per node:
///        only the nodes before the first feature say that they are none.
std::string Element(const CNodeData& node, bool& isFeatureSeen) {
    std::string element = nodeIndent + node.ToString(tssXmlStartTag) + '\n';
    node.ForEachProperty([&](const CProperty& property) {
        const CPropertyID id = property.GetPropertyID();
        isFeatureSeen = isFeatureSeen || id == CPropertyID::IsFeature_ID;
        if (!IsInStartTag(id)) {
            element += propertyIndent;
            property.AppendTo(element, tssXmlElement);
            element += '\n';
        }
    });
    if (!isFeatureSeen) {
        element.append(propertyIndent).append("<IsFeature>No</IsFeature>\n");
    }
    return element + nodeIndent + node.ToString(tssXmlEndTag) + "\n\n";
}

template <typename Action>
void ForEachNode(const CNodeDataMap& map, size_t first, Action action) {
    for (size_t index = first; index < map.GetNumNodeIDs(); ++index) {
        if (const CNodeData* pNodeData = map.GetNodeData(NodeID_t(index))) {
            action(*pNodeData);
        }
    }
}

void PrintDocument(std::ostream& stream, const CNodeDataMap& map) {
    stream << "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"no\" ?>\n";
    const CNodeData* const pRoot = map.GetNodeData(NodeID_t(0));
    OV_ASSERT(pRoot);
    stream << RootTag(*pRoot);
    bool isFeatureSeen = false;
    ForEachNode(map, 1, [&](const CNodeData& node) {
        if (node.GetNodeType() != CNodeData::RegisterDescription_ID) {
            stream << Element(node, isFeatureSeen);
        }
    });
    stream << "</RegisterDescription>\n";
}

}  // namespace

void CNodeDataMap::Print(std::ostream& stream, const CNodeDataMap& map, EToStringStyle_t style) {
    switch (style) {
        case tssText:
            ForEachNode(map, 0,
                        [&](const CNodeData& node) { stream << node.ToString(tssText) << '\n'; });
            break;
        case tssXmlDocument:
            PrintDocument(stream, map);
            break;
        default:
            OV_ASSERT(false);
    }
}

}  // namespace GenApi_3_0_ORVANE
