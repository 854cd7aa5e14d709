// All settings that a device can hold: the current ones, its user sets and its sequencer sets.
// The sets of a device can only be reached by loading them, so the current settings are stored
// first and written back at the end.

#include "GenApi/FeatureBagger.h"

#include <optional>
#include <string_view>

#include "GenApi/IBoolean.h"
#include "GenApi/ICommand.h"
#include "settings/FeaturePersistence.h"
#include "settings/SelectorDigits.h"

namespace GenApi_3_0_ORVANE {

namespace {

constexpr char kAllBag[] = "All";
/// The default set is the maker's: it can be loaded, and saving it fails.
constexpr char kDefaultSetBag[] = "UserSet.Default";

bool BeginsWith(const gcstring& text, std::string_view prefix) {
    return std::string_view(text.c_str(), text.size()).substr(0, prefix.size()) == prefix;
}

/// The features that belong to the set that is selected; none if the device doesn't say, which
/// means all.
std::optional<gcstring_vector> FeaturesOfSet(INodeMap& nodeMap, const char* featureSelector,
                                             const char* featureEnable) {
    const CEnumSelectorDigit::Pointer selector(nodeMap.GetNode(featureSelector));
    const CPointer<IBoolean> enable(nodeMap.GetNode(featureEnable));
    if (!selector.IsValid() || !enable.IsValid()) {
        return std::nullopt;
    }
    gcstring_vector features;
    CEnumSelectorDigit digit(selector);
    ForEachCombination(digit, [&] {
        if (enable->GetValue()) {
            features.push_back(SelectorText(*selector));
        }
        return true;
    });
    return features;
}

}  // namespace

/// The nodes by which a device offers one kind of sets. The two kinds work alike under different
/// names.
struct CFeatureBagger::SetNodes {
    const char* bagPrefix;
    const char* selector;
    const char* load;
    const char* save;
    const char* featureSelector;
    const char* featureEnable;
};

const CFeatureBagger::SetNodes CFeatureBagger::kUserSets = {
    "UserSet.",         "Std::UserSetSelector",        "Std::UserSetLoad",
    "Std::UserSetSave", "Std::UserSetFeatureSelector", "Std::UserSetFeatureEnable"};

const CFeatureBagger::SetNodes CFeatureBagger::kSequencerSets = {
    "SequencerSet.",         "Std::SequencerSetSelector",     "Std::SequencerSetLoad",
    "Std::SequencerSetSave", "Std::SequencerFeatureSelector", "Std::SequencerFeatureEnable"};

CFeatureBagger::CFeatureBagger() = default;

CFeatureBagger::~CFeatureBagger() = default;

CFeatureBag* CFeatureBagger::AddBag(const gcstring& bagName) {
    auto bag = std::make_unique<CFeatureBag>(bagName);
    bag->SetInfo(m_Info);
    m_Bags.push_back(std::move(bag));
    return m_Bags.back().get();
}

CFeatureBag* CFeatureBagger::at(size_t index) const {
    if (index >= m_Bags.size()) {
        OUT_OF_RANGE_EXCEPTION("Index %zu is out of range", index);
    }
    return m_Bags[index].get();
}

/// Two things have to be undone whatever happens: the settings that loading the sets replaces,
/// and the state that the device is in between the two commands.
int64_t CFeatureBagger::Bag(INodeMap* nodeMap, bool bagAll, bool bagUserSets, bool bagSequencerSets,
                            int64_t maxEntries) {
    INodeMap& map = RequireNodeMap(nodeMap);
    int64_t count = 0;
    ExecuteIfPresent(map, "Std::DeviceFeaturePersistenceStart");
    RunAndEnd(
        [&] {
            CFeatureBag current;
            current.StoreToBagInternal(map, -1, nullptr);
            RunAndEnd(
                [&] { count = BagAsked(map, bagAll, bagUserSets, bagSequencerSets, maxEntries); },
                [&] { current.LoadFromBagInternal(map, false, nullptr); });
        },
        [&] { ExecuteIfPresent(map, "Std::DeviceFeaturePersistenceEnd"); });
    return count;
}

/// The current settings come first, before a set is loaded over them.
int64_t CFeatureBagger::BagAsked(INodeMap& nodeMap, bool bagAll, bool bagUserSets,
                                 bool bagSequencerSets, int64_t maxEntries) {
    int64_t count = 0;
    if (bagAll) {
        count += AddBag(kAllBag)->StoreToBagInternal(nodeMap, maxEntries, nullptr);
    }
    if (bagUserSets) {
        count += BagSets<CEnumSelectorDigit>(nodeMap, kUserSets, maxEntries);
    }
    if (bagSequencerSets) {
        count += BagSets<CIntSelectorDigit>(nodeMap, kSequencerSets, maxEntries);
    }
    return count;
}

/// A device without the nodes has no such sets, which is no failure.
template <class Digit>
int64_t CFeatureBagger::BagSets(INodeMap& nodeMap, const SetNodes& nodes, int64_t maxEntries) {
    const typename Digit::Pointer selector(nodeMap.GetNode(nodes.selector));
    const CPointer<ICommand> load(nodeMap.GetNode(nodes.load));
    if (!selector.IsValid() || !load.IsValid()) {
        return 0;
    }
    int64_t count = 0;
    Digit digit(selector);
    ForEachCombination(digit, [&] {
        const gcstring bagName = nodes.bagPrefix + SelectorText(*selector);
        // The digit has selected the set; only after loading do the features have its
        // values.
        ExecuteAndWait(*load);
        const auto features = FeaturesOfSet(nodeMap, nodes.featureSelector, nodes.featureEnable);
        count += AddBag(bagName)->StoreToBagInternal(nodeMap, maxEntries,
                                                     features ? &*features : nullptr);
        return true;
    });
    return count;
}

/// The sets come first: saving one needs its settings to be the current ones. The bag with the
/// settings that the device shall have in the end comes last.
bool CFeatureBagger::UnBag(INodeMap* nodeMap, bool verify, gcstring_vector* errors) {
    INodeMap& map = RequireNodeMap(nodeMap);
    bool isClean = true;
    for (const auto& bag : m_Bags) {
        const gcstring& name = bag->GetBagName();
        if (BeginsWith(name, kUserSets.bagPrefix) && name != kDefaultSetBag) {
            isClean &= UnBagCustomAction<CEnumSelectorDigit::Pointer>(map, *bag, kUserSets, verify,
                                                                      errors);
        } else if (BeginsWith(name, kSequencerSets.bagPrefix)) {
            isClean &= UnBagCustomAction<CIntSelectorDigit::Pointer>(map, *bag, kSequencerSets,
                                                                     verify, errors);
        }
    }
    for (const auto& bag : m_Bags) {
        if (bag->GetBagName() == kAllBag) {
            isClean &= bag->LoadFromBagInternal(map, verify, errors);
        }
    }
    return isClean;
}

/// A bag whose set can't be selected isn't loaded: it would end up in another set. A set that was
/// loaded with failures is saved all the same, since most of its settings are right; the notes
/// say what is missing.
template <class SelectorPointer>
bool CFeatureBagger::UnBagCustomAction(INodeMap& nodeMap, const CFeatureBag& bag,
                                       const SetNodes& nodes, bool verify,
                                       gcstring_vector* errors) {
    const SelectorPointer selector(nodeMap.GetNode(nodes.selector));
    const CPointer<ICommand> save(nodeMap.GetNode(nodes.save));
    if (!selector.IsValid() || !save.IsValid()) {
        return true;
    }
    LoadNotes notes(errors);
    const auto attempt = [&notes](IValue& node, const auto& action) {
        return notes.Attempt(LoadNotes::kWriting, node.GetNode()->GetName(), action);
    };
    const gcstring set = bag.GetBagName().substr(std::string_view(nodes.bagPrefix).size());
    if (!attempt(*selector, [&] { selector->FromString(set, true); })) {
        return false;
    }
    const bool isLoaded = bag.LoadFromBagInternal(nodeMap, verify, errors);
    return attempt(*save, [&] { ExecuteAndWait(*save); }) && isLoaded;
}

}  // namespace GenApi_3_0_ORVANE
