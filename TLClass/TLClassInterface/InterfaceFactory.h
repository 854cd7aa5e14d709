#pragma once
/// Chooses the class of an interface by its transport.

#include <memory>

#include "TLClassInfo/InfoRecords.h"
#include "TLClassLoadTL/GenTLLib.h"

namespace OVTLClass {

class IInterface;
class ITL;

class CInterfaceFactory {
public:
    /// A CGevInterface for the transport "GEV", else a CInterface.
    static std::unique_ptr<IInterface> CreateInterface(std::shared_ptr<const CGenTLLib> lib,
                                                       std::shared_ptr<ITL> tl, void* tlHandle,
                                                       const IF_INFO& info);
};

}  // namespace OVTLClass
