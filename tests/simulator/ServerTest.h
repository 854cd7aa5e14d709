#pragma once
/// A simulated camera without its network, asked packet by packet.

#include <gtest/gtest.h>

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "gige/protocol/Discovery.h"
#include "gige/protocol/Registers.h"
#include "simulator/control/CommandServer.h"

namespace OvSimulator {

/// Notes where the camera was told to go.
class NotingPlace : public NetworkPlace {
public:
    bool Move(const IpAddresses& addresses) override {
        if (isRefusing) {
            return false;
        }
        moves.push_back(addresses);
        return true;
    }

    void Resend(const OvGige::ResendRequest& request, bool saysMore) override {
        resends.push_back(request);
        saidMore = saysMore;
    }

    std::vector<IpAddresses> moves;
    std::vector<OvGige::ResendRequest> resends;
    bool saidMore = false;
    bool isRefusing = false;
};

/// What a host learns from an answer.
struct Answered {
    OvGige::Endpoint to;
    OvGige::Status status{};
    uint16_t answer = 0;
    uint16_t requestId = 0;
    OvGige::Bytes payload;
};

class ServerTest : public testing::Test {
protected:
    static constexpr IpAddresses kCamera{
        .ip = {0xC0A80702}, .mask = {0xFFFFFF00}, .gateway = {0xC0A80701}};
    static constexpr OvGige::Endpoint kFirst{{0xC0A80714}, 40001};
    static constexpr OvGige::Endpoint kSecond{{0xC0A80715}, 40002};
    static constexpr OvGige::Endpoint kForeign{{0x0A000005}, 40003};

    /// The answer to a packet; nothing if none was sent.
    std::optional<Answered> AskWith(const OvGige::CommandPacket& command,
                                    const OvGige::Endpoint& sender, bool wasBroadcast = false) {
        const OvGige::Bytes packet = BuildCommand(command);
        const Replies replies = m_server.Handle(
            {.sender = sender, .wasBroadcast = wasBroadcast, .packet = packet}, m_now);
        if (replies.empty()) {
            return {};
        }
        EXPECT_EQ(replies.size(), 1U);
        const auto answer = OvGige::ParseAnswer(replies.front().packet).value();
        return Answered{.to = replies.front().to,
                        .status = answer.status,
                        .answer = answer.answer,
                        .requestId = answer.requestId,
                        .payload = {answer.payload.begin(), answer.payload.end()}};
    }

    /// A command with a number of its own, which is answered.
    Answered Ask(OvGige::Command command, const OvGige::Bytes& payload,
                 const OvGige::Endpoint& sender = kFirst) {
        return AskWith({.flags = OvGige::kFlagAnswerRequired,
                        .command = command,
                        .requestId = ++m_requestId,
                        .payload = payload},
                       sender)
            .value();
    }

    Answered ReadRegister(uint32_t address, const OvGige::Endpoint& sender = kFirst) {
        return Ask(OvGige::Command::ReadRegister, OvGige::BuildNumbers(std::array{address}),
                   sender);
    }
    uint32_t Register(uint32_t address, const OvGige::Endpoint& sender = kFirst) {
        return OvGige::ParseNumbers(ReadRegister(address, sender).payload).value().front();
    }
    OvGige::Status WriteRegister(uint32_t address, uint32_t value,
                                 const OvGige::Endpoint& sender = kFirst) {
        const std::array writes{OvGige::RegisterWrite{.address = address, .value = value}};
        return Ask(OvGige::Command::WriteRegister, OvGige::BuildWrites(writes), sender).status;
    }
    Answered ReadMemory(uint32_t address, uint16_t count, const OvGige::Endpoint& sender = kFirst) {
        return Ask(OvGige::Command::ReadMemory,
                   OvGige::BuildRange({.address = address, .count = count}), sender);
    }
    Answered WriteMemory(uint32_t address, const OvGige::Bytes& bytes,
                         const OvGige::Endpoint& sender = kFirst) {
        return Ask(OvGige::Command::WriteMemory,
                   OvGige::BuildMemory({.address = address, .bytes = bytes}), sender);
    }
    void TakeControl(uint32_t privilege = OvGige::kPrivilegeControl) {
        ASSERT_EQ(WriteRegister(OvGige::kRegPrivilege, privilege), OvGige::Status::Success);
    }

    std::optional<Answered> Search(const OvGige::Endpoint& sender, bool wasBroadcast,
                                   uint8_t extraFlags = 0) {
        return AskWith({.flags = static_cast<uint8_t>(OvGige::kFlagAnswerRequired | extraFlags),
                        .command = OvGige::Command::Discovery,
                        .requestId = ++m_requestId,
                        .payload = {}},
                       sender, wasBroadcast);
    }
    std::optional<Answered> Force(const IpAddresses& addresses, OvGige::MacAddress mac) {
        const OvGige::Bytes payload = OvGige::BuildForcedAddress(
            {.mac = mac, .ip = addresses.ip, .mask = addresses.mask, .gateway = addresses.gateway});
        return AskWith({.flags = OvGige::kFlagAnswerRequired | OvGige::kFlagBroadcastAnswer,
                        .command = OvGige::Command::ForceIp,
                        .requestId = ++m_requestId,
                        .payload = payload},
                       kForeign, true);
    }

    Clock::time_point m_now = Clock::time_point() + std::chrono::hours(1);
    const CameraProfile m_profile = MakeProfile(0, kCamera, OvGige::kControlPort);
    Account m_account;
    CameraDevice m_device{m_profile};
    NotingPlace m_place;
    CommandServer m_server{m_device, ControlFaults(), m_place, m_account};
    uint16_t m_requestId = 0;
};

}  // namespace OvSimulator
