// The camera's registers, without its features: what the node map keeps isn't invalidated
// by a write here.

#include "OvIAPI.h"
#include "TLClassLoadTL/GenTLErrrorCodeVerifier.h"
#include "TLClassModule/IDevice.h"
#include "api/DeviceManager.h"
#include "errors/OVIError.h"

using namespace OVTLClass;

namespace {

/// The camera's port, and the producer whose functions access it.
struct RawPort {
    std::shared_ptr<const CGenTLLib> lib;
    void* handle;

    explicit RawPort(const COvDeviceInfo& info)
        : lib(info.GetDevice()->DoGetGenTLLib()),
          handle(info.GetDevice()->DoGetRemoteDeviceHandle()) {}

    void Check(int32_t status, int line, const char* function) const {
        ThrowExceptionIfFailed(status, *lib, __FILE__, line, function);
    }
};

}  // namespace

OV_STATUS OVReadRemoteDevicePort(OV_DEV_HANDLE hDevice, uint64_t ui64Address, void* pBuffer,
                                 size_t* piSize) try {
    const COvDeviceInfo& info = EnterCamera(hDevice, OV_HERE);
    OV_CHECK_POINTER(pBuffer);
    OV_CHECK_POINTER(piSize);
    const RawPort port(info);
    port.Check(port.lib->GCReadPort(port.handle, ui64Address, pBuffer, piSize), __LINE__,
               "ReadRemoteDevicePort");
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OVWriteRemoteDevicePort(OV_DEV_HANDLE hDevice, uint64_t ui64Address, const void* pBuffer,
                                  size_t* piSize) try {
    const COvDeviceInfo& info = EnterCamera(hDevice, OV_HERE);
    OV_CHECK_POINTER(pBuffer);
    OV_CHECK_POINTER(piSize);
    const RawPort port(info);
    port.Check(port.lib->GCWritePort(port.handle, ui64Address, pBuffer, piSize), __LINE__,
               "WriteRemoteDevicePort");
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}
