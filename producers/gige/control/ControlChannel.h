#pragma once
/// Commands to a camera, each with its answer.

#include <atomic>
#include <chrono>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>

#include "framework/Failure.h"
#include "gige/control/DatagramLink.h"
#include "gige/protocol/ControlPacket.h"

namespace OvGige {

/// A camera refused a command.
class Refusal : public OvProducer::Failure {
public:
    Refusal(Status status, const std::string& what);
    Status GetStatus() const noexcept { return m_status; }

private:
    Status m_status;
};

/// How long a command may take. A command is sent `tries` times at most, and each try waits
/// `timeout` for its answer.
struct Patience {
    std::chrono::milliseconds timeout{500};
    int tries = 3;
};

/// What happened on the channel.
struct ControlCounters {
    uint64_t commands = 0;
    uint64_t repeats = 0;    ///< commands sent again
    uint64_t ignored = 0;    ///< packets that weren't the awaited answer
    uint64_t pendings = 0;   ///< answers that asked for patience
    uint64_t abandoned = 0;  ///< commands without any answer
};

/// One command at a time is on its way; those of other threads wait. All functions may be
/// called from any thread.
class ControlChannel {
public:
    /// @param firstRequest  number of the first command; not 0
    ControlChannel(std::unique_ptr<DatagramLink> link, uint16_t firstRequest);

    /// Sends a command and returns the payload of its answer. A repeated command has the same
    /// number and bytes, so that a camera may notice the repetition; a write whose answer was
    /// lost may still be done twice.
    /// @throws Refusal if the camera answers with another status than success,
    ///         OvProducer::Failure GC_ERR_TIMEOUT if it doesn't answer, GC_ERR_ABORT once the
    ///         channel is abandoned
    /// @param limit  for how long an answer is awaited at most, from when the command is sent
    ///               first; without one, the patience alone decides
    Bytes Exchange(Command command, ByteView payload, uint8_t extraFlags = 0,
                   std::optional<std::chrono::milliseconds> limit = {});

    /// Fails the command that is on its way, and those to come: nobody waits for a camera that
    /// is known to be gone.
    void Abandon();
    /// Lets commands through again.
    void Resume();
    /// The patience of the commands that begin from now on.
    void SetPatience(Patience patience);
    ControlCounters Counters() const;
    /// When the camera answered last, whatever it answered.
    Clock::time_point LastAnswer() const;

private:
    struct Awaited;

    uint16_t TakeRequestId();
    std::optional<Bytes> Try(const Awaited& awaited, ByteView packet);
    std::optional<Bytes> Await(const Awaited& awaited);
    bool IsFor(const AnswerPacket& answer, const Awaited& awaited) const;

    void RequireLink() const;

    const std::unique_ptr<DatagramLink> m_link;
    std::atomic<bool> m_isAbandoned = false;
    mutable std::mutex m_exchange;  // held for a whole command
    uint16_t m_nextRequest;
    mutable std::mutex m_state;  // guards what follows; held for a look
    Patience m_patience;
    ControlCounters m_counters;
    Clock::time_point m_lastAnswer;
};

}  // namespace OvGige
