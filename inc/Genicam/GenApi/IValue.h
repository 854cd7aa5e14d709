#pragma once

#include "GenApi/IBase.h"

namespace GenApi_3_0_ORVANE {

struct INode;

/// A node with a value, as text.
///
/// In all value interfaces `verify` checks access, limits and the device's own
/// error flag, and `ignoreCache` asks the device whatever is known.
struct OV_ENGINE_API IValue : virtual public IBase {
    virtual INode* GetNode() = 0;
    virtual gcstring ToString(bool verify = false, bool ignoreCache = false) = 0;
    virtual void FromString(const gcstring& value, bool verify = true) = 0;
    /// Whether a read would be answered without the device.
    virtual bool IsValueCacheValid() = 0;
};

}  // namespace GenApi_3_0_ORVANE
