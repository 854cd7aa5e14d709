#pragma once

#include "GenApi/IValue.h"
#include "GenApi/impl/BaseT.h"
#include "GenApi/impl/NodeT.h"
#include "GenApi/impl/ValueT.h"

namespace GenApi_3_0_ORVANE {

/// A node that holds no value of its own and is there for what others make of
/// it, an event for example.
class CValueNodeImpl : public CNodeImpl, virtual public IValue {};

class CValueNode : public BaseT<ValueT<NodeT<CValueNodeImpl>>> {};

}  // namespace GenApi_3_0_ORVANE
