#include "gige/stream/StreamFeatures.h"

#include <array>

#include "framework/Descriptions.h"
#include "framework/FeatureNodes.h"

namespace OvGige {
namespace {

using S = StreamSettings;
using F = ReceiverFacts;
using A = StreamAccount;

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

template <typename Feature>
OvProducer::FeatureTexts TextsOf(const Feature& feature) {
    return {feature.name, feature.displayName, feature.description};
}

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
            OvProducer::FeatureRegisterAddress(index++), OvProducer::kFeatureRegisterSize,
            [=] { return access.readSetting(feature); },
            [=](int64_t value) { access.writeSetting(feature, value); });
    }
    for (const FactFeature& feature : kFacts) {
        registers.AddInteger(OvProducer::FeatureRegisterAddress(index++),
                             OvProducer::kFeatureRegisterSize,
                             [=] { return access.readFact(feature); });
    }
    for (const CountFeature& feature : kCounts) {
        registers.AddInteger(OvProducer::FeatureRegisterAddress(index++),
                             OvProducer::kFeatureRegisterSize,
                             [=] { return static_cast<int64_t>(access.readCount(feature)); });
    }
}

std::string WithStreamFeatures(std::string description) {
    OvProducer::FeatureNodes nodes("StreamPort");
    nodes.Begin("StreamReceiverControl", "How packets are received");
    for (const SettingFeature& feature : kSettings) {
        nodes.AddSetting(TextsOf(feature), feature.min, feature.max, feature.unit);
    }
    for (const FactFeature& feature : kFacts) {
        nodes.AddNumber(TextsOf(feature), feature.unit);
    }
    nodes.Begin("StreamAccount", "What became of frames and packets since the start");
    for (const CountFeature& feature : kCounts) {
        nodes.AddNumber(TextsOf(feature), "");
    }
    return OvProducer::WithNodes(std::move(description),
                                 {.model = "GigeStreamModule",
                                  .product = "E7104A6D-93B5-4E2C-A5F8-0C6D2B1A0001",
                                  .version = "E7104A6D-93B5-4E2C-A5F8-0C6D2B1A1000"},
                                 nodes.Root(), "\n" + nodes.Take());
}

}  // namespace OvGige
