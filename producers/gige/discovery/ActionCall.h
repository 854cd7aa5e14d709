#pragma once
/// Action commands from an adapter to all cameras of its network, or to some.

#include <chrono>
#include <vector>

#include "gige/net/Adapters.h"
#include "gige/protocol/Action.h"
#include "gige/protocol/Gvcp.h"

namespace OvGige {

/// What a camera that was meant said.
struct ActionAnswer {
    Endpoint camera;
    Status status{};

    bool operator==(const ActionAnswer&) const = default;
};

struct ActionCommand {
    ActionRequest request;
    uint16_t requestId = 0;
};

/// Where to send an action so that each camera hears it once: one that heard it twice might do
/// twice what it is told.
/// @param destination  a broadcast address, or that of a camera
/// @param named        places of cameras that the user named
std::vector<Endpoint> TargetsOfAction(const Adapter& adapter, Ipv4 destination,
                                      const std::vector<Endpoint>& named);

/// Sends the command once to each of the places, since not every camera knows a repetition, and
/// takes answers for so long. Without that time none is asked for.
/// @return the first answer of each camera
/// @throws OvProducer::Failure GC_ERR_IO if it can be sent to none of them
std::vector<ActionAnswer> CallAction(const Adapter& adapter, const std::vector<Endpoint>& targets,
                                     const ActionCommand& command, std::chrono::milliseconds time);

}  // namespace OvGige
