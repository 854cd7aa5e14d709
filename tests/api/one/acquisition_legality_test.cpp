// When each call is legal, and the order of the checks.

#include "support/AcquisitionTest.h"

namespace {

/// A call with what it says in the two states that exclude it.
struct Legality {
    const char* name;
    OV_STATUS (*call)(OV_DEV_HANDLE camera);
    const char* withCallback;
    const char* notStarted;
    const char* started;
};

const Legality kLegality[] = {
    {"GetImage",
     [](OV_DEV_HANDLE camera) {
         uint8_t byte = 0;
         OV_FRAME_DATA data{};
         data.pImgBuf = &byte;
         return OVGetImage(camera, &data, 0);
     },
     "Can't call GetImage after register capture callback",
     "Can't call GetImage before start capture", nullptr},
    {"DQBuf",
     [](OV_DEV_HANDLE camera) {
         OV_FRAME_BUFFER* frame = nullptr;
         return OVDQBuf(camera, &frame, 0);
     },
     "Can't call DQBuf after register capture callback", "Can't call DQBuf before start capture",
     nullptr},
    {"QBuf",
     [](OV_DEV_HANDLE camera) {
         OV_FRAME_BUFFER frame{};
         return OVQBuf(camera, &frame);
     },
     "Can't call QBuf after register capture callback", "Can't call QBuf before start capture",
     nullptr},
    {"DQAllBufs",
     [](OV_DEV_HANDLE camera) {
         OV_FRAME_BUFFER* frame = nullptr;
         uint32_t count = 0;
         return OVDQAllBufs(camera, &frame, 1, &count, 0);
     },
     "Can't call DQAllBufs after register capture callback",
     "Can't call DQAllBufs before start capture", nullptr},
    {"QAllBufs", [](OV_DEV_HANDLE camera) { return OVQAllBufs(camera); },
     "Can't call QAllBufs after register capture callback",
     "Can't call QAllBufs before start capture", nullptr},
    {"RegisterCaptureCallback",
     [](OV_DEV_HANDLE camera) { return OVRegisterCaptureCallback(camera, nullptr, &IgnoreFrame); },
     nullptr, nullptr, "Can't register capture callback after start capture"},
    {"UnregisterCaptureCallback",
     [](OV_DEV_HANDLE camera) { return OVUnregisterCaptureCallback(camera); }, nullptr, nullptr,
     "Can't unregister capture callback after start capture"},
    {"SetAcqusitionBufferNumber",
     [](OV_DEV_HANDLE camera) { return OVSetAcqusitionBufferNumber(camera, 7); }, nullptr, nullptr,
     "Can't set acqusition buffer number  when acqusition"},
};

class AcquisitionLegality : public AcquisitionTest, public testing::WithParamInterface<Legality> {
protected:
    void ExpectRefused(const char* message) {
        const OV_STATUS status = GetParam().call(camera);
        if (message != nullptr) {
            ExpectFailure(status, OV_STATUS_INVALID_CALL, message);
        } else {
            EXPECT_NE(status, OV_STATUS_INVALID_CALL);
        }
    }
};

TEST_P(AcquisitionLegality, BeforeTheStart) {
    ExpectRefused(GetParam().notStarted);
}

TEST_P(AcquisitionLegality, AfterTheStart) {
    Start();
    ExpectRefused(GetParam().started);
}

TEST_P(AcquisitionLegality, WithACallbackBeforeTheStart) {
    RegisterCallback();
    ExpectRefused(GetParam().withCallback);
}

TEST_P(AcquisitionLegality, WithACallbackAfterTheStart) {
    RegisterCallback();
    Start();
    ExpectRefused(GetParam().withCallback != nullptr ? GetParam().withCallback
                                                     : GetParam().started);
}

TEST_P(AcquisitionLegality, WithoutAHandle) {
    ExpectFailure(GetParam().call(nullptr), OV_STATUS_INVALID_HANDLE, "Invalid device handle");
}

INSTANTIATE_TEST_SUITE_P(All, AcquisitionLegality, testing::ValuesIn(kLegality),
                         [](const auto& test) { return std::string(test.param.name); });

// Arguments.

TEST_F(AcquisitionTest, GetImageWantsMemoryBeforeItLooksAtTheState) {
    ExpectFailure(OVGetImage(camera, nullptr, 0), OV_STATUS_INVALID_PARAMETER, "NULL Pointer");
    ExpectFailure(OVGetImage(camera, &data, 0), OV_STATUS_INVALID_PARAMETER, "NULL Pointer");
}

TEST_F(AcquisitionTest, DQBufWantsAPointerEvenWithoutAHandle) {
    ExpectFailure(OVDQBuf(nullptr, nullptr, 0), OV_STATUS_INVALID_PARAMETER, "NULL Pointer");
}

TEST_F(AcquisitionTest, DQBufClearsThePointerEvenWithoutAHandle) {
    OV_FRAME_BUFFER frame{};
    OV_FRAME_BUFFER* pointer = &frame;
    EXPECT_EQ(OVDQBuf(nullptr, &pointer, 0), OV_STATUS_INVALID_HANDLE);
    EXPECT_EQ(pointer, nullptr);
}

TEST_F(AcquisitionTest, DQAllBufsClearsArrayAndCountEvenWithoutAHandle) {
    OV_FRAME_BUFFER frame{};
    frames[0] = frames[1] = frames[2] = &frame;
    count = 9;
    ExpectFailure(OVDQAllBufs(nullptr, nullptr, 2, &count, 0), OV_STATUS_INVALID_PARAMETER,
                  "NULL Pointer");
    ExpectFailure(OVDQAllBufs(nullptr, frames, 2, nullptr, 0), OV_STATUS_INVALID_PARAMETER,
                  "NULL Pointer");
    EXPECT_EQ(OVDQAllBufs(nullptr, frames, 2, &count, 0), OV_STATUS_INVALID_HANDLE);
    EXPECT_EQ(frames[0], nullptr);
    EXPECT_EQ(frames[1], nullptr);
    EXPECT_EQ(frames[2], &frame) << "beyond the size that was told";
    EXPECT_EQ(count, 0U);
}

TEST_F(AcquisitionTest, ACallbackMayNotBeNull) {
    ExpectFailure(OVRegisterCaptureCallback(camera, nullptr, nullptr), OV_STATUS_INVALID_PARAMETER,
                  "NULL Pointer");
}

TEST_F(AcquisitionTest, CallbacksComeAndGoWithoutComplaint) {
    EXPECT_OV_OK(OVUnregisterCaptureCallback(camera));
    EXPECT_OV_OK(OVRegisterCaptureCallback(camera, nullptr, &IgnoreFrame));
    EXPECT_OV_OK(OVRegisterCaptureCallback(camera, nullptr, &IgnoreFrame));
    EXPECT_OV_OK(OVUnregisterCaptureCallback(camera));
    EXPECT_OV_OK(OVUnregisterCaptureCallback(camera));
}

}  // namespace
