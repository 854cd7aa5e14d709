#pragma once

#include <memory>

#include "core/INodePrivate.h"

namespace GenApi_3_0_ORVANE {

/// A blank node of the class that belongs to a type. RuntimeException for a
/// type that has none.
std::unique_ptr<INodePrivate> CreateNode(CNodeData::ENodeType_t type);

}  // namespace GenApi_3_0_ORVANE
