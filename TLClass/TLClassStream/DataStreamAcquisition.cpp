// The start and the stop of a stream: every step of the start has its undo, and
// the stop goes through to its end whatever fails.

#include <algorithm>
#include <iterator>

#include "TLClassFeature/IFeatureControl.h"
#include "TLClassInfo/InformationAgency.h"
#include "TLClassLoadTL/GenTLErrrorCodeVerifier.h"
#include "TLClassStream/DataStream.h"
#include "TLClassSupport/Agency.h"
#include "TLClassSupport/OvException.h"

namespace OVTLClass {

namespace {

constexpr const char* kParamsLocked = "TLParamsLocked";

/// The size, rounded up to a multiple of the alignment.
size_t AlignedSize(size_t size, size_t alignment) {
    const size_t excess = size % alignment;
    return excess == 0 ? size : size + (alignment - excess);
}

}  // namespace

/// The stream's own parameters, locked while it acquires.
class CDataStream::CStreamTLParamsLockedAgency : public CAgency {
public:
    explicit CStreamTLParamsLockedAgency(const CDataStream& stream) {
        // Armed first: the producer may take the value and then fail.
        Arm([&stream] { stream.__SetTLParamsLocked(0); });
        stream.__SetTLParamsLocked(1);
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
    explicit CDSFlushQueueAgency(CDataStream& stream) {
        // Armed first: the producer may take the buffers and then fail.
        Arm([&stream] { stream.__TakeBuffersBack(); });
        OV_VERIFY(stream.GetLib().DSFlushQueue(stream.m_handle, GenTL::ACQ_QUEUE_ALL_TO_INPUT),
                  stream.GetLib());
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
    CStartGetNewBufferAgency event(m_newBufferEvent, m_handle, info, m_chunks.GetAdapter());
    CAnnouceBuffersAgency announced(*this);
    CDSFlushQueueAgency queued(*this);
    CDSStartAcquisitionAgency started(GetLib(), m_handle);
    // Before the commits, none of which can fail.
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
    // No thread may fetch a frame of buffers that are taken back below.
    OV_RUN_LOGGED([this] { m_newBufferEvent.StopGetNewBuffer(); });
    __StopEngine();
    __TakeBuffersBack();
    __RevokeBuffers();
    OV_RUN_LOGGED([this] { __SetTLParamsLocked(0); });
    // Last: who looks without the lock finds the stream acquiring until all is back.
    m_acquiring = false;
}

void CDataStream::__StopEngine() const {
    // Not every producer can break a frame off.
    for (const auto flags : {GenTL::ACQ_STOP_FLAGS_KILL, GenTL::ACQ_STOP_FLAGS_DEFAULT}) {
        const int32_t status = GetLib().DSStopAcquisition(m_handle, flags);
        OV_LOG_IF_FAILED(status, GetLib());
        if (status == 0) {
            return;
        }
    }
}

void CDataStream::__SetTLParamsLocked(int64_t locked) const {
    const IFeatureControl& control = *GetFeatureControl();
    if (control.DoExist(kParamsLocked)) {
        control.DoSetInt(kParamsLocked, locked);
    }
}

void CDataStream::__AllocateBuffers(size_t payloadSize) {
    // Memory may go; no feature reads from it any more.
    m_chunks.DetachBuffer();
    const DS_INFO info =
        COvInformationAgency::GetDataStreamInformationFromHandle(GetLib(), m_handle);
    __RaiseBufferNumber(info.minAnnounce);
    // The producer may return now what it kept at the last stop.
    __RevokeBuffers();
    const size_t wanted = m_bufferNumber;
    while (m_buffers.size() > wanted) {
        m_buffers.pop_back();
    }
    // A number that no memory can hold fails here, at once.
    m_buffers.reserve(wanted);
    while (m_buffers.size() < wanted) {
        m_buffers.push_back(std::make_unique<CBuffer>(GetLib(), m_handle.load()));
    }
    // A stop takes no memory.
    m_keptByProducer.reserve(m_keptByProducer.size() + wanted);
    const size_t alignment = info.alignment.valid ? std::max<size_t>(info.alignment.value, 1) : 1;
    const size_t size = AlignedSize(payloadSize, alignment);
    for (const auto& buffer : m_buffers) {
        buffer->AllocateBuffer(size, alignment);
    }
}

void CDataStream::__AnnouceBuffers() {
    for (const BufferList* const list : {&m_buffers, &m_keptByProducer}) {
        for (const auto& buffer : *list) {
            buffer->AnnounceBuffer();
        }
    }
}

void CDataStream::__TakeBuffersBack() {
    for (const BufferList* const list : {&m_buffers, &m_keptByProducer}) {
        for (const auto& buffer : *list) {
            buffer->Withdraw();
        }
    }
    OV_LOG_IF_FAILED(GetLib().DSFlushQueue(m_handle, GenTL::ACQ_QUEUE_ALL_DISCARD), GetLib());
}

void CDataStream::__RevokeBuffers() {
    std::erase_if(m_keptByProducer, [](const auto& buffer) {
        buffer->RevokeBuffer();
        return !buffer->IsAnnounced();
    });
    // Those that the producer keeps are set apart: the next start makes others in their place.
    const auto firstKept =
        std::stable_partition(m_buffers.begin(), m_buffers.end(), [](const auto& buffer) {
            buffer->RevokeBuffer();
            return !buffer->IsAnnounced();
        });
    std::move(firstKept, m_buffers.end(), std::back_inserter(m_keptByProducer));
    m_buffers.erase(firstKept, m_buffers.end());
}

void CDataStream::__FreeBuffers() {
    m_chunks.DetachBuffer();
    m_keptByProducer.clear();
    while (!m_buffers.empty()) {
        m_buffers.pop_back();
    }
}

}  // namespace OVTLClass
