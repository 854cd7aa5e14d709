#include "gige/producer/AddressChange.h"

#include <chrono>
#include <functional>
#include <utility>

#include "framework/Failure.h"
#include "gige/discovery/AdapterSearch.h"

namespace OvGige {
namespace {

using namespace std::chrono_literals;
using OvProducer::Failure;
using std::chrono::milliseconds;
using std::chrono::steady_clock;

/// A camera looks for a few seconds whether others have the address already, and one that asks
/// a server for it takes longer.
constexpr milliseconds kForcedTime = 6s;
constexpr milliseconds kRestartTime = 15s;
constexpr milliseconds kSettingsTime = 3s;

/// How often it is looked for a proof.
constexpr milliseconds kSlice = 250ms;
/// After so many slices without an answer, the command may have been lost.
constexpr int kSlicesPerCommand = 8;

using IsProof = std::function<bool(const Identity&)>;

/// A search by sockets of its own: that of the list may be running, and may be stopped.
class Proof {
public:
    Proof(const Adapter& adapter, const FoundCamera& camera)
        : m_adapter(adapter),
          m_camera(camera),
          m_search(adapter, camera.endpoint.port),
          m_targets{.limitedBroadcast = true, .directedBroadcast = true, .cameras = {}} {
        if (camera.isNamed) {
            AlsoAsk(camera.endpoint.ip);
        }
    }

    /// For cameras that no broadcast reaches.
    void AlsoAsk(Ipv4 ip) { m_targets.cameras.push_back({ip, m_camera.endpoint.port}); }

    /// Sends the command to everybody, but first of all to the address that the user named, which
    /// may be beyond the reach of a broadcast. The camera shall get it only once.
    void Send(Command command, ByteView payload) {
        const bool isFirst = !std::exchange(m_isSent, true);
        const Endpoint to = isFirst && m_camera.isNamed
                                ? m_camera.endpoint
                                : Endpoint{kEverybody, m_camera.endpoint.port};
        if (m_search.SendToEach(command, payload, {to}) == 0) {
            throw Failure(GenTL::GC_ERR_IO, "Nothing can be sent by " + m_adapter.name);
        }
    }

    /// Searches for a moment. Notes the camera and returns true if its answer is a proof.
    bool Look(const IsProof& isProof, FoundCameras& found) {
        FoundCameras answers;
        m_search.Run(kSlice, m_targets, answers);
        for (const FoundCamera& answer :
             answers.List(m_adapter, SearchRange::Network, steady_clock::now())) {
            if (answer.identity.mac == m_camera.identity.mac && isProof(answer.identity)) {
                found.Note(answer, steady_clock::now());
                return true;
            }
        }
        return false;
    }

private:
    const Adapter& m_adapter;
    const FoundCamera& m_camera;
    AdapterSearch m_search;
    SearchTargets m_targets;
    bool m_isSent = false;
};

}  // namespace

// A forced address is sent again now and then, since broadcasts get lost; taking the same
// address twice changes nothing.
void ForceCameraAddress(const Adapter& adapter, const FoundCamera& camera,
                        const ForcedAddress& forced, FoundCameras& found) {
    const bool isRestart = forced.ip.IsNone();
    Proof proof(adapter, camera);
    if (!isRestart) {
        RequireAddress(forced.ip, forced.mask, forced.gateway);
        if (camera.isNamed) {
            proof.AlsoAsk(forced.ip);
        }
    }
    const Bytes payload = BuildForcedAddress(forced);
    const auto isProof = [&](const Identity& identity) {
        return isRestart || identity.ip == forced.ip;
    };
    const auto end = steady_clock::now() + (isRestart ? kRestartTime : kForcedTime);
    for (int slice = 0; steady_clock::now() < end; ++slice) {
        if (slice % kSlicesPerCommand == 0) {
            proof.Send(Command::ForceIp, payload);
        }
        if (proof.Look(isProof, found)) {
            return;
        }
    }
    throw Failure(GenTL::GC_ERR_TIMEOUT,
                  isRestart ? "The camera hasn't answered since it was told to configure its "
                              "address anew; asking a server may take it a minute"
                            : "The camera doesn't answer with the address " + TextOf(forced.ip) +
                                  "; one that somebody has opened keeps the address that it has");
}

void ProveSettings(const Adapter& adapter, const FoundCamera& camera, const IpSettings& settings,
                   FoundCameras& found) {
    constexpr uint32_t kModes = kIpPersistent | kIpDhcp | kIpLinkLocal;
    Proof proof(adapter, camera);
    const auto isProof = [&](const Identity& identity) {
        // Some cameras leave out the bit that is always on.
        return ((identity.currentIpConfig | kIpLinkLocal) & kModes) == settings.mode &&
               (settings.userName.empty() || identity.userName == settings.userName);
    };
    const auto end = steady_clock::now() + kSettingsTime;
    do {
        if (proof.Look(isProof, found)) {
            return;
        }
    } while (steady_clock::now() < end);
    throw Failure(GenTL::GC_ERR_TIMEOUT,
                  "The camera took the settings, but doesn't say so when it is searched for");
}

}  // namespace OvGige
