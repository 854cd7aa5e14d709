/// @file
/// The functions of data streams and buffers.
#include <algorithm>

#include "Base/EachFrame.h"
#include "framework/exports/Serve.h"

using namespace OvProducer;

namespace {

/// Answers one question about a buffer. Nearly all are about a frame that the consumer holds. Its
/// facts answer without a lock: as long as they have the frame, session, stream and buffer exist.
OV_EACH_FRAME void AnswerOnBuffer(GenTL::DS_HANDLE stream, GenTL::BUFFER_HANDLE buffer,
                                  GenTL::BUFFER_INFO_CMD command, const InfoTarget& target) {
    constexpr Function kFunction = Function::DSGetBufferInfo;
    const BufferFacts* const facts = BufferFacts::Find(buffer);
    if (facts != nullptr && facts->HasFrameOf(stream, buffer)) {
        Observer().Ask(kFunction, command);
        if (const auto value = facts->TryAnswer(stream, buffer, command)) {
            return Answer(kFunction, *value, target);
        }
    }
    WorkOn<Stream>(stream, [&](const Stream& found) {
        Observer().Ask(kFunction, command);
        Answer(kFunction, found.BufferInfo(buffer, command), target);
    });
}

/// Answers one of several questions. What can't be answered of it alone is its own result.
void AnswerInStack(GenTL::DS_HANDLE stream, GenTL::BUFFER_HANDLE buffer,
                   GenTL::DS_BUFFER_INFO_STACKED& question) {
    // The entries are packed, which pointers can't be told.
    GenTL::INFO_DATATYPE type = question.iType;
    size_t size = question.iSize;
    try {
        AnswerOnBuffer(stream, buffer, question.iInfoCmd, {&type, question.pBuffer, &size});
        question.iResult = GenTL::GC_ERR_SUCCESS;
    } catch (const Failure& failure) {
        // No question has an answer then.
        if (failure.Code() == GenTL::GC_ERR_NOT_INITIALIZED ||
            failure.Code() == GenTL::GC_ERR_INVALID_HANDLE ||
            failure.Code() == GenTL::GC_ERR_INVALID_BUFFER) {
            throw;
        }
        question.iResult = failure.Code();
    }
    question.iType = type;
    question.iSize = size;
}

}  // namespace

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

OV_PRODUCER_EXPORT OV_EACH_FRAME DSQueueBuffer(GenTL::DS_HANDLE hDataStream,
                                               GenTL::BUFFER_HANDLE hBuffer) {
    return ServeOn<Stream>(Function::DSQueueBuffer, hDataStream,
                           [&](Stream& stream) { stream.Queue(hBuffer); });
}

OV_PRODUCER_EXPORT OV_EACH_FRAME DSGetBufferInfo(GenTL::DS_HANDLE hDataStream,
                                                 GenTL::BUFFER_HANDLE hBuffer,
                                                 GenTL::BUFFER_INFO_CMD iInfoCmd,
                                                 OV_GENTL_INFO_TAIL) {
    return Serve(Function::DSGetBufferInfo, [&] {
        AnswerOnBuffer(hDataStream, hBuffer, iInfoCmd, {piType, pBuffer, piSize});
    });
}

OV_PRODUCER_EXPORT OV_EACH_FRAME DSGetBufferInfoStacked(GenTL::DS_HANDLE hDataStream,
                                                        GenTL::BUFFER_HANDLE hBuffer,
                                                        GenTL::DS_BUFFER_INFO_STACKED* pInfoStacked,
                                                        size_t iNumInfos) {
    if (!Observer().OffersStack()) {
        return GenTL::GC_ERR_NOT_IMPLEMENTED;
    }
    return Serve(Function::DSGetBufferInfoStacked, [&] {
        RequirePointer(pInfoStacked, "The questions");
        for (size_t i = 0; i < iNumInfos; ++i) {
            AnswerInStack(hDataStream, hBuffer, pInfoStacked[i]);
        }
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
