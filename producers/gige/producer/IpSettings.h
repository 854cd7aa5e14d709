#pragma once
/// How a camera gets its address at its starts.

#include <cstdint>
#include <string>

#include "gige/control/CameraMemory.h"
#include "gige/protocol/Address.h"
#include "gige/protocol/Bootstrap.h"

namespace OvGige {

struct IpSettings {
    uint32_t mode = kIpLinkLocal;  ///< a set of `kIpPersistent`, `kIpDhcp` and `kIpLinkLocal`
    Ipv4 ip;                       ///< these three only with `kIpPersistent`
    Ipv4 mask;
    Ipv4 gateway;          ///< none where the camera shall reach its own subnet only
    std::string userName;  ///< empty: the camera keeps its name
};

/// @throws OvProducer::Failure GC_ERR_INVALID_PARAMETER for addresses that a camera can't have
void RequireAddress(Ipv4 ip, Ipv4 mask, Ipv4 gateway);

/// @throws OvProducer::Failure GC_ERR_INVALID_PARAMETER for settings that no camera can have
void RequireSense(const IpSettings& settings);

/// Writes settings that make sense, and reads them back.
/// @throws OvProducer::Failure GC_ERR_NOT_IMPLEMENTED if the camera doesn't offer one of them, of
///         which none is written then; GC_ERR_IO if it keeps something else
void WriteIpSettings(CameraMemory& camera, const IpSettings& settings);

}  // namespace OvGige
