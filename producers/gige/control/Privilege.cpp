#include "gige/control/Privilege.h"

#include <optional>

#include "gige/protocol/Bootstrap.h"

namespace OvGige {
namespace {

using OvProducer::Failure;
using std::chrono::milliseconds;

/// Between two tries to take over an abandoned camera.
constexpr milliseconds kRetryPause{100};

std::optional<Endpoint> OwnerOf(CameraMemory& camera) {
    if ((camera.Capability() & kOffersOwner) == 0) {
        return {};
    }
    return Endpoint{.ip = {camera.ReadRegister(kRegOwnerIp)},
                    .port = static_cast<uint16_t>(camera.ReadRegister(kRegOwnerPort))};
}

[[noreturn]] void ThrowInUse(const std::optional<Endpoint>& owner) {
    throw Failure(GenTL::GC_ERR_ACCESS_DENIED,
                  owner && !owner->ip.IsNone()
                      ? "The camera is in use by " + TextOf(*owner)
                      : std::string("The camera is in use; it doesn't say by whom"));
}

bool TryTake(CameraMemory& camera, Access access) {
    try {
        camera.WriteRegister(kRegPrivilege,
                             access == Access::Exclusive ? kPrivilegeExclusive : kPrivilegeControl);
        return true;
    } catch (const Refusal& refusal) {
        if (refusal.GetStatus() != Status::AccessDenied) {
            throw;
        }
        return false;
    }
}

/// The owner of a camera that refuses everything to others can't be read either.
std::optional<Endpoint> OwnerIfReadable(CameraMemory& camera) {
    try {
        return OwnerOf(camera);
    } catch (const Refusal&) {
        return {};
    }
}

/// How long a camera waits for its owner, or most cameras do if this one doesn't say it.
milliseconds HeartbeatTimeout(CameraMemory& camera) {
    try {
        return milliseconds(camera.ReadRegister(kRegHeartbeatTimeout));
    } catch (const Refusal&) {
        return milliseconds(kUsualHeartbeatTimeout);
    }
}

/// A camera may be read unless another host has it exclusively. Some refuse to say so.
void RequireReadable(CameraMemory& camera) {
    try {
        if ((camera.ReadRegister(kRegPrivilege) & kPrivilegeExclusive) == 0) {
            return;
        }
    } catch (const Refusal& refusal) {
        if (refusal.GetStatus() != Status::AccessDenied) {
            throw;
        }
        ThrowInUse({});
    }
    ThrowInUse(OwnerIfReadable(camera));
}

}  // namespace

void TakeAccess(CameraMemory& camera, Access access, const IsAbandoned& isAbandoned,
                const std::function<void(milliseconds)>& pause) {
    if (access == Access::ReadOnly) {
        RequireReadable(camera);
        return;
    }
    std::optional<milliseconds> left;
    while (!TryTake(camera, access)) {
        const auto owner = OwnerIfReadable(camera);
        if (!owner || !isAbandoned(*owner)) {
            ThrowInUse(owner);
        }
        if (!left) {
            // One pause more than the time-out, since the camera looks at it now and then.
            left = HeartbeatTimeout(camera) + kRetryPause;
        }
        if (left->count() <= 0) {
            ThrowInUse(owner);
        }
        pause(kRetryPause);
        *left -= kRetryPause;
    }
}

void ReleaseAccess(CameraMemory& camera) noexcept {
    try {
        camera.WriteRegister(kRegPrivilege, 0);
    } catch (const std::exception&) {  // NOLINT(bugprone-empty-catch): see the header
    }
}

}  // namespace OvGige
