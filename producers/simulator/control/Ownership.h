#pragma once
/// Which application has control of a camera, and what others may do meanwhile.

#include <cstdint>
#include <optional>

#include "gige/protocol/Address.h"
#include "gige/protocol/Gvcp.h"
#include "simulator/Clock.h"

namespace OvSimulator {

/// An application is known by address and port. Times are parameters, so that whoever has
/// this decides what time it is.
class Ownership {
public:
    /// A write of the privilege register.
    OvGige::Status Request(const OvGige::Endpoint& sender, uint32_t value, Clock::time_point now);
    /// Any command is a sign of life of the owner.
    void Notice(const OvGige::Endpoint& sender, Clock::time_point now);
    void Clear() { m_owner.reset(); }

    bool MayRead(const OvGige::Endpoint& sender) const;
    bool MayWrite(const OvGige::Endpoint& sender) const { return IsOwner(sender); }
    bool IsHeld() const { return m_owner.has_value(); }

    /// What the registers say.
    uint32_t Privilege() const { return m_owner ? m_owner->privilege : 0; }
    OvGige::Endpoint Owner() const { return m_owner ? m_owner->who : OvGige::Endpoint(); }
    Clock::time_point LastSign() const { return m_owner ? m_owner->lastSign : Clock::time_point(); }

private:
    struct Holder {
        OvGige::Endpoint who;
        uint32_t privilege;
        Clock::time_point lastSign;
    };

    bool IsOwner(const OvGige::Endpoint& sender) const { return m_owner && m_owner->who == sender; }

    std::optional<Holder> m_owner;
};

}  // namespace OvSimulator
