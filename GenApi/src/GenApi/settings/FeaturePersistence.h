#pragma once
/// Steps that storing and loading features share.

#include <utility>

#include "GenApi/INodeMap.h"
#include "GenApi/SelectorSet.h"

namespace GenApi_3_0_ORVANE {

struct ICommand;

/// InvalidArgumentException without a map.
INodeMap& RequireNodeMap(INodeMap* nodeMap);

void ExecuteAndWait(ICommand& command);
/// As above, for a command that a device may lack.
void ExecuteIfPresent(INodeMap& nodeMap, const char* commandName);

/// Runs `work`, then `end` whatever happens: a device must neither stay between the two nor keep
/// what was changed only for the work. Of two failures the first one is thrown, which is the
/// cause.
template <class Work, class End>
void RunAndEnd(const Work& work, const End& end) {
    try {
        work();
    } catch (...) {
        try {
            end();
        } catch (...) {  // NOLINT(bugprone-empty-catch): the first failure goes on
        }
        throw;
    }
    end();
}

/// Visits every combination of selectors until `visit` returns false, and puts the selectors
/// back.
template <class Visit>
void ForEachCombination(ISelectorDigit& selectors, const Visit& visit) {
    RunAndEnd(
        [&] {
            bool isSet = selectors.SetFirst();
            while (isSet) {
                isSet = visit() && selectors.SetNext();
            }
        },
        [&] { selectors.Restore(); });
}

/// Collects what went wrong while features are loaded.
class LoadNotes {
public:
    static constexpr char kWriting[] = "Error while writing node '";
    static constexpr char kVerifying[] = "Error while verifying the value of node '";
    static constexpr char kChecking[] = "Error checking node '";

    /// @param errors  the notes are appended to it; may be null
    explicit LoadNotes(gcstring_vector* errors) : m_pErrors(errors) {}

    void Add(const gcstring& note);
    /// Runs an action on a node. A failure is noted instead of passed on.
    /// @return whether it succeeded
    template <class Action>
    bool Attempt(const char* task, const gcstring& nodeName, const Action& action) {
        try {
            action();
            return true;
        } catch (...) {
            AddFailure(task, nodeName);
            return false;
        }
    }
    bool IsEmpty() const { return m_IsEmpty; }

private:
    /// Notes the exception that is being handled.
    void AddFailure(const char* task, const gcstring& nodeName);

    gcstring_vector* m_pErrors;
    bool m_IsEmpty = true;
};

}  // namespace GenApi_3_0_ORVANE
