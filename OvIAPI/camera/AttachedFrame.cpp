#include "camera/AttachedFrame.h"

#include "Base/EachFrame.h"
#include "GenApi/INodeMap.h"
#include "GenApi/NodeMapRef.h"
#include "TLClassFeature/EngineCall.h"
#include "TLClassModule/IDataStream.h"
#include "TLClassModule/IDevice.h"
#include "TLClassSupport/Agency.h"
#include "camera/DeviceInfo.h"

using namespace GenApi_3_0_ORVANE;
using namespace OVTLClass;

namespace {

// A thread runs one capture callback at most.
thread_local CDeliveredFrame* t_delivered = nullptr;

GenICam_3_0_ORVANE::CLock& LockOfNodes(const COvDeviceInfo& camera) {
    return camera.GetDevice()->DoGetRemoteDeviceNodeMapRef()->GetMap()->GetLock();
}

/// Sets a flag for the life of the object.
class CMarked {
public:
    explicit CMarked(bool& flag) : m_flag(flag) { m_flag = true; }
    ~CMarked() { m_flag = false; }
    CMarked(const CMarked&) = delete;
    CMarked& operator=(const CMarked&) = delete;

private:
    bool& m_flag;
};

}  // namespace

/// Half of the features would read from one frame and half from the other.
void CAttachedFrame::CheckIdle() const {
    if (m_isChanging) {
        OV_RAISE(CInvalidCallError, "Can't change the attached frame in a callback of that change");
    }
}

void CAttachedFrame::BindChunks(CBuffer& buffer) {
    m_isAttached = true;
    CRollback detach([this] { Detach(); });
    {
        const CMarked changing(m_isChanging);
        OV_ENGINE_GET(m_camera.GetStream()->DoAttachChunks(buffer));
    }
    detach.Commit();
}

void CAttachedFrame::AttachLent(const OV_FRAME_BUFFER* frame, const OvPlace& place) {
    const GenICam_3_0_ORVANE::AutoLock lock(LockOfNodes(m_camera));
    CheckIdle();
    // From here on whoever returns the frame waits for the lock.
    if (!m_camera.GetFramePool().Attach(frame)) {
        OV_RAISE_AT(CInvalidParameterError, place, "Invalid OV_FRAME_BUFFER* parameter");
    }
    BindChunks(*reinterpret_cast<CBuffer*>(frame->nBufID));
}

void CAttachedFrame::AttachDelivered(const OV_FRAME_CALLBACK_PARAM* frame, const OvPlace& place) {
    CDeliveredFrame* const delivered = CDeliveredFrame::Find(*m_camera.GetDevice(), frame);
    if (delivered == nullptr) {
        OV_RAISE_AT(CInvalidParameterError, place, "Invalid OV_FRAME_CALLBACK_PARAM* parameter");
    }
    const GenICam_3_0_ORVANE::AutoLock lock(LockOfNodes(m_camera));
    CheckIdle();
    Detach();
    delivered->DetachAtEnd(*this);
    BindChunks(delivered->GetBuffer());
}

void CAttachedFrame::Detach() {
    const GenICam_3_0_ORVANE::AutoLock lock(LockOfNodes(m_camera));
    CheckIdle();
    if (!m_isAttached) {
        return;
    }
    {
        const CMarked changing(m_isChanging);
        OV_RUN_LOGGED([this] { m_camera.GetStream()->DoDetachChunks(); });
    }
    m_isAttached = false;
    m_camera.GetFramePool().NoteDetached();
}

OV_EACH_FRAME CDeliveredFrame::CDeliveredFrame(const IDevice& camera,
                                               const OV_FRAME_CALLBACK_PARAM& frame,
                                               CBuffer& buffer)
    : m_camera(camera), m_frame(frame), m_buffer(buffer) {
    t_delivered = this;
}

OV_EACH_FRAME CDeliveredFrame::~CDeliveredFrame() {
    t_delivered = nullptr;
    if (m_attached != nullptr) {
        OV_RUN_LOGGED([this] { m_attached->Detach(); });
    }
}

CDeliveredFrame* CDeliveredFrame::Find(const IDevice& camera,
                                       const OV_FRAME_CALLBACK_PARAM* frame) {
    const bool isIt = t_delivered != nullptr && &t_delivered->m_camera == &camera &&
                      &t_delivered->m_frame == frame;
    return isIt ? t_delivered : nullptr;
}
