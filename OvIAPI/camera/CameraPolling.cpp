#include "camera/CameraPolling.h"

#include <algorithm>
#include <chrono>

#include "GenApi/NodeMapRef.h"
#include "TLClassEvent/CallbackScope.h"
#include "TLClassModule/IDevice.h"
#include "TLClassSupport/Agency.h"

using namespace OVTLClass;

namespace {

int64_t Now() {
    using namespace std::chrono;
    return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

/// A negative period is none, and then the other one counts.
int64_t ShorterPeriod(int64_t left, int64_t right) {
    return left < 0 || right < 0 ? std::max(left, right) : std::min(left, right);
}

/// The shortest polling time of a map's nodes in milliseconds; -1 if none is polled.
int64_t ShortestPeriod(GenApi_3_0_ORVANE::INodeMap& map) {
    GenApi_3_0_ORVANE::node_vector nodes;
    map.GetNodes(nodes);
    int64_t shortest = -1;
    for (GenApi_3_0_ORVANE::INode* const node : nodes) {
        shortest = ShorterPeriod(shortest, node->GetPollingTime());
    }
    return shortest;
}

}  // namespace

void CPolledMap::Begin(GenApi_3_0_ORVANE::CNodeMapRef& map) {
    m_map = &map;
    m_period = ShortestPeriod(*map.GetMap());
    m_last = Now();
}

void CPolledMap::Poll() {
    if (m_period < 0) {
        return;
    }
    const int64_t now = Now();
    int64_t last = m_last;
    // Several threads may poll at once. Only one of them reports the time that has
    // passed, or the nodes would count it twice.
    if (now > last && m_last.compare_exchange_strong(last, now)) {
        OV_RUN_LOGGED([&] { m_map->_Poll(now - last); });
    }
}

void CCameraPolling::Begin(IDevice& camera, GenApi_3_0_ORVANE::CNodeMapRef& stream) {
    m_camera = &camera;
    m_remote.Begin(*camera.DoGetRemoteDeviceNodeMapRef());
    m_local.Begin(*camera.DoGetDeviceNodeMapRef());
    m_stream.Begin(stream);
    m_period = ShorterPeriod(m_remote.GetPeriod(),
                             ShorterPeriod(m_local.GetPeriod(), m_stream.GetPeriod()));
}

void CCameraPolling::Poll() {
    // Callbacks that a poll leads to may do as little as those of the camera's events.
    const CCallbackScope scope(CallbackKind::Event, m_camera);
    for (CPolledMap* const map : {&m_remote, &m_local, &m_stream}) {
        map->Poll();
    }
}

void CCameraPolling::PollBeforeCall(OV_FEATURE_LEVEL level) {
    // The thread polls a watched camera in time.
    if (m_period < 0 || m_isWatched) {
        return;
    }
    if (level == OV_FEATURE_LEVEL_REMOTE_DEVICE) {
        m_remote.Poll();
    } else if (level == OV_FEATURE_LEVEL_LOCAL_DEVICE) {
        m_local.Poll();
    } else if (level == OV_FEATURE_LEVEL_STREAM) {
        m_stream.Poll();
    }
}
