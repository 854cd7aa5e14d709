#pragma once
/// Chooses the class of a device by its transport.

#include <memory>

#include "TLClassInfo/InfoRecords.h"
#include "TLClassLoadTL/GenTLLib.h"

namespace OVTLClass {

class IDevice;
class IInterface;

class CDeviceFactory {
public:
    /// A CGevDevice for the transport "GEV", else a CDevice. Takes the borrowed
    /// pointers over: they are null in the record afterwards. Throws
    /// "Invalid parameter" for a record without the information that its
    /// transport needs.
    static std::unique_ptr<IDevice> CreateDevice(std::shared_ptr<const CGenTLLib> lib,
                                                 std::shared_ptr<IInterface> owner,
                                                 void* interfaceHandle, DEV_INFO& info);
};

}  // namespace OVTLClass
