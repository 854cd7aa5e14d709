#pragma once
/// Lists of nodes and of values as they cross the library's boundary.

#include "GenApi/Types.h"

namespace GenApi_3_0_ORVANE {

struct INode;
struct IValue;

/// Borrowed nodes: the map owns them.
using node_vector = GenICam_3_0_ORVANE::opaque_vector<INode*>;
/// Borrowed values: the map owns them.
using value_vector = GenICam_3_0_ORVANE::opaque_vector<IValue*>;

}  // namespace GenApi_3_0_ORVANE
