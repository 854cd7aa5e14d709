// Whole descriptions over made-up memory: selectors move, and what is streamable
// is saved and restored.

#include <iostream>
#include <optional>

#include "BagSupport.h"
#include "GenApi/IEnumeration.h"
#include "GenApi/IRegister.h"
#include "GenApi/ISelector.h"
#include "GenApi/IString.h"
#include "GenApi/SelectorSet.h"
#include "SteeredCamera.h"
#include "support/Descriptions.h"
#include "support/WhyReadOnly.h"

namespace EngineTest {

namespace {

constexpr size_t kMostValues = 16;

/// Prints why nodes are left out, and how many weren't.
class Account {
public:
    Account(const fs::path& file, const char* what) : m_Name(file.stem()), m_What(what) {}
    ~Account() {
        std::cout << m_Name << ": " << m_Done << " of " << m_Done + m_Excluded.size() << " "
                  << m_What << "\n";
    }
    Account(const Account&) = delete;
    Account& operator=(const Account&) = delete;

    void Exclude(INode& node, const std::string& why) {
        m_Excluded.push_back(&node);
        std::cout << "  " << node.GetName() << ": " << why << "\n";
    }
    void Done() { ++m_Done; }
    /// Whatever state the others have brought the camera into.
    void ExpectNoneOfTheExcludedToChange() const {
        for (INode* const node : m_Excluded) {
            const bool isFixed = !IsWritable(node->GetAccessMode()) ||
                                 NumbersFor(dynamic_cast<IValue&>(*node), 2).size() < 2;
            EXPECT_TRUE(isFixed) << node->GetName();
        }
    }

private:
    std::string m_Name;
    const char* m_What;
    size_t m_Done = 0;
    std::vector<INode*> m_Excluded;
};

class SettingsOfDescriptions : public testing::TestWithParam<fs::path> {
protected:
    /// Makes a node writable, and so many of the values that it may have available.
    bool SteerToWrite(INode& node, size_t values) { return m_Camera.Steer({node, values}); }
    void ExpectRestored(INode& node, IValue& feature);
    void MakeAllValid(INode& node, IValue& feature);

