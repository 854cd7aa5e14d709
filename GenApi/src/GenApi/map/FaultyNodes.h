#pragma once
/// Walks over many nodes, which go on behind one that can't be used.

#include "Base/GCException.h"
#include "GenApi/INode.h"

namespace GenApi_3_0_ORVANE {

/// Whether the node's description keeps it from being used. The log is told that
/// the walk passes it by.
bool IsPassedBy(INode& node);
/// Whether the failure is one that the use of the node always ends in. The log is
/// told likewise.
bool IsPassedByAfter(const GenICam_3_0_ORVANE::GenericException& failure, INode& node);

/// Visits a node of a walk. A node at fault, or one that turns out to be so, is
/// passed by; all other failures are the caller's.
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
