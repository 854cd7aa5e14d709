/// @file
/// Settings of virtual cameras that come as a whole, one after the other.
#include <gtest/gtest.h>

#include <cstdlib>

#include "GenTLApi.h"

namespace {

namespace Reg {
constexpr std::uint64_t Width = 0x310, OffsetX = 0x318, BinningX = 0x320, Start = 0x408,
                        Stop = 0x40C, SetSelector = 0x700, SetLoad = 0x704, SetSave = 0x708,
                        Begin = 0x710, End = 0x714, Reset = 0x20C;
}  // namespace Reg

class VirtualLoading : public testing::Test {
protected:
    VirtualLoading() {
        setenv("OV_VIRTUAL_FRAME_RATE", "0", 1);
        camera.OpenStream();
    }
    ~VirtualLoading() override { unsetenv("OV_VIRTUAL_FRAME_RATE"); }

    GenTL::GC_ERROR Write(std::uint64_t address, std::uint32_t value) const {
        std::size_t size = sizeof value;
        return api.GCWritePort(camera.port, address, &value, &size);
    }
    std::uint32_t Read(std::uint64_t address) const {
        return camera.ReadRegister<std::uint32_t>(address);
    }
    /// Beyond the sensor together, each possible alone.
    void Contradict() const {
        EXPECT_EQ(Write(Reg::Begin, 1), 0);
        EXPECT_EQ(Write(Reg::OffsetX, 2000), 0);
        EXPECT_EQ(Write(Reg::BinningX, 2), 0);
    }

    GenTLApi api{OV_TEST_VIRTUAL_PRODUCER};
    OpenCamera camera{api};
};

TEST_F(VirtualLoading, SettingsMayContradictOneAnotherInBetween) {
    ASSERT_EQ(Write(Reg::OffsetX, 2000), GenTL::GC_ERR_INVALID_VALUE);
    ASSERT_EQ(Write(Reg::Begin, 1), 0);
    EXPECT_EQ(Write(Reg::OffsetX, 2000), 0);
    EXPECT_EQ(Write(Reg::Width, 400), 0);
    EXPECT_EQ(Write(Reg::End, 1), 0);
    EXPECT_EQ(Read(Reg::OffsetX), 2000U);
    EXPECT_EQ(Read(Reg::Width), 400U);
}

TEST_F(VirtualLoading, BinningLeavesTheWindowThatIsLoaded) {
    ASSERT_EQ(Write(Reg::Begin, 1), 0);
    EXPECT_EQ(Write(Reg::Width, 1224), 0);
    EXPECT_EQ(Write(Reg::BinningX, 2), 0);
    EXPECT_EQ(Write(Reg::End, 1), 0);
    EXPECT_EQ(Read(Reg::Width), 1224U);
}

TEST_F(VirtualLoading, WhatCannotBeCombinedIsUndoneAtTheEnd) {
    ASSERT_EQ(Write(Reg::Width, 640), 0);
    Contradict();
    EXPECT_EQ(Write(Reg::End, 1), GenTL::GC_ERR_INVALID_VALUE);
    EXPECT_EQ(Read(Reg::Width), 640U);
    EXPECT_EQ(Read(Reg::OffsetX), 0U);
    EXPECT_EQ(Read(Reg::BinningX), 1U);
    EXPECT_EQ(Write(Reg::OffsetX, 2000), GenTL::GC_ERR_INVALID_VALUE);
}

TEST_F(VirtualLoading, AnEndWithoutABeginChangesNothing) {
    EXPECT_EQ(Write(Reg::End, 1), 0);
    EXPECT_EQ(Read(Reg::Width), 2448U);
}

TEST_F(VirtualLoading, EndsBeforeFramesFlow) {
    Contradict();
    EXPECT_EQ(Write(Reg::Start, 1), GenTL::GC_ERR_INVALID_VALUE);
    EXPECT_EQ(Read(Reg::OffsetX), 0U);
    EXPECT_EQ(Write(Reg::Start, 1), 0);
    EXPECT_EQ(Write(Reg::Stop, 1), 0);
}

TEST_F(VirtualLoading, EndsBeforeASetIsSaved) {
    ASSERT_EQ(Write(Reg::SetSelector, 1), 0);
    Contradict();
    EXPECT_EQ(Write(Reg::SetSave, 1), GenTL::GC_ERR_INVALID_VALUE);
    EXPECT_EQ(Write(Reg::SetSave, 1), 0);
    EXPECT_EQ(Write(Reg::SetLoad, 1), 0);
    EXPECT_EQ(Read(Reg::OffsetX), 0U);
}

TEST_F(VirtualLoading, EndsWithAReset) {
    Contradict();
    EXPECT_EQ(Write(Reg::Reset, 1), 0);
    EXPECT_EQ(Read(Reg::OffsetX), 0U);
    EXPECT_EQ(Write(Reg::OffsetX, 2000), GenTL::GC_ERR_INVALID_VALUE);
}

TEST_F(VirtualLoading, DoesNotBeginWhileFramesFlow) {
    camera.Start(2, 2448 * 2048);
    ASSERT_EQ(Write(Reg::Start, 1), 0);
    EXPECT_EQ(Write(Reg::Begin, 1), GenTL::GC_ERR_ACCESS_DENIED);
    EXPECT_EQ(Write(Reg::Stop, 1), 0);
}

}  // namespace
