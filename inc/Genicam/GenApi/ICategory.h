#pragma once

#include "GenApi/IValue.h"
#include "GenApi/NodeVector.h"

namespace GenApi_3_0_ORVANE {

struct OV_ENGINE_API ICategory : virtual public IValue {
    virtual void GetFeatures(value_vector& features) = 0;
};

}  // namespace GenApi_3_0_ORVANE
