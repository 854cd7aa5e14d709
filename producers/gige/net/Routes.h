#pragma once
/// The system's routes.

#include "gige/net/Adapters.h"

namespace OvGige {

/// The address of this machine that the system sends from to another address; none without a
/// route.
Ipv4 RouteSource(Ipv4 destination);

/// Whether an address may be reached by way of an adapter: it belongs to the adapter's subnet, or
/// the system's route leads there. To ask by all others would only take time.
bool LeadsTo(const Adapter& adapter, Ipv4 address);

}  // namespace OvGige
