#pragma once
/// What tests of nodes and maps share: short descriptions, and nodes made by hand.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <deque>
#include <future>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "Base/GCException.h"
#include "GenApi/IInteger.h"
#include "map/NodeMap.h"
#include "nodes/NodeDataMap.h"
#include "support/DescriptionXml.h"
#include "support/EngineLog.h"
#include "support/FailureText.h"
#include "support/NotingCallback.h"
#include "support/TestPort.h"
#include "support/XmlNodeMap.h"
#include "values/IntegerImpl.h"

namespace EngineTest {

using namespace GenApi_3_0_ORVANE;   // NOLINT(google-build-using-namespace)
using namespace GenICam_3_0_ORVANE;  // NOLINT(google-build-using-namespace)
using namespace DescriptionXml;      // NOLINT(google-build-using-namespace)

inline constexpr int64_t kLowest = std::numeric_limits<int64_t>::min();
inline constexpr int64_t kHighest = std::numeric_limits<int64_t>::max();

inline std::string IntReg(const std::string& name, int address,
                          const std::string& caching = "WriteThrough") {
    return RegXml{.name = name, .address = address, .caching = caching}();
}

inline std::string Numbered(const std::string& name, int number) {
    return name + std::to_string(number);
}
/// Nodes whose links are exactly those that a test gives them: nothing is
/// completed as it is when a description is loaded.
class NodesByHand {
public:
    explicit NodesByHand(const char* deviceName = "Device") : m_Map(deviceName) {}

    CNodeMap& Map() { return m_Map; }
    template <class Node = CInteger>
    Node& Add(const char* name) {
        auto node = std::make_unique<Node>();
        Node& added = *node;
        const NodeID_t id = m_Data.GetNodeID(name, true);
        m_Map.SetNumNodes(static_cast<size_t>(id.ToIndex()) + 1);
        m_Map.RegisterNode(node.release(), CNodeData::Integer_ID, id);
        Set(added, CPropertyID::Name_ID, std::string_view(name));
        return added;
    }
    /// An integer that holds a value.
    CInteger& AddValue(const char* name, int64_t value = 1) {
        CInteger& node = Add(name);
        Set(node, CPropertyID::Value_ID, value);
        return node;
    }
    template <class... Value>
    void Set(INodePrivate& node, CPropertyID id, const Value&... value) {
        node.SetProperty(CProperty(&m_Data, id, value...));
    }
    void Link(INodePrivate& from, CPropertyID id, INodePrivate& to) {
        Set(from, id, to.GetNodeID());
    }
    /// Has a node set invalid with another one.
    void Depend(INodePrivate& node, INodePrivate& on) {
        const NodeID_t& dependent = m_Dependents.emplace_back(node.GetNodeID());
        on.SetClosure({&dependent, 1}, {});
    }
    /// Makes the nodes ready for use.
    void Complete() {
        for (int32_t i = 0; i < static_cast<int32_t>(m_Data.GetNumNodeIDs()); ++i) {
            m_Map.GetNodeByID(NodeID_t(i))->FinalConstruct();
        }
        m_Map.FinalConstruct();
    }

private:
    CNodeDataMap m_Data;
    /// Where the nodes have them: it never moves any.
    std::deque<NodeID_t> m_Dependents;
    CNodeMap m_Map;
};

/// Whether another thread could take the lock now.
inline bool IsFreeForOthers(CLock& lock) {
    return std::async(std::launch::async,
                      [&lock] {
                          const bool isFree = lock.TryLock();
                          if (isFree) {
                              lock.Unlock();
                          }
                          return isFree;
                      })
        .get();
}

/// What a failure tells of itself; empty texts without a failure.
struct Failure {
    std::string description;
    std::string what;
};
template <class Exception, class Action>
Failure FailureOf(const Action& action) {
    try {
        action();
    } catch (const Exception& failure) {
        return {failure.GetDescription(), failure.what()};
    }
    return {};
}
template <class Exception, class Action>
std::string DescriptionOf(const Action& action) {
    return FailureText<Exception>(action);
}

}  // namespace EngineTest
