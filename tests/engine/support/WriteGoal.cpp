#include "WriteGoal.h"

#include <algorithm>
#include <iterator>
#include <unordered_set>

#include "GenApi/IEnumeration.h"

namespace EngineTest {

namespace {

std::vector<INode*> EntriesOf(INode& node) {
    node_vector entries;
    if (auto* const choice = dynamic_cast<IEnumeration*>(&node)) {
        choice->GetEntries(entries);
    }
    return {entries.begin().operator->(), entries.end().operator->()};
}

std::vector<INode*> SelectorsOf(INode& node) {
    value_vector features;
    dynamic_cast<ISelector&>(node).GetSelectingFeatures(features);
    std::vector<INode*> selectors;
    for (IValue* const feature : features) {
        selectors.push_back(feature->GetNode());
    }
    return selectors;
}

std::vector<INode*> ChildrenOf(INode& node, ELinkType links) {
    node_vector children;
    node.GetChildren(children, links);
    return {children.begin().operator->(), children.end().operator->()};
}

bool Contains(const std::vector<INode*>& nodes, INode* node) {
    return std::find(nodes.begin(), nodes.end(), node) != nodes.end();
}

/// How far a node is from having so many values: an increment, then one value, then
/// all of them.
int64_t FaultsOfValue(IValue& value, size_t values) {
    if (!IsNumber(value)) {
        return 0;
    }
    constexpr int64_t kMost = 3;
    return ResultOr<int64_t>(kMost, [&]() -> int64_t {
        auto* const integer = dynamic_cast<IInteger*>(&value);
        if (integer != nullptr && integer->GetInc() < 1) {
            return kMost;
        }
        const size_t count = NumbersFor(value, values).size();
        return count >= values ? 0 : kMost - (count == 0 ? 1 : 2);
    });
}

/// What can't be moved stays where it is.
bool HasPlace(INode& selector) {
    return ResultOr(false, [&] {
        return selector.GetAccessMode() != RW || HasValidNumber(dynamic_cast<IValue&>(selector));
    });
}

}  // namespace

std::vector<INode*> SourcesOf(INode& node) {
    std::vector<INode*> sources{&node};
    std::unordered_set<INode*> seen{&node};
    for (size_t i = 0; i < sources.size(); ++i) {
        INode& source = *sources[i];
        for (const auto& links :
             {ChildrenOf(source, ReadingChildren), EntriesOf(source), SelectorsOf(source)}) {
            std::copy_if(links.begin(), links.end(), std::back_inserter(sources),
                         [&](INode* link) { return link != nullptr && seen.insert(link).second; });
        }
    }
    return sources;
}

WriteGoal::WriteGoal(INode& node, size_t values) : m_Node(node), m_Values(values) {
    AddWithTargets(node);
    for (size_t i = 0; i < m_Targets.size(); ++i) {
        AddSelectorsOf(*m_Targets[i]);
    }
    for (size_t i = 0; i < m_Selectors.size(); ++i) {
        AddSelectorsOf(*m_Selectors[i]);
    }
}

void WriteGoal::AddWithTargets(INode& node) {
    const bool isPort = dynamic_cast<IValue*>(&node) == nullptr;
    if (isPort || Contains(m_Targets, &node)) {
        return;
    }
    m_Targets.push_back(&node);
    AddConditionsOf(node);
    for (INode* const target : ChildrenOf(node, WritingChildren)) {
        AddWithTargets(*target);
    }
}

void WriteGoal::AddSelectorsOf(INode& node) {
    for (INode* const selector : SelectorsOf(node)) {
        if (!Contains(m_Selectors, selector)) {
            m_Selectors.push_back(selector);
            AddConditionsOf(*selector);
        }
    }
}

void WriteGoal::AddConditionsOf(INode& node) {
    const std::pair<const char*, bool> conditions[] = {
        {"pIsImplemented", true}, {"pIsAvailable", true}, {"pIsLocked", false}};
    for (const auto& [property, wanted] : conditions) {
        gcstring name;
        gcstring attribute;
        if (node.GetProperty(property, name, attribute)) {
            m_Conditions.push_back(
                {dynamic_cast<IValue*>(node.GetNodeMap()->GetNode(name)), wanted});
        }
    }
    for (INode* const entry : EntriesOf(node)) {
        AddConditionsOf(*entry);
    }
}

bool WriteGoal::IsSelectedBy(INode& node) const {
    return Contains(m_Selectors, &node);
}

std::vector<int64_t> WriteGoal::SelectorNumbers() const {
    std::vector<int64_t> numbers;
    for (INode* const selector : m_Selectors) {
        numbers.push_back(
            ResultOr<int64_t>(-1, [&] { return NumberOf(dynamic_cast<IValue&>(*selector)); }));
    }
    return numbers;
}

int64_t WriteGoal::FaultsOfValues() const {
    int64_t faults = 0;
    for (INode* const target : m_Targets) {
        faults += FaultsOfValue(dynamic_cast<IValue&>(*target), m_Values);
    }
    return faults;
}

int64_t WriteGoal::FaultsOfSelectors() const {
    return std::count_if(m_Selectors.begin(), m_Selectors.end(),
                         [](INode* selector) { return !HasPlace(*selector); });
}

int64_t WriteGoal::ConditionsThatHold() const {
    return std::count_if(m_Conditions.begin(), m_Conditions.end(), [](const Condition& condition) {
        return ResultOr(!condition.wanted, [&] { return NumberOf(*condition.value) != 0; }) ==
               condition.wanted;
    });
}

int64_t WriteGoal::Score() const {
    constexpr int64_t kPerMode = 1000000;
    constexpr int64_t kPerFault = 1000;
    if (m_Held && SelectorNumbers() != *m_Held) {
        return kMissed;
    }
    const int64_t mode = ResultOr<int64_t>(NI, [&] { return m_Node.GetAccessMode(); });
    const int64_t faults = FaultsOfValues() + FaultsOfSelectors();
    return mode == RW && faults == 0 ? kReached
                                     : mode * kPerMode - faults * kPerFault + ConditionsThatHold();
}

}  // namespace EngineTest
