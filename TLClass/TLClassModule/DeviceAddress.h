#pragma once
/// Devices that are made for an address instead of being found by a search.

#include <cstdint>
#include <string>

namespace OVTLClass {

class IDevice;

/// The ID of the device that is made for that address, the first number in the top
/// byte of the low 32 bits. A producer has to accept it when the device is opened.
std::string IdOfAddress(int64_t ip);

/// Whether the device was made for an address: no search has found it.
bool IsMadeForAddress(IDevice& device);

}  // namespace OVTLClass
