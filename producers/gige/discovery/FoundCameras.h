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

/// Who uses a camera, as it says itself.
enum class CameraUse {
    Unknown,  ///< it hasn't said
    Free,
    Controlled,  ///< others may read
    Exclusive,   ///< others get nothing
};

/// A camera that has answered a search.
struct FoundCamera {
    Identity identity;
    Endpoint endpoint;     ///< where it listens
    bool isNamed = false;  ///< whether it answered at an address that the user named
    CameraUse use = CameraUse::Unknown;
};

/// The cameras of one adapter by their MAC addresses. Any thread may use it.
class FoundCameras {
public:
    using Time = std::chrono::steady_clock::time_point;

    /// A camera that hasn't answered for so long isn't there any more.
    static constexpr std::chrono::seconds kSilence{3};

    /// Notes an answer. What the camera said before is replaced, except its use, which it says
    /// by another answer.
    void Note(const FoundCamera& camera, Time now);
    /// Notes what the camera at this place says of its use.
    void NoteUse(const Endpoint& endpoint, CameraUse use);
    /// Cameras that answered lately, in the order of their MAC addresses.
    /// @param adapter  whose subnet `SearchRange::Subnet` means. A camera at an address that the
    ///                 user named can be reached from any subnet
    std::vector<FoundCamera> List(const Adapter& adapter, SearchRange range, Time now) const;

private:
    struct Sighting {
        FoundCamera camera;
        Time last;
    };

    mutable std::mutex m_mutex;
    std::map<MacAddress, Sighting> m_cameras;
};

}  // namespace OvGige
