// Callbacks of nodes. They are those of features, registered by node.

#include "GenApi/INode.h"
#include "TLClassFeature/EngineCall.h"
#include "TLClassFeature/FeatureControl.h"
#include "TLClassFeature/FeatureRange.h"
#include "TLClassModule/IDevice.h"
#include "TLClassSupport/Agency.h"
#include "api/DeviceManager.h"
#include "api/FeatureAccess.h"
#include "errors/CallbackCheck.h"
#include "errors/OVIError.h"
#include "events/EventCallbacks.h"
#include "nodes/NodeAccess.h"

using namespace GenApi_3_0_ORVANE;
using namespace OVTLClass;

namespace {

using COvNodeCallback = COvChangeCallback<OV_NODE_HANDLE>;

/// The standard and the maker may have the same name, so that a plain one doesn't do.
std::string QualifiedName(const CNodeRecord& record) {
    return OV_ENGINE_GET(ToStd(record.node.GetName(true)));
}

CPollingThread& PollingThread() {
    return CDeviceManager::GetInstance().GetDeviceInfoFactory().GetPollingThread();
}

/// The close of a camera removes the callbacks of its own modules.
bool OutlivesCamera(OV_NODE_MODULE module) {
    return module == OV_NODE_MODULE_SYSTEM || module == OV_NODE_MODULE_INTERFACE;
}

void* RegisterCallback(const CNodeRecord& record, CFeatureControl& control,
                       const COvNodeCallback& callback) {
    void* const handle = control.DoRegisterFeatureCallback(QualifiedName(record), callback);
    if (OutlivesCamera(record.module)) {
        CRollback removed([&control, handle] {
            control.DoUnregisterFeatureCallback(reinterpret_cast<intptr_t>(handle));
        });
        record.camera.GetNodes().KeepCallback(control, *record.node.GetNodeMap(), handle);
        removed.Commit();
    }
    return handle;
}

}  // namespace

OV_STATUS OvNodeRegisterCallback(OV_NODE_HANDLE hNode, void* pUserParam, OvNodeCallback callback,
                                 OV_NODE_CALLBACK_HANDLE* phCallback) try {
    const CNodeRecord& record = EnterNode(hNode, OV_HERE);
    OV_CHECK_POINTER(reinterpret_cast<const void*>(callback));
    OV_CHECK_POINTER(phCallback);
    IDevice& device = *record.camera.GetDevice();
    CheckNotInCallback(device, "register node callback", {CallbackKind::Event}, OV_HERE);
    CFeatureControl& control = GetFeatureControl(record.camera, LevelOf(record.module));
    // Only the first callback on an event's feature starts the thread that reads events.
    if (control.CheckEventNode(QualifiedName(record))) {
        device.DoActiveRemoteDeviceEventThread();
    }
    // Counted before the callback is registered, so that no change is missed.
    CListenerAgency listening(PollingThread(), record.camera.GetPolling());
    *phCallback =
        RegisterCallback(record, control, COvNodeCallback(device, pUserParam, callback, hNode));
    listening.Commit();
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OvNodeUnregisterCallback(OV_NODE_HANDLE hNode, OV_NODE_CALLBACK_HANDLE hCallback) try {
    const CNodeRecord& record = EnterNode(hNode, OV_HERE);
    CheckNotInCallback(*record.camera.GetDevice(), "unregister node callback",
                       {CallbackKind::Event}, OV_HERE);
    CFeatureControl& control = GetFeatureControl(record.camera, LevelOf(record.module));
    // Several cameras share the modules that outlive them: a callback may be another camera's.
    if (!control.CheckExist(QualifiedName(record), hCallback) ||
        (OutlivesCamera(record.module) && !record.camera.GetNodes().ForgetCallback(hCallback))) {
        OV_RAISE(CInvalidHandleError, "Invalid node callback handle");
    }
    control.DoUnregisterFeatureCallback(reinterpret_cast<intptr_t>(hCallback));
    PollingThread().RemoveListener(record.camera.GetPolling());
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}
