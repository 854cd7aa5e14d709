#include "support/RandomCalls.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <iostream>
#include <thread>

namespace {

constexpr uint32_t kTimeOut = 3;
constexpr size_t kBytes = 8;

constexpr OV_FEATURE_ID kIntegers[] = {OV_FEATURE_Width, OV_FEATURE_Height, OV_FEATURE_OffsetX,
                                       OV_FEATURE_PayloadSize, OV_FEATURE_WidthMax};
constexpr OV_FEATURE_ID kFloats[] = {OV_FEATURE_Gain, OV_FEATURE_ExposureTime};
constexpr OV_FEATURE_ID kEnumerations[] = {OV_FEATURE_PixelFormat, OV_FEATURE_AcquisitionMode,
                                           OV_FEATURE_TriggerMode, OV_FEATURE_EventNotification,
                                           OV_FEATURE_UserSetSelector};
constexpr OV_FEATURE_ID kBooleans[] = {OV_FEATURE_ReverseX, OV_FEATURE_ChunkModeActive};
constexpr OV_FEATURE_ID kTexts[] = {OV_FEATURE_DeviceUserID, OV_FEATURE_DeviceVendorName};
constexpr OV_FEATURE_ID kCommands[] = {OV_FEATURE_TriggerSoftware, OV_FEATURE_UserSetLoad,
                                       OV_FEATURE_UserSetSave, OV_FEATURE_AcquisitionStart,
                                       OV_FEATURE_AcquisitionStop};
/// Of each kind that callbacks have: of the camera's own features and of its events.
constexpr OV_FEATURE_ID kHeard[] = {OV_FEATURE_Width, OV_FEATURE_Gain, OV_FEATURE_EventExposureEnd,
                                    OV_FEATURE_EventExposureEndTimestamp};

/// Callbacks ask the camera that they belong to, which closing waits for.
void OnFrame(OV_FRAME_CALLBACK_PARAM* frame) {
    EXPECT_NE(frame->pImgBuf, nullptr);
    // A camera that was lost or is being closed can't have its frames attached.
    EXPECT_LE(OvNodeAttachCallbackFrame(frame->pUserParam, frame), OV_STATUS_SUCCESS);
}

void OnFeature(OV_FEATURE_ID /*featureID*/, void* handle) {
    int64_t width = 0;
    OVGetInt(handle, OV_FEATURE_Width, &width);
    EXPECT_EQ(OVStreamOn(handle), OV_STATUS_INVALID_CALL);
    EXPECT_EQ(OVStreamOff(handle), OV_STATUS_INVALID_CALL);
    EXPECT_EQ(OVCloseDevice(handle), OV_STATUS_INVALID_CALL);
}

void OnLoss(void* handle) {
    int64_t width = 0;
    OVGetInt(handle, OV_FEATURE_Width, &width);
}

template <class T>
T TakeLast(std::mutex& mutex, std::vector<T>& values) {
    const std::lock_guard lock(mutex);
    if (values.empty()) {
        return T{};
    }
    const T last = values.back();
    values.pop_back();
    return last;
}

template <class T>
void Append(std::mutex& mutex, std::vector<T>& values, const T& value) {
    const std::lock_guard lock(mutex);
    values.push_back(value);
}

}  // namespace

bool SharedCamera::Use(const std::function<void(OV_DEV_HANDLE)>& call) {
    const std::shared_lock lock(m_use);
    if (m_handle != nullptr) {
        call(m_handle);
    }
    return m_handle != nullptr;
}

void SharedCamera::Keep(OV_DEV_HANDLE handle) {
    const std::unique_lock lock(m_use);
    EXPECT_EQ(m_handle, nullptr) << m_id << " was opened twice";
    m_handle = handle;
}

OV_STATUS SharedCamera::Close() {
    OV_DEV_HANDLE handle = nullptr;
    {
        const std::unique_lock lock(m_use);
        std::swap(handle, m_handle);
        m_loans.clear();
        m_callbacks.clear();
        m_offlineCallbacks.clear();
        m_nodeCallbacks.clear();
    }
    return handle == nullptr ? OV_STATUS_SUCCESS : OVCloseDevice(handle);
}

void SharedCamera::AddLoan(OV_FRAME_BUFFER* frame) {
    Append(m_mutex, m_loans, frame);
}

