#include "gige/stream/StreamFeatures.h"

#include <array>
#include <iomanip>
#include <sstream>

#include "framework/Descriptions.h"

namespace OvGige {
namespace {

using S = StreamSettings;
using F = ReceiverFacts;
using A = StreamAccount;

constexpr uint64_t kFirstAddress = 0x1000;
constexpr size_t kRegisterSize = 8;

constexpr int64_t kSecond = 1'000'000;

constexpr auto kSettings = std::to_array<SettingFeature>({
    {"StreamDeliverIncomplete", "Stream Deliver Incomplete",
     "1: frames with missing packets are delivered, marked so; 0: they are left out", "", 0, 1,
     &S::deliversIncomplete},
    {"StreamResend", "Stream Resend", "1: lost packets are asked for again; 0: they aren't", "", 0,
     1, &S::resends},
    {"StreamResendLimit", "Stream Resend Limit",
     "Most packets of a frame that are asked for again, in percent of its packets", "%", 0, 1000,
     &S::resendPercent},
    {"StreamResendRateLimit", "Stream Resend Rate Limit",
     "Most packets that are asked for again in a second", "1/s", 0, 1'000'000,
     &S::resendsPerSecond},
    {"StreamGapTime", "Stream Gap Time",
     "How long a gap is left alone, since packets may overtake each other", "us", 0, kSecond,
     &S::gapTime},
    {"StreamPacketTimeout", "Stream Packet Timeout",
     "How long to wait for a packet that was asked for, and for the next packet of a frame", "us",
     100, kSecond, &S::packetTimeout},
    {"StreamFrameRetention", "Stream Frame Retention",
     "How long after its last packet a frame is given up", "us", 1000, 60 * kSecond, &S::retention},
    {"StreamFindPacketSize", "Stream Find Packet Size",
     "1: the largest packet size that comes through is found at each start, unless the camera's "
     "was set by the user; 0: the camera's packet size stays",
     "", 0, 1, &S::findsPacketSize},
    {"StreamSocketBufferSize", "Stream Socket Buffer Size",
     "Memory of the system for packets that wait to be received", "B", 4096, 1 << 30,
     &S::socketBuffer},
    {"StreamJoinPackets", "Stream Join Packets",
     "1: the system may hand over several packets as one, which takes less time; 0: it doesn't", "",
     0, 1, &S::trains},
    {"StreamThreadPriority", "Stream Thread Priority",
     "0: the receiving thread is a normal one; 1 to 99: it comes before all normal threads", "", 0,
     99, &S::priority},
    {"StreamThreadProcessor", "Stream Thread Processor",
     "Number of the processor that the receiving thread runs on; -1: any", "", -1, 1023,
     &S::processor},
    {"StreamBusyPoll", "Stream Busy Poll",
     "How long the system looks for packets without sleeping; 0: it doesn't", "us", 0, kSecond,
     &S::busyPoll},
});

constexpr auto kFacts = std::to_array<FactFeature>({
    {"StreamPacketSize", "Stream Packet Size",
     "The camera's packet size since the last start, with the headers of IP and UDP", "B",
     &F::packetSize},
    {"StreamSocketBufferGranted", "Stream Socket Buffer Granted",
     "Memory that the system granted for waiting packets at the last start", "B", &F::socketBuffer},
    {"StreamHostPort", "Stream Host Port", "Port that the camera sends to", "", &F::hostPort},
});

constexpr auto kCounts = std::to_array<CountFeature>({
    {"StreamBlockCompleteCount", "Stream Block Complete Count", "Frames without a missing packet",
     &A::complete},
    {"StreamBlockIncompleteCount", "Stream Block Incomplete Count", "Frames with missing packets",
     &A::incomplete},
    {"StreamBlockNoBufferCount", "Stream Block No Buffer Count",
     "Frames that came when no buffer was free", &A::noBuffer},
    {"StreamBlockLostOnWireCount", "Stream Block Lost On Wire Count",
     "Frames of which no packet came", &A::lostOnWire},
    {"StreamBlockLostInSocketCount", "Stream Block Lost In Socket Count",
     "Frames of which no packet was left after the socket was full", &A::lostInSocket},
    {"StreamBlockLeftOutCount", "Stream Block Left Out Count",
     "Of the frames with missing packets: those that weren't delivered", &A::leftOut},
    {"StreamRestartCount", "Stream Restart Count", "How often the camera began to count anew",
     &A::restarts},
    {"StreamPacketUsedCount", "Stream Packet Used Count", "Packets that a frame needed", &A::used},
    {"StreamPacketDoubleCount", "Stream Packet Double Count", "Packets that had come before",
     &A::doubled},
    {"StreamPacketRefusedCount", "Stream Packet Refused Count",
     "Statuses in place of packets that were asked for", &A::refused},
    {"StreamPacketIgnoredCount", "Stream Packet Ignored Count",
     "Packets that were malformed, came too late, or had no buffer", &A::ignored},
    {"StreamPacketAskedCount", "Stream Packet Asked Count", "Packets that were asked for again",
     &A::asked},
    {"StreamPacketAnsweredCount", "Stream Packet Answered Count",
     "Packets that came after they were asked for again", &A::answered},
    {"StreamPacketMissingCount", "Stream Packet Missing Count",
     "Packets that frames lacked when they were given up", &A::missing},
    {"StreamPacketDroppedCount", "Stream Packet Dropped Count",
     "Packets that the system dropped because the socket was full", &A::dropped},
});

uint64_t AddressAt(size_t index) {
    return kFirstAddress + index * kRegisterSize;
}

std::string Hex(uint64_t value) {
    std::ostringstream text;
    text << "0x" << std::uppercase << std::hex << std::setw(4) << std::setfill('0') << value;
    return text.str();
}

/// Writes the nodes of features whose registers follow each other.
class NodeWriter {
public:
    void Begin(const std::string& category, const std::string& toolTip) {
        m_root += "    <pFeature>" + category + "</pFeature>\n";
        EndCategory();
        m_category = "  <Category Name=\"" + category + "\" NameSpace=\"Custom\">\n    <ToolTip>" +
                     toolTip + "</ToolTip>\n";
    }
    template <typename Feature>
    void Setting(const Feature& feature) {
        const std::string name = feature.name;
        Open("Integer", feature);
        Line("pIsLocked", "TLParamsLocked");
        Line("pValue", name + "Reg");
        Line("Min", std::to_string(feature.min));
        Line("Max", std::to_string(feature.max));
        Unit(feature.unit);
        m_nodes += "  </Integer>\n\n  <IntReg Name=\"" + name + "Reg\" NameSpace=\"Custom\">\n";
        Line("Visibility", "Invisible");
        Register("RW", "");
    }
    template <typename Feature>
    void Number(const Feature& feature, const char* unit) {
        Open("IntReg", feature);
        Register("RO", unit);
    }
    std::string Root() const { return m_root; }
    std::string Nodes() {
        EndCategory();
        return m_nodes;
    }

private:
    template <typename Feature>
    void Open(const std::string& kind, const Feature& feature) {
        m_category += std::string("    <pFeature>") + feature.name + "</pFeature>\n";
        m_nodes += "  <" + kind + " Name=\"" + feature.name + "\" NameSpace=\"Custom\">\n";
        Line("ToolTip", feature.description);
        Line("Description", feature.description);
        Line("DisplayName", feature.displayName);
        Line("Visibility", "Expert");
    }
    void Register(const char* access, const char* unit) {
        Line("Address", Hex(AddressAt(m_index++)));
        Line("Length", std::to_string(kRegisterSize));
        Line("AccessMode", access);
        Line("pPort", "StreamPort");
        Line("Cachable", "NoCache");
        Line("Sign", "Signed");
        Line("Endianess", "LittleEndian");
        Unit(unit);
        m_nodes += "  </IntReg>\n\n";
    }
    void Unit(const std::string& unit) {
        if (!unit.empty()) {
            Line("Unit", unit);
        }
    }
    void Line(const std::string& element, const std::string& value) {
        m_nodes += "    <" + element + ">" + value + "</" + element + ">\n";
    }
    void EndCategory() {
        if (!m_category.empty()) {
            m_nodes += m_category + "  </Category>\n\n";
        }
    }

