#pragma once
/// Which cameras have been heard of, and when.

#include <chrono>
#include <map>
#include <mutex>
#include <vector>

#include "gige/net/Adapters.h"
#include "gige/protocol/Discovery.h"

namespace OvGige {

/// How far a search reaches.
enum class SearchRange {
    Subnet,   ///< cameras with an address of the adapter's subnet
    Network,  ///< all that hear the adapter, whatever their address
};

/// The cameras of one adapter by their MAC addresses. Any thread may use it.
class FoundCameras {
public:
    using Time = std::chrono::steady_clock::time_point;

    /// A camera that hasn't answered for so long isn't there any more.
    static constexpr std::chrono::seconds kSilence{3};

    /// Notes an answer. What the camera said before is replaced.
    void Note(const Identity& identity, Time now);
    /// Cameras that answered lately, in the order of their MAC addresses.
    /// @param adapter  whose subnet `SearchRange::Subnet` means
    std::vector<Identity> List(const Adapter& adapter, SearchRange range, Time now) const;

private:
    struct Sighting {
        Identity identity;
        Time last;
    };

    mutable std::mutex m_mutex;
    std::map<MacAddress, Sighting> m_cameras;
};

}  // namespace OvGige
