#pragma once

#include "GenApi/IBase.h"
#include "GenApi/NodeVector.h"

namespace GenApi_3_0_ORVANE {

/// A feature whose value decides what others show.
struct OV_ENGINE_API ISelector : virtual public IBase {
    virtual bool IsSelector() = 0;
    virtual void GetSelectedFeatures(value_vector& list) = 0;
    /// The features that decide what this one shows.
    virtual void GetSelectingFeatures(value_vector& list) = 0;
};

}  // namespace GenApi_3_0_ORVANE
