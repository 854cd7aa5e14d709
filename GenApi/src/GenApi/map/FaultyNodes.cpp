// Which nodes a walk over many of them has to pass by. One wrong node of a description must not
// keep a client from saving all others.

#include "map/FaultyNodes.h"

#include "node/NodeImpl.h"

namespace GenApi_3_0_ORVANE {

/// The nodes of a map are all of this class, whatever interface a client has.
bool IsPassedBy(INode& node) {
    auto& implementation = dynamic_cast<CNodeImpl&>(node);
    const NodeFault* const fault = implementation.FindFault();
    if (fault == nullptr) {
        return false;
    }
    implementation.LogPassedBy(fault->GetText());
    return true;
}

/// Some faults only show when the node is used: a formula that leads to itself, for example.
/// Their exceptions carry a mark. A failure of the transport carries no mark, since the
/// description doesn't cause it.
bool IsPassedByAfter(const GenICam_3_0_ORVANE::GenericException& failure, INode& node) {
    if (dynamic_cast<const NodeFaultMark*>(&failure) == nullptr) {
        return false;
    }
    dynamic_cast<CNodeImpl&>(node).LogPassedBy(failure.GetDescription());
    return true;
}

}  // namespace GenApi_3_0_ORVANE
