#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstring>

#include "framework/Backend.h"
#include "gige/message/MessageFeatures.h"

namespace {

using namespace OvGige;
using testing::HasSubstr;

TEST(MessageFeatures, AreReadAtTheAddressesOfTheirDescription) {
    MessageAccount account;
    account.foreign = 7;
    OvProducer::RegisterSpace registers;
    AddMessageRegisters(registers, [&account](const MessageFeature& feature) {
        return (account.*feature.count).load();
    });
    const std::string xml =
        WithMessageFeatures(OvProducer::OwnDescription(OvProducer::ModuleKind::Device).xml);
    const std::string mark = "<Address>";
    const size_t at = xml.find(mark, xml.find("<IntReg Name=\"MessageForeignCount\""));
    std::array<std::byte, 8> bytes{};
    registers.Read(std::stoull(xml.substr(at + mark.size(), 6), nullptr, 16), bytes);
    uint64_t value = 0;
    std::memcpy(&value, bytes.data(), bytes.size());
    EXPECT_EQ(value, 7U);
}

TEST(MessageFeatures, ChangeTheIdentityOfTheDescription) {
    const std::string own = OvProducer::OwnDescription(OvProducer::ModuleKind::Device).xml;
    const std::string xml = WithMessageFeatures(own);
    EXPECT_THAT(own, HasSubstr("ModelName=\"DeviceModule\""));
    EXPECT_THAT(xml, HasSubstr("ModelName=\"GigeDeviceModule\""));
    EXPECT_THAT(xml, HasSubstr("<pFeature>MessageAccount</pFeature>"));
}

}  // namespace
