/// @file The framework's own module descriptions, which are compiled into the producer.
#include <string_view>

#include "framework/Backend.h"

namespace OvProducer {

extern const std::string_view kSystemDescription;
extern const std::string_view kInterfaceDescription;
extern const std::string_view kDeviceDescription;
extern const std::string_view kStreamDescription;

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
