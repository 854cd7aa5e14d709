#pragma once
/// Changes of a camera's address, each proved by a new search.

#include "gige/discovery/FoundCameras.h"
#include "gige/producer/IpSettings.h"
#include "gige/protocol/Discovery.h"

namespace OvGige {

/// Gives the camera another address until its next start, or, with the address 0.0.0.0, makes it
/// configure its address anew.
/// @param found  where the answer is noted that proves the change
/// @throws OvProducer::Failure GC_ERR_INVALID_PARAMETER for addresses that a camera can't have,
///         GC_ERR_IO if nothing can be sent, GC_ERR_TIMEOUT if the camera doesn't answer with
///         the new address
void ForceCameraAddress(const Adapter& adapter, const FoundCamera& camera,
                        const ForcedAddress& forced, FoundCameras& found);

/// Waits until the camera says in an answer to a search that it has the settings.
/// @throws OvProducer::Failure GC_ERR_TIMEOUT if it doesn't
void ProveSettings(const Adapter& adapter, const FoundCamera& camera, const IpSettings& settings,
                   FoundCameras& found);

}  // namespace OvGige
