#include "GenApi/ICommand.h"
#include "TLClassFeature/EngineCall.h"
#include "api/DeviceManager.h"
#include "errors/OVIError.h"
#include "frames/Acquisition.h"
#include "nodes/NodeAccess.h"
#include "nodes/NodeCommand.h"

using namespace GenApi_3_0_ORVANE;
using namespace OVTLClass;

void ExecuteCommand(const CNodeRecord& record, const OvPlace& place) {
    PollBeforeCall(record);
    RequireImplemented(record);
    // The camera's command alone would leave the host's side as it was.
    if (record.role == NodeRole::AcquisitionStart) {
        StartAcquisition(record.camera, place);
    } else if (record.role == NodeRole::AcquisitionStop) {
        StopAcquisition(record.camera, place);
    } else {
        OV_ENGINE_SET(record.As<ICommand>()->Execute(true));
    }
}

OV_STATUS OvNodeExecute(OV_NODE_HANDLE hNode) try {
    const CNodeAccess<ICommand> node(hNode, OV_HERE);
    ExecuteCommand(node.Record(), OV_HERE);
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OvNodeIsDone(OV_NODE_HANDLE hNode, bool* pbIsDone) try {
    const CNodeAccess<ICommand> node(hNode, OV_HERE);
    OV_CHECK_POINTER(pbIsDone);
    *pbIsDone = OV_ENGINE_GET(node.Ask().IsDone(true));
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}
