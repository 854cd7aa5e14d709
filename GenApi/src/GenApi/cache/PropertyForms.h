#pragma once

#include "nodes/NodeData.h"

namespace GenApi_3_0_ORVANE {

/// Whether a node of the type can have the property: of this identifier, with a
/// value of this type and with such an attribute, or without.
bool IsPropertyOf(CNodeData::ENodeType_t node, const CProperty& property);

}  // namespace GenApi_3_0_ORVANE
