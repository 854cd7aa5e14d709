/// @file
/// The chunk features of the virtual cameras, read from a frame.
#include <gtest/gtest.h>

#include <cstdlib>
#include <optional>
#include <string>

#include "GenApi/ChunkAdapterGEV.h"
#include "GenApi/IBoolean.h"
#include "GenApi/IEnumeration.h"
#include "GenApi/IFloat.h"
#include "GenApi/IInteger.h"
#include "GenApi/ISelector.h"
#include "LiveDescription.h"

namespace {

class VirtualChunkFeatures : public testing::Test {
protected:
    VirtualChunkFeatures() {
        setenv("OV_VIRTUAL_FRAME_RATE", "0", 1);
        camera.OpenStream();
        live.emplace(api, camera.port);
        adapter.emplace(&live->Map());
        Integer("Width").SetValue(64);
        Integer("Height").SetValue(32);
        Boolean("ChunkModeActive").SetValue(true);
    }
    ~VirtualChunkFeatures() override { unsetenv("OV_VIRTUAL_FRAME_RATE"); }

    GenApi::IInteger& Integer(const char* name) { return live->As<GenApi::IInteger>(name); }
    GenApi::IFloat& Float(const char* name) { return live->As<GenApi::IFloat>(name); }
    GenApi::IBoolean& Boolean(const char* name) { return live->As<GenApi::IBoolean>(name); }
    void Select(const char* chunk) {
        live->As<GenApi::IEnumeration>("ChunkSelector").FromString(chunk);
    }
    bool Readable(const char* name) {
        return GenApi::IsReadable(live->As<GenApi::INode>(name).GetAccessMode());
    }

    void Start() {
        camera.Start(3, static_cast<std::size_t>(Integer("PayloadSize").GetValue()));
        camera.WriteRegister<std::uint32_t>(0x408, 1);
    }
    /// Features read from the next frame, which is kept.
    void Attach() {
        const GenTL::BUFFER_HANDLE buffer = camera.NextFrame();
        const auto index = reinterpret_cast<std::size_t>(
            camera.BufferInfo<void*>(buffer, GenTL::BUFFER_INFO_USER_PTR));
        const auto size = camera.BufferInfo<std::size_t>(buffer, GenTL::BUFFER_INFO_SIZE_FILLED);
        timestamp = camera.BufferInfo<std::uint64_t>(buffer, GenTL::BUFFER_INFO_TIMESTAMP);
        adapter->AttachBuffer(reinterpret_cast<uint8_t*>(camera.memory[index].data()),
                              static_cast<int64_t>(size), &statistics);
    }

    GenTLApi api{OV_TEST_VIRTUAL_PRODUCER};
    OpenCamera camera{api};
    std::optional<LiveDescription> live;
    std::optional<GenApi::CChunkAdapterGEV> adapter;
    GenApi::AttachStatistics_t statistics;
    std::uint64_t timestamp = 0;
};

TEST_F(VirtualChunkFeatures, AreReadFromEachFrame) {
    Float("ExposureTime").SetValue(1234.5);
    Float("Gain").SetValue(3.5);
    live->As<GenApi::IEnumeration>("TriggerActivation").FromString("FallingEdge");
    EXPECT_FALSE(Readable("ChunkFrameID"));
    Start();
    for (int64_t frame = 0; frame < 3; ++frame) {
        Attach();
        EXPECT_EQ(Integer("ChunkFrameID").GetValue(), frame);
        EXPECT_EQ(Integer("ChunkTimestamp").GetValue(), static_cast<int64_t>(timestamp));
        EXPECT_DOUBLE_EQ(Float("ChunkExposureTime").GetValue(), 1234.5);
        EXPECT_DOUBLE_EQ(Float("ChunkGain").GetValue(), 3.5);
        EXPECT_EQ(Integer("ChunkLineStatusAll").GetValue(), 1);
    }
    EXPECT_EQ(statistics.NumChunks, 6);
    EXPECT_EQ(statistics.NumChunkPorts, 5);
    EXPECT_EQ(statistics.NumAttachedChunks, 5);
}

TEST_F(VirtualChunkFeatures, AreMissingWhenSwitchedOff) {
    Select("Gain");
    EXPECT_TRUE(Boolean("ChunkEnable").GetValue());
    Boolean("ChunkEnable").SetValue(false);
    Start();
    Attach();
    EXPECT_FALSE(Readable("ChunkGain"));
    EXPECT_TRUE(Readable("ChunkExposureTime"));
}

TEST_F(VirtualChunkFeatures, SelectorChoosesWhatEnableMeans) {
    Select("Timestamp");
    Boolean("ChunkEnable").SetValue(false);
    Select("FrameID");
    EXPECT_TRUE(Boolean("ChunkEnable").GetValue());
    Select("Timestamp");
    EXPECT_FALSE(Boolean("ChunkEnable").GetValue());
    GenApi::value_vector selected;
    dynamic_cast<GenApi::ISelector&>(live->As<GenApi::INode>("ChunkSelector"))
        .GetSelectedFeatures(selected);
    ASSERT_EQ(selected.size(), 1U);
    EXPECT_EQ(selected[0]->GetNode()->GetName(), "ChunkEnable");
}

TEST_F(VirtualChunkFeatures, ImageAndLockFixTheEnable) {
    Select("Image");
    EXPECT_FALSE(live->Writable("ChunkEnable"));
    Select("Gain");
    EXPECT_TRUE(live->Writable("ChunkEnable"));
    Integer("TLParamsLocked").SetValue(1);
    EXPECT_FALSE(live->Writable("ChunkEnable"));
    EXPECT_FALSE(live->Writable("ChunkModeActive"));
}

TEST_F(VirtualChunkFeatures, GoWithTheFrame) {
    Start();
    Attach();
    adapter->DetachBuffer();
    EXPECT_FALSE(Readable("ChunkTimestamp"));
}

}  // namespace
