#pragma once
/// The search for cameras by one adapter.

#include <chrono>
#include <cstdint>
#include <mutex>
#include <optional>
#include <vector>

#include "gige/discovery/FoundCameras.h"
#include "gige/net/Adapters.h"
#include "gige/net/UdpSocket.h"
#include "gige/net/WakeFile.h"
#include "gige/protocol/ControlPacket.h"

namespace OvGige {

/// What a search sends to.
struct SearchTargets {
    bool limitedBroadcast = true;   ///< 255.255.255.255
    bool directedBroadcast = true;  ///< that of the adapter's subnet
    std::vector<Endpoint> cameras;  ///< named by the user, such as those beyond routers
};

struct SearchCounters {
    uint64_t sent = 0;
    uint64_t answers = 0;   ///< to searches
    uint64_t uses = 0;      ///< answers to the question who uses a camera
    uint64_t ignored = 0;   ///< packets that are no such answers
    uint64_t failures = 0;  ///< times that the adapter refused to send
};

/// The socket stays between searches, so that an answer that comes too late for one of them
/// counts for the next.
class AdapterSearch {
public:
    /// @param cameraPort  port that cameras listen on
    explicit AdapterSearch(Adapter adapter, uint16_t cameraPort);

    const Adapter& GetAdapter() const { return m_adapter; }

    /// Searches and notes what answers: at least once, and always takes the whole time, even if the
    /// adapter is down, unless `Stop` ends it: how long a search takes says nothing about what it
    /// finds. One search runs at a time; another thread's waits.
    void Run(std::chrono::milliseconds time, const SearchTargets& targets, FoundCameras& found);
    /// Ends the search that runs; one that begins later isn't affected.
    void Stop() const { m_stop.Signal(); }
    /// Sends a command whose answers don't matter, so that they may be broadcast. Must not be
    /// called while a search runs.
    /// @return to how many places it could be sent
    size_t SendToEach(Command command, ByteView payload, const std::vector<Endpoint>& to);
    SearchCounters Counters() const;

private:
    void SendToAll(const SearchTargets& targets);
    bool Send(const Endpoint& to, ByteView packet);
    uint16_t TakeRequestId();
    void TakeIdentity(const Identity& identity, const Endpoint& sender,
                      const SearchTargets& targets, FoundCameras& found);
    bool TakeUse(const AnswerPacket& answer, const Endpoint& sender, FoundCameras& found);
    void CountFailure();
    void Wait(FoundCameras::Time deadline) const;
    std::optional<Datagram> Receive(FoundCameras::Time deadline);
    void Take(const Datagram& datagram, const SearchTargets& targets, FoundCameras& found);

    const Adapter m_adapter;
    const uint16_t m_cameraPort;
    const WakeFile m_stop;
    std::mutex m_search;  // held for a whole search
    std::optional<UdpSocket> m_socket;
    uint16_t m_requestId = 0;
    mutable std::mutex m_state;
    SearchCounters m_counters;
};

}  // namespace OvGige
