#include "TLClassInfo/InformationAgency.h"

#include "TLClassInfo/Information.h"
#include "TLClassInfo/ModuleID.h"
#include "TLClassLoadTL/GenTLErrrorCodeVerifier.h"

namespace OVTLClass {

namespace {

/// Calls `read` with the ID of each child in order, and gathers what it gives.
template <class ModuleID, class Count, class Read>
auto ReadAll(const CGenTLLib& lib, void* parent, const Count& countCall, const Read& read) {
    uint32_t count = 0;
    OV_VERIFY(countCall(parent, &count), lib);
    std::vector<decltype(read(std::string()))> all;
    for (uint32_t index = 0; index < count; ++index) {
        all.push_back(read(ModuleID(lib, parent, index).GetID()));
    }
    return all;
}

}  // namespace

TL_INFO COvInformationAgency::GetTLInformationFromEmpty(const CGenTLLib& lib) {
    return CTLInfomationFromEmpty(lib).GetTLInformation();
}

TL_INFO COvInformationAgency::GetTLInformationFromHandle(const CGenTLLib& lib, void* tl) {
    return CTLInfomationFromHandle(lib, tl).GetTLInfomation();
}

std::vector<IF_INFO> COvInformationAgency::GetAllInterfaceInformationOfTL(const CGenTLLib& lib,
                                                                          void* tl) {
    return ReadAll<CInterfaceID>(lib, tl, lib.TLGetNumInterfaces, [&](const std::string& id) {
        IF_INFO info = CInterfaceInformationFromID(lib, tl, id.c_str()).GetInterfaceInformation();
        info.id.value = id;
        return info;
    });
}

IF_INFO COvInformationAgency::GetInterfaceInformationFromHandle(const CGenTLLib& lib,
                                                                void* interfaceHandle) {
    return CInterfaceInformationFromHandle(lib, interfaceHandle).GetInterfaceInfomation();
}

std::vector<DEV_INFO> COvInformationAgency::GetAllDeviceInformationOfInterface(
    const CGenTLLib& lib, void* interfaceHandle) {
    return ReadAll<CDeviceID>(
        lib, interfaceHandle, lib.IFGetNumDevices, [&](const std::string& id) {
            DEV_INFO info =
                CDeviceInformationFromID(lib, interfaceHandle, id.c_str()).GetDeviceInformation();
            info.id.value = id;
            return info;
        });
}

DEV_INFO COvInformationAgency::GetDeviceInformationFromHandle(const CGenTLLib& lib, void* device) {
    return CDeviceInformationFromHandle(lib, device).GetDeviceInfomation();
}

DS_INFO COvInformationAgency::GetDataStreamInformationFromHandle(const CGenTLLib& lib,
                                                                 void* stream) {
    return CDataStreamInformationFromHandle(lib, stream).GetDataStreamInfomation();
}

BUFFER_INFO COvInformationAgency::GetBufferInformationFromHandle(const CGenTLLib& lib, void* stream,
                                                                 void* buffer) {
    return CBufferInformationFromHandle(lib, stream, buffer).GetBufferInfomation();
}

PORT_INFO COvInformationAgency::GetPortInformationFromHandle(const CGenTLLib& lib, void* port) {
    return CPortInformationFromHandle(lib, port).GetPortInfomation();
}

std::vector<std::string> COvInformationAgency::GetAllDataStreamIDOfDevice(const CGenTLLib& lib,
                                                                          void* device) {
    return ReadAll<CDataStreamID>(lib, device, lib.DevGetNumDataStreams,
                                  [](std::string id) { return id; });
}

}  // namespace OVTLClass
