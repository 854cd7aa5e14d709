// The start and the stop of a stream: every step of the start has its undo, and
// the stop goes through to its end whatever fails.

#include "GenApi/ChunkAdapterGeneric.h"
#include "TLClassFeature/IFeatureControl.h"
#include "TLClassInfo/InformationAgency.h"
#include "TLClassLoadTL/GenTLErrrorCodeVerifier.h"
#include "TLClassLoadTL/OvException.h"
#include "TLClassMain/DataStream.h"

namespace OVTLClass {

namespace {

constexpr const char* kParamsLocked = "TLParamsLocked";

}  // namespace

/// The stream's own parameters, locked while it acquires.
class CDataStream::CStreamTLParamsLockedAgency : public CAgency {
public:
    explicit CStreamTLParamsLockedAgency(const CDataStream& stream) {
        stream.__SetTLParamsLocked(1);
        Arm([&stream] { stream.__SetTLParamsLocked(0); });
    }
};

/// The new-buffer event, with its thread when a callback is registered.
class CDataStream::CStartGetNewBufferAgency : public CAgency {
public:
    CStartGetNewBufferAgency(CNewBufferEvent& event, void* streamHandle,
                             const IBufferInitInfo& info,
                             GenApi_3_0_ORVANE::CChunkAdapterGeneric* adapter) {
        event.StartGetNewBuffer(streamHandle, info, adapter);
        Arm([&event] { event.StopGetNewBuffer(); });
    }
};

/// All buffers in the producer's hands.
class CDataStream::CAnnouceBuffersAgency : public CAgency {
public:
    explicit CAnnouceBuffersAgency(CDataStream& stream) {
        // Armed first: a failure half way leaves some announced.
        Arm([&stream] { stream.__RevokeBuffers(); });
        stream.__AnnouceBuffers();
    }
};

/// All buffers waiting to be filled.
class CDataStream::CDSFlushQueueAgency : public CAgency {
public:
    CDSFlushQueueAgency(const CDataStream& stream, const CGenTLLib& lib, void* streamHandle) {
        OV_VERIFY(lib.DSFlushQueue(streamHandle, GenTL::ACQ_QUEUE_ALL_TO_INPUT), lib);
        Arm([&stream, &lib, streamHandle] {
            stream.__WithdrawBuffers();
            OV_LOG_UNDO_IF_FAILED(CDSFlushQueueAgency,
                                  lib.DSFlushQueue(streamHandle, GenTL::ACQ_QUEUE_ALL_DISCARD),
                                  lib);
        });
    }
};

/// The producer's side of the acquisition, running without end.
class CDataStream::CDSStartAcquisitionAgency : public CAgency {
public:
    CDSStartAcquisitionAgency(const CGenTLLib& lib, void* streamHandle) {
        OV_VERIFY(lib.DSStartAcquisition(streamHandle, GenTL::ACQ_START_FLAGS_DEFAULT,
                                         GenTL::GENTL_INFINITE),
                  lib);
        Arm([&lib, streamHandle] {
            OV_LOG_UNDO_IF_FAILED(
                CDSStartAcquisitionAgency,
                lib.DSStopAcquisition(streamHandle, GenTL::ACQ_STOP_FLAGS_DEFAULT), lib);
        });
    }
};

void CDataStream::DoStartDataStreamAcqusition(const IBufferInitInfo& info) {
    const CAutoLock lock(m_streamLock);
    if (m_acquiring) {
        return;
    }
    if (!m_open) {
        OV_RAISE(CUnexpectedError, "Can not start stream acquisition before open it");
    }
    CStreamTLParamsLockedAgency locked(*this);
    __AllocateBuffers(static_cast<size_t>(info.GetPayloadSize()));
    // Before the first buffer can fill.
    CStartGetNewBufferAgency event(m_newBufferEvent, m_handle, info, m_chunkAdapter.get());
    const std::scoped_lock buffersLock(m_buffersMutex);
    CAnnouceBuffersAgency announced(*this);
    CDSFlushQueueAgency queued(*this, GetLib(), m_handle);
    CDSStartAcquisitionAgency started(GetLib(), m_handle);
    m_acquiring = true;
    started.Commit();
    queued.Commit();
    announced.Commit();
    event.Commit();
    locked.Commit();
}

void CDataStream::DoStopDataStreamAcquisition() {
    const CAutoLock lock(m_streamLock);
    __StopDataStreamAcquisition();
}

void CDataStream::__StopDataStreamAcquisition() {
    if (!m_acquiring) {
        return;
    }
    OV_RUN_LOGGED([this] { m_newBufferEvent.StopGetNewBuffer(); });
    OV_LOG_IF_FAILED(GetLib().DSStopAcquisition(m_handle, GenTL::ACQ_STOP_FLAGS_KILL), GetLib());
    {
        const std::scoped_lock buffersLock(m_buffersMutex);
        __WithdrawBuffers();
        OV_LOG_IF_FAILED(GetLib().DSFlushQueue(m_handle, GenTL::ACQ_QUEUE_ALL_DISCARD), GetLib());
        __RevokeBuffers();
    }
    OV_RUN_LOGGED([this] { __SetTLParamsLocked(0); });
    m_acquiring = false;
}

void CDataStream::__SetTLParamsLocked(int64_t locked) const {
    const IFeatureControl& control = *GetFeatureControl();
    if (control.DoExist(kParamsLocked)) {
        control.DoSetInt(kParamsLocked, locked);
    }
}

void CDataStream::__AllocateBuffers(size_t payloadSize) {
    // Memory may go; no feature reads from it any more.
    m_chunkAdapter->DetachBuffer();
    const DS_INFO info =
        COvInformationAgency::GetDataStreamInformationFromHandle(GetLib(), m_handle);
    const size_t wanted = m_bufferNumber;
    while (m_buffers.size() > wanted) {
        m_buffers.pop_back();
    }
    // A number that no memory can hold fails here, at once.
    m_buffers.reserve(wanted);
    while (m_buffers.size() < wanted) {
        m_buffers.push_back(std::make_unique<CBuffer>(GetLib(), m_handle.load()));
    }
    const size_t size = __GetAlignBufferSize(payloadSize, info.alignment);
    for (const auto& buffer : m_buffers) {
        buffer->AllocateBuffer(size);
    }
}

size_t CDataStream::__GetAlignBufferSize(size_t size, const InfoSize& alignment) {
    if (!alignment.valid || alignment.value == 0) {
        return size;
    }
    return (alignment.value + size - 1) / alignment.value * alignment.value;
}

void CDataStream::__AnnouceBuffers() {
    for (const auto& buffer : m_buffers) {
        buffer->AnnounceBuffer();
    }
}

void CDataStream::__WithdrawBuffers() const {
    for (const auto& buffer : m_buffers) {
        buffer->Withdraw();
    }
}

void CDataStream::__RevokeBuffers() {
    for (const auto& buffer : m_buffers) {
        buffer->RevokeBuffer();
    }
}

void CDataStream::__FreeBuffers() {
    m_chunkAdapter->DetachBuffer();
    while (!m_buffers.empty()) {
        m_buffers.pop_back();
    }
}

}  // namespace OVTLClass
