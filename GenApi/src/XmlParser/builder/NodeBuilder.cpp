// What becomes of the elements of a description: nodes, and nodes that the description only
// implies. The reader has checked each element against the grammar before it gets here.

#include "builder/NodeBuilder.h"

#include <bitset>

#include "Base/GCException.h"
#include "Base/OvAssert.h"
#include "nodes/DescriptionLimits.h"

namespace GenApi_3_0_ORVANE {

namespace {

using P = CPropertyID;

}  // namespace

/// The map asserts that setting and clearing the context alternate, and a run that fails
/// inside an element leaves it set. The caller may clear the map and run again.
void CNodeBuilder::Abandon() {
    if (m_Map.GetContextNode() != nullptr) {
        m_Map.SetContextNode(nullptr);
    }
}

/// A converter becomes three nodes: itself and two formulas, which collect their variables while
/// the converter's element is open.
OpenNode CNodeBuilder::OpenElement(const ElementType& type, const OpenNode* parent) {
    OpenNode open;
    open.mergePriority = parent == nullptr ? 0 : parent->mergePriority;
    // A group only keeps elements together. It leaves no node, but what is inside it
    // inherits through it.
    if (type.nodeType == CNodeData::_NotImpl_ID) {
        return open;
    }
    // Descriptions of the first schema version may have such entries, which nothing refers to.
    if (type.nodeType == CNodeData::EnumEntry_ID && m_Map.GetContextNode() == nullptr &&
        !(m_SchemaMajor == 1 && m_SchemaMinor == 0)) {
        RUNTIME_EXCEPTION(
            "Standalone <EnumEntry> node detected which is ignored in schema v1.0 "
            "but forbidden otherwise");
    }
    open.node = std::make_unique<CNodeData>(type.nodeType, &m_Map);
    if (type.nodeType == CNodeData::RegisterDescription_ID) {
        // Named before anything else, the root takes identifier 0, where printing
        // looks for it.
        open.node->SetName(kRootNodeName);
    }
    if (type.isContext) {
        m_Map.SetContextNode(open.node.get());
    }
    const bool isIntConverter = type.nodeType == CNodeData::IntConverter_ID;
    if (isIntConverter || type.nodeType == CNodeData::Converter_ID) {
        const auto knife = isIntConverter ? CNodeData::IntSwissKnife_ID : CNodeData::SwissKnife_ID;
        constexpr CEnumNumber kTo(1);
        constexpr CEnumNumber kFrom(0);
        open.formulaTo = std::make_unique<CNodeData>(knife, &m_Map);
        open.formulaTo->AddProperty(P::InputDirection_ID, CProperty::EInputDirection_ID, kTo);
        open.formulaFrom = std::make_unique<CNodeData>(knife, &m_Map);
        open.formulaFrom->AddProperty(P::InputDirection_ID, CProperty::EInputDirection_ID, kFrom);
    }
    return open;
}

/// The element's name decides the type: both kinds have the same content.
OpenNode CNodeBuilder::OpenKey(std::string_view elementName, const OpenNode& parent) {
    const bool isText = elementName == "TextDesc";
    OpenNode open;
    open.mergePriority = parent.mergePriority;
    open.node =
        std::make_unique<CNodeData>(isText ? CNodeData::TextDesc_ID : CNodeData::IntKey_ID, &m_Map);
    return open;
}

/// Names must be unique in a map, while entries of different enumerations often have the same. So
/// a node inside another one gets its name from both; the entry keeps its own as what users see.
/// A structure has no name to share, and links refer to the keys of a configuration ROM by their
/// plain names.
void CNodeBuilder::SetName(const OpenNode& open, std::string_view name) {
    CNodeData& node = *open.node;
    const CNodeData* const context = m_Map.GetContextNode();
    if (context == nullptr || context == &node || !context->GetNodeID().IsValid() ||
        context->GetNodeType() == CNodeData::ConfRom_ID) {
        node.SetName(name);
        return;
    }
    std::string fullName = "_" + context->GetName() + "_";
    if (context->GetNodeType() == CNodeData::Enumeration_ID) {
        node.AddProperty(P::Symbolic_ID, name);
        InheritMergePriority(node, open.mergePriority);
        fullName.insert(0, "EnumEntry");
    }
    node.SetName(fullName.append(name));
}

/// Zero is the same as none.
void CNodeBuilder::InheritMergePriority(CNodeData& node, int64_t mergePriority) {
    if (mergePriority != 0) {
        node.AddProperty(P::MergePriority_ID, mergePriority);
    }
}

/// Attributes come in any order, so what is inherited is only known after the last one. A
/// node inside another one is replaced, or stays, together with it. One that has a
/// priority of its own keeps that.
void CNodeBuilder::EndAttributes(OpenNode& open) {
    if (open.node == nullptr) {
        return;
    }
    if (open.node->FindProperty(P::MergePriority_ID) == nullptr) {
        InheritMergePriority(*open.node, open.mergePriority);
    }
    open.mergePriority = open.node->GetMergePriority();
}

/// Some descriptions repeat an entry word for word, which harms nobody. Any other repeated name
/// is refused by the map.
void CNodeBuilder::Store(std::unique_ptr<CNodeData> node) {
    const CNodeData* const stored = m_Map.GetNodeData(node->GetNodeID());
    const bool isRepeatedEntry =
        stored != nullptr && node->GetNodeType() == CNodeData::EnumEntry_ID && *node == *stored;
    if (!isRepeatedEntry) {
        m_Map.SetNodeData(std::move(node), false);
    }
}

/// A structure leaves no node: its properties were copied into its fields.
NodeID_t CNodeBuilder::CloseElement(OpenNode& open, const ElementType& type) {
    if (open.node == nullptr) {
        return {};
    }
    if (open.IsConverter()) {
        const NodeID_t id = open.node->GetNodeID();
        CloseConverter(open);
        return id;
    }
    if (type.isContext) {
        m_Map.SetContextNode(nullptr);
    }
    if (type.nodeType == CNodeData::StructReg_ID) {
        return {};
    }
    const NodeID_t id = open.node->GetNodeID();
    OV_ASSERT(id.IsValid());
    Store(std::move(open.node));
    return id;
}

/// The ROM that a key is looked up in is the element around it.
void CNodeBuilder::CloseKey(OpenNode& open, std::string_view text) {
    open.node->AddProperty(P::p1212Parser_ID, m_Map.GetContextNode()->GetNodeID());
    int64_t number = 0;
    if (!TextToInteger(Trimmed(text), number)) {
        // The text is fixed, with its slip and the mark that nobody fills in: programs
        // may compare it.
        RUNTIME_EXCEPTION("%s it not a valid integer", "%S");
    }
    open.node->AddProperty(P::Key_ID, number);
    Store(std::move(open.node));
}

/// The converter is stored first and completed in place: its links need the identifiers that its
/// formulas get with their names. The formulas have its merge priority, since injected data
/// replaces all three or none.
void CNodeBuilder::CloseConverter(OpenNode& open) {
    m_Map.SetContextNode(nullptr);
    auto formulaTo = std::move(open.formulaTo);
    auto formulaFrom = std::move(open.formulaFrom);
    const NodeID_t id = open.node->GetNodeID();
    Store(std::move(open.node));
    // Found again by its identifier, as the map now owns it.
    CNodeData& converter = *m_Map.GetNodeData(id);
    const std::string name = converter.GetName();
    const auto finish = [&](std::unique_ptr<CNodeData> formula, const char* suffix,
                            P::EProperty_ID_t link) {
        formula->SetName(name + suffix);
        converter.AddProperty(link, formula->GetNodeID());
        InheritMergePriority(*formula, open.mergePriority);
        Store(std::move(formula));
    };
    finish(std::move(formulaTo), "_ConvertTo", P::pSwissKnifeTo_ID);
    finish(std::move(formulaFrom), "_ConvertFrom", P::pSwissKnifeFrom_ID);
}

/// Only the parent's type says what a nested node is to it: the same masked register is
/// an entry inside a structure and a node like others inside a group. Without a parent
/// node there is nothing to link.
void CNodeBuilder::TakeChild(OpenNode& parent, const ElementType& childType, NodeID_t child) {
    if (parent.node == nullptr || !child.IsValid()) {
        return;
    }
    switch (childType.nodeType) {
        case CNodeData::EnumEntry_ID:
            if (parent.node->GetNodeType() == CNodeData::Enumeration_ID) {
                parent.node->AddProperty(P::pEnumEntry_ID, child);
            }
            break;
        case CNodeData::IntSwissKnife_ID:
            if (parent.node->GetNodeType() != CNodeData::RegisterDescription_ID) {
                parent.node->AddProperty(P::pAddress_ID, child);
            }
            break;
        case CNodeData::MaskedIntReg_ID:
            if (parent.node->GetNodeType() == CNodeData::StructReg_ID) {
                CopyTemplate(*parent.node, child);
            }
            break;
        default:
            break;
    }
}

/// Copies to an entry what its structure says and the entry doesn't. What the entry has
/// is noted before the first copy: a kind that the template repeats, such as the parts of
/// an address, arrives whole or not at all.
void CNodeBuilder::CopyTemplate(const CNodeData& source, NodeID_t target) {
    // The bound is on the work, so properties that the entry has itself count, too.
    CountCopies(source.GetProperties().size());
    CNodeData& entry = *m_Map.GetNodeData(target);
    std::bitset<P::_Undefined_ID> own;
    for (const CProperty& property : entry.GetProperties()) {
        own.set(property.GetPropertyID());
    }
    for (const CProperty& property : source.GetProperties()) {
        if (!own.test(property.GetPropertyID())) {
            entry.AddProperty(CProperty(property));
        }
    }
}

/// Many entries of a large structure, or many expressions after many variables, grow with
/// the square of the description's size. A small file must not fill the memory.
void CNodeBuilder::CountCopies(size_t count) {
    m_NumCopies += count;
    if (m_NumCopies > kMaxRepeatedProperties) {
        RUNTIME_EXCEPTION("structures and expressions repeat more than %zu properties",
                          kMaxRepeatedProperties);
    }
}

}  // namespace GenApi_3_0_ORVANE
