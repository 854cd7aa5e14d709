#include "steered_camera.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <iterator>
#include <regex>
#include <set>
#include <unordered_set>

#include "FeatureDump.h"
#include "GenApi/IBoolean.h"
#include "GenApi/IEnumEntry.h"
#include "GenApi/IEnumeration.h"
#include "GenApi/IFloat.h"
#include "GenApi/IRegister.h"
#include "GenApi/ISelector.h"

namespace EngineTest {

namespace {

constexpr int64_t kMostBytes = 1 << 20;

void RequireSane(int64_t length) {
    if (length < 0 || length > kMostBytes) {
        RUNTIME_EXCEPTION("Access of %ld bytes refused", static_cast<long>(length));
    }
}

/// What a call gives, or the fallback where it fails.
template <class Result, class Call>
Result ResultOr(const Result& fallback, const Call& call) {
    try {
        return call();
    } catch (const GenericException&) {
        return fallback;
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
    std::vector<int64_t> settings;
};

/// Past all rights and limits, as a device does it.
void SetKnob(const Knob& knob, int64_t setting) {
    Succeeds([&] { SetNumber(*knob.node, setting, false); });
}

void SetAll(const std::vector<Knob>& knobs, int64_t setting) {
    for (const Knob& knob : knobs) {
        SetKnob(knob, setting);
    }
}

int64_t SettingOf(const Knob& knob) {
    return ResultOr<int64_t>(0, [&] { return NumberOf(*knob.node); });
}

/// The node with all that its value, its limits and its rights, those of its
/// entries and of its selectors come from, the nearest first.
std::vector<INode*> SourcesOf(INode& node) {
    std::vector<INode*> sources{&node};
    std::unordered_set<INode*> seen{&node};
    const auto add = [&](INode* source) {
        if (source != nullptr && seen.insert(source).second) {
            sources.push_back(source);
        }
    };
    for (size_t i = 0; i < sources.size(); ++i) {
        node_vector links;
        sources[i]->GetChildren(links, ReadingChildren);
        std::for_each(links.begin().operator->(), links.end().operator->(), add);
        if (auto* const choice = dynamic_cast<IEnumeration*>(sources[i])) {
            choice->GetEntries(links);
            std::for_each(links.begin().operator->(), links.end().operator->(), add);
        }
        value_vector selectors;
        dynamic_cast<ISelector&>(*sources[i]).GetSelectingFeatures(selectors);
        for (IValue* const selector : selectors) {
            add(selector->GetNode());
        }
    }
    return sources;
}

/// The numbers in the formulas of nodes: what a condition compares with.
std::vector<int64_t> NumbersInFormulas(const std::vector<INode*>& nodes) {
    static const std::regex kNumber("\\b(0[xX][0-9A-Fa-f]{1,16}|[0-9]{1,9})\\b");
    std::set<int64_t> numbers;
    for (INode* const node : nodes) {
        for (const char* const property : {"Formula", "FormulaFrom"}) {
            gcstring formula;
            gcstring attribute;
            if (!node->GetProperty(property, formula, attribute)) {
                continue;
            }
            const std::string text = formula.c_str();
            for (std::sregex_iterator it(text.begin(), text.end(), kNumber), end; it != end; ++it) {
                numbers.insert(static_cast<int64_t>(std::stoull(it->str(), nullptr, 0)));
            }
        }
    }
    return {numbers.begin(), numbers.end()};
}

/// What conditions are made of: single bits, all but one of them, what formulas
/// compare with.
std::vector<int64_t> SettingsFor(const std::vector<INode*>& sources) {
    constexpr size_t kMostCompared = 40;
    constexpr int64_t kAllBits = 0xFFFFFFFF;
    std::vector<int64_t> settings{1, 0, -1, 2, 3, 8, 255};
    std::vector<int64_t> compared = NumbersInFormulas(sources);
    compared.resize(std::min(compared.size(), kMostCompared));
    for (const int64_t number : compared) {
        settings.push_back(number);
        if (number > 0 && std::has_single_bit(static_cast<uint64_t>(number))) {
            settings.push_back(kAllBits ^ number);
        }
    }
    return settings;
}

std::vector<Knob> KnobsOf(INode& node, const std::vector<INode*>& sources, bool withFeatures) {
    const std::vector<int64_t> settings = SettingsFor(sources);
    std::vector<Knob> knobs;
    for (INode* const source : sources) {
        auto* const value = dynamic_cast<IValue*>(source);
        if (dynamic_cast<IRegister*>(source) != nullptr) {
            knobs.push_back({value, settings});
        } else if (withFeatures && source != &node && value != nullptr && source->IsFeature()) {
            knobs.push_back({value, ResultOr<std::vector<int64_t>>(
                                        {1, 0}, [&] { return NumbersFor(*value, 16); })});
        }
    }
    return knobs;
}

/// Sets one knob after the other to what scores best.
int64_t ClimbOnce(const std::vector<Knob>& knobs, const std::function<int64_t()>& score,
                  int64_t goal) {
    int64_t best = score();
    for (const Knob& knob : knobs) {
        if (best >= goal) {
            break;
        }
        int64_t kept = SettingOf(knob);
        for (const int64_t setting : knob.settings) {
            SetKnob(knob, setting);
            if (const int64_t reached = score(); reached > best) {
                best = reached;
                kept = setting;
            }
            if (best >= goal) {
                return best;
            }
        }
        SetKnob(knob, kept);
    }
    return best;
}

/// What one knob does may depend on another that is set behind it.
int64_t Climb(const std::vector<Knob>& knobs, const std::function<int64_t()>& score, int64_t goal) {
    int64_t before = score();
    int64_t best = ClimbOnce(knobs, score, goal);
    while (best < goal && best > before) {
        before = best;
        best = ClimbOnce(knobs, score, goal);
    }
    return best;
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

bool SteeredCamera::Steer(INode& node, const Score& score, int64_t goal, bool withFeatures) {
    const std::vector<INode*> sources = SourcesOf(node);
    const auto scoreNow = [&] {
        // Several registers may lie at one place, and the device changes them all.
        for (INode* const source : sources) {
            const AutoLock lock(Map().GetLock());
            dynamic_cast<INodePrivate&>(*source).SetInvalid(simOnlyMe);
        }
        return ResultOr<int64_t>(-1, score);
    };
    if (scoreNow() >= goal) {
        return true;
    }
    const std::vector<Knob> knobs = KnobsOf(node, sources, withFeatures);
    std::vector<int64_t> before;
    std::transform(knobs.begin(), knobs.end(), std::back_inserter(before), SettingOf);
    const auto restore = [&] {
        for (size_t i = 0; i < knobs.size(); ++i) {
            SetKnob(knobs[i], before[i]);
        }
    };
    if (Climb(knobs, scoreNow, goal) >= goal) {
        return true;
    }
    // Where several conditions have to hold at once, none of them scores alone.
    for (const int64_t common : {1, -1}) {
        restore();
        // Twice, as registers move to where others say.
        SetAll(knobs, common);
        SetAll(knobs, common);
        if (Climb(knobs, scoreNow, goal) >= goal) {
            return true;
        }
    }
    restore();
    return false;
}

void SteeredCamera::SetLimits(INode& node) {
    const std::pair<const char*, int64_t> limits[] = {{"pMin", 0}, {"pMax", 8}, {"pInc", 1}};
    for (const auto& [property, number] : limits) {
        gcstring name;
        gcstring attribute;
        if (!node.GetProperty(property, name, attribute)) {
            continue;
        }
        for (INode* const source : SourcesOf(*Map().GetNode(name))) {
            if (dynamic_cast<IRegister*>(source) != nullptr) {
                SetKnob({dynamic_cast<IValue*>(source), {}}, number);
            }
        }
    }
    node_vector written;
    node.GetChildren(written, WritingChildren);
    for (INode* const child : written) {
        SetLimits(*child);
    }
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

int64_t NumberOf(IValue& node) {
    if (auto* const integer = dynamic_cast<IInteger*>(&node)) {
        return integer->GetValue();
    }
    if (auto* const real = dynamic_cast<IFloat*>(&node)) {
        return static_cast<int64_t>(real->GetValue());
    }
    if (auto* const choice = dynamic_cast<IEnumeration*>(&node)) {
        return choice->GetIntValue();
    }
    auto* const flag = dynamic_cast<IBoolean*>(&node);
    return flag != nullptr && flag->GetValue() ? 1 : 0;
}

void SetNumber(IValue& node, int64_t number, bool verify) {
    if (auto* const integer = dynamic_cast<IInteger*>(&node)) {
        integer->SetValue(number, verify);
    } else if (auto* const real = dynamic_cast<IFloat*>(&node)) {
        real->SetValue(static_cast<double>(number), verify);
    } else if (auto* const choice = dynamic_cast<IEnumeration*>(&node)) {
        choice->SetIntValue(number, verify);
    } else if (auto* const flag = dynamic_cast<IBoolean*>(&node)) {
        flag->SetValue(number != 0, verify);
    }
}

namespace {

std::vector<int64_t> AvailableEntries(IEnumeration& choice) {
    node_vector entries;
    choice.GetEntries(entries);
    std::vector<int64_t> numbers;
    for (INode* const entry : entries) {
        if (IsAvailable(entry->GetAccessMode())) {
            numbers.push_back(dynamic_cast<IEnumEntry&>(*entry).GetValue());
        }
    }
    return numbers;
}

std::vector<int64_t> WithinLimits(int64_t min, int64_t max, int64_t inc, size_t most) {
    std::vector<int64_t> numbers;
    for (int64_t number = min; number <= max && numbers.size() < most;) {
        numbers.push_back(number);
        if (__builtin_add_overflow(number, inc, &number)) {
            break;
        }
    }
    return numbers;
}

}  // namespace

std::vector<int64_t> NumbersFor(IValue& node, size_t most) {
    if (auto* const choice = dynamic_cast<IEnumeration*>(&node)) {
        return AvailableEntries(*choice);
    }
    if (auto* const integer = dynamic_cast<IInteger*>(&node)) {
        const int64_t inc = integer->GetInc();
        return inc < 1 ? std::vector<int64_t>()
                       : WithinLimits(integer->GetMin(), integer->GetMax(), inc, most);
    }
    if (auto* const real = dynamic_cast<IFloat*>(&node)) {
        const double min = std::clamp(std::ceil(real->GetMin()), -1e6, 1e6);
        const double max = std::clamp(std::floor(real->GetMax()), -1e6, 1e6);
        return WithinLimits(static_cast<int64_t>(min), static_cast<int64_t>(max), 1, most);
    }
    return dynamic_cast<IBoolean*>(&node) != nullptr ? std::vector<int64_t>{0, 1}
                                                     : std::vector<int64_t>();
}

}  // namespace EngineTest
