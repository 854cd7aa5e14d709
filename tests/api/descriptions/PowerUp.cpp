#include "PowerUp.h"

#include <algorithm>
#include <span>
#include <string_view>
#include <unordered_set>

#include "Base/GCException.h"
#include "FrameOfFileCamera.h"
#include "GenApi/FeatureBag.h"
#include "GenApi/IBoolean.h"
#include "GenApi/IEnumEntry.h"
#include "GenApi/IEnumeration.h"
#include "GenApi/IFloat.h"
#include "GenApi/IInteger.h"
#include "GenApi/INode.h"
#include "GenApi/IPort.h"
#include "GenApi/IRegister.h"
#include "GenApi/ISelector.h"
#include "GenApi/IString.h"
#include "GenApi/SelectorSet.h"
#include "support/WhyReadOnly.h"

using namespace GenApi;  // NOLINT(google-build-using-namespace)

namespace {

using GenICam_3_0_ORVANE::gcstring;
using GenICam_3_0_ORVANE::GenericException;

/// Whether a call says so; what can't be asked isn't so.
template <class Call>
bool Holds(const Call& call) {
    try {
        return call();
    } catch (const GenericException&) {
        return false;
    }
}

template <class Call>
void Try(const Call& call) {
    Holds([&] {
        call();
        return true;
    });
}

bool IsWithinLimits(IInteger& feature) {
    const int64_t value = feature.GetValue();
    const int64_t min = feature.GetMin();
    const int64_t inc = feature.GetInc();
    return value >= min && value <= feature.GetMax() && inc > 0 && (value - min) % inc == 0;
}

bool IsWithinLimits(IFloat& feature) {
    const double value = feature.GetValue();
    return value >= feature.GetMin() && value <= feature.GetMax();
}

bool IsText(IString& feature) {
    const gcstring text = feature.GetValue();
    return !text.empty() && std::all_of(text.c_str(), text.c_str() + text.size(),
                                        [](unsigned char c) { return c >= 0x20 && c < 0x7F; });
}

/// Whether a feature that is there has a value to show.
bool IsShown(IValue& value) {
    return Holds([&] {
        if (IsReadable(value.GetAccessMode())) {
            value.ToString();
        }
        return true;
    });
}

/// Whether the value is one that a client may write.
bool IsAllowed(IValue& value) {
    if (auto* const integer = dynamic_cast<IInteger*>(&value)) {
        return IsWithinLimits(*integer);
    }
    if (auto* const real = dynamic_cast<IFloat*>(&value)) {
        return IsWithinLimits(*real);
    }
    if (auto* const choice = dynamic_cast<IEnumeration*>(&value)) {
        IEnumEntry* const entry = choice->GetCurrentEntry();
        return entry != nullptr && IsAvailable(entry->GetAccessMode());
    }
    auto* const text = dynamic_cast<IString*>(&value);
    return text == nullptr || IsText(*text);
}

/// Whether a feature that is there has a value that it may have.
bool IsLegal(IValue& value) {
    return IsShown(value) && Holds([&] {
               const EAccessMode mode = value.GetAccessMode();
               const bool isText = dynamic_cast<IString*>(&value) != nullptr;
               return !IsReadable(mode) || (mode == RO && !isText) || IsAllowed(value);
           });
}

/// What a client would do.
void SetToFirst(IValue& value) {
    if (auto* const integer = dynamic_cast<IInteger*>(&value)) {
        integer->SetValue(integer->GetMin());
    } else if (auto* const real = dynamic_cast<IFloat*>(&value)) {
        real->SetValue(real->GetMin() / 2 + real->GetMax() / 2);  // the least may round down
    } else if (auto* const flag = dynamic_cast<IBoolean*>(&value)) {
        flag->SetValue(false);
    } else if (auto* const choice = dynamic_cast<IEnumeration*>(&value)) {
        gcstring_vector names;
        choice->GetSymbolics(names);
        if (!names.empty()) {
            *choice = names[0];
        }
    }
}

/// The registers that a node's value, its limits and its rights come from, and those
/// of its entries, the nearest first.
std::vector<IRegister*> RegistersBehind(INode& node) {
    std::vector<INode*> sources{&node};
    std::unordered_set<INode*> seen{&node};
    std::vector<IRegister*> registers;
    const auto addAll = [&](const node_vector& found) {
        for (INode* const source : found) {
            if (seen.insert(source).second) {
                sources.push_back(source);
            }
        }
    };
    for (size_t i = 0; i < sources.size(); ++i) {
        node_vector found;
        sources[i]->GetChildren(found, ReadingChildren);
        addAll(found);
        if (auto* const choice = dynamic_cast<IEnumeration*>(sources[i])) {
            choice->GetEntries(found);
            addAll(found);
        }
        if (auto* const reg = dynamic_cast<IRegister*>(sources[i])) {
            registers.push_back(reg);
        }
    }
    return registers;
}

/// Past all rights and limits, as a device does it.
void Put(IRegister& reg, int64_t number) {
    constexpr bool verify = false;
    if (auto* const integer = dynamic_cast<IInteger*>(&reg)) {
        integer->SetValue(number, verify);
    } else if (auto* const real = dynamic_cast<IFloat*>(&reg)) {
        real->SetValue(static_cast<double>(number), verify);
    }
}

/// As much of a number as the register takes.
void PutAtMost(IRegister& reg, int64_t number) {
    const auto isTaken = [&] {
        Put(reg, number);
        return true;
    };
    while (!Holds(isTaken) && number > 1) {
        number /= 2;
    }
}

/// The end of the text is part of it: what follows doesn't count.
void PutText(IRegister& reg, OvTest::MadeUpMemory& memory) {
    constexpr std::string_view text("Made-up\0", 8);
    const size_t length = std::min(text.size(), static_cast<size_t>(reg.GetLength()));
    memory.Write(static_cast<uint64_t>(reg.GetAddress()),
                 std::as_bytes(std::span(text.data(), length)));
}

/// A value that a node holds itself is as the description says after each opening.
bool IsInRegisters(INode& node) {
    node_vector terminals;
    node.GetChildren(terminals, TerminalNodes);
    return !terminals.empty() &&
           std::all_of(
               terminals.begin().operator->(), terminals.end().operator->(),
               [](INode* terminal) { return dynamic_cast<IRegister*>(terminal) != nullptr; });
}

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
        m_registers[value] = RegistersBehind(node);
    }
}

