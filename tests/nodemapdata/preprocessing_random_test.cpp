// Descriptions made by chance, against the plain way to the same result.

#include <algorithm>
#include <array>
#include <cstdint>
#include <numeric>
#include <random>
#include <set>

#include "PreprocessingFixture.h"

namespace NodeDataTest {
namespace {

/// A link by its number and target, or a mark with no target.
using LinkEntry = std::pair<uint32_t, int>;
constexpr int kNoTarget = -1;

bool IsBelow(const LinkEntry& entry, uint32_t limit) {
    return entry.first < limit && entry.second != kNoTarget;
}

/// The steps of the preprocessing without any thought for the work that they
/// take, on lists of links by node.
class PlainPreprocessing {
public:
    PlainPreprocessing(std::vector<CNodeData::ENodeType_t> types,
                       std::vector<std::vector<LinkEntry>> lists)
        : m_Types(std::move(types)), m_Lists(std::move(lists)), m_Dependents(m_Types.size()) {}

    void Run(int root) {
        const auto given = m_Lists;
        for (int node = 0; node < Count(); ++node) {
            for (const auto& [id, target] : given[ToSize(node)]) {
                if (id == ID::pSelected_ID) {
                    List(target).emplace_back(ID::pSelecting_ID, node);
                }
            }
        }
        m_Linked = m_Lists;
        AppendDependents();
        AppendTerminals();
        for (int node = 0; node < Count(); ++node) {
            Widen(node);
        }
        Mark(root);
    }
    const std::vector<LinkEntry>& Of(int node) const { return m_Lists[ToSize(node)]; }
    /// Whether a selector reads what it selects.
    bool IsSelfReading() const { return m_IsSelfReading; }

private:
    static size_t ToSize(int node) { return static_cast<size_t>(node); }
    int Count() const { return static_cast<int>(m_Types.size()); }
    std::vector<LinkEntry>& List(int node) { return m_Lists[ToSize(node)]; }

    void AppendDependents() {
        for (bool hasGrown = true; hasGrown;) {
            hasGrown = false;
            for (int node = 0; node < Count(); ++node) {
                for (const LinkEntry& entry : m_Linked[ToSize(node)]) {
                    if (IsBelow(entry, 30)) {
                        std::set<int>& set = m_Dependents[ToSize(entry.second)];
                        const size_t size = set.size();
                        set.insert(node);
                        set.insert(m_Dependents[ToSize(node)].begin(),
                                   m_Dependents[ToSize(node)].end());
                        set.erase(entry.second);
                        hasGrown = hasGrown || set.size() > size;
                    }
                }
            }
        }
        for (int node = 0; node < Count(); ++node) {
            const std::set<int>& set = m_Dependents[ToSize(node)];
            for (auto dependent = set.rbegin(); dependent != set.rend(); ++dependent) {
                List(node).emplace_back(ID::pDependent_ID, *dependent);
            }
        }
    }

    std::set<int> Terminals(int node) const {
        std::set<int> terminals;
        bool isWriting = false;
        for (const LinkEntry& entry : m_Linked[ToSize(node)]) {
            isWriting = isWriting || IsBelow(entry, 7);
        }
        switch (m_Types[ToSize(node)]) {
            case CNodeData::IntReg_ID:
                return {node};
            case CNodeData::Integer_ID:
            case CNodeData::Float_ID:
                if (!isWriting) {
                    return {node};
                }
                break;
            default:
                break;
        }
        for (const LinkEntry& entry : m_Linked[ToSize(node)]) {
            if (IsBelow(entry, 7)) {
                terminals.merge(Terminals(entry.second));
            }
        }
        return terminals;
    }
    void AppendTerminals() {
        for (int node = 0; node < Count(); ++node) {
            for (const int terminal : Terminals(node)) {
                List(node).emplace_back(ID::pTerminal_ID, terminal);
            }
        }
    }

    bool Has(int node, uint32_t id, int target) {
        const std::vector<LinkEntry>& list = List(node);
        return std::find(list.begin(), list.end(), LinkEntry(id, target)) != list.end();
    }
    bool Reads(int node, int target) const {
        const std::vector<LinkEntry>& list = m_Linked[ToSize(node)];
        return std::any_of(list.begin(), list.end(), [&](const LinkEntry& entry) {
            return IsBelow(entry, 26) && entry.second == target;
        });
    }
    void Widen(int selector) {
        for (size_t i = 0; i < List(selector).size(); ++i) {
            const auto [id, target] = List(selector)[i];
            if (id != ID::pSelected_ID) {
                continue;
            }
            for (const int dependent : m_Dependents[ToSize(target)]) {
                if (!Reads(dependent, target) ||
                    m_Types[ToSize(dependent)] == CNodeData::Category_ID) {
                    continue;
                }
                if (dependent == selector) {
                    m_IsSelfReading = true;
                    return;
                }
                if (!Has(selector, ID::pSelecting_ID, dependent)) {
                    List(dependent).emplace_back(ID::pSelecting_ID, selector);
                }
                if (!Has(dependent, ID::pSelected_ID, selector)) {
                    List(selector).emplace_back(ID::pSelected_ID, dependent);
                }
            }
        }
    }

