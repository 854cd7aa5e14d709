#pragma once
/// What has to hold for a client to change the value of a node.

#include <optional>

#include "GenApi/ISelector.h"
#include "NodeNumbers.h"

namespace EngineTest {

/// The node with all that its value, its limits and its rights, those of its
/// entries and of its selectors come from, the nearest first.
std::vector<INode*> SourcesOf(INode& node);

/// A node is writable with several values, all that a write goes on to has limits
/// that leave as many, and each selector that can be moved has a value of its own.
class WriteGoal {
public:
    /// @param values  as many values as the node shall be able to have
    WriteGoal(INode& node, size_t values);

    /// Misses the goal wherever a selector isn't where it is now.
    void HoldSelectors() { m_Held = SelectorNumbers(); }
    bool HoldsSelectors() const { return m_Held.has_value(); }

    bool IsSelectedBy(INode& node) const;
    INode& Node() const { return m_Node; }
    /// Grows with what holds of it; `kReached` when all does.
    int64_t Score() const;
    static constexpr int64_t kReached = INT64_MAX;
    /// Below all other scores.
    static constexpr int64_t kMissed = INT64_MIN / 2;

private:
    /// What a node's rights come from.
    struct Condition {
        IValue* value;
        bool wanted;
    };

    void AddWithTargets(INode& node);
    void AddSelectorsOf(INode& node);
    void AddConditionsOf(INode& node);
    std::vector<int64_t> SelectorNumbers() const;
    int64_t FaultsOfValues() const;
    int64_t FaultsOfSelectors() const;
    int64_t ConditionsThatHold() const;

    INode& m_Node;
    size_t m_Values;
    std::vector<INode*> m_Targets;
    std::vector<INode*> m_Selectors;
    std::vector<Condition> m_Conditions;
    std::optional<std::vector<int64_t>> m_Held;
};

}  // namespace EngineTest
