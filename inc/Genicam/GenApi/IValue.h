#pragma once

#include "GenApi/IBase.h"

namespace GenApi_3_0_ORVANE {

struct INode;

/// A node with a value, as text.
///
/// In all value interfaces, `verify` checks access, limits and the device's error flag
/// (`pError`), and `ignoreCache` reads from the device even if the value is known.
/// Whatever the device's port throws passes through all of these calls.
struct OV_ENGINE_API IValue : virtual public IBase {
    /// Returns the node itself, which belongs to its map.
    virtual INode* GetNode() = 0;
    /// Returns the value as a text, as the description formats it.
    /// @throws AccessException if the node isn't readable
    virtual gcstring ToString(bool verify = false, bool ignoreCache = false) = 0;
    /// Sets the value from a text.
    /// @throws InvalidArgumentException if the text isn't a value of the node,
    ///         AccessException if the node isn't writable
    virtual void FromString(const gcstring& value, bool verify = true) = 0;
    /// Whether a read would be answered without the device.
    virtual bool IsValueCacheValid() = 0;
};

}  // namespace GenApi_3_0_ORVANE
