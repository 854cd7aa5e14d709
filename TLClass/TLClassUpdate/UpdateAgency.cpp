#include "TLClassUpdate/UpdateAgency.h"

#include "TLClassFeature/IFeatureControl.h"
#include "TLClassModule/IInterface.h"
#include "TLClassSupport/OvLog.h"

namespace OVTLClass {

namespace {

constexpr const char* kListMode = "DeviceUpdateListMode";
constexpr const char* kWholeNetwork = "LimitedBroadcast";
constexpr const char* kLocalNetwork = "DirectedSubnetBroadcast";

void SetListMode(IInterface& target, const char* mode) {
    const std::string id = target.DoGetInterfaceInfo().id.value;
    const IFeatureControl* const control = target.GetFeatureControl();
    // Missing where the interface was closed since the list was read.
    if (control == nullptr) {
        OV_LOG("Cannot find the feature control of the interface: " + id);
        return;
    }
    if (!control->DoExist(kListMode)) {
        OV_LOG("Cannot find the feature \"" + std::string(kListMode) + "\" from the interface \"" +
               id + "\"");
        return;
    }
    control->DoSetEnum(kListMode, control->DoGetEnumEntryValue(kListMode, mode));
}

}  // namespace

CLock CGenericUpdateAgency::ms_objGenericUpdateLock(LockRank::GenericUpdate);
CLock CGevUpdateAgency::ms_objGevUpdateLock(LockRank::GevUpdate);

void CGenericUpdateAgency::DoUpdate(unsigned timeout, unsigned interval, bool& changed) {
    const CAutoLock lock(ms_objGenericUpdateLock);
    bool interfacesChanged = false;
    bool devicesChanged = false;
    m_updater.DoUpdateInterfaceList(0, interfacesChanged);
    m_updater.DoUpdateDeviceList(timeout, interval, devicesChanged);
    changed = interfacesChanged || devicesChanged;
}

void CGevUpdateAgency::DoUpdate(unsigned timeout, unsigned interval, bool& changed) {
    __Update(kLocalNetwork, timeout, interval, changed);
}

void CGevUpdateAgency::DoUpdateInWholeNetwork(unsigned timeout, unsigned interval, bool& changed) {
    __Update(kWholeNetwork, timeout, interval, changed);
}

void CGevUpdateAgency::DoUpdateInLocalNetwork(unsigned timeout, unsigned interval, bool& changed) {
    __Update(kLocalNetwork, timeout, interval, changed);
}

void CGevUpdateAgency::__Update(const char* mode, unsigned timeout, unsigned interval,
                                bool& changed) {
    const CAutoLock lock(ms_objGevUpdateLock);
    bool interfacesChanged = false;
    bool devicesChanged = false;
    m_updater.DoUpdateInterfaceList(0, interfacesChanged);
    for (const auto& target : m_updater.DoGetAllInterfaceList()) {
        // An adapter that refuses the mode is searched in the mode that it has.
        OV_RUN_LOGGED([&] { SetListMode(*target, mode); });
    }
    m_updater.DoUpdateDeviceList(timeout, interval, devicesChanged);
    changed = interfacesChanged || devicesChanged;
}

}  // namespace OVTLClass
