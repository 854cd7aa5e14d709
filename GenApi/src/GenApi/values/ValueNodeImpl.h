#pragma once

#include "GenApi/IValue.h"
#include "GenApi/impl/BaseT.h"
#include "GenApi/impl/NodeT.h"
#include "GenApi/impl/ValueT.h"

namespace GenApi_3_0_ORVANE {

/// A node without a value of its own, which exists for its callbacks and links: an event, for
/// example.
class CValueNodeImpl : public CNodeImpl, virtual public IValue {};

class CValueNode : public BaseT<ValueT<NodeT<CValueNodeImpl>>> {};

}  // namespace GenApi_3_0_ORVANE
