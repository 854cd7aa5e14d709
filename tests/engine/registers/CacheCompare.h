#pragma once
/// Two maps of one description over the same memory, one of which never keeps
/// anything: what the other one keeps must not show.

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <vector>

#include "Base/GCException.h"
#include "GenApi/ICommand.h"
#include "GenApi/IFloat.h"
#include "GenApi/IInteger.h"
#include "GenApi/INode.h"
#include "GenApi/INodeMap.h"
#include "GenApi/Pointer.h"
#include "support/WithoutCaching.h"

namespace EngineTest {

/// What a call returns, or the text of its failure.
template <class Call>
std::string OutcomeOf(const Call& call) {
    try {
        return call();
    } catch (const GenICam_3_0_ORVANE::GenericException& failure) {
        return std::string("!") + failure.GetDescription();
    }
}

template <class Number>
std::string LimitsOf(GenApi_3_0_ORVANE::INode& node) {
    auto* const number = dynamic_cast<Number*>(&node);
    if (number == nullptr) {
        return "";
    }
    return OutcomeOf([&] { return " from " + std::to_string(number->GetMin()); }) +
           OutcomeOf([&] { return " to " + std::to_string(number->GetMax()); });
}

/// All that a client sees of a node's value.
inline std::string StateOf(GenApi_3_0_ORVANE::INode& node) {
    using namespace GenApi_3_0_ORVANE;  // NOLINT(google-build-using-namespace)
    const std::string access =
        OutcomeOf([&] { return std::string(EAccessModeClass::ToString(node.GetAccessMode())); });
    auto* const value = dynamic_cast<IValue*>(&node);
    // Whether a command runs is known to the map that has started it.
    if (value == nullptr || dynamic_cast<ICommand*>(&node) != nullptr) {
        return access;
    }
    return access + " " + OutcomeOf([&] { return std::string(value->ToString().c_str()); }) +
           LimitsOf<IInteger>(node) + LimitsOf<IFloat>(node);
}

/// Compares the nodes of two maps in pairs, and counts.
class MapComparison {
public:
    using INode = GenApi_3_0_ORVANE::INode;
    using INodeMap = GenApi_3_0_ORVANE::INodeMap;

    MapComparison(INodeMap& cached, INodeMap& uncached) : m_Uncached(uncached) {
        GenApi_3_0_ORVANE::node_vector nodes;
        cached.GetNodes(nodes);
        for (INode* const node : nodes) {
            m_All.push_back(node);
        }
    }

    const std::vector<INode*>& All() const { return m_All; }
    void CompareAll(const std::string& after) { Compare(m_All, after); }
    void Compare(const std::vector<INode*>& nodes, const std::string& after) {
        // Not even an access mode is kept there.
        m_Uncached.InvalidateNodes();
        for (INode* const node : nodes) {
            ++m_NumCompared;
            const std::string expected = StateOf(*m_Uncached.GetNode(node->GetName(true)));
            const std::string kept = StateOf(*node);
            if (kept != expected) {
                ++m_NumStale;
                EXPECT_EQ(kept, expected) << node->GetName() << " after " << after;
            }
        }
    }
    size_t NumCompared() const { return m_NumCompared; }
    size_t NumStale() const { return m_NumStale; }

private:
    INodeMap& m_Uncached;
    std::vector<INode*> m_All;
    size_t m_NumCompared = 0;
    size_t m_NumStale = 0;
};

}  // namespace EngineTest