OV_FRAME_BUFFER* SharedCamera::TakeLoan() {
    return TakeLast(m_mutex, m_loans);
}

void SharedCamera::AddCallback(OV_FEATURE_ID featureID, void* callback) {
    Append(m_mutex, m_callbacks, {featureID, callback});
}

std::pair<OV_FEATURE_ID, void*> SharedCamera::TakeCallback() {
    return TakeLast(m_mutex, m_callbacks);
}

void SharedCamera::AddOfflineCallback(void* callback) {
    Append(m_mutex, m_offlineCallbacks, callback);
}

void* SharedCamera::TakeOfflineCallback() {
    return TakeLast(m_mutex, m_offlineCallbacks);
}

void SharedCamera::AddNodeCallback(OV_NODE_HANDLE node, OV_NODE_CALLBACK_HANDLE callback) {
    Append(m_mutex, m_nodeCallbacks, {node, callback});
}

std::pair<OV_NODE_HANDLE, OV_NODE_CALLBACK_HANDLE> SharedCamera::TakeNodeCallback() {
    return TakeLast(m_mutex, m_nodeCallbacks);
}

RandomCaller::RandomCaller(unsigned seed, std::vector<SharedCamera*> cameras,
                           const HarmlessArguments& harmless)
    : m_draw(seed + 1),
      m_cameras(std::move(cameras)),
      m_harmless(harmless),
      m_settingsFile(testing::TempDir() + "random_calls_" + std::to_string(getpid()) + "_" +
                     std::to_string(seed) + ".xml"),
      m_image(size_t{1} << 23) {}

void RandomCaller::CallOne() {
    SharedCamera& camera = *m_cameras[Draw(static_cast<unsigned>(m_cameras.size()))];
    (this->*Steps()[Draw(static_cast<unsigned>(Steps().size()))])(camera);
}

/// What is named twice is called as often again.
const std::vector<RandomCaller::Step>& RandomCaller::Steps() {
    using R = RandomCaller;
    static const std::vector<Step> steps = {&R::Open,
                                            &R::Open,
                                            &R::Open,
                                            &R::Close,
                                            &R::ReadList,
                                            &R::ReadNumbers,
                                            &R::ReadTexts,
                                            &R::ReadAccess,
                                            &R::Write,
                                            &R::Write,
                                            &R::Command,
                                            &R::Start,
                                            &R::Start,
                                            &R::Stop,
                                            &R::CopyFrame,
                                            &R::SetUpAcquisition,
                                            &R::BorrowFrame,
                                            &R::BorrowFrame,
                                            &R::GiveBack,
                                            &R::BorrowAllFrames,
                                            &R::Flush,
                                            &R::Listen,
                                            &R::Listen,
                                            &R::ListenNoMore,
                                            &R::ListenForLoss,
                                            &R::Settings,
                                            &R::Addresses,
                                            &R::AttachFrame,
                                            &R::AttachFrame,
                                            &R::DetachFrame,
                                            &R::ReadNode,
                                            &R::ReadNode,
                                            &R::RelateNode,
                                            &R::WriteNodes,
                                            &R::ExecuteNode,
                                            &R::ListenToNode,
                                            &R::ListenToNodeNoMore,
                                            &R::Files};
    return steps;
}

OV_STATUS RandomCaller::Note(const char* function, OV_STATUS status) {
    ++m_calls[function];
    ++m_statuses[status];
    EXPECT_LE(status, 0) << function;
    EXPECT_NE(status, OV_STATUS_NOT_INIT_API) << function;
    EXPECT_NE(status, OV_STATUS_NOT_FOUND_TL) << function;
    EXPECT_NE(status, OV_STATUS_INVALID_HANDLE) << function;
    if (status != OV_STATUS_SUCCESS) {
        EXPECT_EQ(LastError::Get().status, status) << function;
    }
    return status;
}

