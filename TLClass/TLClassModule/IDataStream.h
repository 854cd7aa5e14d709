#pragma once
/// One data stream: its buffers, and the strict order of start and stop.

#include <memory>

#include "TLClassInfo/InfoRecords.h"
#include "TLClassModule/GcObject.h"

namespace OVTLClass {

class CNativeNewBufferEvent;
class IBufferInitInfo;
class IDevice;
class INewBufferCallback;

class IDataStream : public CGcObject {
public:
    using CGcObject::CGcObject;

    virtual void DoOpenDataStream() = 0;
    virtual void DoCloseDataStream() = 0;
    virtual bool DoIsDataStreamOpen() = 0;
    virtual bool DoIsDataStreamAcquisiton() = 0;
    /// Keeps a clone; the thread of the next start delivers to it.
    virtual void DoRegisterCaptureCallback(const INewBufferCallback& callback) = 0;
    virtual void DoUnregisterCaptureCallback() = 0;
    virtual bool DoIsRegisterCaptureCallback() = 0;
    /// Gives the frames that wait by now back to the producer, unseen. Frames that
    /// somebody has fetched stay his. Nothing while stopped.
    virtual void DoFlushAllToInput() = 0;
    /// Waits for a frame. The caller gives its CBuffer back by QueueBuffer.
    /// @param timeout  in milliseconds; CTimeoutError when nothing came
    virtual void DoGetBuffer(BUFFER_INFO& info, unsigned timeout) = 0;
    /// Success without effect while acquiring.
    virtual void DoStartDataStreamAcqusition(const IBufferInitInfo& info) = 0;
    /// Never raises; what goes wrong is logged, and the stream is stopped.
    virtual void DoStopDataStreamAcquisition() = 0;
    virtual std::shared_ptr<IDevice> DoGetDevice() = 0;
    /// 0 unless the thread that runs the callback runs.
    virtual pthread_t DoGetAcquisitionThreadID() = 0;
    virtual CNativeNewBufferEvent& DoGetNativeNewBufferEvent() = 0;
    virtual void* DoGetStreamHandle() = 0;
    virtual std::shared_ptr<const CGenTLLib> DoGetGenTLLib() = 0;
    /// For the next start. COutOfRangeError below what the producer needs.
    virtual void SetAcqusitionBufferNumber(size_t number) = 0;
    virtual size_t GetAcqusitionBufferNumber() = 0;
    /// Filled buffers that nobody fetched yet.
    virtual size_t DoGetDeliveryBufferListSize() = 0;
    virtual size_t DoGetAnnounceBufferListSize() = 0;
};

}  // namespace OVTLClass