    SteeredCamera m_Camera{GetParam()};
};

void ExpectMoves(INode& node, IValue& selector) try {
    for (const int64_t number : NumbersFor(selector, kMostValues)) {
        SetNumber(selector, number, true);
        node.InvalidateNode();
        EXPECT_EQ(NumberOf(selector), number) << node.GetName();
    }
} catch (const GenericException& failure) {
    ADD_FAILURE() << node.GetName() << ": " << failure.what();
}

/// Calls `action` for each combination of the selectors of a feature.
template <class Action>
void ForEachCombinationOf(INode& feature, const Action& action) {
    CSelectorSet selectors(&feature);
    for (bool isSet = selectors.SetFirst(); isSet; isSet = selectors.SetNext()) {
        action();
    }
    selectors.Restore();
}

/// Keeps the walks short, as those through a look-up table aren't.
void LimitSelectors(INode& feature) {
    value_vector selectors;
    CSelectorSet(&feature).GetSelectorList(selectors);
    for (IValue* const selector : selectors) {
        SteeredCamera::MakeValid(*selector);
        const std::vector<int64_t> numbers = NumbersFor(*selector, kMostValues);
        auto* const integer = dynamic_cast<IInteger*>(selector);
        if (integer != nullptr && !numbers.empty()) {
            SetNumber(*selector, numbers.front(), true);
            integer->ImposeMax(numbers.back());
        }
    }
}

/// What a feature is changed to.
struct Target {
    int64_t number = 0;
    gcstring text;
};

/// Another value than the present one, if there is any.
std::optional<Target> OtherValue(IValue& feature) {
    if (!IsNumber(feature)) {
        gcstring text = feature.ToString();
        const bool isBytes = dynamic_cast<IString*>(&feature) == nullptr;
        constexpr size_t kFirstDigit = 2;
        if (isBytes) {
            std::string bytes = text.c_str();
            bytes[kFirstDigit] = bytes[kFirstDigit] == '1' ? '2' : '1';
            return Target{0, bytes.c_str()};
        }
        return Target{0, text == "a" ? "b" : "a"};
    }
    const int64_t now = NumberOf(feature);
    for (const int64_t number : NumbersFor(feature, 2)) {
        if (number != now) {
            return Target{number, {}};
        }
    }
    return std::nullopt;
}

void ChangeTo(IValue& feature, const Target& target) {
    if (!IsNumber(feature)) {
        feature.FromString(target.text);
        return;
    }
    if (Takes(feature, target.number)) {
        SetNumber(feature, target.number, true);
    }
}

std::vector<std::string> Stored(INode& node, CFeatureBag& bag) {
    gcstring_vector filter;
    filter.push_back(node.GetName());
    bag.StoreToBag(node.GetNodeMap(), -1, &filter);
    return EntriesOf(bag);
}

/// Gives a feature values that a camera may have for all of its selectors.
void SettingsOfDescriptions::MakeAllValid(INode& node, IValue& feature) {
    ForEachCombinationOf(node, [&] {
        if (node.GetAccessMode() == RW) {
            WriteGoal goal(node, 1);
            goal.HoldSelectors();
            EXPECT_TRUE(m_Camera.Steer(goal)) << node.GetName();
            SteeredCamera::MakeValid(feature);
        }
    });
}

/// Saves a feature, changes it in all combinations of its selectors, restores it.
void SettingsOfDescriptions::ExpectRestored(INode& node, IValue& feature) try {
    MakeAllValid(node, feature);
    CFeatureBag bag;
    const std::vector<std::string> saved = Stored(node, bag);
    EXPECT_FALSE(saved.empty()) << node.GetName();
    std::optional<Target> target;
    ForEachCombinationOf(node, [&] {
        if (node.GetAccessMode() == RW) {
            target = target ? target : OtherValue(feature);
            if (target) {
                ChangeTo(feature, *target);
            }
        }
    });
    CFeatureBag bagOfChanged;
    EXPECT_EQ(Stored(node, bagOfChanged) != saved, target.has_value()) << node.GetName();
    gcstring_vector errors;
    EXPECT_TRUE(bag.LoadFromBag(node.GetNodeMap(), true, &errors))
        << node.GetName() << " " << (errors.empty() ? "" : errors[0]);
    CFeatureBag bagOfRestored;
    EXPECT_EQ(Stored(node, bagOfRestored), saved) << node.GetName();
} catch (const GenericException& failure) {
    ADD_FAILURE() << node.GetName() << ": " << failure.what();
}

}  // namespace

TEST_P(SettingsOfDescriptions, MoveEverySelectorThatHasSeveralValues) {
    Account account(GetParam(), "selectors moved");
    for (INode* const node : m_Camera.Nodes()) {
        auto* const selector = dynamic_cast<IValue*>(node);
        if (selector == nullptr || !dynamic_cast<ISelector&>(*node).IsSelector()) {
            continue;
        }
        const std::string why = WhyFixed(*node);
        if (!why.empty()) {
            account.Exclude(*node, why);
            continue;
        }
        if (SteerToWrite(*node, 2)) {
            ExpectMoves(*node, *selector);
            account.Done();
        } else {
            ADD_FAILURE() << node->GetName() << " is not to be moved";
        }
    }
    account.ExpectNoneOfTheExcludedToChange();
}

TEST_P(SettingsOfDescriptions, SaveAndRestoreEveryStreamableFeature) {
    Account account(GetParam(), "streamable features saved and restored");
    for (INode* const node : m_Camera.Nodes()) {
        auto* const feature = dynamic_cast<IValue*>(node);
        if (feature == nullptr || !node->IsStreamable() || !node->IsFeature()) {
            continue;
        }
        const std::string why = WhyReadOnly(*node);
        if (!why.empty()) {
            account.Exclude(*node, why);
            continue;
        }
        if (SteerToWrite(*node, 2) || SteerToWrite(*node, 1)) {
            LimitSelectors(*node);
            ExpectRestored(*node, *feature);
            account.Done();
        } else {
            ADD_FAILURE() << node->GetName() << " is not to be written";
        }
    }
    account.ExpectNoneOfTheExcludedToChange();
}

INSTANTIATE_TEST_SUITE_P(Files, SettingsOfDescriptions,
                         testing::ValuesIn(Descriptions(OV_SOURCE_FOLDER)),
                         [](const auto& file) { return TestNameOf(file.param); });

}  // namespace EngineTest
