// The start and the stop. Both have two sides, the camera and the host's stream, and
// either side may fail: a start leaves nothing behind, a stop does everything it can.

#include <exception>

#include "Base/GCException.h"
#include "TLClassBuffer/BufferInitInfo.h"
#include "TLClassEvent/NativeNewBufferEvent.h"
#include "TLClassFeature/IFeatureControl.h"
#include "TLClassModule/IDataStream.h"
#include "TLClassModule/IDevice.h"
#include "TLClassSupport/Agency.h"
#include "TLClassSupport/OvException.h"
#include "errors/CallbackCheck.h"
#include "frames/Acquisition.h"

using namespace OVTLClass;

namespace {

constexpr int kStartAttempts = 3;
constexpr const char* kParamsLocked = "TLParamsLocked";
/// A stop waits for the end of the capture callback. The other callbacks may run with the
/// lock of a node map, and another thread's start or stop, which uses features, may wait
/// for that.
constexpr std::initializer_list<CallbackKind> kRefused = {
    CallbackKind::Capture, CallbackKind::Event, CallbackKind::Feature};
constexpr const char* kReadOnly = "Can't start acquisition on read-only mode";

/// Locks the camera's transport parameters for an acquisition. Unlocks them also when the
/// lock itself has thrown: the camera may have taken it.
class CRemoteDeviceTLParamsLockedAgency : public CAgency {
public:
    explicit CRemoteDeviceTLParamsLockedAgency(const IFeatureControl& remote) {
        Arm([&remote] { remote.DoSetInt(kParamsLocked, 0); });
        try {
            remote.DoSetInt(kParamsLocked, 1);
        } catch (const CNotImplementedError&) {
            OV_LOG("RemoteDevice XML not find TLParamsLocked");
        } catch (const GenICam_3_0_ORVANE::GenericException& error) {
            OV_LOG(error.what());
        }
    }
};

/// Ends all fetches and lets no other begin. A producer may forget a kill that meets no
/// waiter, and a fetch may be just about to wait, so the kill is repeated.
void CloseFetches(COvDeviceInfo& info, IDataStream& stream) {
    CFetchGate& gate = info.GetFetchGate();
    for (bool isEmpty = gate.Close(); !isEmpty; isEmpty = gate.WaitUntilEmpty()) {
        stream.DoGetNativeNewBufferEvent().AbortWait();
    }
}

/// Stops the host's side. Frames on loan go back before it, since the stop frees their
/// buffers.
void StopStream(COvDeviceInfo& info, IDataStream& stream) {
    info.GetFramePool().Free();
    stream.DoStopDataStreamAcquisition();
}

/// Starts the stream and makes a record for each of its buffers. The undo also has to
/// cover a stream that has acquired before, with frames on loan and fetches under way.
class CStartStreamAgency : public CAgency {
public:
    CStartStreamAgency(COvDeviceInfo& info, IDataStream& stream, const IBufferInitInfo& frames) {
        stream.DoStartDataStreamAcqusition(frames);
        Arm([&info, &stream] {
            CloseFetches(info, stream);
            StopStream(info, stream);
        });
        info.GetFramePool().Make(stream.DoGetAnnounceBufferListSize());
    }
};

/// The objects that every attempt of a start uses.
struct StartTarget {
    COvDeviceInfo& info;
    const IFeatureControl& remote;
    IDataStream& stream;
    bool chunkMode;
};

bool IsChunkModeActive(const IFeatureControl& remote) {
    bool active = false;
    OV_RUN_LOGGED(
        [&] { active = remote.DoExist("ChunkModeActive") && remote.DoGetBool("ChunkModeActive"); });
    return active;
}

CBufferInitInfo ReadBufferInitInfo(const IFeatureControl& remote, bool chunkMode) {
    CBufferInitInfo info;
    info.SetWidth(remote.DoGetInt("Width"));
    info.SetHeight(remote.DoGetInt("Height"));
    info.SetPixelFormat(remote.DoGetEnum("PixelFormat"));
    info.SetOffsetX(remote.DoGetInt("OffsetX"));
    info.SetOffsetY(remote.DoGetInt("OffsetY"));
    info.SetPayloadSize(remote.DoGetInt("PayloadSize"));
    info.SetChunkMode(chunkMode);
    return info;
}

void StartOnce(const StartTarget& target) {
    const CBufferInitInfo frames = ReadBufferInitInfo(target.remote, target.chunkMode);
    CStartStreamAgency started(target.info, target.stream, frames);
    target.remote.DoSendCommand("AcquisitionStart");
    started.Commit();
}

/// Each attempt begins with the camera's parameters: whatever made the last one fail may
/// have changed them.
void StartWithRetries(const StartTarget& target) {
    for (int attempt = 1;; ++attempt) {
        try {
            StartOnce(target);
            return;
        } catch (...) {
            if (attempt == kStartAttempts) {
                throw;
            }
        }
    }
}

/// Keeps the first failure of a stop, which goes on after it.
class CFirstFailure {
public:
    template <class Step>
    void Run(const Step& step) noexcept {
        try {
            step();
        } catch (...) {
            if (!m_failure) {
                m_failure = std::current_exception();
            }
        }
    }

