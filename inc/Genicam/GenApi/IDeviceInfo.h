#pragma once

#include "GenApi/Types.h"
#include "GenApi/Version.h"

namespace GenApi_3_0_ORVANE {

/// What a description tells of its device.
struct OV_ENGINE_API IDeviceInfo {
    virtual gcstring GetModelName() = 0;
    virtual gcstring GetVendorName() = 0;
    virtual gcstring GetToolTip() = 0;
    virtual gcstring GetStandardNameSpace() = 0;
    virtual void GetGenApiVersion(Version_t& version, uint16_t& build) = 0;
    virtual void GetSchemaVersion(Version_t& version) = 0;
    virtual void GetDeviceVersion(Version_t& version) = 0;
    virtual gcstring GetProductGuid() = 0;
    virtual gcstring GetProductVersionGuid() = 0;
    virtual ~IDeviceInfo() = default;
};

}  // namespace GenApi_3_0_ORVANE
