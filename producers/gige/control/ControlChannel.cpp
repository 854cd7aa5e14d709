#include "gige/control/ControlChannel.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "gige/protocol/Registers.h"

namespace OvGige {
namespace {

using OvProducer::Failure;

struct CodeOfStatus {
    Status status;
    GenTL::GC_ERROR code;
};

constexpr auto kCodes = std::to_array<CodeOfStatus>({
    {Status::NotImplemented, GenTL::GC_ERR_NOT_IMPLEMENTED},
    {Status::InvalidParameter, GenTL::GC_ERR_INVALID_VALUE},
    {Status::InvalidAddress, GenTL::GC_ERR_INVALID_ADDRESS},
    {Status::WriteProtect, GenTL::GC_ERR_ACCESS_DENIED},
    {Status::BadAlignment, GenTL::GC_ERR_INVALID_ADDRESS},
    {Status::AccessDenied, GenTL::GC_ERR_ACCESS_DENIED},
    {Status::Busy, GenTL::GC_ERR_BUSY},
});

GenTL::GC_ERROR CodeOf(Status status) {
    const auto* const found =
        std::find_if(kCodes.begin(), kCodes.end(),
                     [status](const CodeOfStatus& entry) { return entry.status == status; });
    return found == kCodes.end() ? GenTL::GC_ERR_IO : found->code;
}

std::string HexText(uint16_t number) {
    std::array<char, 4> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number, 16);
    return "0x" + std::string(digits.data(), end.ptr);
}

const char* NameOf(Command command) {
    switch (command) {
        case Command::ReadRegister:
        case Command::ReadMemory:
            return "read";
        case Command::WriteRegister:
        case Command::WriteMemory:
            return "write";
        default:
            return "command";
    }
}

}  // namespace

Refusal::Refusal(Status status, const std::string& what)
    : Failure(CodeOf(status), "The camera refused a " + what + ": " + OvGige::NameOf(status) +
                                  " (" + HexText(static_cast<uint16_t>(status)) + ")"),
      m_status(status) {}

struct ControlChannel::Awaited {
    Command command;
    uint16_t requestId;
    std::chrono::milliseconds timeout;
    Clock::time_point end;  ///< when it isn't awaited any more
};

ControlChannel::ControlChannel(std::unique_ptr<DatagramLink> link, uint16_t firstRequest)
    : m_link(std::move(link)), m_nextRequest(firstRequest) {}

Bytes ControlChannel::Exchange(Command command, ByteView payload, uint8_t extraFlags,
                               std::optional<std::chrono::milliseconds> limit) {
    const std::lock_guard exchange(m_exchange);
    Patience patience;
    {
        const std::lock_guard lock(m_state);
        patience = m_patience;
        ++m_counters.commands;
    }
    const Clock::time_point end = limit ? m_link->Now() + *limit : Clock::time_point::max();
    const Awaited awaited{command, TakeRequestId(), patience.timeout, end};
    const Bytes packet =
        BuildCommand({.flags = static_cast<uint8_t>(kFlagAnswerRequired | extraFlags),
                      .command = command,
                      .requestId = awaited.requestId,
                      .payload = payload});
    int attempt = 0;
    for (; attempt < patience.tries && (attempt == 0 || m_link->Now() < end); ++attempt) {
        RequireLink();
        if (attempt > 0) {
            const std::lock_guard lock(m_state);
            ++m_counters.repeats;
        }
        if (auto answer = Try(awaited, packet)) {
            return *std::move(answer);
        }
    }
    RequireLink();
    const std::lock_guard lock(m_state);
    ++m_counters.abandoned;
    throw Failure(GenTL::GC_ERR_TIMEOUT, std::string("The camera doesn't answer a ") +
                                             NameOf(command) + ": " + std::to_string(attempt) +
                                             " tries of " +
                                             std::to_string(patience.timeout.count()) + " ms");
}

void ControlChannel::Abandon() {
    m_isAbandoned = true;
    m_link->Cancel();
}

void ControlChannel::Resume() {
    m_link->Resume();
    m_isAbandoned = false;
}

void ControlChannel::RequireLink() const {
    if (m_isAbandoned) {
        throw Failure(GenTL::GC_ERR_ABORT, "The connection to the camera has ended");
    }
}

uint16_t ControlChannel::TakeRequestId() {
    const uint16_t id = m_nextRequest;
    // 0 is no request.
    m_nextRequest = NextRequestId(id);
    return id;
}

std::optional<Bytes> ControlChannel::Try(const Awaited& awaited, ByteView packet) {
    m_link->Send(packet);
    return Await(awaited);
}

// An answer that comes late, to an earlier try or command, neither ends the wait nor extends
// it: a camera that chatters must not hold the channel.
std::optional<Bytes> ControlChannel::Await(const Awaited& awaited) {
    Clock::time_point deadline = std::min(m_link->Now() + awaited.timeout, awaited.end);
    while (const auto packet = m_link->Receive(deadline)) {
        const auto answer = ParseAnswer(*packet);
        const bool isOurs = answer && IsFor(*answer, awaited);
        const auto pause = isOurs && answer->answer == kPendingAnswer ? ParseCount(answer->payload)
                                                                      : std::optional<uint16_t>();
        const std::lock_guard lock(m_state);
        if (!isOurs) {
            ++m_counters.ignored;
            continue;
        }
        m_lastAnswer = Clock::now();
        if (answer->answer == kPendingAnswer) {
            ++m_counters.pendings;
            const std::chrono::milliseconds wanted{pause.value_or(0)};
            deadline = m_link->Now() + std::max(wanted, awaited.timeout);
            continue;
        }
        if (answer->status != Status::Success) {
            throw Refusal(answer->status, NameOf(awaited.command));
        }
        return Bytes(answer->payload.begin(), answer->payload.end());
    }
    return {};
}

bool ControlChannel::IsFor(const AnswerPacket& answer, const Awaited& awaited) const {
    return answer.requestId == awaited.requestId &&
           (answer.answer == AnswerTo(awaited.command) || answer.answer == kPendingAnswer);
}

void ControlChannel::SetPatience(Patience patience) {
    const std::lock_guard lock(m_state);
    m_patience = patience;
}

Clock::time_point ControlChannel::LastAnswer() const {
    const std::lock_guard lock(m_state);
    return m_lastAnswer;
}

ControlCounters ControlChannel::Counters() const {
    const std::lock_guard lock(m_state);
    return m_counters;
}

}  // namespace OvGige
