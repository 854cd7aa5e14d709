#pragma once
/// Failing allocations as a status.

#include <new>

#include "QyImageProc.h"

namespace QyMemory {

/// Runs what needs memory before it writes anything, and gives its status.
template <class Run>
QY_STATUS OrNotEnough(const Run& run) {
    try {
        return run();
    } catch (const std::bad_alloc&) {
        return QY_NOT_ENOUGH_MEMORY;
    }
}

}  // namespace QyMemory
