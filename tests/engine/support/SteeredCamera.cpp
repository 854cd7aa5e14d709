#include "SteeredCamera.h"

#include <algorithm>
#include <bit>
#include <cctype>
#include <cstdlib>
#include <iterator>
#include <set>

#include "FeatureDump.h"
#include "GenApi/IRegister.h"

namespace EngineTest {

namespace {

constexpr int64_t kMostBytes = 1 << 20;

void RequireSane(int64_t length) {
    if (length < 0 || length > kMostBytes) {
        RUNTIME_EXCEPTION("Access of %ld bytes refused", static_cast<long>(length));
    }
}

template <class Call>
bool Succeeds(const Call& call) {
    return ResultOr(false, [&] {
        call();
        return true;
    });
}

/// A register that a search may set, or a feature that a client may.
struct Knob {
    IValue* node;
    bool isRegister;
    /// Of a register; what a feature can be set to changes with the rest.
    std::vector<int64_t> settings;
};

/// Past all rights and limits, as a device does it.
void SetKnob(const Knob& knob, int64_t setting) {
    Succeeds([&] { SetNumber(*knob.node, setting, false); });
}

/// Nothing for what can't be read.
std::optional<int64_t> SettingOf(const Knob& knob) {
    return ResultOr<std::optional<int64_t>>({}, [&] { return NumberOf(*knob.node); });
}

/// What to try, one of which may be what the knob has.
std::vector<int64_t> SettingsOf(const Knob& knob) {
    constexpr size_t kMostSettings = 16;
    return knob.isRegister ? knob.settings : ResultOr<std::vector<int64_t>>({}, [&] {
        return NumbersFor(*knob.node, kMostSettings);
    });
}

bool IsOfWord(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_';
}

/// Numbers that are words of their own, not parts of names.
void AddNumbersIn(const gcstring& formula, std::set<int64_t>& numbers) {
    const char* const end = formula.c_str() + formula.length();
    for (const char* at = formula.c_str(); at != end;) {
        const char* const word = std::find_if(at, end, IsOfWord);
        at = std::find_if_not(word, end, IsOfWord);
        if (word != end && std::isdigit(static_cast<unsigned char>(*word)) != 0) {
            numbers.insert(static_cast<int64_t>(std::strtoull(word, nullptr, 0)));
        }
    }
}

void AddNumbersOf(INode& node, std::set<int64_t>& numbers) {
    for (const char* const property : {"Formula", "FormulaFrom"}) {
        gcstring formula;
        gcstring attribute;
        if (node.GetProperty(property, formula, attribute)) {
            AddNumbersIn(formula, numbers);
        }
    }
}

/// The numbers in the formulas that take a register, directly or by way of another
/// node: what a condition compares with.
std::set<int64_t> NumbersComparedWith(INode& node) {
    std::set<int64_t> numbers;
    std::vector<INode*> readers{&node};
    for (size_t step = 0; step < 2; ++step) {
        std::vector<INode*> next;
        for (INode* const reader : readers) {
            node_vector parents;
            reader->GetParents(parents);
            next.insert(next.end(), parents.begin().operator->(), parents.end().operator->());
        }
        readers = next;
        for (INode* const reader : readers) {
            AddNumbersOf(*reader, numbers);
        }
    }
    return numbers;
}

/// What conditions and limits are made of, as far as the register can hold it: single
/// bits, all but one of them, what formulas compare with.
std::vector<int64_t> SettingsFor(INode& node) {
    constexpr int64_t kAllBits = 0xFFFFFFFF;
    std::vector<int64_t> settings{1, 0, -1, 2, 3, 8, 255, kAllBits};
    for (const int64_t number : NumbersComparedWith(node)) {
        settings.push_back(number);
        if (number > 0 && std::has_single_bit(static_cast<uint64_t>(number))) {
            settings.push_back(kAllBits ^ number);
        }
    }
    if (auto* const integer = dynamic_cast<IInteger*>(&node)) {
        std::erase_if(settings, [&](int64_t setting) {
            return ResultOr(
                false, [&] { return setting < integer->GetMin() || setting > integer->GetMax(); });
        });
    }
    return settings;
}

std::vector<Knob> KnobsFor(const WriteGoal& goal) {
    std::vector<Knob> knobs;
    for (INode* const source : SourcesOf(goal.Node())) {
        auto* const value = dynamic_cast<IValue*>(source);
        if (value == nullptr || !IsNumber(*value)) {
            continue;
        }
        if (dynamic_cast<IRegister*>(source) != nullptr) {
            knobs.push_back({value, true, SettingsFor(*source)});
        } else if (!goal.HoldsSelectors() && source != &goal.Node() && source->IsFeature()) {
            knobs.push_back({value, false, {}});
        }
    }
    return knobs;
}

/// Leaves a knob at the setting that scores best.
int64_t Turn(const Knob& knob, const WriteGoal& goal, int64_t best) {
    int64_t kept = SettingOf(knob).value_or(0);
    int64_t present = kept;
    for (const int64_t setting : SettingsOf(knob)) {
        if (setting == present) {
            continue;
        }
        SetKnob(knob, setting);
        present = setting;
        if (const int64_t reached = goal.Score(); reached > best) {
            best = reached;
            kept = setting;
        }
        if (best == WriteGoal::kReached) {
            return best;
        }
    }
    if (present != kept) {
        SetKnob(knob, kept);
    }
    return best;
}

/// Turns one knob after the other for as long as it helps, as what one does may
/// depend on another that is turned after it.
bool Climb(const std::vector<Knob>& knobs, const WriteGoal& goal) {
    int64_t best = goal.Score();
    for (int64_t before = best - 1; best > before && best != WriteGoal::kReached;) {
        before = best;
        for (const Knob& knob : knobs) {
            best = Turn(knob, goal, best);
            if (best == WriteGoal::kReached) {
                break;
            }
        }
    }
    return best == WriteGoal::kReached;
}

/// Where several conditions have to hold at once, none of them scores alone.
bool ClimbFromOnes(const std::vector<Knob>& knobs, const WriteGoal& goal) {
    // Twice, as registers move to where others say.
    for (size_t round = 0; round < 2; ++round) {
        for (const Knob& knob : knobs) {
            SetKnob(knob, 1);
        }
    }
    return Climb(knobs, goal);
}

/// The way to another place of a selector may lie over states that score less.
bool ClimbElsewhere(const std::vector<Knob>& knobs, const WriteGoal& goal) {
    for (const Knob& knob : knobs) {
        if (knob.isRegister || !goal.IsSelectedBy(*knob.node->GetNode())) {
            continue;
        }
        std::vector<Knob> others;
        std::copy_if(knobs.begin(), knobs.end(), std::back_inserter(others),
                     [&](const Knob& other) { return other.node != knob.node; });
        const int64_t before = SettingOf(knob).value_or(0);
        for (const int64_t setting : SettingsOf(knob)) {
            SetKnob(knob, setting);
            if (Climb(others, goal)) {
                return true;
            }
        }
        SetKnob(knob, before);
    }
    return false;
}

}  // namespace

void PlainMemory::Read(void* buffer, int64_t address, int64_t length) {
    RequireSane(length);
    for (int64_t i = 0; i < length; ++i) {
        const auto found = m_Bytes.find(static_cast<uint64_t>(address) + static_cast<uint64_t>(i));
        static_cast<uint8_t*>(buffer)[i] = found == m_Bytes.end() ? 0 : found->second;
    }
}

void PlainMemory::Write(const void* buffer, int64_t address, int64_t length) {
    RequireSane(length);
    if (m_DoneAtOnce.count(address) != 0) {
        return;
    }
    for (int64_t i = 0; i < length; ++i) {
        m_Bytes[static_cast<uint64_t>(address) + static_cast<uint64_t>(i)] =
            static_cast<const uint8_t*>(buffer)[i];
    }
}

SteeredCamera::SteeredCamera(const fs::path& file)
    : m_Map(CNodeMapFactory(ContentType_Xml, gcstring(file.c_str()), CacheUsage_Ignore)
                .CreateNodeMap("Device", false)) {
    ConnectAllPorts(Map(), m_Memory);
    for (const char* const name :
         {"DeviceFeaturePersistenceStart", "DeviceFeaturePersistenceEnd",
          "DeviceRegistersStreamingStart", "DeviceRegistersStreamingEnd"}) {
        if (INode* const command = Map().GetNode(name)) {
            FinishAtOnce(*command);
        }
    }
}

void SteeredCamera::FinishAtOnce(INode& command) {
    node_vector written;
    command.GetChildren(written, WritingChildren);
    for (INode* const child : written) {
        if (auto* const target = dynamic_cast<IRegister*>(child)) {
            m_Memory.FinishAtOnce(target->GetAddress());
        }
    }
}

std::vector<INode*> SteeredCamera::Nodes() {
    node_vector nodes;
    Map().GetNodes(nodes);
    return {nodes.begin().operator->(), nodes.end().operator->()};
}

bool SteeredCamera::Steer(const WriteGoal& goal) {
    if (goal.Score() == WriteGoal::kReached) {
        return true;
    }
    const std::vector<Knob> knobs = KnobsFor(goal);
    std::vector<std::optional<int64_t>> before;
    std::transform(knobs.begin(), knobs.end(), std::back_inserter(before), SettingOf);
    const PlainMemory::Bytes bytes = m_Memory.Content();
    const auto restore = [&] {
        for (size_t i = 0; i < knobs.size(); ++i) {
            if (before[i]) {
                SetKnob(knobs[i], *before[i]);
            }
        }
        m_Memory.SetContent(bytes);
        Map().InvalidateNodes();
    };
    for (const auto& climb : {Climb, ClimbFromOnes}) {
        // What a climb has reached may be the values that selectors need to be moved.
        if (climb(knobs, goal) || ClimbElsewhere(knobs, goal)) {
            return true;
        }
        restore();
    }
    return false;
}

void SteeredCamera::MakeValid(IValue& node) {
    if (Succeeds([&] { node.FromString(node.ToString(), true); })) {
        return;
    }
    const std::vector<int64_t> numbers = NumbersFor(node, 1);
    if (!numbers.empty()) {
        SetNumber(node, numbers.front(), true);
    }
}

}  // namespace EngineTest
