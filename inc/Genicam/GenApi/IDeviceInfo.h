#pragma once

#include "GenApi/Types.h"
#include "GenApi/Version.h"

namespace GenApi_3_0_ORVANE {

/// What the root element of a description says about the device. Node maps have this interface.
/// The texts are empty where the description lacks them.
struct OV_ENGINE_API IDeviceInfo {
    /// Returns the model name.
    virtual gcstring GetModelName() = 0;
    /// Returns the name of the maker.
    virtual gcstring GetVendorName() = 0;
    /// Returns one line of help.
    virtual gcstring GetToolTip() = 0;
    /// Returns the standard that the names of standard nodes are from: "None", "GEV", "IIDC",
    /// "CL" or "USB".
    virtual gcstring GetStandardNameSpace() = 0;
    /// Returns the version of this engine.
    /// @param build  receives 0
    virtual void GetGenApiVersion(Version_t& version, uint16_t& build) = 0;
    /// Returns the version of the schema that the description follows.
    virtual void GetSchemaVersion(Version_t& version) = 0;
    /// Returns the version of the description itself.
    virtual void GetDeviceVersion(Version_t& version) = 0;
    /// Returns the GUID of the product; the same for all versions of its description.
    virtual gcstring GetProductGuid() = 0;
    /// Returns the GUID of this version of the description.
    virtual gcstring GetProductVersionGuid() = 0;
    virtual ~IDeviceInfo() = default;
};

}  // namespace GenApi_3_0_ORVANE
