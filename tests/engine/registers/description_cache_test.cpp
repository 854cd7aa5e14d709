// Whole descriptions over made-up memory that changes with each invalidation: what
// their caches keep never shows.

#include <fstream>
#include <functional>
#include <map>
#include <set>
#include <sstream>

#include "CacheCompare.h"
#include "CacheSupport.h"
#include "FeatureDump.h"
#include "GenApi/IPort.h"
#include "GenApi/IPortReplay.h"
#include "GenApi/IRegister.h"
#include "ports/PortWriteList.h"
#include "support/Descriptions.h"

namespace EngineTest {

namespace {

using Nodes = std::vector<INode*>;

/// A device whose registers hold what follows from their addresses and from how
/// often they were changed.
class ChangingMemory : public IPort {
public:
    explicit ChangingMemory(uint64_t seed) : m_Seed(seed) {}
    EAccessMode GetAccessMode() override { return RW; }
    void Read(void* buffer, int64_t address, int64_t length) override {
        ForEach(address, length, [&](int64_t i, uint64_t place) {
            static_cast<uint8_t*>(buffer)[i] = ByteAt(place);
        });
        ++m_NumReads;
    }
    void Write(const void* buffer, int64_t address, int64_t length) override {
        ForEach(address, length, [&](int64_t i, uint64_t place) {
            m_Written[place] = static_cast<const uint8_t*>(buffer)[i];
        });
    }

    void ChangeAll() {
        m_Seed = Mix(m_Seed);
        m_Written.clear();
    }
    void Change(int64_t address, int64_t length) {
        ForEach(address, length, [&](int64_t, uint64_t place) {
            m_Written[place] = static_cast<uint8_t>(Mix(ByteAt(place) ^ Mix(place)));
        });
    }
    size_t NumReads() const { return m_NumReads; }
    /// A length that may be accessed at once; made-up ones are of any size.
    static int64_t Checked(int64_t length) {
        if (length > kMostBytes) {
            RUNTIME_EXCEPTION("An access of %ld bytes is refused", length);
        }
        return length;
    }

private:
    static constexpr int64_t kMostBytes = 1 << 16;

    static uint64_t Mix(uint64_t number) {
        number = (number ^ (number >> 30)) * 0xBF58476D1CE4E5B9U;
        number = (number ^ (number >> 27)) * 0x94D049BB133111EBU;
        return number ^ (number >> 31);
    }
    uint8_t ByteAt(uint64_t place) const {
        const auto written = m_Written.find(place);
        return written != m_Written.end() ? written->second
                                          : static_cast<uint8_t>(Mix((place + 1) ^ m_Seed));
    }
    template <class Use>
    static void ForEach(int64_t address, int64_t length, const Use& use) {
        Checked(length);
        for (int64_t i = 0; i < length; ++i) {
            use(i, static_cast<uint64_t>(address) + static_cast<uint64_t>(i));
        }
    }

    uint64_t m_Seed;
    size_t m_NumReads = 0;
    std::unordered_map<uint64_t, uint8_t> m_Written;
};

std::string ContentOf(const fs::path& file) {
    std::ostringstream text;
    text << std::ifstream(file).rdbuf();
    return text.str();
}

std::vector<std::string> Property(INode& node, const char* name) {
    gcstring value;
    gcstring attribute;
    node.GetProperty(name, value, attribute);
    std::istringstream lines(value.c_str());
    std::vector<std::string> values;
    for (std::string line; std::getline(lines, line, '\t');) {
        values.push_back(line);
    }
    return values;
}

Nodes Linked(INode& node, ELinkType link) {
    node_vector list;
    node.GetChildren(list, link);
    Nodes nodes;
    for (INode* const child : list) {
        nodes.push_back(child);
    }
    return nodes;
}

/// The description twice: as it is and without caching, with a memory for each of
/// their ports.
class TwoMaps {
public:
    explicit TwoMaps(const fs::path& file)
        : m_Cached(CNodeMapFactory(ContentOf(file).c_str()).CreateNodeMap()),
          m_Uncached(CNodeMapFactory(WithoutCaching(ContentOf(file)).c_str()).CreateNodeMap()),
          m_Comparison(Cached(), Uncached()) {
        for (INode* const node : m_Comparison.All()) {
            if (dynamic_cast<IPort*>(node) != nullptr) {
                m_Memories.try_emplace(node->GetName(true).c_str(), m_Memories.size() + 1);
            }
            for (const std::string& invalidator : Property(*node, "pInvalidator")) {
                m_Invalidated[invalidator].push_back(node);
            }
        }
        Connect();
    }

