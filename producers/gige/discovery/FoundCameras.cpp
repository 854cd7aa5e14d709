#include "gige/discovery/FoundCameras.h"

namespace OvGige {

void FoundCameras::Note(const Identity& identity, Time now) {
    const std::lock_guard lock(m_mutex);
    m_cameras[identity.mac] = {identity, now};
    // Whoever sends made-up addresses all day must not fill the memory.
    std::erase_if(m_cameras,
                  [now](const auto& entry) { return now - entry.second.last > kSilence; });
}

std::vector<Identity> FoundCameras::List(const Adapter& adapter, SearchRange range,
                                         Time now) const {
    const std::lock_guard lock(m_mutex);
    std::vector<Identity> identities;
    for (const auto& [mac, sighting] : m_cameras) {
        const bool isNear = IsSameSubnet(sighting.identity.ip, adapter.ip, adapter.mask);
        if (now - sighting.last <= kSilence && (isNear || range == SearchRange::Network)) {
            identities.push_back(sighting.identity);
        }
    }
    return identities;
}

}  // namespace OvGige
