#pragma once
/// Why a feature is as it is at the moment.

#include <string>
#include <vector>

#include "camera/Node.h"
#include "support/Json.h"

/// Something that keeps a feature from being there, read or set.
struct Cause {
    /// What it does: "not implemented", "not available", "locked", "read only" or "write only".
    std::string effect;
    /// The node that it does that to: the feature, or one that the feature is made of.
    std::string node;
    /// The sentence for people.
    std::string reason;
};

/// All that restricts a node, its own restrictions before those of what it is made of. Empty for a
/// node that can be read and written.
std::vector<Cause> CausesOf(OV_DEV_HANDLE camera, OV_NODE_MODULE module, const Node& node);

/// What a node is made of, with the values of the moment: conditions, limits, formulas with their
/// variables, registers. Each node has its content once.
Json SourcesOf(OV_DEV_HANDLE camera, OV_NODE_MODULE module, const Node& node);
