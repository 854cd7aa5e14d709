#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <memory>
#include <numeric>
#include <string>

#include "HexBytes.h"
#include "ScriptedLink.h"
#include "gige/control/CameraMemory.h"
#include "gige/protocol/Bootstrap.h"
#include "gige/protocol/Registers.h"

namespace {

using namespace OvGige;
using namespace std::chrono_literals;
using OvProducer::Failure;

/// A camera of 4 KiB that answers as it should and notes what it was asked.
class CameraMemoryTest : public testing::Test {
protected:
    CameraMemoryTest() {
        std::iota(reinterpret_cast<uint8_t*>(m_content.data()),
                  reinterpret_cast<uint8_t*>(m_content.data() + m_content.size()), uint8_t{0});
        m_link->Answer([this](const CommandPacket& command) {
            return std::vector<ScriptedReply>{{0ms, AnswerOf(command, Serve(command))}};
        });
    }

    Bytes Serve(const CommandPacket& command) {
        switch (command.command) {
            case Command::ReadMemory: {
                const MemoryRange range = ParseRange(command.payload).value();
                m_asked.push_back("read " + std::to_string(range.address) + "+" +
                                  std::to_string(range.count));
                return BuildMemory(
                    {.address = range.address,
                     .bytes = ByteView(m_content).subspan(range.address, range.count)});
            }
            case Command::WriteMemory: {
                const MemoryBytes memory = ParseMemory(command.payload).value();
                m_asked.push_back("write " + std::to_string(memory.address) + "+" +
                                  std::to_string(memory.bytes.size()));
                std::copy(memory.bytes.begin(), memory.bytes.end(),
                          m_content.begin() + memory.address);
                return BuildCount(static_cast<uint16_t>(memory.bytes.size()));
            }
            case Command::WriteRegister: {
                const RegisterWrite write = ParseWrites(command.payload).value().front();
                m_asked.push_back("register " + std::to_string(write.address));
                WriteBig(std::span(m_content).subspan(write.address), write.value);
                return BuildCount(1);
            }
            default:
                m_asked.emplace_back("register read");
                return BuildNumbers(std::array{ReadBig<uint32_t>(
                    ByteView(m_content).subspan(ParseNumbers(command.payload).value().front()))});
        }
    }

    Bytes Content(size_t at, size_t length) const {
        const auto first = m_content.begin() + static_cast<ptrdiff_t>(at);
        return {first, first + static_cast<ptrdiff_t>(length)};
    }

