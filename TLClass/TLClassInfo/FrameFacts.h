#pragma once
/// The facts of a frame that the records of an application have.

#include "TLClassInfo/InfoRecords.h"
#include "TLClassLoadTL/GenTLLib.h"

namespace OVTLClass {

/// Asks the producer for those of the facts which the record doesn't have yet: in one call where
/// the producer has it, else one after the other. What it refuses stays blank and invalid.
void CompleteFrameFacts(const CGenTLLib& lib, void* stream, void* buffer, BUFFER_INFO& info);

}  // namespace OVTLClass
