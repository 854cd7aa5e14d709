#include "TLClassModule/AllFeaturePersistance.h"

#include <stdexcept>

#include "GenApi/NodeMapRef.h"
#include "TLClassFeature/FeaturePersistance.h"
#include "TLClassModule/IDataStream.h"
#include "TLClassModule/IDevice.h"

namespace OVTLClass {

namespace {

CFeaturePersistance PersistanceOf(const std::shared_ptr<IDevice>& device) {
    if (!device) {
        throw std::runtime_error("Invalid device");
    }
    const IDevice::DataStreamList streams = device->DoGetDataStreamList();
    if (streams.empty()) {
        throw std::runtime_error("No valid stream. The device may be closed.");
    }
    auto* const remote = device->DoGetRemoteDeviceNodeMapRef();
    auto* const local = device->GetNodeMapRef();
    auto* const stream = streams.front()->GetNodeMapRef();
    // A stream that isn't open has no node map.
    if (remote == nullptr || local == nullptr || stream == nullptr) {
        throw std::runtime_error("Invalid feature node maps");
    }
    return {*remote, *local, *stream};
}

}  // namespace

void CAllFeaturePersistance::ExportAllFeaturesToStream(const std::shared_ptr<IDevice>& device,
                                                       std::ostream& target) {
    PersistanceOf(device).ExportFeaturesToStream(target);
}

std::vector<std::string> CAllFeaturePersistance::ImportAllFeaturesFromStream(
    const std::shared_ptr<IDevice>& device, std::istream& source, bool verify) {
    return PersistanceOf(device).ImportFeaturesFromStream(source, verify);
}

}  // namespace OVTLClass