    Bytes m_content = Bytes(4096);
    std::vector<std::string> m_asked;
    ScriptedLink* const m_link = new ScriptedLink;  // owned by the channel
    ControlChannel m_channel{std::unique_ptr<DatagramLink>(m_link), 1};
    CameraMemory m_memory{m_channel};
};

using Asked = std::vector<std::string>;

TEST_F(CameraMemoryTest, ReadsRegistersAsNumbers) {
    EXPECT_EQ(m_memory.ReadRegister(0x10), 0x10111213U);
    EXPECT_EQ(m_asked, Asked({"register read"}));
}

TEST_F(CameraMemoryTest, WritesRegistersAsNumbers) {
    m_memory.WriteRegister(0x10, 0xDEADBEEF);
    EXPECT_EQ(Content(0x10, 4), FromHex("DE AD BE EF"));
}

TEST_F(CameraMemoryTest, ReadsMemoryInPiecesOf512Bytes) {
    Bytes out(1200);
    m_memory.Read(100, out);
    EXPECT_EQ(out, Content(100, 1200));
    EXPECT_EQ(m_asked, Asked({"read 100+512", "read 612+512", "read 1124+176"}));
}

TEST_F(CameraMemoryTest, ReadsTheWordsAroundAnUnalignedAccess) {
    Bytes out(5);
    m_memory.Read(103, out);
    EXPECT_EQ(out, Content(103, 5));
    EXPECT_EQ(m_asked, Asked({"read 100+8"}));
}

TEST_F(CameraMemoryTest, AsksNothingForNothing) {
    m_memory.Read(103, {});
    m_memory.Write(103, {});
    EXPECT_TRUE(m_asked.empty());
}

TEST_F(CameraMemoryTest, WritesMemoryInPiecesOf512Bytes) {
    m_memory.SetCapability(kOffersWriteMemory);
    const Bytes in(600, std::byte{0xAA});
    m_memory.Write(200, in);
    EXPECT_EQ(Content(200, 600), in);
    EXPECT_EQ(m_asked, Asked({"write 200+512", "write 712+88"}));
}

TEST_F(CameraMemoryTest, KeepsTheOtherBytesOfTheWordsAtBothEnds) {
    m_memory.SetCapability(kOffersWriteMemory);
    const Bytes before = Content(0, 4096);
    m_memory.Write(103, Bytes(10, std::byte{0xAA}));
    Bytes expected = before;
    std::fill_n(expected.begin() + 103, 10, std::byte{0xAA});
    EXPECT_EQ(m_content, expected);
    EXPECT_EQ(m_asked, Asked({"read 100+4", "read 112+4", "write 100+16"}));
}

TEST_F(CameraMemoryTest, ReadsTheOnlyWordOfASmallWriteOnce) {
    m_memory.SetCapability(kOffersWriteMemory);
    m_memory.Write(101, Bytes(2, std::byte{0xAA}));
    EXPECT_EQ(Content(100, 4), FromHex("64 AA AA 67"));
    EXPECT_EQ(m_asked, Asked({"read 100+4", "write 100+4"}));
}

TEST_F(CameraMemoryTest, WritesRegistersWhereTheCameraHasNoWritesOfMemory) {
    m_memory.Write(200, FromHex("01 02 03 04 05 06 07 08"));
    EXPECT_EQ(Content(200, 8), FromHex("01 02 03 04 05 06 07 08"));
    EXPECT_EQ(m_asked, Asked({"register 200", "register 204"}));
}

TEST_F(CameraMemoryTest, HasNoAddressesBeyond32Bits) {
    Bytes bytes(8);
    for (const uint64_t address : {uint64_t{0x1'0000'0000}, uint64_t{0xFFFFFFFC}, ~uint64_t{0}}) {
        try {
            m_memory.Read(address, bytes);
            FAIL();
        } catch (const Failure& failure) {
            EXPECT_EQ(failure.Code(), GenTL::GC_ERR_INVALID_ADDRESS);
        }
        EXPECT_THROW(m_memory.Write(address, bytes), Failure);
    }
    EXPECT_TRUE(m_asked.empty());
}

TEST_F(CameraMemoryTest, TakesNoAnswerOfAnotherAddressOrLength) {
    const Bytes ten(10);
    for (const MemoryBytes& lie :
         {MemoryBytes{104, ByteView(ten).first(4)}, MemoryBytes{100, ByteView(ten).first(8)}}) {
        m_link->Answer([&](const CommandPacket& command) {
            return std::vector<ScriptedReply>{{0ms, AnswerOf(command, BuildMemory(lie))}};
        });
        Bytes out(4);
        try {
            m_memory.Read(100, out);
            FAIL();
        } catch (const Failure& failure) {
            EXPECT_EQ(failure.Code(), GenTL::GC_ERR_IO);
            EXPECT_STREQ(failure.what(), "The camera's answer to a read isn't what was asked for");
        }
    }
}

TEST_F(CameraMemoryTest, TakesNoAnswerOfTwoRegistersForOne) {
    m_link->Answer([](const CommandPacket& command) {
        return std::vector<ScriptedReply>{{0ms, AnswerOf(command, Bytes(8))}};
    });
    EXPECT_THROW(m_memory.ReadRegister(0), Failure);
}

}  // namespace
