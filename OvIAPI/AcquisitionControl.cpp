// The start and the stop.

#include "Acquisition.h"
#include "Base/GCException.h"
#include "TLClassFeature/IFeatureControl.h"
#include "TLClassLoadTL/OvException.h"
#include "TLClassLoadTL/VxThread.h"
#include "TLClassMain/Agency.h"
#include "TLClassMain/DataStream.h"
#include "TLClassMain/Device.h"

using namespace OVTLClass;

namespace {

constexpr int kStartAttempts = 3;
constexpr const char* kParamsLocked = "TLParamsLocked";
constexpr const char* kReadOnly = "Can't start acquisition on read-only mode";

/// The camera's transport parameters, locked for an acquisition.
class CRemoteDeviceTLParamsLockedAgency : public CAgency {
public:
    explicit CRemoteDeviceTLParamsLockedAgency(const IFeatureControl& remote) {
        try {
            remote.DoSetInt(kParamsLocked, 1);
        } catch (const CNotImplementedError&) {
            OV_LOG("RemoteDevice XML not find TLParamsLocked");
        } catch (const GenICam_3_0_ORVANE::GenericException& error) {
            OV_LOG(error.what());
        }
        Arm([&remote] { remote.DoSetInt(kParamsLocked, 0); });
    }
};

/// A stream that acquires. A stream that acquired before may have frames on
/// loan, which go back before it is stopped.
class CStartStreamAgency : public CAgency {
public:
    CStartStreamAgency(IDataStream& stream, CFramePool& pool, const IBufferInitInfo& info) {
        stream.DoStartDataStreamAcqusition(info);
        Arm([&stream, &pool] {
            pool.Free();
            stream.DoStopDataStreamAcquisition();
        });
    }
};

/// What every attempt of a start works on.
struct StartTarget {
    const IFeatureControl& remote;
    IDataStream& stream;
    CFramePool& pool;
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
    const CBufferInitInfo info = ReadBufferInitInfo(target.remote, target.chunkMode);
    CStartStreamAgency started(target.stream, target.pool, info);
    target.remote.DoSendCommand("AcquisitionStart");
    started.Commit();
}

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

/// Keeps the first failure of a stop that must go on.
class CFirstFailure {
public:
    template <class Step>
    void Run(const Step& step) {
        try {
            step();
        } catch (const CDeviceOfflineError& error) {
            Keep(error.what(), OV_STATUS_OFFLINE);
        } catch (const std::exception& error) {
            Keep(error.what(), OV_STATUS_ERROR);
        } catch (const GenICam_3_0_ORVANE::GenericException& error) {
            Keep(error.GetDescription(), OV_STATUS_ERROR);
        }
    }

    void RaiseIfAny() const {
        if (m_text.empty()) {
            return;
        }
        if (m_status == OV_STATUS_OFFLINE) {
            OV_RAISE(CDeviceOfflineError, m_text);
        }
        OV_RAISE_STATUS(m_status, m_text);
    }

private:
    void Keep(const char* text, OV_STATUS status) {
        if (m_text.empty()) {
            m_text = text;
            m_status = status;
        }
    }

    std::string m_text;
    OV_STATUS m_status = OV_STATUS_ERROR;
};

}  // namespace

void StartAcquisition(COvDeviceInfo& info) {
    IDevice& device = *info.GetDevice();
    if (device.DoGetDeviceAccessMode() == OV_ACCESS_READONLY) {
        OV_RAISE(CInvalidAccessError, kReadOnly);
    }
    const std::shared_ptr<IDataStream> stream = info.GetStream();
    const IFeatureControl& remote = *device.DoGetRemoteDeviceFeatureControl();
    CRemoteDeviceTLParamsLockedAgency locked(remote);
    StartWithRetries({remote, *stream, info.GetFramePool(), IsChunkModeActive(remote)});
    locked.Commit();
    info.GetFramePool().Make(stream->DoGetAnnounceBufferListSize());
}

void StopAcquisition(COvDeviceInfo& info) {
    IDevice& device = *info.GetDevice();
    const std::shared_ptr<IDataStream> stream = info.GetStream();
    if (CVxThread::PthreadSelf() == stream->DoGetAcquisitionThreadID()) {
        OV_RAISE(CInvalidCallError, "Can't stop capture in capture callback");
    }
    if (device.DoGetDeviceAccessMode() == OV_ACCESS_READONLY) {
        OV_RAISE(CInvalidAccessError, kReadOnly);
    }
    const IFeatureControl& remote = *device.DoGetRemoteDeviceFeatureControl();
    CFirstFailure failure;
    failure.Run([&remote] { remote.DoSendCommand("AcquisitionStop"); });
    info.GetFramePool().Free();
    stream->DoStopDataStreamAcquisition();
    // What another thread borrowed in between; its buffer may not live as long.
    info.GetFramePool().Free();
    failure.Run([&remote] { remote.DoSetInt(kParamsLocked, 0); });
    failure.RaiseIfAny();
}
