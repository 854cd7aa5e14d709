#pragma once
/// The check of a number that is written to a register.

#include <cstdint>

#include "framework/Failure.h"

namespace OvProducer {

/// Fails with -1019 unless the value is in the range.
inline void RequireRange(int64_t value, int64_t min, int64_t max) {
    if (value < min || value > max) {
        throw Failure(GenTL::GC_ERR_INVALID_VALUE, "The value is out of the register's range");
    }
}

}  // namespace OvProducer
