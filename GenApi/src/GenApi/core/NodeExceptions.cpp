// The names that failures of a node carry.

#include "core/NodeExceptions.h"

namespace GenApi_3_0_ORVANE {

/// The entry point is the map's, since the call began at whichever node the client has called.
/// The map of such a node is always one of the engine's own.
NodePlace PlaceOf(INodePrivate& node) {
    auto& map = static_cast<INodeMapPrivate&>(*node.GetNodeMap());
    return {node.InternalGetName(), map.GetEntryPoint()};
}

}  // namespace GenApi_3_0_ORVANE
