#include <gtest/gtest.h>

#include <string>

#include "simulator/stream/PacketPlan.h"

namespace {

using namespace OvGige;
using namespace OvSimulator;

constexpr uint32_t kPlanned = 12;

class PacketPlanTest : public testing::Test {
protected:
    PacketPlanTest() {
        constexpr size_t kData = 540;
        StreamSetup setup;
        setup.packetSize = kData + kIpUdpHeaderSize + kStreamHeaderSize;
        OvProducer::FrameInfo frame;
        frame.sizeFilled = (kPlanned - 2) * kData;
        m_block.MakeRoom(frame.sizeFilled);
        m_block.Fill(setup, frame);
    }

    /// The numbers of the packets in the order in which they leave.
    std::vector<uint32_t> Plan(uint64_t sequence = 0) {
        m_plan.emplace(m_block, sequence, m_faults, m_account);
        std::vector<uint32_t> numbers;
        for (const StreamPacket& packet : m_plan->Packets()) {
            const auto header = ParseStreamHeader(ByteView(packet.header).first(packet.headerSize));
            numbers.push_back(header ? header->packetId : ~0U);
        }
        return numbers;
    }
    static std::vector<uint32_t> InOrder() {
        std::vector<uint32_t> numbers(kPlanned);
        for (uint32_t i = 0; i < kPlanned; ++i) {
            numbers[i] = i;
        }
        return numbers;
    }

    StreamBlock m_block;
    Faults m_faults;
    Account m_account;
    std::optional<PacketPlan> m_plan;
};

TEST_F(PacketPlanTest, HasAllPacketsInOrder) {
    EXPECT_EQ(Plan(), InOrder());
    EXPECT_EQ(m_account[Count::DamagedBlocks], 0U);
}

TEST_F(PacketPlanTest, CountsEachPacketThatItLoses) {
    m_faults.stream.lost = 0.3;
    uint64_t left = 0;
    for (uint64_t sequence = 0; sequence < 20; ++sequence) {
        left += Plan(sequence).size();
    }
    EXPECT_GT(m_account[Count::LostPackets], 0U);
    EXPECT_EQ(m_account[Count::LostPackets] + left, 20 * kPlanned);
}

TEST_F(PacketPlanTest, LosesSeveralInARow) {
    m_faults.stream.lost = 1;
    m_faults.stream.burst = 5;
    EXPECT_TRUE(Plan().empty());
    EXPECT_EQ(m_account[Count::LostPackets], kPlanned);
    EXPECT_EQ(m_account[Count::DamagedBlocks], 1U);
    m_faults.stream.lost = 0.04;
    for (uint64_t sequence = 0; sequence < 50; ++sequence) {
        const std::vector<uint32_t> numbers = Plan(sequence);
        for (size_t i = 1; i < numbers.size(); ++i) {
            const uint32_t gap = numbers[i] - numbers[i - 1];
            EXPECT_TRUE(gap == 1 || gap > 5) << gap;
        }
    }
}

TEST_F(PacketPlanTest, DoublesPackets) {
    m_faults.stream.doubled = 1;
    const std::vector<uint32_t> numbers = Plan();
    ASSERT_EQ(numbers.size(), 2 * kPlanned);
    for (uint32_t i = 0; i < 2 * kPlanned; ++i) {
        EXPECT_EQ(numbers[i], i / 2);
    }
    EXPECT_EQ(m_account[Count::DoubledPackets], kPlanned);
}

TEST_F(PacketPlanTest, DelaysPacketsToTheEndOfTheirBlock) {
    m_faults.stream.delayed = 0.3;
    std::vector<uint32_t> numbers = Plan(1);
    const uint64_t delayed = m_account[Count::DelayedPackets];
    ASSERT_GT(delayed, 0U);
    EXPECT_TRUE(std::is_sorted(numbers.begin(), numbers.end() - static_cast<ptrdiff_t>(delayed)));
    EXPECT_FALSE(std::is_sorted(numbers.begin(), numbers.end()));
    std::sort(numbers.begin(), numbers.end());
    EXPECT_EQ(numbers, InOrder());
}

TEST_F(PacketPlanTest, ReordersPacketsWithoutLosingOne) {
    m_faults.stream.reordered = 0.3;
    std::vector<uint32_t> numbers = Plan(1);
    EXPECT_GT(m_account[Count::ReorderedPackets], 0U);
    EXPECT_FALSE(std::is_sorted(numbers.begin(), numbers.end()));
    std::sort(numbers.begin(), numbers.end());
    EXPECT_EQ(numbers, InOrder());
    EXPECT_EQ(m_account[Count::DamagedBlocks], 0U);
}

TEST_F(PacketPlanTest, CutsPackets) {
    m_faults.stream.truncated = 1;
    Plan();
    ASSERT_EQ(m_plan->Packets().size(), kPlanned);
    for (uint32_t i = 0; i < kPlanned; ++i) {
        const StreamPacket& packet = m_plan->Packets()[i];
        EXPECT_LT(packet.headerSize + packet.payload.size(),
                  kStreamHeaderSize + m_block.Payload(i).size());
    }
    EXPECT_EQ(m_account[Count::TruncatedPackets], kPlanned);
    EXPECT_EQ(m_account[Count::DamagedBlocks], 1U);
}

TEST_F(PacketPlanTest, ChangesOneByteOfAPacket) {
    m_faults.stream.corrupted = 1;
    Plan();
    for (uint32_t i = 0; i < kPlanned; ++i) {
        const StreamPacket& packet = m_plan->Packets()[i];
        const StreamPacket good(m_block.Header(i), m_block.Payload(i));
        Bytes bytes(packet.header.begin(), packet.header.end());
        Append(bytes, packet.payload);
        Bytes goodBytes(good.header.begin(), good.header.end());
        Append(goodBytes, good.payload);
        ASSERT_EQ(bytes.size(), goodBytes.size());
        size_t differences = 0;
        for (size_t at = 0; at < bytes.size(); ++at) {
            differences += bytes[at] == goodBytes[at] ? 0 : 1;
        }
        EXPECT_EQ(differences, 1U) << i;
    }
    EXPECT_EQ(m_account[Count::CorruptedPackets], kPlanned);
}

TEST_F(PacketPlanTest, LetsOneThingHappenToAPacket) {
    m_faults.stream = {.lost = 0.2,
                       .burst = 1,
                       .truncated = 0.2,
                       .corrupted = 0.2,
                       .doubled = 0.2,
                       .delayed = 0.2,
                       .reordered = 0.2,
                       .wrongLeader = 0,
                       .jumpBack = 0};
    const size_t left = Plan(3).size();
    EXPECT_EQ(left, kPlanned - m_account[Count::LostPackets] + m_account[Count::DoubledPackets]);
}

TEST_F(PacketPlanTest, DoesTheSameToTheSameBlock) {
    m_faults.seed = 5;
    m_faults.stream.lost = 0.3;
    const std::vector<uint32_t> first = Plan(4);
    Plan(5);
    EXPECT_EQ(Plan(4), first);
    m_faults.seed = 6;
    EXPECT_NE(Plan(4), first);
}

}  // namespace
