#pragma once
/// One data stream: its buffers, and the strict order of start and stop.

#include <atomic>
#include <memory>
#include <string>
#include <vector>

#include "Base/EachFrame.h"
#include "TLClassBuffer/Buffer.h"
#include "TLClassEvent/NewBufferEvent.h"
#include "TLClassInfo/InfoRecords.h"
#include "TLClassModule/IDataStream.h"
#include "TLClassStream/StreamChunks.h"

namespace OVTLClass {

class CDataStream : public IDataStream {
public:
    CDataStream(std::shared_ptr<const CGenTLLib> lib, std::shared_ptr<IDevice> device,
                void* deviceHandle, std::string streamId);
    ~CDataStream() override;

    void DoOpenDataStream() override;
    void DoCloseDataStream() override;
    bool DoIsDataStreamOpen() override { return m_open; }
    OV_EACH_FRAME bool DoIsDataStreamAcquisiton() override { return m_acquiring; }
    void DoRegisterCaptureCallback(const INewBufferCallback& callback) override;
    void DoUnregisterCaptureCallback() override;
    bool DoIsRegisterCaptureCallback() override;
    void DoFlushAllToInput() override;
    void DoGetBuffer(BUFFER_INFO& info, unsigned timeout) override;
    void DoStartDataStreamAcqusition(const IBufferInitInfo& info) override;
    void DoStopDataStreamAcquisition() override;
    std::shared_ptr<IDevice> DoGetDevice() override { return m_device; }
    pthread_t DoGetAcquisitionThreadID() override;
    CNativeNewBufferEvent& DoGetNativeNewBufferEvent() override;
    void* DoGetStreamHandle() override { return m_handle; }
    std::shared_ptr<const CGenTLLib> DoGetGenTLLib() override { return GetLibPointer(); }
    void SetAcqusitionBufferNumber(size_t number) override;
    size_t GetAcqusitionBufferNumber() override { return m_bufferNumber; }
    size_t DoGetDeliveryBufferListSize() override;
    size_t DoGetAnnounceBufferListSize() override { return m_bufferNumber; }
    void DoAttachChunks(CBuffer& buffer) override;
    void DoDetachChunks() override;

private:
    class CAttachNodeMapAgency;
    class CDevOpenDataStreamAgency;
    class CStreamTLParamsLockedAgency;
    class CStartGetNewBufferAgency;
    class CAnnouceBuffersAgency;
    class CDSFlushQueueAgency;
    class CDSStartAcquisitionAgency;

    void __AllocateBuffers(size_t payloadSize);
    void __RaiseBufferNumber(const InfoSize& minimum);
    void __AnnouceBuffers();
    void __TakeBuffersBack();
    void __RevokeBuffers();
    void __FreeBuffers();
    void __StopDataStreamAcquisition();
    void __StopEngine() const;
    void __SetTLParamsLocked(int64_t locked) const;

    std::shared_ptr<IDevice> m_device;
    void* m_deviceHandle;
    std::string m_streamId;
    std::atomic<void*> m_handle{nullptr};
    std::atomic<bool> m_open{false};
    using BufferList = std::vector<std::unique_ptr<CBuffer>>;

    BufferList m_buffers;
    /// Those that the producer refused to return. It may still write to them, and they
    /// take part in the next acquisitions, until it returns them or the stream is closed.
    BufferList m_keptByProducer;
    std::atomic<size_t> m_bufferNumber;
    /// Before the event, which knows it while started.
    CStreamChunks m_chunks;
    CNewBufferEvent m_newBufferEvent;
    std::atomic<bool> m_acquiring{false};
    CLock m_streamLock;
};

}  // namespace OVTLClass
