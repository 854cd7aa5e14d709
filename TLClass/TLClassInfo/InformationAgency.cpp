#include "TLClassInfo/InformationAgency.h"

#include "Base/EachFrame.h"
#include "TLClassInfo/Information.h"
#include "TLClassInfo/ModuleID.h"
#include "TLClassLoadTL/GenTLErrrorCodeVerifier.h"

namespace OVTLClass {

namespace {

/// Calls `read` with the ID of each child in order, and gathers what it returns.
template <class ModuleID, class Count, class Read>
auto ReadAll(const CGenTLLib& lib, void* parent, const Count& countCall, const Read& read) {
    // A count that is refused throws: an empty list would look like lost modules.
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
    return CInformationQuery(lib.GCGetInfo).Get<TL_INFO>();
}

TL_INFO COvInformationAgency::GetTLInformationFromHandle(const CGenTLLib& lib, void* tl) {
    return CInformationQuery(lib.TLGetInfo, tl).Get<TL_INFO>();
}

std::vector<IF_INFO> COvInformationAgency::GetAllInterfaceInformationOfTL(const CGenTLLib& lib,
                                                                          void* tl) {
    return ReadAll<CInterfaceID>(lib, tl, lib.TLGetNumInterfaces, [&](const std::string& id) {
        IF_INFO info = CInformationQuery(lib.TLGetInterfaceInfo, tl, id.c_str()).Get<IF_INFO>();
        info.id.value = id;
        return info;
    });
}

IF_INFO COvInformationAgency::GetInterfaceInformationFromHandle(const CGenTLLib& lib,
                                                                void* interfaceHandle) {
    return CInformationQuery(lib.IFGetInfo, interfaceHandle).Get<IF_INFO>();
}

std::vector<DEV_INFO> COvInformationAgency::GetAllDeviceInformationOfInterface(
    const CGenTLLib& lib, void* interfaceHandle) {
    return ReadAll<CDeviceID>(
        lib, interfaceHandle, lib.IFGetNumDevices, [&](const std::string& id) {
            DEV_INFO info =
                CInformationQuery(lib.IFGetDeviceInfo, interfaceHandle, id.c_str()).Get<DEV_INFO>();
            info.id.value = id;
            return info;
        });
}

DEV_INFO COvInformationAgency::GetDeviceInformationFromHandle(const CGenTLLib& lib, void* device) {
    return CInformationQuery(lib.DevGetInfo, device).Get<DEV_INFO>();
}

DS_INFO COvInformationAgency::GetDataStreamInformationFromHandle(const CGenTLLib& lib,
                                                                 void* stream) {
    return CInformationQuery(lib.DSGetInfo, stream).Get<DS_INFO>();
}

BUFFER_INFO COvInformationAgency::GetBufferInformationFromHandle(const CGenTLLib& lib, void* stream,
                                                                 void* buffer) {
    return CInformationQuery(lib.DSGetBufferInfo, stream, buffer).Get<BUFFER_INFO>();
}

OV_EACH_FRAME void COvInformationAgency::CompleteBufferInformation(const CGenTLLib& lib,
                                                                   void* stream, void* buffer,
                                                                   InfoUse use, BUFFER_INFO& info) {
    CInformationQuery(lib.DSGetBufferInfo, stream, buffer).Complete(info, use);
}

PORT_INFO COvInformationAgency::GetPortInformationFromHandle(const CGenTLLib& lib, void* port) {
    return CInformationQuery(lib.GCGetPortInfo, port).Get<PORT_INFO>();
}

std::vector<std::string> COvInformationAgency::GetAllDataStreamIDOfDevice(const CGenTLLib& lib,
                                                                          void* device) {
    return ReadAll<CDataStreamID>(lib, device, lib.DevGetNumDataStreams,
                                  [](std::string id) { return id; });
}

}  // namespace OVTLClass
