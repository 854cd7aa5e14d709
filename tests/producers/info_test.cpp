/// @file
/// Information calls: the two-call protocol, types, and the last error.
#include <cstring>
#include <thread>

#include "TestProducerFixture.h"

namespace {

using Info = TestProducerTest;

TEST_F(Info, NullBufferAsksForTheSize) {
    camera.OpenSystem();
    GenTL::INFO_DATATYPE type = 0;
    std::size_t size = 12345;
    ASSERT_EQ(api.TLGetInfo(camera.system, GenTL::TL_INFO_MODEL, &type, nullptr, &size), 0);
    EXPECT_EQ(size, sizeof "TestProducer");
    EXPECT_EQ(type, GenTL::INFO_DATATYPE_STRING);
}

TEST_F(Info, BufferOfTheSizeIsFilled) {
    camera.OpenSystem();
    char text[sizeof "TestProducer"];
    std::size_t size = sizeof text;
    GenTL::INFO_DATATYPE type = 0;
    ASSERT_EQ(api.TLGetInfo(camera.system, GenTL::TL_INFO_MODEL, &type, text, &size), 0);
    EXPECT_STREQ(text, "TestProducer");
    EXPECT_EQ(size, sizeof text);
}

TEST_F(Info, LargerBufferGetsTheSizeUsed) {
    camera.OpenSystem();
    char text[100];
    std::size_t size = sizeof text;
    GenTL::INFO_DATATYPE type = 0;
    ASSERT_EQ(api.TLGetInfo(camera.system, GenTL::TL_INFO_MODEL, &type, text, &size), 0);
    EXPECT_EQ(size, sizeof "TestProducer");
}

TEST_F(Info, ShortBufferStaysUntouched) {
    camera.OpenSystem();
    char text[5] = "abcd";
    std::size_t size = sizeof text;
    GenTL::INFO_DATATYPE type = 0;
    EXPECT_EQ(api.TLGetInfo(camera.system, GenTL::TL_INFO_MODEL, &type, text, &size),
              GenTL::GC_ERR_BUFFER_TOO_SMALL);
    EXPECT_STREQ(text, "abcd");
}

TEST_F(Info, TypeMayBeNull) {
    camera.OpenSystem();
    std::size_t size = 0;
    EXPECT_EQ(api.TLGetInfo(camera.system, GenTL::TL_INFO_MODEL, nullptr, nullptr, &size), 0);
}

TEST_F(Info, SizeMustNotBeNull) {
    camera.OpenSystem();
    GenTL::INFO_DATATYPE type = 0;
    EXPECT_EQ(api.TLGetInfo(camera.system, GenTL::TL_INFO_MODEL, &type, nullptr, nullptr),
              GenTL::GC_ERR_INVALID_PARAMETER);
}

TEST_F(Info, UnknownCommandIsNotOffered) {
    camera.OpenSystem();
    std::size_t size = 0;
    EXPECT_EQ(api.TLGetInfo(camera.system, 777, nullptr, nullptr, &size),
              GenTL::GC_ERR_NOT_IMPLEMENTED);
}

TEST_F(Info, NumberNeedsRoomForItsType) {
    camera.OpenInterface();
    char small[2];
    std::size_t size = sizeof small;
    GenTL::INFO_DATATYPE type = 0;
    EXPECT_EQ(api.IFGetDeviceInfo(camera.iface, "TestCamera0_0", GenTL::DEVICE_INFO_ACCESS_STATUS,
                                  &type, small, &size),
              GenTL::GC_ERR_BUFFER_TOO_SMALL);
}

struct TypeCase {
    GenTL::STREAM_INFO_CMD command;
    GenTL::INFO_DATATYPE type;
    std::size_t size;
};
class StreamInfoTypes : public TestProducerTest, public testing::WithParamInterface<TypeCase> {};

TEST_P(StreamInfoTypes, AreThoseOfTheStandard) {
    camera.OpenStream();
    std::byte value[64];
    std::size_t size = sizeof value;
    GenTL::INFO_DATATYPE type = 0;
    ASSERT_EQ(api.DSGetInfo(camera.stream, GetParam().command, &type, value, &size), 0);
    EXPECT_EQ(type, GetParam().type);
    EXPECT_EQ(size, GetParam().size);
}

INSTANTIATE_TEST_SUITE_P(
    Commands, StreamInfoTypes,
    testing::Values(TypeCase{GenTL::STREAM_INFO_ID, GenTL::INFO_DATATYPE_STRING, 8},
                    TypeCase{GenTL::STREAM_INFO_NUM_DELIVERED, GenTL::INFO_DATATYPE_UINT64, 8},
                    TypeCase{GenTL::STREAM_INFO_NUM_UNDERRUN, GenTL::INFO_DATATYPE_UINT64, 8},
                    TypeCase{GenTL::STREAM_INFO_NUM_ANNOUNCED, GenTL::INFO_DATATYPE_SIZET, 8},
                    TypeCase{GenTL::STREAM_INFO_NUM_QUEUED, GenTL::INFO_DATATYPE_SIZET, 8},
                    TypeCase{GenTL::STREAM_INFO_NUM_AWAIT_DELIVERY, GenTL::INFO_DATATYPE_SIZET, 8},
                    TypeCase{GenTL::STREAM_INFO_NUM_STARTED, GenTL::INFO_DATATYPE_UINT64, 8},
                    TypeCase{GenTL::STREAM_INFO_IS_GRABBING, GenTL::INFO_DATATYPE_BOOL8, 1},
                    TypeCase{GenTL::STREAM_INFO_DEFINES_PAYLOADSIZE, GenTL::INFO_DATATYPE_BOOL8, 1},
                    TypeCase{GenTL::STREAM_INFO_TLTYPE, GenTL::INFO_DATATYPE_STRING, 7},
                    TypeCase{GenTL::STREAM_INFO_NUM_CHUNKS_MAX, GenTL::INFO_DATATYPE_SIZET, 8},
                    TypeCase{GenTL::STREAM_INFO_BUF_ANNOUNCE_MIN, GenTL::INFO_DATATYPE_SIZET, 8},
                    TypeCase{GenTL::STREAM_INFO_BUF_ALIGNMENT, GenTL::INFO_DATATYPE_SIZET, 8}));

TEST_F(Info, PayloadSizeIsTheCamerasMatter) {
    camera.OpenStream();
    std::size_t size = 0;
    EXPECT_EQ(
        api.DSGetInfo(camera.stream, GenTL::STREAM_INFO_PAYLOAD_SIZE, nullptr, nullptr, &size),
        GenTL::GC_ERR_NOT_AVAILABLE);
}

TEST_F(Info, NoErrorAtFirst) {
    std::thread([&] {
        GenTL::GC_ERROR code = 7;
        char text[64];
        std::size_t size = sizeof text;
        ASSERT_EQ(api.GCGetLastError(&code, text, &size), 0);
        EXPECT_EQ(code, 0);
        EXPECT_STREQ(text, "No Error");
    }).join();
}

TEST_F(Info, LastErrorIsKeptPerThread) {
    ASSERT_EQ(api.GCCloseLib(), GenTL::GC_ERR_NOT_INITIALIZED);
    std::thread([&] { api.GCInitLib(); }).join();
    camera.library = true;
    GenTL::GC_ERROR code = 0;
    std::size_t size = 0;
    ASSERT_EQ(api.GCGetLastError(&code, nullptr, &size), 0);
    EXPECT_EQ(code, GenTL::GC_ERR_NOT_INITIALIZED);
}

TEST_F(Info, LastErrorSurvivesSuccessAndItsOwnFailure) {
    camera.OpenSystem();
    ASSERT_EQ(api.IFClose(nullptr), GenTL::GC_ERR_INVALID_HANDLE);
    std::uint32_t count = 0;
    ASSERT_EQ(api.TLGetNumInterfaces(camera.system, &count), 0);
    char text[64];
    std::size_t size = 1;
    GenTL::GC_ERROR code = 0;
    EXPECT_EQ(api.GCGetLastError(&code, text, &size), GenTL::GC_ERR_BUFFER_TOO_SMALL);
    size = sizeof text;
    ASSERT_EQ(api.GCGetLastError(&code, text, &size), 0);
    EXPECT_EQ(code, GenTL::GC_ERR_INVALID_HANDLE);
    EXPECT_STREQ(text, "The handle is invalid");
}

}  // namespace
