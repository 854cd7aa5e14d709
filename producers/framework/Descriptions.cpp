/// @file The framework's own module descriptions, which are compiled into the producer, and how
/// producers add to them.
#include "framework/Descriptions.h"

#include <string_view>

#include "framework/Backend.h"

namespace OvProducer {

extern const std::string_view kSystemDescription;
extern const std::string_view kInterfaceDescription;
extern const std::string_view kDeviceDescription;
extern const std::string_view kStreamDescription;

namespace {

void SetAttribute(std::string& description, std::string_view name, std::string_view value) {
    const std::string mark = std::string(name) + "=\"";
    const size_t begin = description.find(mark) + mark.size();
    description.replace(begin, description.find('"', begin) - begin, value);
}

}  // namespace

std::string WithNodes(std::string description, const DescriptionIdentity& identity,
                      std::string_view rootFeatures, std::string_view nodes) {
    SetAttribute(description, "ModelName", identity.model);
    SetAttribute(description, "ProductGuid", identity.product);
    SetAttribute(description, "VersionGuid", identity.version);
    // The root category is the first one.
    description.insert(description.find("  </Category>"), rootFeatures);
    description.insert(description.rfind("</RegisterDescription>"), nodes);
    return description;
}

Description OwnDescription(ModuleKind kind) {
    switch (kind) {
        case ModuleKind::System:
            return {"OvSystem_1_0_0", std::string(kSystemDescription)};
        case ModuleKind::Interface:
            return {"OvInterface_1_0_0", std::string(kInterfaceDescription)};
        case ModuleKind::Device:
            return {"OvDevice_1_0_0", std::string(kDeviceDescription)};
        default:
            return {"OvStream_1_0_0", std::string(kStreamDescription)};
    }
}

void ProducerBackend::Describe(ModuleKind kind, Port& port) {
    port.AddDescription(OwnDescription(kind), kDescriptionAddress);
}

}  // namespace OvProducer
