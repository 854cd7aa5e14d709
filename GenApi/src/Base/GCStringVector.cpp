// The table of virtual operations of the vector of texts is here, and in no program that uses it.

#include "Base/GCStringVector.h"

namespace GenICam_3_0_ORVANE {

gcstring_vector::~gcstring_vector() = default;

}  // namespace GenICam_3_0_ORVANE
