#pragma once
/// Front doors to all that GenTL information calls answer.

#include <string>
#include <vector>

#include "TLClassInfo/InfoRecords.h"
#include "TLClassLoadTL/GenTLLib.h"

namespace OVTLClass {

/// A failed count throws; a refused value leaves its field invalid.
class COvInformationAgency {
public:
    /// Of a producer whose system module isn't open yet.
    static TL_INFO GetTLInformationFromEmpty(const CGenTLLib& lib);
    static TL_INFO GetTLInformationFromHandle(const CGenTLLib& lib, void* tl);
    /// In the producer's order.
    static std::vector<IF_INFO> GetAllInterfaceInformationOfTL(const CGenTLLib& lib, void* tl);
    static IF_INFO GetInterfaceInformationFromHandle(const CGenTLLib& lib, void* interfaceHandle);
    /// In the producer's order.
    static std::vector<DEV_INFO> GetAllDeviceInformationOfInterface(const CGenTLLib& lib,
                                                                    void* interfaceHandle);
    static DEV_INFO GetDeviceInformationFromHandle(const CGenTLLib& lib, void* device);
    static DS_INFO GetDataStreamInformationFromHandle(const CGenTLLib& lib, void* stream);
    static BUFFER_INFO GetBufferInformationFromHandle(const CGenTLLib& lib, void* stream,
                                                      void* buffer);
    /// Asks for those facts of that use which the record doesn't have yet.
    static void CompleteBufferInformation(const CGenTLLib& lib, void* stream, void* buffer,
                                          InfoUse use, BUFFER_INFO& info);
    static PORT_INFO GetPortInformationFromHandle(const CGenTLLib& lib, void* port);
    /// In the producer's order.
    static std::vector<std::string> GetAllDataStreamIDOfDevice(const CGenTLLib& lib, void* device);
};

}  // namespace OVTLClass
