/// @file
/// The functions of systems, interfaces and devices.
#include "framework/exports/Serve.h"

using namespace OvProducer;

OV_PRODUCER_EXPORT TLOpen(GenTL::TL_HANDLE* phTL) {
    return Serve(Function::TLOpen, [&] {
        RequirePointer(phTL, "The result pointer");
        Put(phTL, Library::Instance().OpenSystem());
    });
}

OV_PRODUCER_EXPORT TLClose(GenTL::TL_HANDLE hTL) {
    return Serve(Function::TLClose, [&] { Library::Instance().CloseSystem(hTL); });
}

OV_PRODUCER_EXPORT TLGetInfo(GenTL::TL_HANDLE hTL, GenTL::TL_INFO_CMD iInfoCmd,
                             OV_GENTL_INFO_TAIL) {
    return ServeInfo<System>(
        Function::TLGetInfo, hTL, iInfoCmd, {piType, pBuffer, piSize},
        [&](const System&) { return ProducerInfo(Library::Instance().Facts(), iInfoCmd); });
}

OV_PRODUCER_EXPORT TLUpdateInterfaceList(GenTL::TL_HANDLE hTL, GenTL::bool8_t* pbChanged,
                                         uint64_t iTimeout) {
    return ServeOn<System>(Function::TLUpdateInterfaceList, hTL, [&](System& system) {
        const bool changed = system.UpdateInterfaces(iTimeout);
        if (pbChanged != nullptr) {
            *pbChanged = changed ? 1 : 0;
        }
    });
}

OV_PRODUCER_EXPORT TLGetNumInterfaces(GenTL::TL_HANDLE hTL, uint32_t* piNumIfaces) {
    return ServeOn<System>(Function::TLGetNumInterfaces, hTL,
                           [&](System& system) { Put(piNumIfaces, system.Interfaces().Count()); });
}

OV_PRODUCER_EXPORT TLGetInterfaceID(GenTL::TL_HANDLE hTL, uint32_t iIndex, char* sIfaceID,
                                    size_t* piSize) {
    return ServeText<System>(
        Function::TLGetInterfaceID, hTL, sIfaceID, piSize,
        [&](System& system) { return system.Interfaces().At(iIndex)->Facts().id; });
}

OV_PRODUCER_EXPORT TLGetInterfaceInfo(GenTL::TL_HANDLE hTL, const char* sIfaceID,
                                      GenTL::INTERFACE_INFO_CMD iInfoCmd, OV_GENTL_INFO_TAIL) {
    return ServeInfo<System>(Function::TLGetInterfaceInfo, hTL, iInfoCmd, {piType, pBuffer, piSize},
                             [&](const System& system) {
                                 return InterfaceInfo(
                                     system.InterfaceNamed(IdOf(sIfaceID))->Facts(), iInfoCmd);
                             });
}

OV_PRODUCER_EXPORT TLOpenInterface(GenTL::TL_HANDLE hTL, const char* sIfaceID,
                                   GenTL::IF_HANDLE* phIface) {
    return ServeOn<System>(Function::TLOpenInterface, hTL, [&](System& system) {
        RequirePointer(phIface, "The result pointer");
        Put(phIface, system.OpenInterface(IdOf(sIfaceID))->Handle());
    });
}

OV_PRODUCER_EXPORT IFClose(GenTL::IF_HANDLE hIface) {
    return ServeOn<Interface>(Function::IFClose, hIface, [](Interface& iface) {
        iface.Parent()->CloseInterface(iface.shared_from_this());
    });
}

OV_PRODUCER_EXPORT IFGetInfo(GenTL::IF_HANDLE hIface, GenTL::INTERFACE_INFO_CMD iInfoCmd,
                             OV_GENTL_INFO_TAIL) {
    return ServeInfo<Interface>(Function::IFGetInfo, hIface, iInfoCmd, {piType, pBuffer, piSize},
                                [&](const Interface& iface) { return iface.Info(iInfoCmd); });
}

OV_PRODUCER_EXPORT IFUpdateDeviceList(GenTL::IF_HANDLE hIface, GenTL::bool8_t* pbChanged,
                                      uint64_t iTimeout) {
    return ServeOn<Interface>(Function::IFUpdateDeviceList, hIface, [&](Interface& iface) {
        const bool changed = iface.UpdateDevices(iTimeout);
        if (pbChanged != nullptr) {
            *pbChanged = changed ? 1 : 0;
        }
    });
}

