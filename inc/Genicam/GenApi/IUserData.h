#pragma once

#include "GenApi/Types.h"

namespace GenApi_3_0_ORVANE {

/// A pointer that the engine keeps and never follows.
using UserData_t = void*;

/// A pointer that a client keeps with a node or a map, such as to its own object for the node.
struct OV_ENGINE_API IUserData {
    /// Returns the pointer; null if none was set.
    virtual UserData_t GetUserData() = 0;
    /// Sets the pointer and returns the one before.
    virtual UserData_t SetUserData(UserData_t data) = 0;
    virtual ~IUserData() = default;
};

}  // namespace GenApi_3_0_ORVANE
