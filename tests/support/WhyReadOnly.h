#pragma once
/// Why a description doesn't allow writes to a node.

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

/// The reason why a client can't write the node in any state of the camera; empty if the
/// description has no such reason.
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

/// The reason why a client can't change the selector in any state of the camera.
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
