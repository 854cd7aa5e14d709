#include "simulator/device/GigeDescription.h"

#include <array>
#include <charconv>
#include <string_view>

#include "Base/OvAssert.h"
#include "virtual/CameraSettings.h"

namespace OvProducer {
extern const std::string_view kVirtualCameraDescription;
extern const std::string_view kGigeFeatures;
}  // namespace OvProducer

namespace OvSimulator {
namespace {

std::string HexText(uint64_t value) {
    std::array<char, 16> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value, 16);
    return std::string(digits.data(), end.ptr);
}

/// Only the camera's own registers have hexadecimal addresses: those of chunks and events
/// count from their data and are decimal.
std::string WithMovedRegisters(std::string_view xml, uint64_t base) {
    constexpr std::string_view kAddress = "<Address>0x";
    std::string moved;
    for (size_t at = xml.find(kAddress); at != std::string_view::npos; at = xml.find(kAddress)) {
        const size_t digits = at + kAddress.size();
        const size_t end = xml.find('<', digits);
        OV_ASSERT(end != std::string_view::npos);
        uint64_t address = 0;
        std::from_chars(xml.data() + digits, xml.data() + end, address, 16);
        moved += xml.substr(0, digits);
        moved += HexText(base + address);
        xml.remove_prefix(end);
    }
    moved += xml;
    return moved;
}

void Replace(std::string& xml, std::string_view old, std::string_view text, size_t from = 0) {
    const size_t at = xml.find(old, from);
    OV_ASSERT(at != std::string::npos);
    xml.replace(at, old.size(), text);
}

/// Where time and data of an event are depends on whether numbers of blocks have 64 bits.
void MoveEventData(std::string& xml) {
    for (const std::string_view event : {"ExposureEnd", "FrameStartOvertrigger", "BlockDiscard"}) {
        const std::string node = "<IntReg Name=\"Event" + std::string(event);
        Replace(xml, "<Address>8</Address>", "<pAddress>EventTimestampAddress</pAddress>",
                xml.find(node + "Timestamp\""));
        Replace(xml, "<Address>16</Address>", "<pAddress>EventDataAddress</pAddress>",
                xml.find(node + "FrameID\""));
    }
}

/// Puts `text` before the first `mark`.
void InsertBefore(std::string& xml, std::string_view mark, std::string_view text) {
    const size_t at = xml.find(mark);
    OV_ASSERT(at != std::string::npos);
    xml.insert(at, text);
}

/// The entries of the trigger's sources that only a camera on a network has.
std::string ActionSources() {
    std::string entries;
    for (const int signal : {1, 2}) {
        const std::string number = std::to_string(signal);
        const auto value = static_cast<int64_t>(OvVirtual::TriggerSource::Action1) + signal - 1;
        entries.append("<EnumEntry Name=\"Action").append(number);
        entries.append("\" NameSpace=\"Standard\">\n      <ToolTip>The action signal ");
        entries.append(number).append("</ToolTip>\n      <Value>").append(std::to_string(value));
        entries.append("</Value>\n    </EnumEntry>\n    ");
    }
    return entries;
}

}  // namespace

std::string GigeDescription(uint64_t base) {
    std::string xml = WithMovedRegisters(OvProducer::kVirtualCameraDescription, base);
    // A description with an identity of its own: hosts keep what they know of one by it.
    Replace(xml, "ModelName=\"VirtualCamera\"", "ModelName=\"SimulatedCamera\"");
    Replace(xml, "StandardNameSpace=\"None\"", "StandardNameSpace=\"GEV\"");
    Replace(xml, "B3E6-1F490C8A0001", "B3E6-1F490C8A0002");
    Replace(xml, "B3E6-1F490C8A1000", "B3E6-1F490C8A2000");
    MoveEventData(xml);
    InsertBefore(xml, "<pFeature>ChunkDataControl</pFeature>",
                 "<pFeature>ActionControl</pFeature>\n    "
                 "<pFeature>GigEVisionControl</pFeature>\n    ");
    InsertBefore(xml, "<pValue>TriggerSourceReg</pValue>", ActionSources());
    InsertBefore(xml, "</RegisterDescription>", OvProducer::kGigeFeatures);
    return xml;
}

}  // namespace OvSimulator
