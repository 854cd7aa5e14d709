#pragma once

#include "GenApi/IValue.h"
#include "GenApi/NodeVector.h"

namespace GenApi_3_0_ORVANE {

/// A group of features and of further categories. Those of a device form a tree below "Root".
struct OV_ENGINE_API ICategory : virtual public IValue {
    /// Replaces the list with what the group holds, in the order of the description. The map owns
    /// it.
    virtual void GetFeatures(value_vector& features) = 0;
};

}  // namespace GenApi_3_0_ORVANE