/// What can't even be asked stays as it is.
void PowerUp::ForEach(const std::function<void(IValue&)>& run) const {
    for (IValue* const value : m_features) {
        Try([&] { run(*value); });
    }
}

/// To have a value that may be saved counts more than to be there.
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

/// Keeps what a change does if the feature gains by it and all features together do.
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

/// Tries registers with what conditions and limits are made of.
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

/// Those that a property of a node is read from.
std::vector<IRegister*> PowerUp::RegistersOf(INode& node, const char* property) const {
    gcstring name;
    gcstring attribute;
    return node.GetProperty(property, name, attribute) ? RegistersBehind(*m_map.GetNode(name))
                                                       : std::vector<IRegister*>();
}

/// Puts numbers that leave room into limits, and what makes features be there into
/// conditions.
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

/// Limits may depend on values that have such limits themselves: an offset and a
/// width leave each other room.
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

/// Where several features write one register as a whole, the last one wins: the
/// others get what is left of that.
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

/// Selectors of millions of values would take as many combinations.
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
    for (IRegister* const reg : RegistersBehind(*node)) {
        const OvTest::MadeUpMemory::Bytes before = m_memory.Written();
        Try([&] { Put(*reg, kPayloadSize); });
        if (Holds([&] { return payload->GetValue() == kPayloadSize; })) {
            return;
        }
        m_memory.Restore(before);
        m_map.InvalidateNodes();
    }
}

/// Under each combination of its selectors, or as many.
void PowerUp::SettleAll(IValue& value) {
    constexpr int mostCombinations = 16;
    size_t mostRegisters = 4;
    CSelectorSet selectors(&value);
    bool isThere = selectors.SetFirst();
    for (int i = 0; isThere && i < mostCombinations; ++i) {
        if (!IsLegal(value)) {
            Settle(value, mostRegisters);
            // What a search doesn't find once it hardly finds the next time.
            mostRegisters = IsLegal(value) ? mostRegisters : 0;
        }
        isThere = selectors.SetNext();
    }
    selectors.Restore();
}

void PowerUp::Run() {
    constexpr int passes = 2;  // what is settled may depend on what comes later
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
