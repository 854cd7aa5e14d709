#include "PowerUp.h"

#include "FeatureValues.h"
#include "FrameOfFileCamera.h"
#include "GenApi/FeatureBag.h"
#include "GenApi/IInteger.h"
#include "GenApi/INode.h"
#include "GenApi/IPort.h"
#include "GenApi/IRegister.h"
#include "GenApi/ISelector.h"
#include "GenApi/IString.h"
#include "GenApi/SelectorSet.h"
#include "NodeRegisters.h"
#include "support/WhyReadOnly.h"

using namespace GenApi;  // NOLINT(google-build-using-namespace)

namespace {

using GenICam_3_0_ORVANE::gcstring;

bool IsSelector(IValue& value) {
    return dynamic_cast<ISelector&>(value).IsSelector();
}

}  // namespace

std::vector<IValue*> FeaturesOf(INodeMap& map) {
    node_vector nodes;
    map.GetNodes(nodes);
    std::vector<IValue*> features;
    for (INode* const node : nodes) {
        auto* const value = dynamic_cast<IValue*>(node);
        if (value != nullptr && node->IsFeature() &&
            node->GetPrincipalInterfaceType() != intfICategory) {
            features.push_back(value);
        }
    }
    return features;
}

void ConnectDevicePorts(INodeMap& map, IPort& port) {
    node_vector nodes;
    map.GetNodes(nodes);
    for (INode* const node : nodes) {
        gcstring chunk;
        gcstring attribute;
        if (dynamic_cast<IPort*>(node) != nullptr && node->GetEventID().empty() &&
            !node->GetProperty("ChunkID", chunk, attribute)) {
            map.Connect(&port, node->GetName());
        }
    }
}

PowerUp::PowerUp(INodeMap& map, OvTest::MadeUpMemory& memory)
    : m_map(map), m_memory(memory), m_features(FeaturesOf(map)) {
    for (IValue* const value : m_features) {
        INode& node = *value->GetNode();
        const bool isCommand = node.GetPrincipalInterfaceType() == intfICommand;
        if (!isCommand && WhyReadOnly(node).empty()) {
            m_writable.insert(value);
        }
        m_registers[value] = SourceRegistersOf(node);
    }
}

/// Features that can't be asked at all are skipped.
void PowerUp::ForEach(const std::function<void(IValue&)>& run) const {
    for (IValue* const value : m_features) {
        Try([&] { run(*value); });
    }
}

/// A value that can be saved counts more than the existence of the feature.
int PowerUp::ScoreOf(IValue& value) const {
    const auto mode = [&] { return value.GetAccessMode(); };
    const bool isThere = Holds([&] { return IsAvailable(mode()); });
    const bool isWritable =
        m_writable.contains(&value) && Holds([&] { return IsWritable(mode()); });
    return (isThere ? 1 : 0) + (isWritable ? 1 : 0) + (IsShown(value) ? 2 : 0) +
           (IsLegal(value) ? 2 : 0);
}

int PowerUp::Score() const {
    int score = 0;
    for (IValue* const value : m_features) {
        score += ScoreOf(*value);
    }
    return score;
}

/// Makes a change, and undoes it unless both the feature and all features together have a
/// better score after it.
void PowerUp::Improve(IValue& value, const Change& change, const Change& undo) {
    const int before = ScoreOf(value);
    change();
    const bool isBetter = ScoreOf(value) > before;
    const int after = isBetter ? Score() : 0;
    undo();
    if (isBetter && after > Score()) {
        change();
    }
}

void PowerUp::ImproveBy(IValue& value, IRegister& reg, int64_t number) {
    constexpr bool verify = false;
    constexpr int64_t most = sizeof(int64_t);
    const int64_t length = reg.GetLength();
    if (length > most) {
        return;
    }
    std::vector<std::byte> bytes(static_cast<size_t>(length));
    m_memory.Read(static_cast<uint64_t>(reg.GetAddress()), bytes);
    Improve(
        value, [&] { Try([&] { Put(reg, number); }); },
        [&] { reg.Set(reinterpret_cast<const uint8_t*>(bytes.data()), length, verify); });
}

/// Tries numbers that are usual in conditions and limits in the registers of the feature.
void PowerUp::Search(IValue& value, size_t mostRegisters) {
    constexpr int64_t numbers[] = {1, 0, 2, 3, 8, 16, 255, 1024, -1};
    const int best = m_writable.contains(&value) ? 6 : 5;
    const std::vector<IRegister*>& registers = m_registers.at(&value);
    for (size_t i = 0; i < registers.size() && i < mostRegisters; ++i) {
        for (const int64_t number : numbers) {
            if (ScoreOf(value) == best) {
                return;
            }
            Try([&] { ImproveBy(value, *registers[i], number); });
        }
        auto* const integer = dynamic_cast<IInteger*>(&value);
        if (integer != nullptr && !IsLegal(value)) {
            Try([&] { ImproveBy(value, *registers[i], integer->GetMin()); });
        }
    }
}

/// The registers from which a property of a node is read.
std::vector<IRegister*> PowerUp::RegistersOf(INode& node, const char* property) const {
    gcstring name;
    gcstring attribute;
    return node.GetProperty(property, name, attribute) ? SourceRegistersOf(*m_map.GetNode(name))
                                                       : std::vector<IRegister*>();
}