void RandomCaller::Open(SharedCamera& camera) {
    if (camera.Use([](OV_DEV_HANDLE) {}) && Draw(4) != 0) {
        return;
    }
    std::array<OV_DEVICE_BASE_INFO, 16> records{};
    size_t size = sizeof(records);
    if (OV_NOTE(OVGetAllDeviceBaseInfo, records.data(), &size) != OV_STATUS_SUCCESS) {
        return;
    }
    // By the time of the call another update may have moved the camera on the list.
    for (uint32_t i = 0; i < size / sizeof(records[0]); ++i) {
        if (records[i].szDeviceID != camera.GetId()) {
            continue;
        }
        OV_DEV_HANDLE handle = nullptr;
        const OV_OPEN_PARAM bySerial = {records[i].szSN, OV_OPEN_SN, OV_ACCESS_CONTROL};
        const OV_STATUS status = Draw(2) == 0 ? OV_NOTE(OVOpenDevice, &bySerial, &handle)
                                              : OV_NOTE(OVOpenDeviceByIndex, i + 1, &handle);
        if (status != OV_STATUS_SUCCESS) {
            continue;
        }
        if (IsSerial(handle, records[i].szSN)) {
            camera.Keep(handle);
        } else {
            OV_NOTE(OVCloseDevice, handle);
        }
    }
}

/// Whether the camera is the one that was meant. A camera that was lost meanwhile can't
/// be asked.
bool RandomCaller::IsSerial(OV_DEV_HANDLE handle, const std::string& serial) {
    std::array<char, 64> text{};
    size_t size = text.size();
    return OV_NOTE(OVGetString, handle, OV_FEATURE_DeviceSerialNumber, text.data(), &size) ==
               OV_STATUS_SUCCESS &&
           serial == text.data();
}

void RandomCaller::Close(SharedCamera& camera) {
    Note("OVCloseDevice", camera.Close());
}

void RandomCaller::ReadList(SharedCamera& /*camera*/) {
    EXPECT_NE(OVGetLibVersion(), nullptr);
    OV_NOTE(OVInitLib);
    OV_DEVICE_IP_INFO addresses{};
    OV_NOTE(OVGetDeviceIPInfo, Draw(8) + 1, &addresses);
}

void RandomCaller::ReadNumbers(SharedCamera& camera) {
    camera.Use([&](OV_DEV_HANDLE handle) {
        int64_t number = 0;
        double real = 0;
        bool flag = false;
        uint32_t count = 0;
        OV_INT_RANGE range{};
        OV_FLOAT_RANGE realRange{};
        std::array<OV_ENUM_DESCRIPTION, 8> entries{};
        size_t size = sizeof(entries);
        OV_NOTE(OVGetInt, handle, DrawFrom(kIntegers), &number);
        OV_NOTE(OVGetIntRange, handle, DrawFrom(kIntegers), &range);
        OV_NOTE(OVGetFloat, handle, DrawFrom(kFloats), &real);
        OV_NOTE(OVGetFloatRange, handle, DrawFrom(kFloats), &realRange);
        OV_NOTE(OVGetEnum, handle, DrawFrom(kEnumerations), &number);
        OV_NOTE(OVGetEnumEntryNums, handle, DrawFrom(kEnumerations), &count);
        OV_NOTE(OVGetEnumDescription, handle, DrawFrom(kEnumerations), entries.data(), &size);
        OV_NOTE(OVGetBool, handle, DrawFrom(kBooleans), &flag);
    });
}

void RandomCaller::ReadTexts(SharedCamera& camera) {
    camera.Use([&](OV_DEV_HANDLE handle) {
        std::array<char, 256> text{};
        size_t size = text.size();
        OV_NOTE(OVGetFeatureName, handle, DrawFrom(kTexts), text.data(), &size);
        OV_NOTE(OVGetStringLength, handle, DrawFrom(kTexts), &size);
        OV_NOTE(OVGetStringMaxLength, handle, DrawFrom(kTexts), &size);
        size = text.size();
        OV_NOTE(OVGetString, handle, DrawFrom(kTexts), text.data(), &size);
        OV_NOTE(OVGetBufferLength, handle, OV_FEATURE_LUTValueAll, &size);
        size = m_image.size();
        OV_NOTE(OVGetBuffer, handle, OV_FEATURE_LUTValueAll, m_image.data(), &size);
        size = kBytes;
        OV_NOTE(OVReadRemoteDevicePort, handle, m_harmless.memory, m_image.data(), &size);
    });
}

void RandomCaller::ReadAccess(SharedCamera& camera) {
    camera.Use([&](OV_DEV_HANDLE handle) {
        bool answer = false;
        OV_NOTE(OVIsImplemented, handle, DrawFrom(kIntegers), &answer);
        OV_NOTE(OVIsReadable, handle, DrawFrom(kFloats), &answer);
        OV_NOTE(OVIsWritable, handle, DrawFrom(kTexts), &answer);
    });
}

