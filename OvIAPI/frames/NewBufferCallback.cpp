// The bridge from the capture thread to the application's function. It copies no pixels.

#include "frames/NewBufferCallback.h"

#include <memory>

#include "Base/EachFrame.h"
#include "TLClassBuffer/Buffer.h"
#include "TLClassEvent/CallbackScope.h"
#include "camera/AttachedFrame.h"
#include "frames/FrameRecord.h"

OVTLClass::INewBufferCallback* COvNewBufferCallback::Clone() const {
    return std::make_unique<COvNewBufferCallback>(m_camera, m_userParam, m_function).release();
}

OV_EACH_FRAME void COvNewBufferCallback::operator()(const OVTLClass::BUFFER_INFO& info) {
    if (m_function == nullptr) {
        return;
    }
    OV_FRAME_CALLBACK_PARAM param{};
    param.pUserParam = m_userParam;
    param.status = FrameStatus(info);
    param.pImgBuf = info.base.value;
    FillFrameValues(param, info);
    // While this scope lives, calls that would wait for the end of this callback are
    // refused.
    const OVTLClass::CCallbackScope scope(OVTLClass::CallbackKind::Capture, &m_camera);
    const CDeliveredFrame delivered(m_camera, param,
                                    *static_cast<OVTLClass::CBuffer*>(info.userPointer.value));
    m_function(&param);
}
