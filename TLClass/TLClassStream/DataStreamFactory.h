#pragma once
/// Makes the streams of a device.

#include <memory>
#include <string>

#include "TLClassLoadTL/GenTLLib.h"

namespace OVTLClass {

class IDataStream;
class IDevice;

class CDataStreamFactory {
public:
    /// A closed stream, which is the same class for every transport.
    static std::unique_ptr<IDataStream> CreateDataStream(std::shared_ptr<const CGenTLLib> lib,
                                                         std::shared_ptr<IDevice> device,
                                                         void* deviceHandle,
                                                         const std::string& streamId);
};

}  // namespace OVTLClass
