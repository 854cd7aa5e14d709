#pragma once
/// The order of elements inside an element, as an automaton.

#include <algorithm>
#include <cstdint>
#include <string_view>
#include <vector>

namespace GenApi_3_0_ORVANE {

/// Numbers an element's name within the grammar.
using ElementNumber = uint8_t;
constexpr ElementNumber kNoElement = 0xFF;

/// Made once from a pattern such as "A? (B | C D*)+ E": names in order, with "?", "*" and "+"
/// after a name or a bracket, and "|" between alternatives. In every state an element leads to
/// one state at most, so that checking an element is one look-up.
class CContentModel {
public:
    using State = uint8_t;
    static constexpr State kNoState = 0xFF;
    static constexpr State kBegin = 0;

    /// @param number  returns the number of a name
    template <class Number>
    CContentModel(std::string_view pattern, size_t elementCount, const Number& number);

    /// Returns the state after an element, or kNoState where the element isn't allowed.
    State Next(State state, ElementNumber element) const {
        return m_Next[state * m_ElementCount + element];
    }
    /// Whether the element has its place further on, after one that is missing.
    bool StandsBehindMissing(State state, ElementNumber element) const {
        return !IsComplete(state) && std::find(m_Elements.begin() + state + 1, m_Elements.end(),
                                               element) != m_Elements.end();
    }
    /// Whether the content may end here.
    bool IsComplete(State state) const { return m_IsComplete[state]; }
    /// Returns the element that led to a state.
    ElementNumber ElementOf(State state) const { return m_Elements[state]; }
    size_t GetStateCount() const { return m_Elements.size(); }

private:
    /// What a part of a pattern begins and ends with.
    struct Part {
        std::vector<State> first;
        std::vector<State> last;
        bool isEmptyAllowed = true;
    };

    /// Takes a pattern apart.
    template <class Number>
    class Reader;

    void Connect(const std::vector<State>& from, const std::vector<State>& to);

    size_t m_ElementCount;
    std::vector<ElementNumber> m_Elements{kNoElement};
    std::vector<State> m_Next;
    std::vector<bool> m_IsComplete;
};

template <class Number>
class CContentModel::Reader {
public:
    Reader(CContentModel& model, std::string_view pattern, const Number& number)
        : m_Model(model), m_Rest(pattern), m_Number(number) {}

    /// Alternatives up to a closing bracket or the end.
    Part ReadChoice() {
        Part choice = ReadSequence();
        while (Take('|')) {
            Part other = ReadSequence();
            Append(choice.first, other.first);
            Append(choice.last, other.last);
            choice.isEmptyAllowed = choice.isEmptyAllowed || other.isEmptyAllowed;
        }
        return choice;
    }

private:
    Part ReadSequence() {
        Part sequence;
        for (SkipBlanks(); !m_Rest.empty() && m_Rest.front() != ')' && m_Rest.front() != '|';
             SkipBlanks()) {
            Join(sequence, ReadItem());
        }
        return sequence;
    }

    Part ReadItem() {
        Part item;
        if (Take('(')) {
            item = ReadChoice();
            Take(')');
        } else {
            item = ReadName();
        }
        if (Take('?')) {
            item.isEmptyAllowed = true;
        } else if (Take('*')) {
            m_Model.Connect(item.last, item.first);
            item.isEmptyAllowed = true;
        } else if (Take('+')) {
            m_Model.Connect(item.last, item.first);
        }
        return item;
    }

    Part ReadName() {
        const size_t end = std::min(m_Rest.find_first_of(" ()|?*+"), m_Rest.size());
        const ElementNumber element = m_Number(m_Rest.substr(0, end));
        m_Rest.remove_prefix(end);
        const auto state = static_cast<State>(m_Model.m_Elements.size());
        m_Model.m_Elements.push_back(element);
        m_Model.m_Next.resize(m_Model.m_Elements.size() * m_Model.m_ElementCount, kNoState);
        return {{state}, {state}, false};
    }

    void Join(Part& left, const Part& right) {
        m_Model.Connect(left.last, right.first);
        if (left.isEmptyAllowed) {
            Append(left.first, right.first);
        }
        if (right.isEmptyAllowed) {
            Append(left.last, right.last);
        } else {
            left.last = right.last;
        }
        left.isEmptyAllowed = left.isEmptyAllowed && right.isEmptyAllowed;
    }

    static void Append(std::vector<State>& to, const std::vector<State>& states) {
        to.insert(to.end(), states.begin(), states.end());
    }

    void SkipBlanks() {
        while (!m_Rest.empty() && m_Rest.front() == ' ') {
            m_Rest.remove_prefix(1);
        }
    }

    bool Take(char character) {
        SkipBlanks();
        if (m_Rest.empty() || m_Rest.front() != character) {
            return false;
        }
        m_Rest.remove_prefix(1);
        return true;
    }

    CContentModel& m_Model;
    std::string_view m_Rest;
    const Number& m_Number;
};

template <class Number>
CContentModel::CContentModel(std::string_view pattern, size_t elementCount, const Number& number)
    : m_ElementCount(elementCount), m_Next(elementCount, kNoState) {
    const Part whole = Reader<Number>(*this, pattern, number).ReadChoice();
    Connect({kBegin}, whole.first);
    m_IsComplete.assign(m_Elements.size(), false);
    m_IsComplete[kBegin] = whole.isEmptyAllowed;
    for (const State state : whole.last) {
        m_IsComplete[state] = true;
    }
}

inline void CContentModel::Connect(const std::vector<State>& from, const std::vector<State>& to) {
    for (const State state : from) {
        for (const State next : to) {
            m_Next[state * m_ElementCount + m_Elements[next]] = next;
        }
    }
}

}  // namespace GenApi_3_0_ORVANE
