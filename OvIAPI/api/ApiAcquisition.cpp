// Acquisition: callback, copy, loan. The order of the checks is part of the interface: a
// program that makes two mistakes at once gets the status of the first.

#include <algorithm>

#include "Base/EachFrame.h"
#include "OvIAPI.h"
#include "TLClassModule/IDataStream.h"
#include "TLClassSupport/OvException.h"
#include "TLClassSupport/OvString.h"
#include "api/DeviceManager.h"
#include "errors/OVIError.h"
#include "frames/Acquisition.h"
#include "frames/NewBufferCallback.h"

using namespace OVTLClass;

namespace {

/// Throws unless the camera acquires and the application fetches and returns frames
/// itself.
OV_EACH_FRAME void CheckFrameCall(IDataStream& stream, bool isStarted, const char* call,
                                  const OvPlace& place) {
    if (stream.DoIsRegisterCaptureCallback()) {
        OV_RAISE_AT(CInvalidCallError, place,
                    COvString::MsgComposer("Can't call %s after register capture callback", call));
    }
    if (!isStarted) {
        OV_RAISE_AT(CInvalidCallError, place,
                    COvString::MsgComposer("Can't call %s before start capture", call));
    }
}

/// Checks a call that returns frames.
void CheckReturn(IDataStream& stream, const char* call, const OvPlace& place) {
    CheckFrameCall(stream, stream.DoIsDataStreamAcquisiton(), call, place);
}

/// A call that fetches frames. It stays inside the camera's gate, so that a stop waits
/// for it. Throws in the wrong state.
class CFetchCall {
public:
    CFetchCall(COvDeviceInfo& info, const char* call, const OvPlace& place)
        : m_fetch(info.GetFetchGate()) {
        CheckFrameCall(*info.GetStream(), m_fetch.IsInside(), call, place);
    }

private:
    CFetch m_fetch;
};

}  // namespace

OV_STATUS OVSetAcqusitionBufferNumber(OV_DEV_HANDLE hDevice, uint64_t nBufferNum) try {
    const auto stream = EnterCamera(hDevice, OV_HERE).GetStream();
    if (nBufferNum == 0) {
        OV_RAISE(CInvalidParameterError, "The input parameter invalid");
    }
    // The text is fixed, its two blanks included: programs may compare it.
    CheckStopped(*stream, "Can't set acqusition buffer number  when acqusition", OV_HERE);
    stream->SetAcqusitionBufferNumber(nBufferNum);
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OVGetAcqusitionBufferNumber(OV_DEV_HANDLE hDevice, uint64_t* pBufferNum) try {
    const auto stream = EnterCamera(hDevice, OV_HERE).GetStream();
    if (pBufferNum == nullptr) {
        OV_RAISE(CInvalidParameterError, "The input parameter invalid");
    }
    *pBufferNum = stream->GetAcqusitionBufferNumber();
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OVRegisterCaptureCallback(OV_DEV_HANDLE hDevice, void* pUserParam,
                                    OVCaptureCallback callBackFun) try {
    const COvDeviceInfo& info = EnterCamera(hDevice, OV_HERE);
    const auto stream = info.GetStream();
    OV_CHECK_POINTER(reinterpret_cast<const void*>(callBackFun));
    CheckStopped(*stream, "Can't register capture callback after start capture", OV_HERE);
    stream->DoRegisterCaptureCallback(
        COvNewBufferCallback(*info.GetDevice(), pUserParam, callBackFun));
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OVUnregisterCaptureCallback(OV_DEV_HANDLE hDevice) try {
    const auto stream = EnterCamera(hDevice, OV_HERE).GetStream();
    CheckStopped(*stream, "Can't unregister capture callback after start capture", OV_HERE);
    stream->DoUnregisterCaptureCallback();
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

OV_EACH_FRAME OV_STATUS OVGetImage(OV_DEV_HANDLE hDevice, OV_FRAME_DATA* pFrameData,
                                   uint32_t nTimeout) try {
    COvDeviceInfo& info = EnterCamera(hDevice, OV_HERE);
    OV_CHECK_POINTER(pFrameData);
    OV_CHECK_POINTER(pFrameData->pImgBuf);
    const CFetchCall call(info, "GetImage", OV_HERE);
    CopyFrame(info, *pFrameData, nTimeout);
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OVFlushQueue(OV_DEV_HANDLE hDevice) try {
    COvDeviceInfo& info = EnterCamera(hDevice, OV_HERE);
    const CFetch fetch(info.GetFetchGate());
    // Without acquisition no frame waits. Inside the gate, a stop can't take the buffers
    // away.
    if (fetch.IsInside()) {
        info.GetStream()->DoFlushAllToInput();
    }
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OVStreamOn(OV_DEV_HANDLE hDevice) try {
    StartAcquisition(EnterCamera(hDevice, OV_HERE), OV_HERE);
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OVStreamOff(OV_DEV_HANDLE hDevice) try {
    StopAcquisition(EnterCamera(hDevice, OV_HERE), OV_HERE);
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

OV_EACH_FRAME OV_STATUS OVDQBuf(OV_DEV_HANDLE hDevice, OV_FRAME_BUFFER** ppFrameBuffer,
                                uint32_t nTimeOut) try {
    EnterApi();
    OV_CHECK_POINTER(ppFrameBuffer);
    // Before anything can fail for the camera's sake: a caller that doesn't look at the
    // status must not find an old frame here.
    *ppFrameBuffer = nullptr;
    COvDeviceInfo& info = VerifyDeviceHandle(hDevice, OV_HERE);
    const CFetchCall call(info, "DQBuf", OV_HERE);
    *ppFrameBuffer = LendFrame(info, nTimeOut, OV_HERE);
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

OV_EACH_FRAME OV_STATUS OVQBuf(OV_DEV_HANDLE hDevice, OV_FRAME_BUFFER* pFrameBuffer) try {
    COvDeviceInfo& info = EnterCamera(hDevice, OV_HERE);
    CheckReturn(*info.GetStream(), "QBuf", OV_HERE);
    if (!info.GetFramePool().Return(pFrameBuffer)) {
        OV_RAISE(CInvalidParameterError, "Invalid OV_FRAME_BUFFER* parameter");
    }
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OVDQAllBufs(OV_DEV_HANDLE hDevice, OV_FRAME_BUFFER** ppFrameBufferArray,
                      uint32_t nFrameBufferArraySize, uint32_t* pnFrameCount,
                      uint32_t nTimeOut) try {
    EnterApi();
    OV_CHECK_POINTER(ppFrameBufferArray);
    std::fill_n(ppFrameBufferArray, nFrameBufferArraySize, nullptr);
    OV_CHECK_POINTER(pnFrameCount);
    *pnFrameCount = 0;
    COvDeviceInfo& info = VerifyDeviceHandle(hDevice, OV_HERE);
    const CFetchCall call(info, "DQAllBufs", OV_HERE);
    *pnFrameCount =
        LendAllFrames(info, ppFrameBufferArray, nFrameBufferArraySize, nTimeOut, OV_HERE);
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OVQAllBufs(OV_DEV_HANDLE hDevice) try {
    COvDeviceInfo& info = EnterCamera(hDevice, OV_HERE);
    CheckReturn(*info.GetStream(), "QAllBufs", OV_HERE);
    info.GetFramePool().ReturnAll();
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}
