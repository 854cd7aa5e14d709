#include "gige/message/MessageFeatures.h"

#include <array>

#include "framework/Descriptions.h"

namespace OvGige {
namespace {

using A = MessageAccount;

constexpr uint64_t kFirstAddress = 0x1000;
constexpr size_t kRegisterSize = 8;

constexpr auto kFeatures = std::to_array<MessageFeature>({
    {"MessageEventCount", "Message Event Count", "Events that came from the camera", &A::events},
    {"MessageCount", "Message Count", "Messages with these events", &A::messages},
    {"MessageRepeatCount", "Message Repeat Count", "Messages that had come before", &A::repeats},
    {"MessageMalformedCount", "Message Malformed Count",
     "Packets that weren't messages with events, or not as a whole", &A::malformed},
    {"MessageForeignCount", "Message Foreign Count",
     "Packets to the port of the messages that weren't the camera's", &A::foreign},
});

uint64_t AddressAt(size_t index) {
    return kFirstAddress + index * kRegisterSize;
}

std::string Element(const std::string& name, const std::string& content) {
    return "    <" + name + ">" + content + "</" + name + ">\n";
}

std::string NodeOf(const MessageFeature& feature, uint64_t address) {
    return "  <IntReg Name=\"" + std::string(feature.name) + "\" NameSpace=\"Custom\">\n" +
           Element("ToolTip", feature.description) + Element("Description", feature.description) +
           Element("DisplayName", feature.displayName) + Element("Visibility", "Expert") +
           Element("Address", std::to_string(address)) +
           Element("Length", std::to_string(kRegisterSize)) + Element("AccessMode", "RO") +
           Element("pPort", "DevicePort") + Element("Cachable", "NoCache") +
           Element("Sign", "Signed") + Element("Endianess", "LittleEndian") + "  </IntReg>\n\n";
}

}  // namespace

std::span<const MessageFeature> MessageFeatures() {
    return kFeatures;
}

void AddMessageRegisters(OvProducer::RegisterSpace& registers,
                         const std::function<uint64_t(const MessageFeature&)>& read) {
    for (size_t i = 0; i < kFeatures.size(); ++i) {
        registers.AddInteger(AddressAt(i), kRegisterSize, [read, &feature = kFeatures[i]] {
            return static_cast<int64_t>(read(feature));
        });
    }
}

std::string WithMessageFeatures(std::string description) {
    std::string category = "\n  <Category Name=\"MessageAccount\" NameSpace=\"Custom\">\n" +
                           Element("ToolTip", "What came of the camera's messages with events");
    std::string nodes;
    for (size_t i = 0; i < kFeatures.size(); ++i) {
        category += Element("pFeature", kFeatures[i].name);
        nodes += NodeOf(kFeatures[i], AddressAt(i));
    }
    return OvProducer::WithNodes(std::move(description),
                                 {.model = "GigeDeviceModule",
                                  .product = "5B0E3C74-2D1F-4A86-9E57-7F0A4C2D0001",
                                  .version = "5B0E3C74-2D1F-4A86-9E57-7F0A4C2D1000"},
                                 Element("pFeature", "MessageAccount"),
                                 category + "  </Category>\n\n" + nodes);
}

}  // namespace OvGige
