// Features that change by themselves.

#include <atomic>
#include <filesystem>
#include <functional>
#include <future>
#include <iterator>
#include <thread>

#include "support/ApiTest.h"
#include "support/FeatureCalls.h"

namespace {

constexpr OV_FEATURE_ID kPolled = OV_FEATURE_Width;
constexpr OV_FEATURE_ID kStill = OV_FEATURE_Height;
constexpr uint64_t kPolledAddress = 0x3000;
constexpr uint64_t kStillAddress = 0x3004;

std::string Register(const char* name, uint64_t address, const std::string& more) {
    return DescriptionXml::RegXml{.name = name,
                                  .address = static_cast<int64_t>(address),
                                  .caching = "",
                                  .polling = more,
                                  .sign = ""}();
}

std::string Polled() {
    return Register("Width", kPolledAddress, "<PollingTime>2</PollingTime>");
}

size_t CountThreads() {
    const std::filesystem::directory_iterator threads("/proc/self/task");
    return static_cast<size_t>(std::distance(begin(threads), end(threads)));
}

/// Counts the calls of a feature callback, and makes one in the first of them.
struct Listener {
    std::function<OV_STATUS()> call;
    std::atomic<unsigned> count{0};
    std::thread::id thread;
    std::promise<LastError> done;

    /// It is called until the camera is closed.
    ~Listener() { OVCloseLib(); }