/// Writes wide limits into the registers of limits, and into those of conditions the
/// numbers that make features available.
void PowerUp::PrepareProperties(const node_vector& nodes) {
    constexpr std::pair<const char*, int64_t> kinds[] = {
        {"pMin", 0},          {"pMax", 1 << 20}, {"pInc", 1}, {"pIsImplemented", -1},
        {"pIsAvailable", -1}, {"pIsLocked", 0}};
    for (const auto& [property, number] : kinds) {
        for (INode* const node : nodes) {
            for (IRegister* const reg : RegistersOf(*node, property)) {
                PutAtMost(*reg, number);
            }
        }
    }
}

/// Sets values to 0 on which limits of other values depend, so that an offset and a
/// width, for instance, leave each other room.
void PowerUp::PrepareValuesInLimits(const node_vector& nodes) {
    std::set<IRegister*> limits;
    std::vector<IRegister*> values;
    for (INode* const node : nodes) {
        const std::vector<IRegister*> found = RegistersOf(*node, "pMax");
        limits.insert(found.begin(), found.end());
        if (node->IsFeature() && !found.empty()) {
            const std::vector<IRegister*> own = RegistersOf(*node, "pValue");
            values.insert(values.end(), own.begin(), own.end());
        }
    }
    for (IRegister* const reg : values) {
        if (limits.contains(reg)) {
            Try([&] { Put(*reg, 0); });
        }
    }
}

void PowerUp::Prepare() {
    node_vector nodes;
    m_map.GetNodes(nodes);
    PrepareProperties(nodes);
    PrepareValuesInLimits(nodes);
    for (INode* const node : nodes) {
        auto* const reg = dynamic_cast<IRegister*>(node);
        if (dynamic_cast<IString*>(node) != nullptr && reg != nullptr) {
            Try([&] { PutText(*reg, m_memory); });
        }
    }
    m_map.InvalidateNodes();
}

/// If several features write the same register, the last one wins. The others take their
/// values from the result.
void PowerUp::SettleSharedRegisters() {
    constexpr int rounds = 3;
    for (int round = 0; round < rounds; ++round) {
        CFeatureBag bag;
        bag.StoreToBag(&m_map);
        bag.LoadFromBag(&m_map, false);
    }
}

void PowerUp::Settle(IValue& value, size_t mostRegisters) {
    if (!IsLegal(value) && IsInRegisters(*value.GetNode())) {
        const OvTest::MadeUpMemory::Bytes before = m_memory.Written();
        Improve(
            value, [&] { Try([&] { SetToFirst(value); }); },
            [&] {
                m_memory.Restore(before);
                m_map.InvalidateNodes();
            });
    }
    Search(value, mostRegisters);
}

/// Limits selectors to few values: each value is a combination that the tests visit.
void PowerUp::LimitSelector(IValue& value) {
    constexpr int64_t most = 3;
    auto* const selector = dynamic_cast<IInteger*>(&value);
    if (selector == nullptr || !IsSelector(value) || value.GetAccessMode() != RW) {
        return;
    }
    for (IRegister* const reg : RegistersOf(*value.GetNode(), "pMax")) {
        Try([&] { Put(*reg, most); });
    }
}

void PowerUp::SetPayloadSize() {
    INode* const node = m_map.GetNode("PayloadSize");
    auto* const payload = dynamic_cast<IInteger*>(node);
    if (payload == nullptr) {
        return;
    }
    for (IRegister* const reg : SourceRegistersOf(*node)) {
        const OvTest::MadeUpMemory::Bytes before = m_memory.Written();
        Try([&] { Put(*reg, kPayloadSize); });
        if (Holds([&] { return payload->GetValue() == kPayloadSize; })) {
            return;
        }
        m_memory.Restore(before);
        m_map.InvalidateNodes();
    }
}

/// Settles a feature under each combination of its selectors, up to a limit.
void PowerUp::SettleAll(IValue& value) {
    constexpr int mostCombinations = 16;
    size_t mostRegisters = 4;
    CSelectorSet selectors(&value);
    bool isThere = selectors.SetFirst();
    for (int i = 0; isThere && i < mostCombinations; ++i) {
        if (!IsLegal(value)) {
            Settle(value, mostRegisters);
            // A search that has failed once will hardly succeed with the next
            // combination.
            mostRegisters = IsLegal(value) ? mostRegisters : 0;
        }
        isThere = selectors.SetNext();
    }
    selectors.Restore();
}

void PowerUp::Run() {
    constexpr int passes = 2;  // features may depend on others that are settled later
    constexpr size_t mostRegisters = 20;
    Prepare();
    ForEach([&](IValue& value) { LimitSelector(value); });
    for (int pass = 0; pass < passes; ++pass) {
        ForEach([&](IValue& value) {
            if (pass == 0 || !IsLegal(value)) {
                Settle(value, mostRegisters);
            }
        });
        ForEach([&](IValue& value) { SettleAll(value); });
    }
    Try([&] { SettleSharedRegisters(); });
    SetPayloadSize();
}
