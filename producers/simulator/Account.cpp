#include "simulator/Account.h"

namespace OvSimulator {
namespace {

constexpr size_t kCounts = static_cast<size_t>(Count::Total);

constexpr std::array<std::string_view, kCounts> kNames = {
    "commands",         "ignored",
    "repeated",         "discoveries",
    "forcedAddresses",  "addressesRefused",
    "registerReads",    "registerWrites",
    "memoryReads",      "memoryWrites",
    "refusals",         "controlTaken",
    "controlDenied",    "controlGiven",
    "controlLost",      "answers",
    "networkFailures",  "blocks",
    "streamPackets",    "streamBytes",
    "packetsTooLarge",  "testPackets",
    "resendCommands",   "askedPackets",
    "resentPackets",    "refusedResends",
    "actions",          "scheduledActions",
    "lateActions",      "actionsOfOthers",
    "events",           "droppedEvents",
    "messages",         "repeatedMessages",
    "acknowledgements", "abandonedMessages",
    "missingAnswers",   "doubledAnswers",
    "lateAnswers",      "foreignAnswers",
    "pendingAnswers",   "controlRefused",
    "deaths",           "unheardPackets",
    "addressChanges",   "lostPackets",
    "truncatedPackets", "corruptedPackets",
    "doubledPackets",   "delayedPackets",
    "reorderedPackets", "damagedBlocks",
    "wrongLeaders",     "jumpsBack",
    "wrongChunks",      "lostMessages",
    "doubledMessages",  "ignoredAcknowledgements",
    "foreignMessages",
};
static_assert(!kNames.back().empty(), "A count without a name");

}  // namespace

std::string_view NameOf(Count count) {
    return kNames[static_cast<size_t>(count)];
}

std::vector<std::pair<std::string_view, uint64_t>> RowsOf(const Account& account) {
    std::vector<std::pair<std::string_view, uint64_t>> rows;
    rows.reserve(kCounts);
    for (size_t i = 0; i < kCounts; ++i) {
        rows.emplace_back(kNames[i], account[static_cast<Count>(i)]);
    }
    return rows;
}

}  // namespace OvSimulator