    static void OnChange(OV_FEATURE_ID /*feature*/, void* user) {
        auto* const self = static_cast<Listener*>(user);
        if (self->count == 0) {
            self->thread = std::this_thread::get_id();
            const OV_STATUS status = self->call ? self->call() : OV_STATUS_SUCCESS;
            self->done.set_value(status == OV_STATUS_SUCCESS ? LastError{} : LastError::Get());
        }
        ++self->count;
    }
    void Await(unsigned wanted) const {
        while (count < wanted) {
            std::this_thread::yield();
        }
    }
};

class PollingTest : public OpenCameraTest {
protected:
    void SetUp() override {}
    void OpenWith(const std::string& width) {
        const std::string description =
            DescribeCamera(width + Register("Height", kStillAddress, ""));
        producer.SetDescription("Remote", "Polled.xml", description.data(), description.size());
        Init();
        ASSERT_EQ(Update(), 1U);
        m_threads = CountThreads();
        camera = Open();
    }
    void Put(uint64_t address, uint32_t value) const {
        EXPECT_EQ(producer.WriteMemory(0, 0, address, &value, sizeof value), 0);
    }
    int64_t Get(OV_FEATURE_ID feature) const {
        int64_t value = -1;
        EXPECT_OV_OK(OVGetInt(camera, feature, &value));
        return value;
    }
    OV_FEATURE_CALLBACK_HANDLE Listen(Listener& listener, OV_FEATURE_ID feature = kPolled) const {
        OV_FEATURE_CALLBACK_HANDLE handle = nullptr;
        EXPECT_OV_OK(
            OVRegisterFeatureCallback(camera, &listener, &Listener::OnChange, feature, &handle));
        return handle;
    }
    /// Threads that came with the camera.
    size_t OwnThreads() const { return CountThreads() - m_threads; }

private:
    size_t m_threads = 0;
};

TEST_F(PollingTest, APolledFeatureIsReadAnewByACallOnceItsTimeIsOver) {
    OpenWith(Polled());
    Put(kPolledAddress, 1);
    Put(kStillAddress, 1);
    EXPECT_EQ(Get(kStill), 1);
    for (uint32_t value = 2; value < 5; ++value) {
        Put(kPolledAddress, value);
        Put(kStillAddress, value);
        while (Get(kPolled) != value) {
            std::this_thread::yield();
        }
    }
    EXPECT_EQ(Get(kStill), 1) << "nobody asked for that";
    EXPECT_EQ(OwnThreads(), 0U);
}

TEST_F(PollingTest, AListenerHearsOfAPolledFeatureOnAThreadForIt) {
    OpenWith(Polled());
    Listener listener;
    OV_FEATURE_CALLBACK_HANDLE const handle = Listen(listener);
    EXPECT_EQ(OwnThreads(), 1U);
    listener.Await(3);
    EXPECT_NE(listener.thread, std::this_thread::get_id());
    Listener other;
    OV_FEATURE_CALLBACK_HANDLE const otherHandle = Listen(other, kStill);
    EXPECT_EQ(OwnThreads(), 1U);
    EXPECT_OV_OK(OVUnregisterFeatureCallback(camera, kPolled, handle));
    EXPECT_EQ(OwnThreads(), 1U) << "one still listens";
    EXPECT_OV_OK(OVUnregisterFeatureCallback(camera, kStill, otherHandle));
    EXPECT_EQ(OwnThreads(), 0U);
    EXPECT_EQ(other.count, 0U);
    Listener next;
    Listen(next);
    next.Await(1);
}

TEST_F(PollingTest, ListeningToACameraWithoutPolledFeaturesStartsNoThread) {
    OpenWith(Register("Width", kPolledAddress, ""));
    Listener listener;
    Listen(listener);
    EXPECT_EQ(OwnThreads(), 0U);
}

TEST_F(PollingTest, ACloseEndsTheThread) {
    OpenWith(Polled());
    Listener listener;
    Listen(listener);
    listener.Await(1);
    EXPECT_OV_OK(OVCloseDevice(camera));
    EXPECT_EQ(OwnThreads(), 0U);
    camera = Open();
    Listener other;
    Listen(other);
    other.Await(1);
    EXPECT_OV_OK(OVCloseLib());
    EXPECT_EQ(OwnThreads(), 0U);
}

TEST_F(PollingTest, AListenerMayGoInACallbackOfAWrite) {
    OpenWith(Polled());
    Listener polled;
    OV_FEATURE_CALLBACK_HANDLE const handle = Listen(polled);
    Listener writing;
    OV_FEATURE_CALLBACK_HANDLE own = nullptr;
    writing.call = [&] {
        const OV_STATUS status = OVUnregisterFeatureCallback(camera, kPolled, handle);
        return status == OV_STATUS_SUCCESS ? OVUnregisterFeatureCallback(camera, kStill, own)
                                           : status;
    };
    own = Listen(writing, kStill);
    EXPECT_OV_OK(OVSetInt(camera, kStill, 7));
    EXPECT_EQ(writing.done.get_future().get().status, 0);
    EXPECT_OV_OK(OVCloseDevice(camera));
    EXPECT_EQ(OwnThreads(), 0U);
}

struct RefusedPoll {
    const char* name;
    OV_STATUS (*call)(OV_DEV_HANDLE camera);
    const char* message;
};

constexpr RefusedPoll kRefusedPolls[] = {
    {"CloseDevice", &OVCloseDevice, "Can't close device in event callback"},
    {"CloseLib", [](OV_DEV_HANDLE) { return OVCloseLib(); }, "Can't close lib in event callback"},
    {"StreamOn", &OVStreamOn, "Can't start capture in event callback"},
    {"StreamOff", &OVStreamOff, "Can't stop capture in event callback"},
    {"RegisterFeatureCallback",
     [](OV_DEV_HANDLE camera) {
         OV_FEATURE_CALLBACK_HANDLE handle = nullptr;
         return OVRegisterFeatureCallback(
             camera, nullptr, [](OV_FEATURE_ID, void*) {}, kStill, &handle);
     },
     "Can't register feature event callback in callback"},
};

class PollingRefusal : public PollingTest, public testing::WithParamInterface<size_t> {};

TEST_P(PollingRefusal, IsThatOfAnEventCallback) {
    const RefusedPoll& refused = kRefusedPolls[GetParam()];
    OpenWith(Polled());
    Listener listener;
    listener.call = [&] { return refused.call(camera); };
    Listen(listener);
    const LastError error = listener.done.get_future().get();
    EXPECT_EQ(error.status, OV_STATUS_INVALID_CALL);
    EXPECT_EQ(error.message, refused.message);
}

INSTANTIATE_TEST_SUITE_P(All, PollingRefusal, testing::Range<size_t>(0, std::size(kRefusedPolls)),
                         [](const auto& test) {
                             return std::string(kRefusedPolls[test.param].name);
                         });

}  // namespace
