#include "simulator/control/CommandServer.h"

#include "gige/protocol/Discovery.h"
#include "gige/protocol/Registers.h"

namespace OvSimulator {
namespace {

using namespace OvGige;

// A datagram has at most 576 bytes with its headers.
constexpr size_t kMemoryMax = 536;
constexpr size_t kReadRegistersMax = 135;
constexpr size_t kWriteRegistersMax = 67;

bool IsAligned(uint32_t address, size_t length) {
    return address % kWord == 0 && length % kWord == 0;
}

/// Who has a camera may always be asked: whoever is refused wants to know.
bool IsAboutControl(uint32_t address) {
    return address == kRegPrivilege || address == kRegOwnerPort || address == kRegOwnerIp;
}

}  // namespace

CommandServer::CommandServer(CameraDevice& device, const ControlFaults& faults, NetworkPlace& place,
                             Account& account)
    : m_device(device), m_faults(faults), m_place(place), m_account(account) {}

Replies CommandServer::Handle(const Arrival& arrival, Clock::time_point now) {
    const auto command = ParseCommand(arrival.packet);
    if (!command) {
        m_account.Add(Count::Ignored);
        return {};
    }
    switch (command->command) {
        case Command::Discovery:
            return Search(arrival, *command);
        case Command::ForceIp:
            return ForceAddress(arrival, *command);
        case Command::PacketResend:
            Resend(*command);
            return {};
        case Command::Action:
            return Act(arrival, *command, now);
        default:
            break;
    }
    if (arrival.wasBroadcast) {
        m_account.Add(Count::Ignored);
        return {};
    }
    return HandleCommand(arrival, *command, now);
}

Replies CommandServer::HandleCommand(const Arrival& arrival, const CommandPacket& command,
                                     Clock::time_point now) {
    m_account.Add(Count::Commands);
    m_ownership.Notice(arrival.sender, now);
    if (const Replies* const known = m_recent.Find(arrival.sender, arrival.packet, now)) {
        m_account.Add(Count::Repeated);
        return *known;
    }
    const Outcome outcome = Run({.sender = arrival.sender, .command = command, .now = now});
    Replies replies;
    if ((command.flags & kFlagAnswerRequired) != 0) {
        replies.push_back({.to = arrival.sender, .packet = Answer(command, outcome)});
    }
    m_recent.Keep(arrival.sender, arrival.packet, replies, now);
    return replies;
}

Bytes CommandServer::Answer(const CommandPacket& command, const Outcome& outcome) {
    if (outcome.status != Status::Success) {
        m_account.Add(Count::Refusals);
    }
    return BuildAnswer({.status = outcome.status,
                        .answer = AnswerTo(command.command),
                        .requestId = command.requestId,
                        .payload = outcome.payload});
}

Replies CommandServer::Route(const Arrival& arrival, uint8_t flags, Bytes packet) const {
    const IpAddresses own = m_device.Addresses();
    if (!arrival.wasBroadcast || IsSameSubnet(arrival.sender.ip, own.ip, own.mask)) {
        return {{.to = arrival.sender, .packet = std::move(packet)}};
    }
    if ((flags & kFlagBroadcastAnswer) != 0) {
        return {{.to = {kEverybody, arrival.sender.port}, .packet = std::move(packet)}};
    }
    return {};
}

Replies CommandServer::Search(const Arrival& arrival, const CommandPacket& command) {
    Replies replies =
        Route(arrival, command.flags, Answer(command, {.payload = m_device.Identity()}));
    m_account.Add(replies.empty() ? Count::Ignored : Count::Discoveries);
    return replies;
}

Replies CommandServer::ForceAddress(const Arrival& arrival, const CommandPacket& command) {
    const auto forced = ParseForcedAddress(command.payload);
    const MacAddress mac = MacAddress::Of(uint64_t{m_device.Bootstrap().Get(kRegMacHigh)} << 32 |
                                          m_device.Bootstrap().Get(kRegMacLow));
    // A camera that somebody uses keeps its address.
    if (!forced || forced->mac != mac || m_ownership.IsHeld()) {
        m_account.Add(Count::Ignored);
        return {};
    }
    m_account.Add(Count::ForcedAddresses);
    if (forced->ip.IsNone()) {
        // The camera starts anew, so there is nobody to answer.
        MoveTo(m_device.StartAddresses());
        return {};
    }
    const Status status =
        IsContiguousMask(forced->mask)
            ? MoveTo({.ip = forced->ip, .mask = forced->mask, .gateway = forced->gateway})
            : Status::InvalidParameter;
    if ((command.flags & kFlagAnswerRequired) == 0) {
        return {};
    }
    return Route(arrival, command.flags, Answer(command, {.status = status}));
}

// Only cameras that are meant answer: an action may be heard by all of a network.
Replies CommandServer::Act(const Arrival& arrival, const CommandPacket& command,
                           Clock::time_point now) {
    const auto request = ParseAction(command.payload, command.flags);
    if (!request || !MayAct(arrival.sender)) {
        m_account.Add(Count::Ignored);
        return {};
    }
    if (const Replies* const known = m_recent.Find(arrival.sender, arrival.packet, now)) {
        m_account.Add(Count::Repeated);
        return *known;
    }
    const auto status = m_actions.Take(*request);
    if (!status) {
        m_account.Add(Count::ActionsOfOthers);
        return {};
    }
    Replies replies;
    if ((command.flags & kFlagAnswerRequired) != 0) {
        replies = Route(arrival, 0, Answer(command, {.status = *status}));
    }
    m_recent.Keep(arrival.sender, arrival.packet, replies, now);
    return replies;
}

// The sender has a port of its own: one command is for many cameras, which have control channels
// of their own with the same host.
bool CommandServer::MayAct(const Endpoint& sender) const {
    return (m_device.Bootstrap().Get(kRegControlConfig) & kConfigUnconditionalAction) != 0 ||
           (m_ownership.IsHeld() && m_ownership.Owner().ip == sender.ip);
}

void CommandServer::Resend(const CommandPacket& command) {
    const auto request = ParseResend(command.payload, command.flags);
    if (!request || request->channel != 0) {
        m_account.Add(Count::Ignored);
        return;
    }
    m_account.Add(Count::ResendCommands);
    if (request->firstPacket <= request->lastPacket) {
        m_account.Add(Count::AskedPackets,
                      uint64_t{request->lastPacket} - request->firstPacket + 1);
    }
    const uint32_t config = m_device.Bootstrap().Get(kRegControlConfig);
    m_place.Resend(*request, (config & kConfigExtendedStatus1) != 0);
}

Status CommandServer::MoveTo(const IpAddresses& addresses) {
    if (!m_place.Move(addresses)) {
        m_account.Add(Count::AddressesRefused);
        return Status::Error;
    }
    m_device.SetAddresses(addresses);
    return Status::Success;
}

CommandServer::Outcome CommandServer::Run(const Asked& asked) {
    switch (asked.command.command) {
        case Command::ReadRegister:
            return ReadRegisters(asked);
        case Command::WriteRegister:
            return WriteRegisters(asked);
        case Command::ReadMemory:
            return ReadMemory(asked);
        case Command::WriteMemory:
            return WriteMemory(asked);
        default:
            return {.status = Status::NotImplemented};
    }
}

CommandServer::Outcome CommandServer::ReadRegisters(const Asked& asked) {
    const auto addresses = ParseNumbers(asked.command.payload);
    if (!addresses || addresses->size() > kReadRegistersMax) {
        return {.status = Status::InvalidParameter};
    }
    Outcome outcome;
    for (const uint32_t address : *addresses) {
        AppendZeros(outcome.payload, kWord);
        outcome.status = Read(asked.sender, address, std::span(outcome.payload).last(kWord));
        if (outcome.status != Status::Success) {
            return {.status = outcome.status};
        }
        m_account.Add(Count::RegisterReads);
    }
    return outcome;
}

CommandServer::Outcome CommandServer::WriteRegisters(const Asked& asked) {
    const auto writes = ParseWrites(asked.command.payload);
    if (!writes || writes->size() > kWriteRegistersMax) {
        return {.status = Status::InvalidParameter, .payload = BuildCount(0)};
    }
    uint16_t done = 0;
    for (const RegisterWrite& write : *writes) {
        Bytes value;
        Append(value, write.value);
        const Status status = Write(asked, write.address, value);
        if (status != Status::Success) {
            return {.status = status, .payload = BuildCount(done)};
        }
        m_account.Add(Count::RegisterWrites);
        ++done;
    }
    return {.payload = BuildCount(done)};
}

CommandServer::Outcome CommandServer::ReadMemory(const Asked& asked) {
    const auto range = ParseRange(asked.command.payload);
    if (!range || range->count == 0 || range->count > kMemoryMax) {
        return {.status = Status::InvalidParameter};
    }
    Bytes bytes(range->count);
    const Status status = Read(asked.sender, range->address, bytes);
    if (status != Status::Success) {
        return {.status = status};
    }
    m_account.Add(Count::MemoryReads);
    return {.payload = BuildMemory({.address = range->address, .bytes = bytes})};
}

CommandServer::Outcome CommandServer::WriteMemory(const Asked& asked) {
    const auto memory = ParseMemory(asked.command.payload);
    if (!memory || memory->bytes.size() > kMemoryMax) {
        return {.status = Status::InvalidParameter, .payload = BuildCount(0)};
    }
    const Status status = Write(asked, memory->address, memory->bytes);
    if (status != Status::Success) {
        return {.status = status, .payload = BuildCount(0)};
    }
    m_account.Add(Count::MemoryWrites);
    return {.payload = BuildCount(static_cast<uint16_t>(memory->bytes.size()))};
}

Status CommandServer::Read(const Endpoint& sender, uint32_t address, std::span<std::byte> out) {
    if (!IsAligned(address, out.size())) {
        return Status::BadAlignment;
    }
    if (!m_ownership.MayRead(sender) && !(IsAboutControl(address) && out.size() == kWord)) {
        return Status::AccessDenied;
    }
    return m_device.Read(address, out);
}

Status CommandServer::Write(const Asked& asked, uint32_t address, ByteView in) {
    if (!IsAligned(address, in.size())) {
        return Status::BadAlignment;
    }
    if (address == kRegPrivilege && in.size() == kWord) {
        return RequestControl(asked, ReadBig<uint32_t>(in));
    }
    if (!m_ownership.MayWrite(asked.sender)) {
        return Status::AccessDenied;
    }
    return m_device.Write(address, in);
}

Status CommandServer::RequestControl(const Asked& asked, uint32_t value) {
    if (m_faults.refusesControl) {
        m_account.Add(Count::ControlRefused);
        return Status::AccessDenied;
    }
    const bool wasHeld = m_ownership.IsHeld();
    const Status status = m_ownership.Request(asked.sender, value, asked.now);
    if (status != Status::Success) {
        m_account.Add(Count::ControlDenied);
        return status;
    }
    if (!wasHeld && m_ownership.IsHeld()) {
        m_account.Add(Count::ControlTaken);
    }
    if (wasHeld && !m_ownership.IsHeld()) {
        m_account.Add(Count::ControlGiven);
        m_device.Release();
    }
    ShowOwner();
    return Status::Success;
}

void CommandServer::ShowOwner() {
    BootstrapRegisters& registers = m_device.Bootstrap();
    const Endpoint owner = m_ownership.Owner();
    registers.Set(kRegPrivilege, m_ownership.Privilege());
    registers.Set(kRegOwnerPort, owner.port);
    registers.Set(kRegOwnerIp, owner.ip.value);
}

std::optional<Clock::time_point> CommandServer::ExpiryTime() const {
    const BootstrapRegisters& registers = m_device.Bootstrap();
    if (!m_ownership.IsHeld() || (registers.Get(kRegControlConfig) & kConfigHeartbeatOff) != 0) {
        return {};
    }
    return m_ownership.LastSign() + std::chrono::milliseconds(registers.Get(kRegHeartbeatTimeout));
}

void CommandServer::Expire(Clock::time_point now) {
    const auto time = ExpiryTime();
    if (time && now >= *time) {
        m_account.Add(Count::ControlLost);
        Forget();
    }
}

void CommandServer::ChangeAddress(Ipv4 address) {
    IpAddresses addresses = m_device.Addresses();
    addresses.ip = address;
    Forget();
    MoveTo(addresses);
}

bool CommandServer::KnowsPatience() const {
    return (m_device.Bootstrap().Get(kRegControlConfig) & kConfigPending) != 0;
}

void CommandServer::Forget() {
    m_ownership.Clear();
    m_recent.Clear();
    m_actions.Forget();
    m_device.Release();
    ShowOwner();
}

}  // namespace OvSimulator
