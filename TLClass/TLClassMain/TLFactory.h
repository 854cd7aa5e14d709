#pragma once
/// Chooses the class of a system module by its transport.

#include <memory>

#include "TLClassInfo/InfoRecords.h"
#include "TLClassLoadTL/GenTLLib.h"

namespace OVTLClass {

class CTL;

class CTLFactory {
public:
    /// A CGevTL for the transport "GEV", else a CTL.
    static std::unique_ptr<CTL> CreateTL(std::shared_ptr<const CGenTLLib> lib, const TL_INFO& info);
};

}  // namespace OVTLClass
