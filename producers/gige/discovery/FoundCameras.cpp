#include "gige/discovery/FoundCameras.h"

namespace OvGige {

void FoundCameras::Note(const FoundCamera& camera, Time now) {
    const std::lock_guard lock(m_mutex);
    Sighting& sighting = m_cameras[camera.identity.mac];
    const CameraUse use = sighting.camera.use;
    sighting = {camera, now};
    sighting.camera.use = use;
    // Whoever sends made-up addresses all day must not fill the memory.
    std::erase_if(m_cameras,
                  [now](const auto& entry) { return now - entry.second.last > kSilence; });
}

void FoundCameras::NoteUse(const Endpoint& endpoint, CameraUse use) {
    const std::lock_guard lock(m_mutex);
    for (auto& [mac, sighting] : m_cameras) {
        if (sighting.camera.endpoint == endpoint) {
            sighting.camera.use = use;
        }
    }
}

std::vector<FoundCamera> FoundCameras::List(const Adapter& adapter, SearchRange range,
                                            Time now) const {
    const std::lock_guard lock(m_mutex);
    std::vector<FoundCamera> cameras;
    for (const auto& [mac, sighting] : m_cameras) {
        const FoundCamera& camera = sighting.camera;
        const bool isInRange = range == SearchRange::Network || camera.isNamed ||
                               IsSameSubnet(camera.identity.ip, adapter.ip, adapter.mask);
        if (now - sighting.last <= kSilence && isInRange) {
            cameras.push_back(camera);
        }
    }
    return cameras;
}

}  // namespace OvGige