    void Mark(int node) {
        List(node).emplace_back(ID::IsFeature_ID, kNoTarget);
        for (const auto& [id, target] : m_Linked[ToSize(node)]) {
            if (id == ID::pFeature_ID) {
                Mark(target);
            }
        }
    }

    std::vector<CNodeData::ENodeType_t> m_Types;
    std::vector<std::vector<LinkEntry>> m_Lists;
    /// As they were before anything was derived from them.
    std::vector<std::vector<LinkEntry>> m_Linked;
    std::vector<std::set<int>> m_Dependents;
    bool m_IsSelfReading = false;
};

/// A description whose nodes read and select only those of a higher rank, and
/// invalidate any. Ranks have nothing to do with the order of the nodes.
class RandomDescription {
public:
    explicit RandomDescription(unsigned seed) : m_Random(seed) {
        AddRoot(m_Map);
        const size_t count = 2 + Below(12);
        for (size_t rank = 0; rank < count; ++rank) {
            m_Names.push_back(rank == 0 ? "Root" : "N" + std::to_string(rank));
        }
        std::vector<size_t> order(m_Names.size());
        std::iota(order.begin(), order.end(), 0);
        std::shuffle(order.begin(), order.end(), m_Random);
        for (const size_t rank : order) {
            AddNode(rank);
        }
    }

    /// Whether the map comes out as the plain way has it. False for a
    /// description that is refused.
    bool IsComparable() {
        std::vector<CNodeData::ENodeType_t> types;
        for (size_t i = 0; i < m_Map.GetNumNodeIDs(); ++i) {
            types.push_back(m_Map.GetNodeData(NodeID_t(i))->GetNodeType());
        }
        PlainPreprocessing plain(types, Lists());
        plain.Run(m_Map.FindNodeID("Root").ToIndex());
        if (plain.IsSelfReading()) {
            return false;
        }
        const std::string failure =
            FailureText([this] { CNodeDataMapFactory::PreProcessNodeDataMap(&m_Map); });
        if (!failure.empty()) {
            EXPECT_THAT(failure, testing::StartsWith("ERROR : pSelected cycle detected : "));
            return false;
        }
        const auto lists = Lists();
        for (size_t i = 0; i < lists.size(); ++i) {
            EXPECT_EQ(lists[i], plain.Of(static_cast<int>(i))) << m_Map.GetNodeName(NodeID_t(i));
        }
        return true;
    }

private:
    size_t Below(size_t limit) {
        return std::uniform_int_distribution<size_t>(0, limit - 1)(m_Random);
    }

    /// All links and marks of each node, in list order.
    std::vector<std::vector<LinkEntry>> Lists() const {
        std::vector<std::vector<LinkEntry>> lists(m_Map.GetNumNodeIDs());
        for (size_t i = 0; i < lists.size(); ++i) {
            m_Map.GetNodeData(NodeID_t(i))->ForEachProperty([&](const CProperty& property) {
                const CPropertyID id = property.GetPropertyID();
                if (property.GetDataType() == CProperty::Node_ID) {
                    lists[i].emplace_back(id, property.NodeID().ToIndex());
                } else if (id == CPropertyID::IsFeature_ID) {
                    lists[i].emplace_back(id, kNoTarget);
                }
            });
        }
        return lists;
    }
    void AddNode(size_t rank) {
        static constexpr std::array kTypes{CNodeData::Integer_ID, CNodeData::IntReg_ID,
                                           CNodeData::Float_ID, CNodeData::SwissKnife_ID,
                                           CNodeData::Category_ID};
        static constexpr std::array kLinks{ID::pValue_ID, ID::pValueCopy_ID,   ID::pVariable_ID,
                                           ID::pMin_ID,   ID::pIsAvailable_ID, ID::pSelected_ID};
        const auto type = rank == 0 ? CNodeData::Category_ID : kTypes[Below(kTypes.size())];
        const size_t numNodes = m_Names.size();
        Links links;
        for (size_t i = Below(4); i > 0; --i) {
            links.emplace_back(ID::pInvalidator_ID, m_Names[Below(numNodes)].c_str());
        }
        for (size_t i = rank + 1 < numNodes ? Below(4) : 0; i > 0; --i) {
            const auto link =
                type == CNodeData::Category_ID ? ID::pFeature_ID : kLinks[Below(kLinks.size())];
            links.emplace_back(link, m_Names[rank + 1 + Below(numNodes - rank - 1)].c_str());
        }
        NodeDataTest::AddNode(m_Map, type, m_Names[rank].c_str(), links);
    }

    std::mt19937 m_Random;
    std::vector<std::string> m_Names;
    CNodeDataMap m_Map;
};

TEST(PreprocessingRandom, GivesWhatThePlainWayGives) {
    constexpr unsigned kCount = 3000;
    unsigned numCompared = 0;
    for (unsigned seed = 0; seed < kCount && !testing::Test::HasFailure(); ++seed) {
        SCOPED_TRACE(seed);
        numCompared += RandomDescription(seed).IsComparable() ? 1 : 0;
    }
    EXPECT_GT(numCompared, kCount / 2);
}

}  // namespace
}  // namespace NodeDataTest