void RandomCaller::Write(SharedCamera& camera) {
    camera.Use([&](OV_DEV_HANDLE handle) {
        constexpr unsigned kWidths = 9;
        OV_NOTE(OVSetInt, handle, DrawFrom(kIntegers), int64_t{8} * Draw(kWidths));
        OV_NOTE(OVSetFloat, handle, DrawFrom(kFloats), Draw(10));
        OV_NOTE(OVSetEnum, handle, DrawFrom(kEnumerations), Draw(3));
        OV_NOTE(OVSetBool, handle, DrawFrom(kBooleans), Draw(2) != 0);
        OV_NOTE(OVSetString, handle, OV_FEATURE_DeviceUserID, Draw(2) == 0 ? "left" : "right");
        OV_NOTE(OVSetBuffer, handle, OV_FEATURE_LUTValueAll, m_image.data(), 4);
        size_t size = kBytes;
        OV_NOTE(OVWriteRemoteDevicePort, handle, m_harmless.memory, m_image.data(), &size);
    });
}

void RandomCaller::Command(SharedCamera& camera) {
    camera.Use([&](OV_DEV_HANDLE handle) { OV_NOTE(OVSendCommand, handle, DrawFrom(kCommands)); });
}

void RandomCaller::Start(SharedCamera& camera) {
    camera.Use([&](OV_DEV_HANDLE handle) { OV_NOTE(OVStreamOn, handle); });
}

void RandomCaller::Stop(SharedCamera& camera) {
    camera.Use([&](OV_DEV_HANDLE handle) { OV_NOTE(OVStreamOff, handle); });
}

void RandomCaller::SetUpAcquisition(SharedCamera& camera) {
    camera.Use([&](OV_DEV_HANDLE handle) {
        uint64_t buffers = 0;
        OV_NOTE(OVSetAcqusitionBufferNumber, handle, 2 + Draw(6));
        OV_NOTE(OVGetAcqusitionBufferNumber, handle, &buffers);
        if (Draw(3) == 0) {
            OV_NOTE(OVRegisterCaptureCallback, handle, handle, &OnFrame);
        } else {
            OV_NOTE(OVUnregisterCaptureCallback, handle);
        }
    });
}

void RandomCaller::CopyFrame(SharedCamera& camera) {
    camera.Use([&](OV_DEV_HANDLE handle) {
        OV_FRAME_DATA frame{};
        frame.pImgBuf = m_image.data();
        OV_NOTE(OVGetImage, handle, &frame, kTimeOut);
    });
}

void RandomCaller::BorrowFrame(SharedCamera& camera) {
    camera.Use([&](OV_DEV_HANDLE handle) {
        OV_FRAME_BUFFER* frame = nullptr;
        if (OV_NOTE(OVDQBuf, handle, &frame, kTimeOut) == OV_STATUS_SUCCESS) {
            camera.AddLoan(frame);
        }
    });
}

void RandomCaller::BorrowAllFrames(SharedCamera& camera) {
    camera.Use([&](OV_DEV_HANDLE handle) {
        std::array<OV_FRAME_BUFFER*, 16> frames{};
        uint32_t count = 0;
        if (OV_NOTE(OVDQAllBufs, handle, frames.data(), static_cast<uint32_t>(frames.size()),
                    &count, kTimeOut) == OV_STATUS_SUCCESS) {
            std::for_each_n(frames.begin(), count, [&](auto* frame) { camera.AddLoan(frame); });
        }
    });
}

/// The frame may be void: a stop ends all loans.
void RandomCaller::GiveBack(SharedCamera& camera) {
    camera.Use([&](OV_DEV_HANDLE handle) {
        OV_FRAME_BUFFER* const frame = camera.TakeLoan();
        if (Draw(8) == 0) {
            OV_NOTE(OVQAllBufs, handle);
        } else if (frame != nullptr) {
            OV_NOTE(OVQBuf, handle, frame);
        }
    });
}

void RandomCaller::Flush(SharedCamera& camera) {
    camera.Use([&](OV_DEV_HANDLE handle) {
        uint32_t count = 0;
        OV_NOTE(OVFlushQueue, handle);
        OV_NOTE(OVFlushEvent, handle);
        OV_NOTE(OVGetEventNumInQueue, handle, &count);
    });
}

