#pragma once
/// The frame that a camera's chunk features read from.

#include "OvIDef.h"
#include "errors/Place.h"

namespace OVTLClass {
class CBuffer;
class IDevice;
}  // namespace OVTLClass

class COvDeviceInfo;

/// A camera's nodes read from one frame at a time, because each node has one value. All that
/// changes here, changes under the lock of the nodes. The frame is detached before its buffer goes
/// back to the producer.
class CAttachedFrame {
public:
    explicit CAttachedFrame(COvDeviceInfo& camera) : m_camera(camera) {}
    CAttachedFrame(const CAttachedFrame&) = delete;
    CAttachedFrame& operator=(const CAttachedFrame&) = delete;

    /// Attaches a frame on loan in place of any other. Throws for a frame that isn't on loan, and
    /// for chunks that can't be read; then no frame is attached.
    void AttachLent(const OV_FRAME_BUFFER* frame, const OvPlace& place);
    /// The same for the frame of a capture callback that the thread runs.
    void AttachDelivered(const OV_FRAME_CALLBACK_PARAM* frame, const OvPlace& place);
    /// Throws on a thread that is attaching or detaching: in a callback of a chunk feature.
    void Detach();

private:
    void BindChunks(OVTLClass::CBuffer& buffer);
    void CheckIdle() const;

    COvDeviceInfo& m_camera;
    bool m_isAttached = false;
    /// While it is attached or detached, which runs the callbacks of chunk features.
    bool m_isChanging = false;
};

/// The frame that a thread has in a capture callback. Lives on the thread's stack, and detaches the
/// frame at the callback's end.
class CDeliveredFrame {
public:
    CDeliveredFrame(const OVTLClass::IDevice& camera, const OV_FRAME_CALLBACK_PARAM& frame,
                    OVTLClass::CBuffer& buffer);
    ~CDeliveredFrame();
    CDeliveredFrame(const CDeliveredFrame&) = delete;
    CDeliveredFrame& operator=(const CDeliveredFrame&) = delete;

    /// Null if the calling thread doesn't run a callback with that frame of that camera.
    static CDeliveredFrame* Find(const OVTLClass::IDevice& camera,
                                 const OV_FRAME_CALLBACK_PARAM* frame);
    OVTLClass::CBuffer& GetBuffer() const { return m_buffer; }
    void DetachAtEnd(CAttachedFrame& attached) { m_attached = &attached; }

private:
    const OVTLClass::IDevice& m_camera;
    const OV_FRAME_CALLBACK_PARAM& m_frame;
    OVTLClass::CBuffer& m_buffer;
    CAttachedFrame* m_attached = nullptr;
};
