#pragma once
/// The text of the failure that an action ends in.

#include <string>

#include "Base/GCException.h"

/// The description of a failure of the given type; empty if the action succeeds.
template <class Exception = GenICam_3_0_ORVANE::RuntimeException, class Action>
std::string FailureText(const Action& action) {
    try {
        action();
    } catch (const Exception& failure) {
        return failure.GetDescription();
    }
    return {};
}
