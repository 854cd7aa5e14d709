#pragma once
/// The description of a simulated camera.

#include <cstdint>
#include <string>

namespace OvSimulator {

/// The virtual camera's description with its registers moved up by `base`, and with the
/// features that every GigE Vision camera has.
std::string GigeDescription(uint64_t base);

}  // namespace OvSimulator
