#pragma once
/// Refuses calls that a camera's callbacks may not make.

#include <initializer_list>

#include "TLClassEvent/CallbackScope.h"
#include "errors/Place.h"

namespace OVTLClass {
class IDevice;
}

/// Throws "Can't <what> in <kind> callback" if the calling thread runs a callback of the
/// camera of one of those kinds. The text names the first kind that fits.
void CheckNotInCallback(const OVTLClass::IDevice& camera, const char* what,
                        std::initializer_list<OVTLClass::CallbackKind> kinds, const OvPlace& place);
