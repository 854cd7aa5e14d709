#pragma once
/// Byte order of this machine.

#include <bit>

namespace OVTLClass {

class CEdian {
public:
    static constexpr bool IsLittleEdian() { return std::endian::native == std::endian::little; }
    static constexpr bool IsBigEdian() { return std::endian::native == std::endian::big; }
};

}  // namespace OVTLClass
