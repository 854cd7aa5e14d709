#include "gige/protocol/Gvcp.h"

#include <algorithm>
#include <array>

namespace OvGige {
namespace {

struct StatusName {
    Status status;
    const char* name;
};

constexpr auto kNames = std::to_array<StatusName>({
    {Status::Success, "success"},
    {Status::PacketResend, "packet resent"},
    {Status::NotImplemented, "not implemented"},
    {Status::InvalidParameter, "invalid parameter"},
    {Status::InvalidAddress, "no such register"},
    {Status::WriteProtect, "the register is read-only"},
    {Status::BadAlignment, "bad alignment"},
    {Status::AccessDenied, "access denied"},
    {Status::Busy, "busy"},
    {Status::PacketUnavailable, "packet unavailable"},
    {Status::DataOverrun, "data overrun"},
    {Status::InvalidHeader, "invalid header"},
    {Status::PacketNotYetAvailable, "packet not yet available"},
    {Status::PacketAndPreviousRemoved, "packet and those before it removed from memory"},
    {Status::PacketRemoved, "packet removed from memory"},
    {Status::NoReferenceTime, "no reference time"},
    {Status::PacketTemporarilyUnavailable, "packet temporarily unavailable"},
    {Status::Overflow, "queue of scheduled actions full"},
    {Status::ActionLate, "the action's time is past"},
    {Status::LeaderTrailerOverflow, "leader or trailer too large"},
    {Status::Error, "unspecified error"},
});

}  // namespace

const char* NameOf(Status status) {
    const auto* const found =
        std::find_if(kNames.begin(), kNames.end(),
                     [status](const StatusName& entry) { return entry.status == status; });
    return found == kNames.end() ? "unknown status" : found->name;
}

}  // namespace OvGige
