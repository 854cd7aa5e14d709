#include "map/FaultyNodes.h"

#include "core/NodeImpl.h"

namespace GenApi_3_0_ORVANE {

bool IsPassedBy(INode& node) {
    auto& implementation = dynamic_cast<CNodeImpl&>(node);
    const NodeFault* const fault = implementation.FindFault();
    if (fault == nullptr) {
        return false;
    }
    implementation.LogPassedBy(fault->GetText());
    return true;
}

bool IsPassedByAfter(const GenICam_3_0_ORVANE::GenericException& failure, INode& node) {
    if (dynamic_cast<const NodeFaultMark*>(&failure) == nullptr) {
        return false;
    }
    dynamic_cast<CNodeImpl&>(node).LogPassedBy(failure.GetDescription());
    return true;
}

}  // namespace GenApi_3_0_ORVANE
