#pragma once

#include "GenApi/INodeMap.h"
#include "GenApi/impl/Node.h"

namespace GenApi_3_0_ORVANE {

/// Tells the map for the life of a scope which operation of which node a client
/// is in.
class EntryMethodFinalizer {
public:
    EntryMethodFinalizer(CNodeImpl& node, EMethod method, bool ignoreCache = false)
        : m_Map(node.GetMap()) {
        m_Map.SetEntryPoint(method, &node, ignoreCache);
    }
    ~EntryMethodFinalizer() { m_Map.ResetEntryPoint(); }
    EntryMethodFinalizer(const EntryMethodFinalizer&) = delete;
    EntryMethodFinalizer& operator=(const EntryMethodFinalizer&) = delete;

private:
    INodeMapPrivate& m_Map;
};

}  // namespace GenApi_3_0_ORVANE