    INodeMap& Cached() { return *m_Cached.operator->(); }
    INodeMap& Uncached() { return *m_Uncached.operator->(); }
    MapComparison& Comparison() { return m_Comparison; }
    const std::map<std::string, Nodes>& Invalidated() const { return m_Invalidated; }

    void Connect() {
        for (auto& [name, memory] : m_Memories) {
            Cached().Connect(&memory, name.c_str());
            Uncached().Connect(&memory, name.c_str());
        }
    }
    void ChangeAll() {
        for (auto& [name, memory] : m_Memories) {
            memory.ChangeAll();
        }
    }
    /// What lies behind a node, as the device has it. Entered with what is
    /// computed from it.
    void ChangeBehind(const Nodes& nodes, std::set<INode*>& affected) {
        std::vector<std::function<void()>> changes;
        for (INode* const node : nodes) {
            affected.insert(node);
            for (INode* const terminal : Linked(*node, TerminalNodes)) {
                AddChange(*terminal, changes);
                affected.insert(terminal);
                const Nodes dependents = Linked(*terminal, DependingNodes);
                affected.insert(dependents.begin(), dependents.end());
            }
        }
        // All at once: a change may move the next register.
        for (const auto& change : changes) {
            change();
        }
    }
    size_t NumChanged() const { return m_NumChanged; }
    size_t NumHomeless() const { return m_NumHomeless; }
    size_t NumReads() const {
        size_t reads = 0;
        for (const auto& [name, memory] : m_Memories) {
            reads += memory.NumReads();
        }
        return reads;
    }

private:
    /// One that can't be read has shown nothing that could be old.
    void AddChange(INode& node, std::vector<std::function<void()>>& changes) {
        INode* const uncached = Uncached().GetNode(node.GetName(true));
        auto* const reg = dynamic_cast<IRegister*>(uncached);
        if (reg == nullptr || !IsReadable(uncached->GetAccessMode())) {
            return;
        }
        try {
            const int64_t address = reg->GetAddress();
            const int64_t length = ChangingMemory::Checked(reg->GetLength());
            for (const std::string& port : Property(node, "pPort")) {
                ChangingMemory& memory =
                    m_Memories.at(Cached().GetNode(port.c_str())->GetName(true).c_str());
                changes.push_back([=, &memory] { memory.Change(address, length); });
                ++m_NumChanged;
            }
        } catch (const GenericException&) {
            // The made-up memory gives it no place, and so no value either.
            ++m_NumHomeless;
        }
    }

    MapOwner m_Cached;
    MapOwner m_Uncached;
    MapComparison m_Comparison;
    std::map<std::string, ChangingMemory> m_Memories;
    std::map<std::string, Nodes> m_Invalidated;
    size_t m_NumChanged = 0;
    size_t m_NumHomeless = 0;
};

class DescriptionCaches : public testing::TestWithParam<fs::path> {
protected:
    /// An invalidator changes the registers that name it, and nobody else does.
    void InvalidateEach() {
        for (const auto& [name, nodes] : m_Maps.Invalidated()) {
            std::set<INode*> affected;
            INode& invalidator = *m_Maps.Cached().GetNode(name.c_str());
            m_Maps.ChangeBehind(nodes, affected);
            invalidator.InvalidateNode();
            m_Maps.Comparison().Compare({affected.begin(), affected.end()}, name);
        }
        m_Maps.Comparison().CompareAll("all invalidators");
    }

