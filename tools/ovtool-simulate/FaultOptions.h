#pragma once
/// What simulated cameras do wrong, as the command line says it.

#include "simulator/Faults.h"

namespace CLI {
class App;
}

/// Adds them to a command, as groups of its help. Nothing given: nothing is wrong.
void AddFaultOptions(CLI::App& command, OvSimulator::Faults& faults);
