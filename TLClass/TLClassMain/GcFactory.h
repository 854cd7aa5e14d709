#pragma once
/// Chooses the class of a module by its transport.

#include <memory>

#include "TLClassInfo/InfoRecords.h"
#include "TLClassLoadTL/GenTLLib.h"

namespace OVTLClass {

class CTL;
class ITL;
class CInterface;
class IInterface;
class CDevice;
class IDevice;
class CDataStream;

class CTLFactory {
public:
    /// A CGevTL for the transport "GEV", else a CTL.
    static std::unique_ptr<CTL> CreateTL(std::shared_ptr<const CGenTLLib> lib, const TL_INFO& info);
};

class CInterfaceFactory {
public:
    /// A CGevInterface for the transport "GEV", else a CInterface.
    static std::unique_ptr<CInterface> CreateInterface(std::shared_ptr<const CGenTLLib> lib,
                                                       std::shared_ptr<ITL> tl, void* tlHandle,
                                                       const IF_INFO& info);
};

class CDeviceFactory {
public:
    /// A CGevDevice for the transport "GEV", else a CDevice. Takes the borrowed
    /// pointers over: they are null in the record afterwards. Raises
    /// "Invalid parameter" for a record without the information that its
    /// transport needs.
    static std::unique_ptr<CDevice> CreateDevice(std::shared_ptr<const CGenTLLib> lib,
                                                 std::shared_ptr<IInterface> owner,
                                                 void* interfaceHandle, DEV_INFO& info);
};

class CDataStreamFactory {
public:
    static std::unique_ptr<CDataStream> CreateDataStream(std::shared_ptr<const CGenTLLib> lib,
                                                         std::shared_ptr<IDevice> device,
                                                         void* deviceHandle,
                                                         const std::string& streamId);
};

}  // namespace OVTLClass
