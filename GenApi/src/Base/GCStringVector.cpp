#include "Base/GCStringVector.h"

namespace GenICam_3_0_ORVANE {

gcstring_vector::~gcstring_vector() = default;

}  // namespace GenICam_3_0_ORVANE
