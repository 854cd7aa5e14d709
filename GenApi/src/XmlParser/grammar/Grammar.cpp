// The grammar, compiled from its tables at the first use: an automaton for the content of each
// element, and the row of the table for each of its elements.

#include "grammar/Grammar.h"

#include <algorithm>

#include "Base/OvAssert.h"
#include "grammar/GrammarTable.h"

namespace GenApi_3_0_ORVANE {

namespace {

/// Several times as many slots as names keeps the searches short. There must always be a
/// free slot, at which the search for an unknown name ends.
constexpr size_t kSlots = 512;

/// Whether a list of names holds one. Only whole names count: "IntReg" is a part of
/// "MaskedIntReg".
bool Lists(std::string_view names, std::string_view name) {
    for (size_t at = names.find(name); at != std::string_view::npos;
         at = names.find(name, at + 1)) {
        const size_t end = at + name.size();
        if ((at == 0 || names[at - 1] == ' ') && (end == names.size() || names[end] == ' ')) {
            return true;
        }
    }
    return false;
}

/// The row of an element inside a parent; null when it has none of its own. The first one
/// that fits wins, so the table has the rows for certain parents before those for all.
const ElementRow* FindRow(std::string_view name, std::string_view parent) {
    for (const ElementRow& row : AllElementRows()) {
        if (row.name == name && (row.parents.empty() || Lists(row.parents, parent))) {
            return &row;
        }
    }
    return nullptr;
}

}  // namespace

CElementGrammar::CElementGrammar(const ElementType& type, CContentModel model,
                                 std::vector<const ElementRow*> rows,
                                 std::vector<const CElementGrammar*> children)
    : m_Type(type),
      m_Model(std::move(model)),
      m_Rows(std::move(rows)),
      m_Children(std::move(children)) {}

const CGrammar& CGrammar::GetInstance() {
    static const CGrammar grammar;
    return grammar;
}

/// In two passes: elements may contain each other, so all automata have to exist before they
/// refer to one another.
CGrammar::CGrammar() : m_Slots(kSlots, kNoElement) {
    CollectNames();
    const auto number = [this](std::string_view name) {
        const ElementNumber found = NumberOf(name);
        // Only a slip in our own table names an element that has no row.
        OV_ASSERT(found != kNoElement);
        return found;
    };
    // Children point into this list, so it must not move.
    m_Grammars.reserve(AllElementTypes().size());
    for (const ElementType& type : AllElementTypes()) {
        const std::string content = ExpandContent(type.content);
        CContentModel model(content, m_Names.size(), number);
        std::vector<const ElementRow*> rows(model.GetStateCount(), nullptr);
        // Each place in a pattern is a state of its own, and the state before the first
        // element has none.
        for (size_t state = 1; state < rows.size(); ++state) {
            const std::string_view name =
                m_Names[model.ElementOf(static_cast<CContentModel::State>(state))];
            const ElementRow* const row = FindRow(name, type.name);
            rows[state] = row == nullptr ? &NestedRow() : row;
        }
        m_Grammars.emplace_back(type, std::move(model), std::move(rows),
                                std::vector<const CElementGrammar*>());
    }
    for (CElementGrammar& grammar : m_Grammars) {
        std::vector<const CElementGrammar*> children(grammar.GetModel().GetStateCount(), nullptr);
        for (size_t state = 1; state < children.size(); ++state) {
            const auto at = static_cast<CContentModel::State>(state);
            if (grammar.RowAt(at).rule == Rule::Node) {
                children[state] = FindGrammar(m_Names[grammar.GetModel().ElementOf(at)]);
                OV_ASSERT(children[state] != nullptr);
            }
        }
        grammar.SetChildren(std::move(children));
    }
    // The table starts with the outermost element.
    m_Root = &m_Grammars.front();
}

void CGrammar::CollectNames() {
    for (const ElementType& type : AllElementTypes()) {
        AddName(type.name);
    }
    for (const ElementRow& row : AllElementRows()) {
        AddName(row.name);
    }
}

/// Every element of a description is looked up here, by a hash over its few letters. Open
/// addressing ends because there are more slots than names.
size_t CGrammar::SlotOf(std::string_view name) const {
    // FNV-1a: short names spread well, and a std::string_view needs no copy.
    constexpr uint32_t kBegin = 2166136261;
    constexpr uint32_t kPrime = 16777619;
    uint32_t hash = kBegin;
    for (const char character : name) {
        hash = (hash ^ static_cast<unsigned char>(character)) * kPrime;
    }
    size_t slot = hash % kSlots;
    while (m_Slots[slot] != kNoElement && m_Names[m_Slots[slot]] != name) {
        slot = (slot + 1) % kSlots;
    }
    return slot;
}

void CGrammar::AddName(std::string_view name) {
    ElementNumber& slot = m_Slots[SlotOf(name)];
    if (slot == kNoElement) {
        slot = static_cast<ElementNumber>(m_Names.size());
        m_Names.push_back(name);
    }
}

ElementNumber CGrammar::NumberOf(std::string_view name) const {
    return m_Slots[SlotOf(name)];
}

const CElementGrammar* CGrammar::FindGrammar(std::string_view name) const {
    const auto found = std::find_if(
        m_Grammars.begin(), m_Grammars.end(),
        [name](const CElementGrammar& grammar) { return grammar.GetType().name == name; });
    return found == m_Grammars.end() ? nullptr : &*found;
}

}  // namespace GenApi_3_0_ORVANE