    std::string m_root;
    std::string m_category;
    std::string m_nodes;
    size_t m_index = 0;
};

}  // namespace

std::span<const SettingFeature> SettingFeatures() {
    return kSettings;
}

std::span<const FactFeature> FactFeatures() {
    return kFacts;
}

std::span<const CountFeature> CountFeatures() {
    return kCounts;
}

void AddFeatureRegisters(OvProducer::RegisterSpace& registers, const FeatureAccess& access) {
    size_t index = 0;
    for (const SettingFeature& feature : kSettings) {
        registers.AddInteger(
            AddressAt(index++), kRegisterSize, [=] { return access.readSetting(feature); },
            [=](int64_t value) { access.writeSetting(feature, value); });
    }
    for (const FactFeature& feature : kFacts) {
        registers.AddInteger(AddressAt(index++), kRegisterSize,
                             [=] { return access.readFact(feature); });
    }
    for (const CountFeature& feature : kCounts) {
        registers.AddInteger(AddressAt(index++), kRegisterSize,
                             [=] { return static_cast<int64_t>(access.readCount(feature)); });
    }
}

std::string WithStreamFeatures(std::string description) {
    NodeWriter writer;
    writer.Begin("StreamReceiverControl", "How packets are received");
    for (const SettingFeature& feature : kSettings) {
        writer.Setting(feature);
    }
    for (const FactFeature& feature : kFacts) {
        writer.Number(feature, feature.unit);
    }
    writer.Begin("StreamAccount", "What became of frames and packets since the start");
    for (const CountFeature& feature : kCounts) {
        writer.Number(feature, "");
    }
    const std::string nodes = "\n" + writer.Nodes();
    return OvProducer::WithNodes(std::move(description),
                                 {.model = "GigeStreamModule",
                                  .product = "E7104A6D-93B5-4E2C-A5F8-0C6D2B1A0001",
                                  .version = "E7104A6D-93B5-4E2C-A5F8-0C6D2B1A1000"},
                                 writer.Root(), nodes);
}

}  // namespace OvGige
