#pragma once
/// Reads records from the features of a module's own description.
///
/// A producer may lack any feature: each value is read inside its own guard,
/// and one that fails is left invalid. Values are read past the caches, because
/// cameras change them without a word to the module. An index that the selector
/// doesn't take leaves the whole record invalid.

#include <cstdint>
#include <vector>

#include "TLClassFeature/IFeatureControl.h"
#include "TLClassInfo/InfoRecords.h"

namespace OVTLClass {

/// Features of a GigE Vision system module.
class CGevTLFeature {
public:
    explicit CGevTLFeature(const IFeatureControl& control) : m_control(control) {}
    GEV_TL_INFO GetGevTLInfo() const;
    GEV_IF_INFO GetGevInterfaceInfoByIndex(int64_t index) const;

private:
    const IFeatureControl& m_control;
};

/// Features of a GigE Vision interface module.
class CGevInterfaceFeature {
public:
    explicit CGevInterfaceFeature(const IFeatureControl& control) : m_control(control) {}
    GEV_IF_INFO GetGevInterfaceInfo() const;
    GEV_DEV_INFO GetGevDeviceInfoByIndex(int64_t index) const;

private:
    const IFeatureControl& m_control;
};

/// Features of a GigE Vision device module.
class CGevDeviceFeature {
public:
    explicit CGevDeviceFeature(const IFeatureControl& control) : m_control(control) {}
    GEV_DEV_INFO GetGevDeviceInfo() const;

private:
    const IFeatureControl& m_control;
};

/// Features of an interface module of any transport.
class CCommonInterfaceFeature {
public:
    explicit CCommonInterfaceFeature(const IFeatureControl& control) : m_control(control) {}
    COMMON_INTERFACE_INFO GetCommonInterfaceInfo() const;
    COMMON_DEVICE_INFO GetCommonDeviceInfoByIndex(int64_t index) const;

private:
    const IFeatureControl& m_control;
};

/// Features of a device module of any transport.
class CCommonDeviceFeature {
public:
    explicit CCommonDeviceFeature(const IFeatureControl& control) : m_control(control) {}
    COMMON_DEVICE_INFO GetCommonDeviceInfo() const;

private:
    const IFeatureControl& m_control;
};

}  // namespace OVTLClass
