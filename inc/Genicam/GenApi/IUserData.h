#pragma once

#include "GenApi/Types.h"

namespace GenApi_3_0_ORVANE {

using UserData_t = void*;

/// A pointer that a client keeps with a node or a map.
struct OV_ENGINE_API IUserData {
    virtual UserData_t GetUserData() = 0;
    /// Gives the old one.
    virtual UserData_t SetUserData(UserData_t data) = 0;
    virtual ~IUserData() = default;
};

}  // namespace GenApi_3_0_ORVANE
