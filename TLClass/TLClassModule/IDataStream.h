#pragma once
/// One data stream: its buffers, and the strict order of start and stop.

#include <memory>

#include "TLClassInfo/InfoRecords.h"
#include "TLClassModule/GcObject.h"

namespace OVTLClass {

class CBuffer;
class CNativeNewBufferEvent;
class IBufferInitInfo;
class IDevice;
class INewBufferCallback;

class IDataStream : public CGcObject {
public:
    using CGcObject::CGcObject;

    /// Opens the stream with its description, and lets the camera's chunk features read
    /// from its frames. No effect when it is open.
    virtual void DoOpenDataStream() = 0;
    /// Stops and closes the stream and frees its buffers. What goes wrong is logged.
    virtual void DoCloseDataStream() = 0;
    virtual bool DoIsDataStreamOpen() = 0;
    virtual bool DoIsDataStreamAcquisiton() = 0;
    /// Keeps a clone; the thread of the next start delivers to it.
    virtual void DoRegisterCaptureCallback(const INewBufferCallback& callback) = 0;
    /// Waits for a running callback.
    virtual void DoUnregisterCaptureCallback() = 0;
    virtual bool DoIsRegisterCaptureCallback() = 0;
    /// Returns the frames that wait at this moment to the producer, unseen. Fetched frames
    /// stay with those who fetched them. No effect while stopped.
    virtual void DoFlushAllToInput() = 0;
    /// Waits for a frame and reads what the records of an application have of it. Its
    /// CBuffer is the user pointer, which the caller returns by QueueBuffer and asks for
    /// further facts.
    /// @param info     a fresh record: what it has already isn't asked for
    /// @param timeout  in milliseconds; CTimeoutError when nothing came
    virtual void DoGetBuffer(BUFFER_INFO& info, unsigned timeout) = 0;
    /// Announces and queues the buffers and starts the producer's side. No effect while
    /// acquiring. A step that fails undoes those before it.
    virtual void DoStartDataStreamAcqusition(const IBufferInitInfo& info) = 0;
    /// Never throws; what goes wrong is logged, and the stream is stopped.
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
    /// How many buffers the next start announces.
    virtual size_t DoGetAnnounceBufferListSize() = 0;
    /// Makes the camera's chunk features read from a frame that was fetched. The caller holds the
    /// lock of the camera's nodes, and detaches before the buffer is queued and after a failure.
    virtual void DoAttachChunks(CBuffer& buffer) = 0;
    /// The chunk features have no values afterwards. The caller holds the lock of the camera's
    /// nodes.
    virtual void DoDetachChunks() = 0;
};

}  // namespace OVTLClass
