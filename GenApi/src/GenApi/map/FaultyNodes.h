#pragma once
/// Walks over many nodes, which continue after one that can't be used.

#include "Base/GCException.h"
#include "GenApi/INode.h"

namespace GenApi_3_0_ORVANE {

/// Whether the node's description keeps it from being used. The log says that the walk skips it.
bool IsPassedBy(INode& node);
/// Whether the failure is one that every use of the node ends in. The log says so as well.
bool IsPassedByAfter(const GenICam_3_0_ORVANE::GenericException& failure, INode& node);

/// Visits a node of a walk. A node at fault, or one that turns out to be at fault, is skipped;
/// all other failures pass through.
template <class Visit>
void VisitUnlessFaulty(INode& node, const Visit& visit) {
    if (IsPassedBy(node)) {
        return;
    }
    try {
        visit();
    } catch (const GenICam_3_0_ORVANE::GenericException& failure) {
        if (!IsPassedByAfter(failure, node)) {
            throw;
        }
    }
}

}  // namespace GenApi_3_0_ORVANE
