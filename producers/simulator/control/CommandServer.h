#pragma once
/// What a simulated camera answers to commands.

#include <optional>
#include <vector>

#include "gige/protocol/ControlPacket.h"
#include "gige/protocol/GvspResend.h"
#include "simulator/Account.h"
#include "simulator/control/ActionSignals.h"
#include "simulator/control/Ownership.h"
#include "simulator/control/RecentCommands.h"
#include "simulator/device/CameraDevice.h"

namespace OvSimulator {

/// A packet from anyone.
struct Arrival {
    OvGige::Endpoint sender;
    bool wasBroadcast = false;
    OvGige::ByteView packet;
};

/// The camera's place on the network.
class NetworkPlace {
public:
    virtual ~NetworkPlace() = default;
    /// Gives the camera other addresses. False if this machine doesn't allow it; the camera
    /// keeps its addresses then.
    virtual bool Move(const IpAddresses& addresses) = 0;
    /// Sends packets of the camera's frames again.
    /// @param saysMore  whether the host understands why a packet can't be had
    virtual void Resend(const OvGige::ResendRequest& request, bool saysMore) = 0;
};

/// Knows no sockets and no threads. Used by one thread at a time.
class CommandServer {
public:
    CommandServer(CameraDevice& device, const ControlFaults& faults, NetworkPlace& place,
                  Account& account);

    /// @return the packets that answer; none for what isn't for this camera
    Replies Handle(const Arrival& arrival, Clock::time_point now);

    /// Takes control away from an owner who has been silent for too long.
    void Expire(Clock::time_point now);
    /// When `Expire` would do so, unless the owner is heard of before.
    std::optional<Clock::time_point> ExpiryTime() const;
    /// Does scheduled actions that are due.
    void RunDueActions() { m_actions.RunDue(); }
    /// When `RunDueActions` has something to do.
    std::optional<Clock::time_point> ActionTime(Clock::time_point now) const {
        return m_actions.DueTime(now);
    }
    /// Whether hosts understand that an answer takes longer.
    bool KnowsPatience() const;
    /// Takes another address of the same subnet, as a camera does whose server of addresses has
    /// changed its mind; whoever had control has lost it.
    void ChangeAddress(OvGige::Ipv4 address);
    /// Forgets who has control, as without power.
    void Forget();

private:
    /// What a command came to.
    struct Outcome {
        OvGige::Status status = OvGige::Status::Success;
        OvGige::Bytes payload = {};
    };
    struct Asked {
        const OvGige::Endpoint& sender;
        const OvGige::CommandPacket& command;
        Clock::time_point now;
    };

    Replies HandleCommand(const Arrival& arrival, const OvGige::CommandPacket& command,
                          Clock::time_point now);
    Replies Search(const Arrival& arrival, const OvGige::CommandPacket& command);
    Replies ForceAddress(const Arrival& arrival, const OvGige::CommandPacket& command);
    Replies Act(const Arrival& arrival, const OvGige::CommandPacket& command,
                Clock::time_point now);
    bool MayAct(const OvGige::Endpoint& sender) const;
    void Resend(const OvGige::CommandPacket& command);
    OvGige::Status MoveTo(const IpAddresses& addresses);
    /// To a host that the camera can't reach by its address, only a broadcast gets through.
    Replies Route(const Arrival& arrival, uint8_t flags, OvGige::Bytes packet) const;

    Outcome Run(const Asked& asked);
    Outcome ReadRegisters(const Asked& asked);
    Outcome WriteRegisters(const Asked& asked);
    Outcome ReadMemory(const Asked& asked);
    Outcome WriteMemory(const Asked& asked);
    OvGige::Status Read(const OvGige::Endpoint& sender, uint32_t address, std::span<std::byte> out);
    OvGige::Status Write(const Asked& asked, uint32_t address, OvGige::ByteView in);
    OvGige::Status RequestControl(const Asked& asked, uint32_t value);
    void ShowOwner();
    OvGige::Bytes Answer(const OvGige::CommandPacket& command, const Outcome& outcome);

    CameraDevice& m_device;
    const ControlFaults m_faults;
    NetworkPlace& m_place;
    Account& m_account;
    Ownership m_ownership;
    ActionSignals m_actions{m_device, m_account};
    RecentCommands m_recent;
};

}  // namespace OvSimulator
