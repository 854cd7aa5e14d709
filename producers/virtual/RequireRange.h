/// @file
/// The check of a number that a register takes.
#ifndef OV_VIRTUAL_REQUIRE_RANGE_H
#define OV_VIRTUAL_REQUIRE_RANGE_H

#include <cstdint>

#include "framework/Failure.h"

namespace OvVirtual {

/// -1019 unless the value lies in the range.
inline void RequireRange(std::int64_t value, std::int64_t min, std::int64_t max) {
    if (value < min || value > max) {
        throw OvProducer::Failure(GenTL::GC_ERR_INVALID_VALUE,
                                  "The value is out of the register's range");
    }
}

}  // namespace OvVirtual

#endif
