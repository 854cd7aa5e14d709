/// @file How a test sets the memory of a camera that was just switched on.
#ifndef OV_TEST_SWITCH_ON_ADDRESS_H
#define OV_TEST_SWITCH_ON_ADDRESS_H

#include <cstdint>

namespace OvTest {

/// Above all registers of all cameras. Writing a 1 of four bytes there keeps the
/// present memory for all further openings.
inline constexpr std::uint64_t kSwitchOnAddress = 0x7000000000000000;

}  // namespace OvTest

#endif
