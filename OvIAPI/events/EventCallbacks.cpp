// What the transport model keeps are clones: the objects that are registered live on the
// stack of the exported function. So each clone leaves without an owner until it is
// stored.

#include "events/EventCallbacks.h"

#include "TLClassModule/IDevice.h"
#include "TLClassSupport/VxThread.h"

using namespace OVTLClass;

CallbackKind KindOfFeatureCallback(IDevice& camera) {
    return CVxThread::PthreadSelf() == camera.DoGetEventThreadID() ? CallbackKind::Event
                                                                   : CallbackKind::Feature;
}

IDeviceOfflineCallback* COvDeviceOfflineCallback::Clone() const {
    return std::make_unique<COvDeviceOfflineCallback>(m_userParam, m_function).release();
}

void COvDeviceOfflineCallback::operator()() {
    if (m_function != nullptr) {
        m_function(m_userParam);
    }
}