    void WriteEach() {
        for (const auto& [name, nodes] : m_Maps.Invalidated()) {
            auto* const value = dynamic_cast<IValue*>(m_Maps.Cached().GetNode(name.c_str()));
            if (value == nullptr || !IsInRegisters(*value->GetNode())) {
                continue;
            }
            try {
                value->FromString(value->ToString());
                ++m_NumWritten;
            } catch (const GenericException&) {
                continue;  // the made-up memory has no such value, or forbids it
            }
            m_Maps.Comparison().Compare(nodes, "a write of " + name);
        }
        m_Maps.Comparison().CompareAll("all writes");
    }

    /// The other map would not learn of a value that the node holds itself.
    static bool IsInRegisters(INode& node) {
        const Nodes terminals = Linked(node, TerminalNodes);
        return !terminals.empty() &&
               std::all_of(terminals.begin(), terminals.end(), [](INode* terminal) {
                   return dynamic_cast<IRegister*>(terminal) != nullptr;
               });
    }

    TwoMaps m_Maps{GetParam()};
    size_t m_NumWritten = 0;
};

}  // namespace

TEST_P(DescriptionCaches, NeverShowWhatIsOld) {
    m_Maps.Comparison().CompareAll("loading");
    InvalidateEach();
    WriteEach();
    m_Maps.ChangeAll();
    m_Maps.Cached().InvalidateNodes();
    m_Maps.Comparison().CompareAll("InvalidateNodes");
    m_Maps.ChangeAll();
    m_Maps.Connect();
    m_Maps.Comparison().CompareAll("Connect");
    const size_t before = m_Maps.NumReads();
    for (INode* const node : m_Maps.Comparison().All()) {
        StateOf(*node);
    }
    std::printf(
        "%s: %zu invalidators, %zu registers changed, %zu without a place, %zu written, %zu values "
        "compared, %zu stale, "
        "%zu reads for all values once more\n",
        GetParam().filename().c_str(), m_Maps.Invalidated().size(), m_Maps.NumChanged(),
        m_Maps.NumHomeless(), m_NumWritten, m_Maps.Comparison().NumCompared(),
        m_Maps.Comparison().NumStale(), m_Maps.NumReads() - before);
    EXPECT_EQ(m_Maps.Comparison().NumStale(), 0U);
}

TEST_P(DescriptionCaches, AreAsNewAfterAPollAndAReplay) {
    m_Maps.Comparison().CompareAll("loading");
    Nodes polled;
    std::copy_if(m_Maps.Comparison().All().begin(), m_Maps.Comparison().All().end(),
                 std::back_inserter(polled),
                 [](INode* node) { return node->GetPollingTime() >= 0; });
    std::set<INode*> affected;
    m_Maps.ChangeBehind(polled, affected);
    m_Maps.Cached().Poll(INT32_MAX);
    m_Maps.Comparison().CompareAll("Poll");
    m_Maps.ChangeAll();
    for (INode* const node : m_Maps.Comparison().All()) {
        if (auto* const port = dynamic_cast<IPortReplay*>(node)) {
            CPortWriteList list;
            port->Replay(&list, true);
        }
    }
    m_Maps.Comparison().CompareAll("Replay");
    std::printf("%s: %zu polled nodes, %zu values compared, %zu stale\n",
                GetParam().filename().c_str(), polled.size(), m_Maps.Comparison().NumCompared(),
                m_Maps.Comparison().NumStale());
    EXPECT_EQ(m_Maps.Comparison().NumStale(), 0U);
}

INSTANTIATE_TEST_SUITE_P(Files, DescriptionCaches,
                         testing::ValuesIn(Descriptions(OV_SOURCE_FOLDER)),
                         [](const auto& file) { return TestNameOf(file.param); });

}  // namespace EngineTest
