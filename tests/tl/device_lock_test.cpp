// Opening and closing a device while other threads work on it or on the list.

#include <future>

#include "TLClassDevice/Device.h"
#include "TLClassStream/DataStream.h"
#include "TransportTest.h"

namespace OVTLClass {
namespace {

using ::testing::IsEmpty;

constexpr unsigned kPatience = 60000;

class DeviceLockTest : public ProducerTest {
protected:
    void SetUp() override {
        device = InitDevice();
        owner = std::dynamic_pointer_cast<CInterface>(device->DoGetInterface());
    }
    bool Update() const {
        bool changed = false;
        owner->DoUpdateDeviceList(0, changed);
        return changed;
    }
    /// Opens on another thread up to the entry of `call`, which waits there.
    std::future<void> OpenUpTo(const char* call, int32_t mode = 3) {
        producer.BlockCall(call);
        auto opening = std::async(std::launch::async, [this, mode] { device->DoOpenDevice(mode); });
        EXPECT_EQ(producer.WaitForCalls(call, 1, kPatience), 0);
        return opening;
    }

    std::shared_ptr<IDevice> device;
    std::shared_ptr<CInterface> owner;
};

TEST_F(DeviceLockTest, ASecondOpeningWaitsForTheFirst) {
    auto first = OpenUpTo("IFOpenDevice");
    auto second = std::async(std::launch::async, [this] { device->DoOpenDevice(3); });
    auto third = std::async(std::launch::async, [this] { device->DoOpenDevice(4); });
    producer.ReleaseCall("IFOpenDevice");
    first.get();
    second.get();
    EXPECT_RAISES(CInvalidAccessError, "The device has already been opened", third.get());
    EXPECT_EQ(producer.CallCount("IFOpenDevice"), 1U);
}

TEST_F(DeviceLockTest, OneOfTwoOpensAClosedDevice) {
    producer.BlockCall("IFOpenDevice");
    const auto open = [this] { device->DoOpenClosedDevice(3); };
    auto first = std::async(std::launch::async, open);
    auto second = std::async(std::launch::async, open);
    EXPECT_EQ(producer.WaitForCalls("IFOpenDevice", 1, kPatience), 0);
    producer.ReleaseCall("IFOpenDevice");
    int opened = 0;
    for (auto* const opening : {&first, &second}) {
        try {
            opening->get();
            ++opened;
        } catch (const CInvalidAccessError& error) {
            EXPECT_EQ(std::string(error.GetDescription()), "The device has already been opened");
        }
    }
    EXPECT_EQ(opened, 1);
    EXPECT_EQ(producer.CallCount("IFOpenDevice"), 1U);
}

TEST_F(DeviceLockTest, ACloseWaitsForTheOpening) {
    auto opening = OpenUpTo("DevGetPort");
    auto closing = std::async(std::launch::async, [this] { device->DoCloseDevice(); });
    producer.ReleaseCall("DevGetPort");
    opening.get();
    closing.get();
    EXPECT_EQ(producer.OpenCount("Device"), device->DoIsDeviceOpen() ? 1 : 0);
}

TEST_F(DeviceLockTest, TheListStandsStillWhileStreamsAreMade) {
    auto opening = OpenUpTo("DevGetNumDataStreams");
    EXPECT_FALSE(owner->GetDeviceListLock().TryLock());
    producer.ReleaseCall("DevGetNumDataStreams");
    opening.get();
    ASSERT_TRUE(owner->GetDeviceListLock().TryLock());
    owner->GetDeviceListLock().Unlock();
}

TEST_F(DeviceLockTest, TheListMovesUntilStreamsAreMade) {
    auto opening = OpenUpTo("DevGetPort");
    ASSERT_TRUE(owner->GetDeviceListLock().TryLock());
    owner->GetDeviceListLock().Unlock();
    producer.ReleaseCall("DevGetPort");
    opening.get();
}

TEST_F(DeviceLockTest, ADeviceThatLeavesTheListDuringItsOpeningEndsClosed) {
    auto opening = OpenUpTo("DevGetPort");
    producer.SetDeviceCount(0, 0);
    EXPECT_TRUE(Update());
    EXPECT_THAT(owner->DoGetDeviceList(), IsEmpty());
    producer.ReleaseCall("DevGetPort");
    EXPECT_UNEXPECTED(-1, "The interface doesn't list the device any more", opening.get());
    EXPECT_FALSE(device->DoIsDeviceOpen());
    EXPECT_EQ(producer.OpenCount("Device"), 0);
    EXPECT_THAT(owner->DoGetLostOpenDeviceList(), IsEmpty());
}

TEST_F(DeviceLockTest, ADeviceThatStaysOpensThroughAnUpdate) {
    auto opening = OpenUpTo("DevGetPort");
    producer.SetDeviceCount(0, 2);
    EXPECT_TRUE(Update());
    producer.ReleaseCall("DevGetPort");
    opening.get();
    EXPECT_EQ(owner->DoGetDeviceList().at(0), device);
    EXPECT_TRUE(device->DoIsDeviceOpen());
}

TEST_F(DeviceLockTest, AnUpdateWaitsForAnotherOfTheSameInterface) {
    producer.BlockCall("IFUpdateDeviceList");
    producer.SetDeviceCount(0, 2);
    const std::uint64_t before = producer.CallCount("IFUpdateDeviceList");
    auto first = std::async(std::launch::async, [this] { return Update(); });
    ASSERT_EQ(producer.WaitForCalls("IFUpdateDeviceList", before + 1, kPatience), 0);
    auto second = std::async(std::launch::async, [this] { return Update(); });
    EXPECT_EQ(owner->DoGetDeviceList().size(), 1U) << "the list can be read meanwhile";
    EXPECT_EQ(producer.CallCount("IFUpdateDeviceList"), before + 1);
    producer.ReleaseCall("IFUpdateDeviceList");
    EXPECT_TRUE(first.get());
    EXPECT_FALSE(second.get());
}

}  // namespace
}  // namespace OVTLClass
