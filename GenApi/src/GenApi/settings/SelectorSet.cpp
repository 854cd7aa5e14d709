// The selectors of a feature, and theirs, as one counter that steps through all combinations.

#include "GenApi/SelectorSet.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

#include "GenApi/INode.h"
#include "GenApi/ISelector.h"
#include "map/DespiteFailures.h"
#include "map/FaultyNodes.h"
#include "node/NodeImpl.h"
#include "settings/SelectorDigits.h"

namespace GenApi_3_0_ORVANE {

namespace {

template <class Digit>
std::unique_ptr<ISelectorDigit> TryDigit(INode* selector) {
    const typename Digit::Pointer face(selector);
    return face.IsValid() ? std::make_unique<Digit>(face) : nullptr;
}

/// Null for a node of another kind: nobody knows which values it has.
std::unique_ptr<ISelectorDigit> MakeDigit(INode* selector) {
    for (const auto& make : {TryDigit<CIntSelectorDigit>, TryDigit<CEnumSelectorDigit>,
                             TryDigit<CBoolSelectorDigit>}) {
        if (std::unique_ptr<ISelectorDigit> digit = make(selector)) {
            return digit;
        }
    }
    return nullptr;
}

/// Returns what selects a node, the last by name first, to be taken from the back. By
/// name, so that two bags of one device have the same order.
std::vector<INode*> SelectingNodes(IBase* base) {
    const CPointer<ISelector> selected(base);
    if (!selected.IsValid()) {
        return {};
    }
    value_vector features;
    selected->GetSelectingFeatures(features);
    std::vector<std::pair<gcstring, INode*>> named;
    for (IValue* const feature : features) {
        named.emplace_back(feature->GetNode()->GetName(), feature->GetNode());
    }
    std::sort(named.begin(), named.end(),
              [](const auto& a, const auto& b) { return b.first < a.first; });
    std::vector<INode*> nodes;
    nodes.reserve(named.size());
    for (const auto& [name, node] : named) {
        nodes.push_back(node);
    }
    return nodes;
}

}  // namespace

CSelectorSet::CSelectorSet(IBase* base) {
    Create(base);
}

CSelectorSet::~CSelectorSet() = default;

/// A selector that can't be stepped through is left as it is; the others are walked.
void CSelectorSet::Create(IBase* base) {
    std::vector<INode*> list;
    ExploreSelector(base, list);
    for (INode* const selector : list) {
        if (std::unique_ptr<ISelectorDigit> digit = MakeDigit(selector)) {
            m_Digits.push_back(std::move(digit));
        } else {
            // The feature is still stored, under the value that this selector has now.
            dynamic_cast<CNodeImpl&>(*selector).LogPassedBy("unsupported selector interface");
        }
    }
}

/// Lists the selectors, each before its own. Selectors of selectors may nest as deep as a
/// description likes, or in a circle; so there is no recursion, and no selector is listed twice.
void CSelectorSet::ExploreSelector(IBase* base, std::vector<INode*>& list) {
    std::unordered_set<INode*> listed;
    std::vector<std::vector<INode*>> path{SelectingNodes(base)};
    while (!path.empty()) {
        if (path.back().empty()) {
            path.pop_back();
            continue;
        }
        INode* const selector = path.back().back();
        path.back().pop_back();
        if (listed.count(selector) != 0 || IsPassedBy(*selector)) {
            continue;
        }
        // A selector that is locked at present has one value, and needs no steps.
        if (selector->GetAccessMode() == RW) {
            listed.insert(selector);
            list.push_back(selector);
            path.push_back(SelectingNodes(selector));
        }
    }
}

/// All of them go to their first value, also after one that has none: the caller may use the
/// rest.
bool CSelectorSet::SetFirst() {
    bool isSet = true;
    for (const auto& digit : m_Digits) {
        isSet = digit->SetFirst() && isSet;
    }
    return isSet;
}

/// As an odometer counts: a digit at its end starts again and carries to the next one.
bool CSelectorSet::SetNext(bool tick) {
    for (const auto& digit : m_Digits) {
        // Asked without a step first, so that each reads its limits anew.
        digit->SetNext(false);
    }
    if (!tick) {
        return false;
    }
    for (const auto& digit : m_Digits) {
        if (digit->SetNext(true)) {
            return true;
        }
        digit->SetFirst();
    }
    return false;
}

/// The outer selectors first, because they decide on what the inner ones may hold. One
/// that fails doesn't keep the others from going back.
void CSelectorSet::Restore() {
    ForEachDespiteFailures(m_Digits.rbegin(), m_Digits.rend(),
                           [](const auto& digit) { digit->Restore(); });
}

gcstring CSelectorSet::ToString() {
    gcstring text = "[";
    const char* separator = "";
    for (const auto& digit : m_Digits) {
        text += separator + digit->ToString();
        separator = ";";
    }
    return text + "]";
}

void CSelectorSet::GetSelectorList(value_vector& list, bool incremental) {
    if (!incremental) {
        list.clear();
    }
    for (const auto& digit : m_Digits) {
        digit->GetSelectorList(list, true);
    }
}

}  // namespace GenApi_3_0_ORVANE
