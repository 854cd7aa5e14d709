/// @file
/// The functions of data streams and buffers.
#include <algorithm>

#include "framework/exports/Serve.h"

using namespace OvProducer;

OV_PRODUCER_EXPORT DSAnnounceBuffer(GenTL::DS_HANDLE hDataStream, void* pBuffer, size_t iSize,
                                    void* pPrivate, GenTL::BUFFER_HANDLE* phBuffer) {
    return ServeOn<Stream>(Function::DSAnnounceBuffer, hDataStream, [&](Stream& stream) {
        RequirePointer(pBuffer, "The buffer");
        RequirePointer(phBuffer, "The result pointer");
        Put(phBuffer, stream.Announce(pBuffer, iSize, pPrivate));
    });
}

OV_PRODUCER_EXPORT DSAllocAndAnnounceBuffer(GenTL::DS_HANDLE hDataStream, size_t iBufferSize,
                                            void* pPrivate, GenTL::BUFFER_HANDLE* phBuffer) {
    return ServeOn<Stream>(Function::DSAllocAndAnnounceBuffer, hDataStream, [&](Stream& stream) {
        RequirePointer(phBuffer, "The result pointer");
        Put(phBuffer, stream.Announce(nullptr, iBufferSize, pPrivate));
    });
}

OV_PRODUCER_EXPORT DSFlushQueue(GenTL::DS_HANDLE hDataStream, GenTL::ACQ_QUEUE_TYPE iOperation) {
    return ServeOn<Stream>(Function::DSFlushQueue, hDataStream,
                           [&](Stream& stream) { stream.Flush(iOperation); });
}

OV_PRODUCER_EXPORT DSStartAcquisition(GenTL::DS_HANDLE hDataStream,
                                      GenTL::ACQ_START_FLAGS iStartFlags, uint64_t iNumToAcquire) {
    return ServeOn<Stream>(Function::DSStartAcquisition, hDataStream,
                           [&](Stream& stream) { stream.Start(iStartFlags, iNumToAcquire); });
}

OV_PRODUCER_EXPORT DSStopAcquisition(GenTL::DS_HANDLE hDataStream,
                                     GenTL::ACQ_STOP_FLAGS iStopFlags) {
    return ServeOn<Stream>(Function::DSStopAcquisition, hDataStream, [&](Stream& stream) {
        Observer().Ask(Function::DSStopAcquisition, iStopFlags);
        stream.Stop(iStopFlags);
    });
}

OV_PRODUCER_EXPORT DSGetInfo(GenTL::DS_HANDLE hDataStream, GenTL::STREAM_INFO_CMD iInfoCmd,
                             OV_GENTL_INFO_TAIL) {
    return ServeInfo<Stream>(Function::DSGetInfo, hDataStream, iInfoCmd, {piType, pBuffer, piSize},
                             [&](const Stream& stream) { return stream.Info(iInfoCmd); });
}

OV_PRODUCER_EXPORT DSGetBufferID(GenTL::DS_HANDLE hDataStream, uint32_t iIndex,
                                 GenTL::BUFFER_HANDLE* phBuffer) {
    return ServeOn<Stream>(Function::DSGetBufferID, hDataStream,
                           [&](const Stream& stream) { Put(phBuffer, stream.BufferAt(iIndex)); });
}

OV_PRODUCER_EXPORT DSClose(GenTL::DS_HANDLE hDataStream) {
    return ServeOn<Stream>(Function::DSClose, hDataStream, [](Stream& stream) {
        stream.Parent()->CloseStream(stream.shared_from_this());
    });
}

OV_PRODUCER_EXPORT DSRevokeBuffer(GenTL::DS_HANDLE hDataStream, GenTL::BUFFER_HANDLE hBuffer,
                                  void** ppBuffer, void** ppPrivate) {
    return ServeOn<Stream>(Function::DSRevokeBuffer, hDataStream,
                           [&](Stream& stream) { stream.Revoke(hBuffer, ppBuffer, ppPrivate); });
}

OV_PRODUCER_EXPORT DSQueueBuffer(GenTL::DS_HANDLE hDataStream, GenTL::BUFFER_HANDLE hBuffer) {
    return ServeOn<Stream>(Function::DSQueueBuffer, hDataStream,
                           [&](Stream& stream) { stream.Queue(hBuffer); });
}

OV_PRODUCER_EXPORT DSGetBufferInfo(GenTL::DS_HANDLE hDataStream, GenTL::BUFFER_HANDLE hBuffer,
                                   GenTL::BUFFER_INFO_CMD iInfoCmd, OV_GENTL_INFO_TAIL) {
    return Serve(Function::DSGetBufferInfo, [&] {
        const InfoTarget target{piType, pBuffer, piSize};
        const auto answer = [&](const InfoValue& value) {
            Answer(Function::DSGetBufferInfo, value, target);
        };
        // Nearly all questions are about a frame that the consumer holds. Its facts answer
        // without a lock: as long as they have the frame, session, stream and buffer exist.
        const BufferFacts* const facts = BufferFacts::Find(hBuffer);
        if (facts != nullptr && facts->HasFrameOf(hDataStream, hBuffer)) {
            Observer().Ask(Function::DSGetBufferInfo, iInfoCmd);
            if (const auto value = facts->TryAnswer(hDataStream, hBuffer, iInfoCmd)) {
                return answer(*value);
            }
        }
        WorkOn<Stream>(hDataStream, [&](const Stream& stream) {
            Observer().Ask(Function::DSGetBufferInfo, iInfoCmd);
            answer(stream.BufferInfo(hBuffer, iInfoCmd));
        });
    });
}

OV_PRODUCER_EXPORT DSGetBufferChunkData(GenTL::DS_HANDLE hDataStream, GenTL::BUFFER_HANDLE hBuffer,
                                        GenTL::SINGLE_CHUNK_DATA* pChunkData, size_t* piNumChunks) {
    return ServeOn<Stream>(Function::DSGetBufferChunkData, hDataStream, [&](const Stream& stream) {
        RequirePointer(piNumChunks, "The chunk count");
        const auto chunks = stream.Chunks(hBuffer);
        if (pChunkData != nullptr) {
            if (*piNumChunks < chunks.size()) {
                throw Failure(GenTL::GC_ERR_BUFFER_TOO_SMALL, "The chunk list needs more room");
            }
            std::copy(chunks.begin(), chunks.end(), pChunkData);
        }
        *piNumChunks = chunks.size();
        if (pChunkData == nullptr) {
            *piNumChunks = Observer().ReportedSize(Function::DSGetBufferChunkData, *piNumChunks);
        }
    });
}
