#include "TLClassStream/DataStream.h"

#include <algorithm>

#include "Base/EachFrame.h"
#include "GenApi/NodeMapRef.h"
#include "TLClassFeature/FeatureControl.h"
#include "TLClassInfo/InformationAgency.h"
#include "TLClassLoadTL/GenTLErrrorCodeVerifier.h"
#include "TLClassModule/IDevice.h"
#include "TLClassSupport/OvException.h"
#include "TLClassXML/XMLLoadAgency.h"

namespace OVTLClass {

namespace {

constexpr size_t kDefaultBufferNumber = 5;

/// A number of a stream as the producer reports it.
/// @return the producer's status
int32_t ReadStreamNumber(const CGenTLLib& lib, void* stream, GenTL::STREAM_INFO_CMD command,
                         size_t& number) {
    size_t size = sizeof number;
    int32_t type = GenTL::INFO_DATATYPE_SIZET;
    return lib.DSGetInfo(stream, command, &type, &number, &size);
}

}  // namespace

/// The camera's chunk features, reading from this stream's frames.
class CDataStream::CAttachNodeMapAgency : public CAgency {
public:
    CAttachNodeMapAgency(CStreamChunks& chunks, GenApi_3_0_ORVANE::INodeMap* map) {
        chunks.AttachNodeMap(map);
        Arm([&chunks] { chunks.DetachNodeMap(); });
    }
};

/// An open stream module of a producer.
class CDataStream::CDevOpenDataStreamAgency : public CAgency {
public:
    CDevOpenDataStreamAgency(const CGenTLLib& lib, void* deviceHandle, const std::string& id) {
        OV_VERIFY(lib.DevOpenDataStream(deviceHandle, id.c_str(), &m_handle), lib);
        Arm([&lib, handle = m_handle] {
            OV_LOG_UNDO_IF_FAILED(CDevOpenDataStreamAgency, lib.DSClose(handle), lib);
        });
    }
    void* GetHandle() const { return m_handle; }

private:
    void* m_handle = nullptr;
};

CDataStream::CDataStream(std::shared_ptr<const CGenTLLib> lib, std::shared_ptr<IDevice> device,
                         void* deviceHandle, std::string streamId)
    : IDataStream(std::move(lib)),
      m_device(std::move(device)),
      m_deviceHandle(deviceHandle),
      m_streamId(std::move(streamId)),
      m_bufferNumber(kDefaultBufferNumber),
      m_newBufferEvent(GetLib()),
      m_streamLock(LockRank::Stream, m_device.get()) {}

CDataStream::~CDataStream() = default;

void CDataStream::DoOpenDataStream() {
    const CAutoLock lock(m_streamLock);
    if (m_open) {
        return;
    }
    GenApi_3_0_ORVANE::CNodeMapRef* const remote = m_device->DoGetRemoteDeviceNodeMapRef();
    if (remote == nullptr) {
        OV_RAISE(CUnexpectedError, "The node map of remote device  is invalid");
    }
    // Chunk features exist in the camera's map, and read from the frames of this stream.
    CAttachNodeMapAgency attached(m_chunks, remote->GetMap());
    CDevOpenDataStreamAgency opened(GetLib(), m_deviceHandle, m_streamId);
    CXMLLoadAgency loaded(GetAnalyzer(), opened.GetHandle());
    SetFeatureControl(std::make_unique<CFeatureControl>(GetNodeMapRef()));
    InfoSize minimum;
    minimum.valid = ReadStreamNumber(GetLib(), opened.GetHandle(),
                                     GenTL::STREAM_INFO_BUF_ANNOUNCE_MIN, minimum.value) == 0;
    __RaiseBufferNumber(minimum);
    loaded.Commit();
    opened.Commit();
    attached.Commit();
    m_handle = opened.GetHandle();
    m_open = true;
}

void CDataStream::DoCloseDataStream() {
    const CAutoLock lock(m_streamLock);
    if (!m_open) {
        return;
    }
    __StopDataStreamAcquisition();
    OV_RUN_LOGGED([this] { GetFeatureControl()->DoUnregisterAllFeatureCallback(); });
    SetFeatureControl(nullptr);
    OV_RUN_LOGGED([this] { GetAnalyzer().UnloadXML(); });
    OV_LOG_IF_FAILED(GetLib().DSClose(m_handle), GetLib());
    m_handle = nullptr;
    // Only a closed producer is sure not to write to the buffers any more.
    __FreeBuffers();
    OV_RUN_LOGGED([this] { m_chunks.DetachNodeMap(); });
    m_open = false;
}

void CDataStream::DoRegisterCaptureCallback(const INewBufferCallback& callback) {
    m_newBufferEvent.RegisterCaptureCallback(callback);
}

void CDataStream::DoUnregisterCaptureCallback() {
    m_newBufferEvent.UnregisterCaptureCallback();
}

OV_EACH_FRAME bool CDataStream::DoIsRegisterCaptureCallback() {
    return m_newBufferEvent.DoIsRegisterCaptureCallback();
}

OV_EACH_FRAME void CDataStream::DoGetBuffer(BUFFER_INFO& info, unsigned timeout) {
    m_newBufferEvent.GetBuffer(info, timeout);
}

pthread_t CDataStream::DoGetAcquisitionThreadID() {
    return m_newBufferEvent.GetAcquisitionThreadID();
}

CNativeNewBufferEvent& CDataStream::DoGetNativeNewBufferEvent() {
    return m_newBufferEvent.GetNativeNewBufferEvent();
}

void CDataStream::DoFlushAllToInput() {
    if (m_handle == nullptr) {
        OV_RAISE(CUnexpectedError, "The data stream is closed");
    }
    if (!m_acquiring) {
        return;
    }
    // As many as wait now: a fast camera would fill buffers as quickly as they are returned.
    for (size_t waiting = DoGetDeliveryBufferListSize(); waiting != 0; --waiting) {
        CBuffer* const buffer = DoGetNativeNewBufferEvent().TakeWaiting();
        if (buffer == nullptr) {
            return;
        }
        buffer->QueueBuffer();
    }
}

void CDataStream::SetAcqusitionBufferNumber(size_t number) {
    // Asked anew: the minimum may depend on the camera's settings.
    const InfoSize minimum =
        COvInformationAgency::GetDataStreamInformationFromHandle(GetLib(), m_handle).minAnnounce;
    if (minimum.valid && minimum.value > number) {
        OV_RAISE(COutOfRangeError, "Acquisition buffers is less than the minimum");
    }
    m_bufferNumber = number;
}

void CDataStream::__RaiseBufferNumber(const InfoSize& minimum) {
    if (minimum.valid) {
        m_bufferNumber = std::max<size_t>(m_bufferNumber, minimum.value);
    }
}

void CDataStream::DoAttachChunks(CBuffer& buffer) {
    m_chunks.AttachFrame(DoGetNativeNewBufferEvent(), buffer);
}

void CDataStream::DoDetachChunks() {
    m_chunks.DetachFrame(DoGetNativeNewBufferEvent());
}

size_t CDataStream::DoGetDeliveryBufferListSize() {
    size_t waiting = 0;
    OV_VERIFY(ReadStreamNumber(GetLib(), m_handle, GenTL::STREAM_INFO_NUM_AWAIT_DELIVERY, waiting),
              GetLib());
    return waiting;
}

}  // namespace OVTLClass
