// What the transport model keeps are clones: the objects that are registered live on the
// stack of the exported function. So each clone leaves without an owner until it is
// stored.

#include "events/EventCallbacks.h"

#include <memory>

#include "TLClassEvent/CallbackScope.h"
#include "TLClassModule/IDevice.h"
#include "TLClassSupport/VxThread.h"

using namespace OVTLClass;

namespace {

/// A feature's callback runs on the thread that changes the feature. If that is the thread
/// of the camera's events, the rules for callbacks of events apply.
CallbackKind KindOfFeatureCallback(IDevice& camera) {
    return CVxThread::PthreadSelf() == camera.DoGetEventThreadID() ? CallbackKind::Event
                                                                   : CallbackKind::Feature;
}

}  // namespace

IDeviceOfflineCallback* COvDeviceOfflineCallback::Clone() const {
    return std::make_unique<COvDeviceOfflineCallback>(m_userParam, m_function).release();
}

void COvDeviceOfflineCallback::operator()() {
    if (m_function != nullptr) {
        m_function(m_userParam);
    }
}

IFeatureCallback* COvFeatureCallback::Clone() const {
    return std::make_unique<COvFeatureCallback>(m_camera, m_userParam, m_function, m_featureID)
        .release();
}

void COvFeatureCallback::operator()(GenApi_3_0_ORVANE::INode* /*node*/) {
    if (m_function != nullptr) {
        const CCallbackScope scope(KindOfFeatureCallback(m_camera), &m_camera);
        m_function(m_featureID, m_userParam);
    }
}
