#include "gige/message/MessageFeatures.h"

#include <array>

#include "framework/Descriptions.h"
#include "framework/FeatureNodes.h"

namespace OvGige {
namespace {

using A = MessageAccount;

constexpr auto kFeatures = std::to_array<MessageFeature>({
    {"MessageEventCount", "Message Event Count", "Events that came from the camera", &A::events},
    {"MessageCount", "Message Count", "Messages with these events", &A::messages},
    {"MessageRepeatCount", "Message Repeat Count", "Messages that had come before", &A::repeats},
    {"MessageMalformedCount", "Message Malformed Count",
     "Packets that weren't messages with events, or not as a whole", &A::malformed},
    {"MessageForeignCount", "Message Foreign Count",
     "Packets to the port of the messages that weren't the camera's", &A::foreign},
});

}  // namespace

std::span<const MessageFeature> MessageFeatures() {
    return kFeatures;
}

void AddMessageRegisters(OvProducer::RegisterSpace& registers,
                         const std::function<uint64_t(const MessageFeature&)>& read) {
    for (size_t i = 0; i < kFeatures.size(); ++i) {
        registers.AddInteger(
            OvProducer::FeatureRegisterAddress(i), OvProducer::kFeatureRegisterSize,
            [read, &feature = kFeatures[i]] { return static_cast<int64_t>(read(feature)); });
    }
}

std::string WithMessageFeatures(std::string description) {
    OvProducer::FeatureNodes nodes("DevicePort");
    nodes.Begin("MessageAccount", "What came of the camera's messages with events");
    for (const MessageFeature& feature : kFeatures) {
        nodes.AddNumber({feature.name, feature.displayName, feature.description}, "");
    }
    return OvProducer::WithNodes(std::move(description),
                                 {.model = "GigeDeviceModule",
                                  .product = "5B0E3C74-2D1F-4A86-9E57-7F0A4C2D0001",
                                  .version = "5B0E3C74-2D1F-4A86-9E57-7F0A4C2D1000"},
                                 nodes.Root(), "\n" + nodes.Take());
}

}  // namespace OvGige
