#pragma once
/// Front doors to the facts in a module's own features.

#include <cstddef>
#include <vector>

#include "TLClassFeature/IFeatureControl.h"
#include "TLClassInfo/InfoRecords.h"

namespace OVTLClass {

/// What only GigE Vision modules have. The "All" forms read as many records as the
/// producer counts children: a selector may bound its values by an old count. They
/// return what they gathered before a failure.
class CGevFeatureAgency {
public:
    static std::vector<GEV_IF_INFO> GetAllInterfaceFeatureByTL(const IFeatureControl& control,
                                                               size_t count);
    static std::vector<GEV_DEV_INFO> GetAllDeviceFeatureByInterface(const IFeatureControl& control,
                                                                    size_t count);
    static GEV_TL_INFO GetTLFeatureBySelf(const IFeatureControl& control);
    static GEV_IF_INFO GetInterfaceFeatureBySelf(const IFeatureControl& control);
    static GEV_DEV_INFO GetDeviceFeatureBySelf(const IFeatureControl& control);
};

/// What modules of every transport have.
class CCommonFeatureAgency {
public:
    static std::vector<COMMON_DEVICE_INFO> GetAllDeviceFeatureByInterface(
        const IFeatureControl& control, size_t count);
    static COMMON_INTERFACE_INFO GetInterfaceFeatureBySelf(const IFeatureControl& control);
    static COMMON_DEVICE_INFO GetDeviceFeatureBySelf(const IFeatureControl& control);
};

}  // namespace OVTLClass
