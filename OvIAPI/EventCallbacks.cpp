#include "EventCallbacks.h"

#include <memory>

OVTLClass::IDeviceOfflineCallback* COvDeviceOfflineCallback::Clone() const {
    return std::make_unique<COvDeviceOfflineCallback>(m_userParam, m_function).release();
}

void COvDeviceOfflineCallback::operator()() {
    if (m_function != nullptr) {
        m_function(m_userParam);
    }
}

OVTLClass::IFeatureCallback* COvFeatureCallback::Clone() const {
    return std::make_unique<COvFeatureCallback>(m_userParam, m_function, m_featureID).release();
}

void COvFeatureCallback::operator()(GenApi_3_0_ORVANE::INode* /*node*/) {
    if (m_function != nullptr) {
        m_function(m_featureID, m_userParam);
    }
}