OV_PRODUCER_EXPORT IFGetNumDevices(GenTL::IF_HANDLE hIface, uint32_t* piNumDevices) {
    return ServeOn<Interface>(Function::IFGetNumDevices, hIface, [&](Interface& iface) {
        Put(piNumDevices, iface.Devices().Count());
    });
}

OV_PRODUCER_EXPORT IFGetDeviceID(GenTL::IF_HANDLE hIface, uint32_t iIndex, char* sDeviceID,
                                 size_t* piSize) {
    return ServeText<Interface>(
        Function::IFGetDeviceID, hIface, sDeviceID, piSize,
        [&](Interface& iface) { return iface.Devices().At(iIndex)->Facts().id; });
}

OV_PRODUCER_EXPORT IFGetDeviceInfo(GenTL::IF_HANDLE hIface, const char* sDeviceID,
                                   GenTL::DEVICE_INFO_CMD iInfoCmd, OV_GENTL_INFO_TAIL) {
    return ServeInfo<Interface>(Function::IFGetDeviceInfo, hIface, iInfoCmd,
                                {piType, pBuffer, piSize}, [&](const Interface& iface) {
                                    return DeviceInfo(iface.DeviceNamed(IdOf(sDeviceID))->Facts(),
                                                      iInfoCmd);
                                });
}

OV_PRODUCER_EXPORT IFOpenDevice(GenTL::IF_HANDLE hIface, const char* sDeviceID,
                                GenTL::DEVICE_ACCESS_FLAGS iOpenFlags,
                                GenTL::DEV_HANDLE* phDevice) {
    return ServeOn<Interface>(Function::IFOpenDevice, hIface, [&](Interface& iface) {
        RequirePointer(phDevice, "The result pointer");
        Put(phDevice, iface.OpenDevice(IdOf(sDeviceID), iOpenFlags)->Handle());
    });
}

OV_PRODUCER_EXPORT DevClose(GenTL::DEV_HANDLE hDevice) {
    return ServeOn<Device>(Function::DevClose, hDevice, [](Device& device) {
        device.Parent()->CloseDevice(device.shared_from_this());
    });
}

OV_PRODUCER_EXPORT DevGetInfo(GenTL::DEV_HANDLE hDevice, GenTL::DEVICE_INFO_CMD iInfoCmd,
                              OV_GENTL_INFO_TAIL) {
    return ServeInfo<Device>(Function::DevGetInfo, hDevice, iInfoCmd, {piType, pBuffer, piSize},
                             [&](const Device& device) { return device.Info(iInfoCmd); });
}

OV_PRODUCER_EXPORT DevGetPort(GenTL::DEV_HANDLE hDevice, GenTL::PORT_HANDLE* phRemoteDevice) {
    return ServeOn<Device>(Function::DevGetPort, hDevice, [&](const Device& device) {
        Put(phRemoteDevice, device.RemoteHandle());
    });
}

OV_PRODUCER_EXPORT DevGetNumDataStreams(GenTL::DEV_HANDLE hDevice, uint32_t* piNumDataStreams) {
    return ServeOn<Device>(Function::DevGetNumDataStreams, hDevice, [&](Device& device) {
        Put(piNumDataStreams, device.Streams().Count());
    });
}

OV_PRODUCER_EXPORT DevGetDataStreamID(GenTL::DEV_HANDLE hDevice, uint32_t iIndex,
                                      char* sDataStreamID, size_t* piSize) {
    return ServeText<Device>(
        Function::DevGetDataStreamID, hDevice, sDataStreamID, piSize,
        [&](Device& device) { return device.Streams().At(iIndex)->Facts().id; });
}

OV_PRODUCER_EXPORT DevOpenDataStream(GenTL::DEV_HANDLE hDevice, const char* sDataStreamID,
                                     GenTL::DS_HANDLE* phDataStream) {
    return ServeOn<Device>(Function::DevOpenDataStream, hDevice, [&](Device& device) {
        RequirePointer(phDataStream, "The result pointer");
        Put(phDataStream, device.OpenStream(IdOf(sDataStreamID))->Handle());
    });
}
