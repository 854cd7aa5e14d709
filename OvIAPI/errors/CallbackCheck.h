#pragma once
/// The refusal of calls that a camera's callbacks may not make.

#include <initializer_list>

#include "TLClassEvent/CallbackScope.h"
#include "errors/Place.h"

namespace OVTLClass {
class IDevice;
}

/// Raises "Can't <what> in <kind> callback" when the calling thread runs one of
/// those callbacks of the camera; the first that fits counts.
void CheckNotInCallback(const OVTLClass::IDevice& camera, const char* what,
                        std::initializer_list<OVTLClass::CallbackKind> kinds, const OvPlace& place);
