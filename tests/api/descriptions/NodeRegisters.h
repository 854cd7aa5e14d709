#pragma once
/// The registers of a camera's nodes.

#include <cstdint>
#include <vector>

#include "GenApi/INode.h"
#include "GenApi/IRegister.h"
#include "producer/MadeUpMemory.h"

/// The registers from which a node's value, its limits, its access and its entries are
/// read, the nearest first.
std::vector<GenApi_3_0_ORVANE::IRegister*> SourceRegistersOf(GenApi_3_0_ORVANE::INode& node);

/// Whether all that a node's value comes from is in registers. What a node keeps itself is
/// as the description says after each opening.
bool IsInRegisters(GenApi_3_0_ORVANE::INode& node);

/// Writes a number without regard to access and limits, as a device does.
void Put(GenApi_3_0_ORVANE::IRegister& reg, int64_t number);

/// Writes a number, or the largest half, quarter and so on of it that the register takes.
void PutAtMost(GenApi_3_0_ORVANE::IRegister& reg, int64_t number);

/// Writes a text, which ends with a zero so that what follows doesn't count.
void PutText(GenApi_3_0_ORVANE::IRegister& reg, OvTest::MadeUpMemory& memory);
