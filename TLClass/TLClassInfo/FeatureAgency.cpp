#include "TLClassInfo/FeatureAgency.h"

#include "TLClassInfo/FeatureReader.h"
#include "TLClassSupport/RunLogged.h"

namespace OVTLClass {

namespace {

/// Reads index by index up to the first failure.
template <class Record, class Read>
std::vector<Record> ReadAll(size_t count, const Read& read) {
    std::vector<Record> all;
    // What was read before a failure is kept: the caller compares the sizes.
    OV_RUN_LOGGED([&] {
        for (size_t index = 0; index < count; ++index) {
            all.push_back(read(static_cast<int64_t>(index)));
        }
    });
    return all;
}

}  // namespace

std::vector<GEV_IF_INFO> CGevFeatureAgency::GetAllInterfaceFeatureByTL(
    const IFeatureControl& control, size_t count) {
    const CGevTLFeature reader(control);
    return ReadAll<GEV_IF_INFO>(
        count, [&](int64_t index) { return reader.GetGevInterfaceInfoByIndex(index); });
}

std::vector<GEV_DEV_INFO> CGevFeatureAgency::GetAllDeviceFeatureByInterface(
    const IFeatureControl& control, size_t count) {
    const CGevInterfaceFeature reader(control);
    return ReadAll<GEV_DEV_INFO>(
        count, [&](int64_t index) { return reader.GetGevDeviceInfoByIndex(index); });
}

GEV_TL_INFO CGevFeatureAgency::GetTLFeatureBySelf(const IFeatureControl& control) {
    return CGevTLFeature(control).GetGevTLInfo();
}

GEV_IF_INFO CGevFeatureAgency::GetInterfaceFeatureBySelf(const IFeatureControl& control) {
    return CGevInterfaceFeature(control).GetGevInterfaceInfo();
}

GEV_DEV_INFO CGevFeatureAgency::GetDeviceFeatureBySelf(const IFeatureControl& control) {
    return CGevDeviceFeature(control).GetGevDeviceInfo();
}

std::vector<COMMON_DEVICE_INFO> CCommonFeatureAgency::GetAllDeviceFeatureByInterface(
    const IFeatureControl& control, size_t count) {
    const CCommonInterfaceFeature reader(control);
    return ReadAll<COMMON_DEVICE_INFO>(
        count, [&](int64_t index) { return reader.GetCommonDeviceInfoByIndex(index); });
}

COMMON_INTERFACE_INFO CCommonFeatureAgency::GetInterfaceFeatureBySelf(
    const IFeatureControl& control) {
    return CCommonInterfaceFeature(control).GetCommonInterfaceInfo();
}

COMMON_DEVICE_INFO CCommonFeatureAgency::GetDeviceFeatureBySelf(const IFeatureControl& control) {
    return CCommonDeviceFeature(control).GetCommonDeviceInfo();
}

}  // namespace OVTLClass
