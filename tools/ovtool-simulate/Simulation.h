#pragma once
/// Cameras that others find on the network.

#include <cstdint>
#include <string>
#include <vector>

#include "simulator/Faults.h"

struct SimulationOptions {
    /// "ADDRESS", with "/BITS" of the subnet and ":PORT" where they aren't the usual ones.
    std::vector<std::string> places = {"127.0.0.1/8"};
    /// Cameras for each place, at addresses that count on from it.
    uint32_t count = 1;
    /// Adapter that the cameras sit on; else the one that has the address.
    std::string adapter;
    bool zipped = true;
    /// File with what the cameras did; empty: none is written.
    std::string account;
    OvSimulator::Faults faults;
};

/// Simulates cameras until Ctrl-C or a request to end. SIGUSR1 has the account written at once.
void Simulate(const SimulationOptions& options, bool json);
