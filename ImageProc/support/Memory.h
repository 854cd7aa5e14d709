#pragma once
/// Turns failed allocations into a status.

#include <new>

#include "QyImageProc.h"

namespace QyMemory {

/// Runs a function that allocates its memory before it writes anything, and returns its
/// status.
template <class Run>
QY_STATUS OrNotEnough(const Run& run) {
    try {
        return run();
    } catch (const std::bad_alloc&) {
        return QY_NOT_ENOUGH_MEMORY;
    }
}

}  // namespace QyMemory
