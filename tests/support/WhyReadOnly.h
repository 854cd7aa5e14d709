#pragma once
/// What a description says against writing a node.

#include <string>

#include "GenApi/IEnumeration.h"
#include "GenApi/INode.h"
#include "GenApi/IRegister.h"

namespace GenApi_3_0_ORVANE {

inline bool Says(INode& node, const char* property, const char* text) {
    gcstring value;
    gcstring attribute;
    return node.GetProperty(property, value, attribute) && value == text;
}

/// Why no state of a camera ever lets a client write the node; empty where
/// nothing of the description is against it.
inline std::string WhyReadOnly(INode& node) {
    if (Says(node, "ImposedAccessMode", "RO")) {
        return "read only by the description";
    }
    if (Says(node, "AccessMode", "RO")) {
        return "a register that is read only";
    }
    if (dynamic_cast<IRegister*>(&node) != nullptr) {
        return "";
    }
    node_vector terminals;
    node.GetChildren(terminals, TerminalNodes);
    if (terminals.empty()) {
        return "computed";
    }
    node_vector written;
    node.GetChildren(written, WritingChildren);
    for (INode* const child : written) {
        const std::string why = WhyReadOnly(*child);
        if (!why.empty()) {
            return why + " (" + child->GetName().c_str() + ")";
        }
    }
    return "";
}

/// Why no state of a camera ever lets a client move the selector.
inline std::string WhyFixed(INode& node) {
    if (auto* const choice = dynamic_cast<IEnumeration*>(&node)) {
        node_vector entries;
        choice->GetEntries(entries);
        if (entries.size() < 2) {
            return "a single entry";
        }
    }
    return WhyReadOnly(node);
}

}  // namespace GenApi_3_0_ORVANE
