#pragma once
/// Lists of nodes and of values that may cross the library's boundary.

#include "GenApi/Types.h"

namespace GenApi_3_0_ORVANE {

struct INode;
struct IValue;

/// Pointers to nodes, which their map owns.
using node_vector = GenICam_3_0_ORVANE::opaque_vector<INode*>;
/// Pointers to nodes with values, which their map owns.
using value_vector = GenICam_3_0_ORVANE::opaque_vector<IValue*>;

}  // namespace GenApi_3_0_ORVANE
