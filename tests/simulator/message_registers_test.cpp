#include <gtest/gtest.h>

#include "simulator/device/CameraDevice.h"
#include "simulator/message/MessageRegisters.h"
#include "simulator/stream/StreamRegisters.h"

namespace {

using namespace OvGige;
using namespace OvSimulator;
using namespace std::chrono_literals;

class MessageRegisters : public testing::Test {
protected:
    void Connect(MessageKind kind = MessageKind::EventData) {
        ConnectMessageRegisters(m_registers, kind,
                                [this](const MessageSetup& setup) { m_setups.push_back(setup); });
    }
    void Write(uint32_t address, uint32_t value) {
        ASSERT_EQ(m_registers.Write(address, value), Status::Success);
    }

    CameraDevice m_device{MakeProfile(0, {}, kControlPort)};
    BootstrapRegisters& m_registers = m_device.Bootstrap();
    std::vector<MessageSetup> m_setups;
};

TEST_F(MessageRegisters, SteerTheChannel) {
    Connect();
    Write(kRegMessageDestination, 0x0A010001);
    Write(kRegMessageTimeout, 300);
    Write(kRegMessageRetries, 2);
    Write(kRegMessageConfig, 0xFFFFFFFF);
    Write(kRegMessagePort, 0x00001234);
    ASSERT_EQ(m_setups.size(), 5U);
    EXPECT_FALSE(m_setups[3].IsOpen());
    EXPECT_EQ(m_setups.back(), (MessageSetup{.destination = {{0x0A010001}, 0x1234},
                                             .timeout = 300ms,
                                             .retries = 2,
                                             .isExtended = false,
                                             .joinsEvents = true}));
}

TEST_F(MessageRegisters, FollowTheFormOfTheStream) {
    ConnectStreamRegisters(
        m_registers, [](const StreamSetup&) {}, [] {});
    Connect();
    Write(kRegStreamConfig, kStreamConfigExtendedIds);
    EXPECT_TRUE(m_setups.back().isExtended);
}

TEST_F(MessageRegisters, SayWhatTheCameraOffers) {
    Connect();
    EXPECT_EQ(m_registers.Get(kRegMessageChannelCount), 1U);
    const uint32_t offered = m_registers.Get(kRegControlCapability);
    EXPECT_EQ(offered & (kOffersEvent | kOffersEventData), kOffersEventData);
}

TEST_F(MessageRegisters, SayThatEventsHaveNoData) {
    Connect(MessageKind::Event);
    const uint32_t offered = m_registers.Get(kRegControlCapability);
    EXPECT_EQ(offered & (kOffersEvent | kOffersEventData), kOffersEvent);
}

TEST_F(MessageRegisters, ArentThereWithoutAChannel) {
    Connect(MessageKind::None);
    EXPECT_EQ(m_registers.Get(kRegMessageChannelCount), 0U);
    EXPECT_EQ(m_registers.Write(kRegMessagePort, 1), Status::InvalidAddress);
    m_device.Release();
}

TEST_F(MessageRegisters, CloseTheChannelOfAnOwnerWhoIsGone) {
    Connect();
    Write(kRegMessagePort, 0x1234);
    m_device.Release();
    EXPECT_FALSE(m_setups.back().IsOpen());
}

}  // namespace
