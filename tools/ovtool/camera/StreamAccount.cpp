#include "camera/StreamAccount.h"

#include <algorithm>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <span>

#include "camera/Node.h"

namespace {

using A = StreamAccount;

struct Row {
    const char* feature;
    const char* key;
    const char* words;  ///< after the number
    int64_t A::*field;
};

constexpr Row kFrames[] = {
    {"StreamBlockCompleteCount", "delivered", "delivered", &A::delivered},
    {"StreamBlockIncompleteCount", "incomplete", "incomplete", &A::incomplete},
    {"StreamBlockNoBufferCount", "noBuffer", "without a buffer", &A::noBuffer},
    {"StreamBlockLostOnWireCount", "lostOnWire", "lost on the wire", &A::lostOnWire},
    {"StreamBlockLostInSocketCount", "lostInSocket", "lost in the socket", &A::lostInSocket},
};

constexpr Row kPackets[] = {
    {"StreamPacketAskedCount", "asked", "asked again", &A::asked},
    {"StreamPacketAnsweredCount", "answered", "answered", &A::answered},
    {"StreamPacketRefusedCount", "refused", "refused", &A::refused},
    {"StreamPacketDoubleCount", "double", "double", &A::doubled},
    {"StreamPacketIgnoredCount", "ignored", "ignored", &A::ignored},
    {"StreamPacketMissingCount", "missing", "missing", &A::missing},
    {"StreamPacketDroppedCount", "dropped", "dropped by the socket", &A::dropped},
};

constexpr Row kSettings[] = {
    {"StreamResend", "", "", &A::resends},
    {"StreamSocketBufferSize", "", "", &A::socketBuffer},
    {"StreamSocketBufferGranted", "", "", &A::socketBufferGranted},
};

/// What the producer doesn't count stays 0.
void Read(OV_DEV_HANDLE camera, std::span<const Row> rows, A& account) {
    for (const Row& row : rows) {
        if (const auto node = Node::Find(camera, OV_NODE_MODULE_STREAM, row.feature)) {
            account.*row.field = std::get<int64_t>(node->Read());
        }
    }
}

Json ToDocument(std::span<const Row> rows, const A& account) {
    Json document = Json::object();
    for (const Row& row : rows) {
        document[row.key] = account.*row.field;
    }
    return document;
}

void PrintRows(const char* title, std::span<const Row> rows, const A& account) {
    std::printf("%s", title);
    const char* before = "";
    for (const Row& row : rows) {
        std::printf("%s %lld %s", before, static_cast<long long>(account.*row.field), row.words);
        before = ",";
    }
    std::printf("\n");
}

std::string RemedyForSocket(const A& account) {
    if (account.socketBufferGranted < account.socketBuffer) {
        return "The socket was full: raise net.core.rmem_max, since the system granted " +
               std::to_string(account.socketBufferGranted) + " of " +
               std::to_string(account.socketBuffer) + " bytes.";
    }
    return "The socket was full: use larger packets, give the receiving thread a processor "
           "(StreamThreadPriority, StreamThreadProcessor), or raise StreamSocketBufferSize.";
}

std::string RemedyForWire(const A& account) {
    if (account.resends == 0) {
        return "Packets were lost on the wire: let them be asked for again (StreamResend).";
    }
    if (account.refused != 0) {
        return "The camera no longer had the packets that were asked for again: lower its frame "
               "rate, or ask sooner (StreamGapTime).";
    }
    return "Packets were lost on the wire: raise the delay between them (GevSCPD), lower the "
           "packet size, and look at cable, switch and other traffic.";
}

}  // namespace

std::optional<StreamAccount> StreamAccount::Read(OV_DEV_HANDLE camera) {
    if (!Node::Find(camera, OV_NODE_MODULE_STREAM, kFrames[0].feature)) {
        return std::nullopt;
    }
    StreamAccount account;
    ::Read(camera, kFrames, account);
    ::Read(camera, kPackets, account);
    ::Read(camera, kSettings, account);
    return account;
}

Json StreamAccount::ToJson() const {
    const std::string remedy = Remedy();
    return {{"frames", ToDocument(kFrames, *this)},
            {"packets", ToDocument(kPackets, *this)},
            {"remedy", remedy.empty() ? Json() : Json(remedy)}};
}

void StreamAccount::Print() const {
    PrintRows("frames: ", kFrames, *this);
    PrintRows("packets:", kPackets, *this);
    if (const std::string remedy = Remedy(); !remedy.empty()) {
        std::printf("%s\n", remedy.c_str());
    }
}

// Incomplete frames count where most of their packets went.
std::string StreamAccount::Remedy() const {
    const bool isSocket = 2 * dropped >= missing && dropped != 0;
    const int64_t socket = lostInSocket + (isSocket ? incomplete : 0);
    const int64_t wire = lostOnWire + (isSocket ? 0 : incomplete);
    const int64_t largest = std::max({noBuffer, socket, wire});
    if (largest == 0) {
        return {};
    }
    if (largest == noBuffer) {
        return "No buffer was free: spend less time on each frame, or lower the frame rate.";
    }
    return largest == socket ? RemedyForSocket(*this) : RemedyForWire(*this);
}
