// Opening a camera by an address, with every allocation beneath it refused in turn.

#include "support/ApiTest.h"
#include "support/FailingMemory.h"

namespace {

class OpeningMemoryTest : public ::testing::Test {
protected:
    ~OpeningMemoryTest() override {
        OVCloseLib();
        gev.Reset();
    }

    void ExpectOpen(int count) const {
        EXPECT_EQ(gev.OpenCount("Device"), count);
        EXPECT_EQ(gev.OpenCount("Stream"), count);
    }

    /// Opens and closes the camera.
    /// @return whether an allocation was refused
    bool OpenShort(size_t before) {
        const OV_OPEN_PARAM param{"192.168.10.100", OV_OPEN_IP, OV_ACCESS_EXCLUSIVE};
        OV_DEV_HANDLE handle = nullptr;
        OV_STATUS status = OV_STATUS_SUCCESS;
        bool wasRefused = false;
        {
            const FailingMemory scarce(before, Shortage::Once);
            status = OVOpenDevice(&param, &handle);
            wasRefused = FailingMemory::WasReached();
        }
        EXPECT_EQ(handle != nullptr, status == OV_STATUS_SUCCESS);
        ExpectOpen(status == OV_STATUS_SUCCESS ? 1 : 0);
        if (status == OV_STATUS_SUCCESS) {
            EXPECT_OV_OK(OVCloseDevice(handle));
            ExpectOpen(0);
        }
        return wasRefused;
    }

    /// How many allocations an opening makes.
    size_t CountAllocations() {
        size_t enough = 1;
        while (OpenShort(enough)) {
            enough *= 2;
        }
        size_t few = enough / 2;
        while (few + 1 < enough) {
            const size_t middle = few + (enough - few) / 2;
            (OpenShort(middle) ? few : enough) = middle;
        }
        return enough;
    }

    TestProducer gev{std::string(OV_TEST_STAGE) + "/OvGVTL.cti"};
};

TEST_F(OpeningMemoryTest, ACameraAtAnAddressIsOpenWithAHandleOrClosed) {
    ASSERT_OV_OK(OVInitLib());
    // The search of OVUpdateDeviceList doesn't find it.
    gev.SetForeign(0, 0, 1);
    uint32_t listed = 0;
    ASSERT_OV_OK(OVUpdateDeviceList(&listed, 1000));
    // Most allocations are those of the camera's description, whose failures other tests
    // look at: what comes after the camera is open is among the last.
    constexpr size_t kLast = 60;
    const size_t all = CountAllocations();
    ASSERT_GT(all, kLast);
    for (size_t before = all - kLast; before < all; ++before) {
        SCOPED_TRACE("refused once after " + std::to_string(before));
        OpenShort(before);
    }
}

}  // namespace