void RandomCaller::Listen(SharedCamera& camera) {
    camera.Use([&](OV_DEV_HANDLE handle) {
        const OV_FEATURE_ID feature = DrawFrom(kHeard);
        OV_FEATURE_CALLBACK_HANDLE callback = nullptr;
        if (OV_NOTE(OVRegisterFeatureCallback, handle, handle, &OnFeature, feature, &callback) ==
            OV_STATUS_SUCCESS) {
            camera.AddCallback(feature, callback);
        }
    });
}

void RandomCaller::ListenNoMore(SharedCamera& camera) {
    camera.Use([&](OV_DEV_HANDLE handle) {
        // All but a few, so that writes don't come to call hundreds.
        for (unsigned i = 0; i < 2; ++i) {
            const auto [feature, callback] = camera.TakeCallback();
            if (callback != nullptr) {
                OV_NOTE(OVUnregisterFeatureCallback, handle, feature, callback);
            }
        }
    });
}

void RandomCaller::ListenForLoss(SharedCamera& camera) {
    camera.Use([&](OV_DEV_HANDLE handle) {
        OV_EVENT_CALLBACK_HANDLE callback = nullptr;
        if (OV_NOTE(OVRegisterDeviceOfflineCallback, handle, handle, &OnLoss, &callback) ==
            OV_STATUS_SUCCESS) {
            camera.AddOfflineCallback(callback);
        }
        void* const other = Draw(2) == 0 ? camera.TakeOfflineCallback() : nullptr;
        if (other != nullptr) {
            OV_NOTE(OVUnregisterDeviceOfflineCallback, handle, other);
        }
    });
}

void RandomCaller::Settings(SharedCamera& camera) {
    camera.Use([&](OV_DEV_HANDLE handle) {
        if (OV_NOTE(OVExportConfigFile, handle, m_settingsFile.c_str()) == OV_STATUS_SUCCESS) {
            OV_NOTE(OVImportConfigFile, handle, m_settingsFile.c_str(), Draw(2) == 0);
        }
    });
    std::filesystem::remove(m_settingsFile);
}

void RandomCaller::Addresses(SharedCamera& camera) {
    OV_DEVICE_IP_INFO info{};
    if (OV_NOTE(OVGetDeviceIPInfo, Draw(8) + 1, &info) == OV_STATUS_SUCCESS) {
        OV_NOTE(OVGigEIpConfiguration, info.szMAC, m_harmless.mode, nullptr, nullptr, nullptr,
                nullptr);
        OV_NOTE(OVGigEForceIp, info.szMAC, m_harmless.ip, m_harmless.mask, m_harmless.gateway);
        OV_NOTE(OVGigEResetDevice, info.szMAC, OV_RESET_MODE_1);
    }
    camera.Use([&](OV_DEV_HANDLE handle) {
        std::array<char, 32> ip{};
        std::array<char, 32> mask{};
        std::array<char, 32> gateway{};
        size_t sizes[] = {ip.size(), mask.size(), gateway.size()};
        OV_NOTE(OVSetDevicePersistentIpAddress, handle, "192.168.0.7", "255.255.255.0", "0.0.0.0");
        OV_NOTE(OVGetDevicePersistentIpAddress, handle, ip.data(), &sizes[0], mask.data(),
                &sizes[1], gateway.data(), &sizes[2]);
    });
}

void CallAtOnce(const RandomCallers& callers, unsigned calls) {
    std::vector<std::thread> threads;
    threads.reserve(callers.size());
    for (const auto& caller : callers) {
        threads.emplace_back([&caller, calls] {
            for (unsigned i = 0; i < calls; ++i) {
                caller->CallOne();
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

void PrintCalls(const RandomCallers& callers) {
    std::map<std::string, uint64_t> calls;
    std::map<OV_STATUS, uint64_t> statuses;
    for (const auto& caller : callers) {
        for (const auto& [function, count] : caller->GetCalls()) {
            calls[function] += count;
        }
        for (const auto& [status, count] : caller->GetStatuses()) {
            statuses[status] += count;
        }
    }
    for (const auto& [function, count] : calls) {
        std::cout << function << ' ' << count << '\n';
    }
    for (const auto& [status, count] : statuses) {
        std::cout << "status " << status << ": " << count << '\n';
    }
}
