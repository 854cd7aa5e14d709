#include "core/NodeExceptions.h"

#include "core/NodeImpl.h"

namespace GenApi_3_0_ORVANE {

NodePlace PlaceOf(INodePrivate& node) {
    auto& implementation = dynamic_cast<CNodeImpl&>(node);
    return {node.InternalGetName(), implementation.GetMap().GetEntryPoint()};
}

}  // namespace GenApi_3_0_ORVANE
