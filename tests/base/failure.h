#pragma once
/// The description of the failure that an action ends in.

#include <string>

#include "Base/GCException.h"

namespace BaseTest {

/// "" when no exception of that type comes.
template <class Exception, class Action>
std::string FailureOf(const Action& action) {
    try {
        action();
    } catch (const Exception& failure) {
        return failure.GetDescription();
    }
    return "";
}

}  // namespace BaseTest
