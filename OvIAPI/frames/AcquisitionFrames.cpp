// The ways of a frame to the application: by copy and on loan.

#include <algorithm>
#include <cstring>

#include "Base/EachFrame.h"
#include "TLClassBuffer/Buffer.h"
#include "TLClassModule/IDataStream.h"
#include "TLClassSupport/Agency.h"
#include "TLClassSupport/OvException.h"
#include "TLClassSupport/OvString.h"
#include "frames/Acquisition.h"
#include "frames/FrameRecord.h"

using namespace OVTLClass;

namespace {

/// A fetched frame, which is returned to the producer unless it is lent.
class CFetchedFrame : public CAgency {
public:
    CFetchedFrame(IDataStream& stream, uint32_t timeout) {
        stream.DoGetBuffer(m_info, timeout);
        Arm([buffer = GetBuffer()] { buffer->QueueBuffer(); });
    }
    const BUFFER_INFO& GetInfo() const { return m_info; }
    CBuffer* GetBuffer() const { return static_cast<CBuffer*>(m_info.userPointer.value); }

private:
    BUFFER_INFO m_info;
};

}  // namespace

OV_EACH_FRAME void CopyFrame(COvDeviceInfo& info, OV_FRAME_DATA& frame, uint32_t timeout) {
    BUFFER_INFO buffer;
    info.GetStream()->DoGetBuffer(buffer, timeout);
    auto& memory = *static_cast<CBuffer*>(buffer.userPointer.value);
    // A producer need not say where the frame is: it is where its buffer was announced.
    std::memcpy(frame.pImgBuf,
                buffer.base.value != nullptr ? buffer.base.value : memory.GetMemory(),
                std::min<size_t>(buffer.expectedPayloadSize.value, memory.GetSize()));
    FillFrame(frame, buffer);
    // Last: from now on the producer may overwrite it.
    memory.QueueBuffer();
}

OV_EACH_FRAME OV_FRAME_BUFFER* LendFrame(COvDeviceInfo& info, uint32_t timeout,
                                         const OvPlace& place) {
    CFetchedFrame fetched(*info.GetStream(), timeout);
    OV_FRAME_BUFFER record{};
    FillFrame(record, fetched.GetInfo());
    record.pImgBuf = fetched.GetInfo().base.valid ? fetched.GetInfo().base.value : nullptr;
    record.nBufID = reinterpret_cast<uint64_t>(fetched.GetBuffer());
    // The pool has a record for each buffer, so none is left only when the application
    // holds all of them.
    OV_FRAME_BUFFER* const frame = info.GetFramePool().Take(record);
    if (frame == nullptr) {
        OV_RAISE_AT(CUnexpectedError, place, "DQFrameBuffer failed");
    }
    fetched.Commit();
    return frame;
}

uint32_t LendAllFrames(COvDeviceInfo& info, OV_FRAME_BUFFER** frames, uint32_t size,
                       uint32_t timeout, const OvPlace& place) {
    const std::shared_ptr<IDataStream> stream = info.GetStream();
    const size_t announced = stream->DoGetAnnounceBufferListSize();
    if (size < announced) {
        OV_RAISE_AT(CNeedMoreBufferError, place,
                    COvString::MsgComposer("Size of OV_FRAME_DATA* array should be at least %d",
                                           static_cast<int>(announced)));
    }
    // A producer that reports more frames than there are must not make us write past the
    // caller's array.
    const size_t waiting =
        std::clamp<size_t>(stream->DoGetDeliveryBufferListSize(), 1, std::max<size_t>(size, 1));
    uint32_t count = 0;
    // The caller gets an empty array with a failure, so nobody else could return these.
    CRollback giveBack([&] {
        for (uint32_t i = 0; i < count; ++i) {
            OV_RUN_LOGGED([&] { info.GetFramePool().Return(frames[i]); });
        }
        std::fill_n(frames, size, nullptr);
    });
    while (count < waiting) {
        try {
            frames[count] = LendFrame(info, timeout, place);
            ++count;
        } catch (const CTimeoutError&) {
            // Frames that have come are worth more to the caller than the failure.
            if (count == 0) {
                throw;
            }
            break;
        }
    }
    giveBack.Commit();
    return count;
}