    void RaiseIfAny(const OvPlace& place) const {
        if (!m_failure) {
            return;
        }
        try {
            std::rethrow_exception(m_failure);
            // Its own class stays: a program reacts to a lost camera in another way than to a
            // refusal.
        } catch (const CDeviceOfflineError& error) {
            OV_RAISE_AT(CDeviceOfflineError, place, error.what());
        } catch (const std::exception& error) {
            OV_RAISE_AT(CUnexpectedError, place, error.what());
        } catch (const GenICam_3_0_ORVANE::GenericException& error) {
            OV_RAISE_AT(CUnexpectedError, place, error.GetDescription());
        }
    }

private:
    std::exception_ptr m_failure;
};

/// A function of its own, so that the log shows a name and not a lambda within another.
void SendStop(COvDeviceInfo& info) noexcept {
    OV_RUN_LOGGED([&info] {
        info.GetDevice()->DoGetRemoteDeviceFeatureControl()->DoSendCommand("AcquisitionStop");
    });
}

}  // namespace

void StartAcquisition(COvDeviceInfo& info, const OvPlace& place) {
    IDevice& device = *info.GetDevice();
    CheckNotInCallback(device, "start capture", kRefused, place);
    if (device.DoGetDeviceAccessMode() == OV_ACCESS_READONLY) {
        OV_RAISE_AT(CInvalidAccessError, place, kReadOnly);
    }
    const std::shared_ptr<IDataStream> stream = info.GetStream();
    // Before the lock is taken, because a poll may run callbacks.
    info.GetPolling().PollBeforeCall(OV_FEATURE_LEVEL_REMOTE_DEVICE);
    const CAutoLock lock(info.GetAcquisitionLock());
    const IFeatureControl& remote = *device.DoGetRemoteDeviceFeatureControl();
    CRemoteDeviceTLParamsLockedAgency locked(remote);
    StartWithRetries({info, remote, *stream, IsChunkModeActive(remote)});
    locked.Commit();
    // Last, so that nobody fetches from a stream that may still be taken back.
    info.GetFetchGate().Open();
}

void StopAcquisition(COvDeviceInfo& info, const OvPlace& place) {
    IDevice& device = *info.GetDevice();
    const std::shared_ptr<IDataStream> stream = info.GetStream();
    CheckNotInCallback(device, "stop capture", kRefused, place);
    if (device.DoGetDeviceAccessMode() == OV_ACCESS_READONLY) {
        OV_RAISE_AT(CInvalidAccessError, place, kReadOnly);
    }
    const CAutoLock lock(info.GetAcquisitionLock());
    CloseFetches(info, *stream);
    const IFeatureControl& remote = *device.DoGetRemoteDeviceFeatureControl();
    CFirstFailure failure;
    // The camera first, so that it doesn't send to a stream that has stopped.
    failure.Run([&remote] { remote.DoSendCommand("AcquisitionStop"); });
    StopStream(info, *stream);
    failure.Run([&remote] {
        // A camera may lack this feature. Its stop doesn't fail for that.
        if (remote.DoExist(kParamsLocked)) {
            remote.DoSetInt(kParamsLocked, 0);
        }
    });
    failure.RaiseIfAny(place);
}

void CheckStopped(IDataStream& stream, const char* message, const OvPlace& place) {
    if (stream.DoIsDataStreamAcquisiton()) {
        OV_RAISE_AT(CInvalidCallError, place, message);
    }
}

/// A camera that is being closed may be lost already, so nothing here is a failure.
void EndAcquisition(COvDeviceInfo& info) noexcept {
    OV_RUN_LOGGED([&info] {
        const std::shared_ptr<IDataStream> stream = info.GetStream();
        const CAutoLock lock(info.GetAcquisitionLock());
        CloseFetches(info, *stream);
        if (!stream->DoIsDataStreamAcquisiton()) {
            return;
        }
        SendStop(info);
        StopStream(info, *stream);
    });
}
