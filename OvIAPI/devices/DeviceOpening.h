#pragma once
/// Opens a camera of the list, or one of which only the address is known.

#include <memory>
#include <string>

#include "OvIDef.h"
#include "TLClassSupport/Agency.h"
#include "errors/Place.h"

namespace OVTLClass {
class IDevice;
}

/// Opens a device, and closes it again unless the opening is committed.
class COpenDeviceAgency : public OVTLClass::CAgency {
public:
    COpenDeviceAgency(OVTLClass::IDevice& device, OV_ACCESS_MODE accessMode);
};

/// Opens the first stream, and closes it again unless the opening is committed.
class COpenDataStreamAgency : public OVTLClass::CAgency {
public:
    COpenDataStreamAgency(OVTLClass::IDevice& device, const OvPlace& place);
};

/// Tries the adapters of all GigE Vision producers until one reaches the address.
/// @return the camera, open with its first stream
std::shared_ptr<OVTLClass::IDevice> OpenOnAnyInterface(const std::string& ip,
                                                       OV_ACCESS_MODE accessMode,
                                                       const OvPlace& place);
