#include "simulator/control/Ownership.h"

#include "gige/protocol/Bootstrap.h"

namespace OvSimulator {

using namespace OvGige;

Status Ownership::Request(const Endpoint& sender, uint32_t value, Clock::time_point now) {
    if (m_owner && !IsOwner(sender)) {
        return Status::AccessDenied;
    }
    if ((value & ~kPrivilegeHeld) != 0) {
        // Handing control on to another application isn't offered.
        return Status::InvalidParameter;
    }
    if (value == 0) {
        m_owner.reset();
    } else {
        m_owner = {.who = sender, .privilege = value, .lastSign = now};
    }
    return Status::Success;
}

void Ownership::Notice(const Endpoint& sender, Clock::time_point now) {
    if (IsOwner(sender)) {
        m_owner->lastSign = now;
    }
}

bool Ownership::MayRead(const Endpoint& sender) const {
    return !m_owner || IsOwner(sender) || (m_owner->privilege & kPrivilegeExclusive) == 0;
}

}  // namespace OvSimulator
