#pragma once
/// The tree of a module's features.

#include <vector>

namespace GenApi_3_0_ORVANE {
struct INode;
struct INodeMap;
}  // namespace GenApi_3_0_ORVANE

/// The category "Root", and all that it leads to: each category before its content, in the
/// order of the description. What several categories hold is only where it comes first. Empty
/// without a category "Root".
std::vector<GenApi_3_0_ORVANE::INode*> FeaturesInTreeOrder(GenApi_3_0_ORVANE::INodeMap& map);

/// The content of a category, without what its description gets wrong; empty for any other
/// node.
std::vector<GenApi_3_0_ORVANE::INode*> FeaturesOfCategory(GenApi_3_0_ORVANE::INode& node);
