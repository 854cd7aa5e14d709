#pragma once

#include <exception>

namespace GenApi_3_0_ORVANE {

/// Calls `action` with each of several, whichever fails; the first failure is thrown at the end.
template <class Iterator, class Action>
void ForEachDespiteFailures(Iterator begin, Iterator end, const Action& action) {
    std::exception_ptr failure;
    for (; begin != end; ++begin) {
        try {
            action(*begin);
        } catch (...) {
            failure = failure ? failure : std::current_exception();
        }
    }
    if (failure) {
        std::rethrow_exception(failure);
    }
}

}  // namespace GenApi_3_0_ORVANE
