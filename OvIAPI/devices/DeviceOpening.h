#pragma once
/// Opening a camera, from the list or by its address alone.

#include <memory>
#include <string>

#include "OvIDef.h"
#include "TLClassSupport/Agency.h"
#include "errors/Place.h"

namespace OVTLClass {
class IDevice;
}

/// An open device.
class COpenDeviceAgency : public OVTLClass::CAgency {
public:
    COpenDeviceAgency(OVTLClass::IDevice& device, OV_ACCESS_MODE accessMode);
};

/// An open first stream.
class COpenDataStreamAgency : public OVTLClass::CAgency {
public:
    COpenDataStreamAgency(OVTLClass::IDevice& device, const OvPlace& place);
};

/// Tries the adapters of all GigE Vision producers until one reaches the address.
/// @return the camera, open with its first stream
std::shared_ptr<OVTLClass::IDevice> OpenOnAnyInterface(const std::string& ip,
                                                       OV_ACCESS_MODE accessMode,
                                                       const OvPlace& place);
