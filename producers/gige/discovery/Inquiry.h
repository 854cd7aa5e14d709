#pragma once
/// The question to one camera who it is.

#include <optional>

#include "gige/discovery/FoundCameras.h"

namespace OvGige {

/// Asks whoever listens at the place. Nothing is returned if nobody answers, or the adapter
/// doesn't lead there.
std::optional<FoundCamera> Inquire(const Adapter& adapter, const Endpoint& endpoint);

}  // namespace OvGige
