// Updates of the list beside cameras that come, go and are opened.

#include "Rounds.h"

namespace {

class UpdateRoundsTest : public RoundsTest {
protected:
    static OV_STATUS UpdateAll() {
        uint32_t count = 0;
        return OVUpdateAllDeviceList(&count, 1000);
    }

    TestProducer& ProducerOf(unsigned round) { return round % 2 == 0 ? gev : custom; }
    std::string IdAt(unsigned round, unsigned iface, unsigned device) const {
        return (round % 2 == 0 ? "Gev" : "") + IdOf(iface, device);
    }
};

TEST_F(UpdateRoundsTest, DevicesVanishDuringAnUpdate) {
    static constexpr const char* kCalls[] = {"IFUpdateDeviceList", "IFGetNumDevices",
                                             "IFGetDeviceID", "IFGetDeviceInfo"};
    Run([&](unsigned round) {
        TestProducer& producer = ProducerOf(round);
        const bool isOpen = round % 3 == 0;
        const OV_DEV_HANDLE camera = isOpen ? Open(IdAt(round, 0, 1)) : nullptr;
        // What changed makes the update read the whole list.
        producer.LoseDevice(1, 1);
        HeldCall held(producer, kCalls[round / 2 % std::size(kCalls)]);
        Beside update(&UpdateAll);
        held.WaitFor(1);
        producer.LoseDevice(0, 1);
        producer.ReturnDevice(1, 1);
        held.Release();
        EXPECT_EQ(update.Join(), OV_STATUS_SUCCESS) << update.GetText();
        EXPECT_EQ(Update(), kCameras - 1);
        if (isOpen) {
            int64_t width = 0;
            EXPECT_EQ(OVGetInt(camera, OV_FEATURE_Width, &width), OV_STATUS_OFFLINE);
            EXPECT_OV_OK(OVCloseDevice(camera));
        }
        producer.ReturnDevice(0, 1);
        EXPECT_EQ(Update(), kCameras);
    });
}

TEST_F(UpdateRoundsTest, AnInterfaceVanishesDuringAnUpdate) {
    static constexpr const char* kCalls[] = {"TLUpdateInterfaceList", "TLGetNumInterfaces",
                                             "TLGetInterfaceID", "IFUpdateDeviceList"};
    Run([&](unsigned round) {
        TestProducer& producer = ProducerOf(round);
        const bool isOpen = round % 3 == 0;
        const OV_DEV_HANDLE camera = isOpen ? Open(IdAt(round, 1, 0)) : nullptr;
        producer.LoseInterface(0);
        EXPECT_EQ(Update(), kCameras - kDevices);
        producer.ReturnInterface(0);
        HeldCall held(producer, kCalls[round / 2 % std::size(kCalls)]);
        Beside update(&UpdateAll);
        held.WaitFor(1);
        producer.LoseInterface(1);
        held.Release();
        EXPECT_EQ(update.Join(), OV_STATUS_SUCCESS) << update.GetText();
        EXPECT_EQ(Update(), kCameras - kDevices);
        producer.ReturnInterface(1);
        EXPECT_EQ(Update(), kCameras);
        if (isOpen) {
            EXPECT_OV_OK(OVCloseDevice(camera));
        }
    });
}

constexpr const char* kCallsOfAnOpening[] = {"IFOpenDevice", "DevGetPort", "DevGetNumDataStreams",
                                             "DevOpenDataStream", "GCGetPortURLInfo"};

TEST_F(UpdateRoundsTest, AnUpdateRunsDuringAnOpening) {
    Run([&](unsigned round) {
        TestProducer& producer = ProducerOf(round);
        const uint32_t index = IndexOf(IdAt(round, 0, 0));
        OV_DEV_HANDLE camera = nullptr;
        HeldCall held(producer, kCallsOfAnOpening[round / 2 % std::size(kCallsOfAnOpening)]);
        Beside opening([&] { return OVOpenDeviceByIndex(index, &camera); });
        held.WaitFor(1);
        producer.LoseDevice(0, 1);
        HeldCall updating(producer, "IFUpdateDeviceList");
        Beside update(&UpdateAll);
        updating.WaitFor(1);
        updating.Release();
        held.Release();
        EXPECT_EQ(update.Join(), OV_STATUS_SUCCESS) << update.GetText();
        EXPECT_EQ(opening.Join(), OV_STATUS_SUCCESS) << opening.GetText();
        int64_t width = 0;
        EXPECT_OV_OK(OVGetInt(camera, OV_FEATURE_Width, &width));
        EXPECT_OV_OK(OVCloseDevice(camera));
        producer.ReturnDevice(0, 1);
        EXPECT_EQ(Update(), kCameras);
    });
}

TEST_F(UpdateRoundsTest, TheCameraThatIsBeingOpenedVanishesFromTheList) {
    Run([&](unsigned round) {
        TestProducer& producer = ProducerOf(round);
        const uint32_t index = IndexOf(IdAt(round, 0, 0));
        OV_DEV_HANDLE camera = nullptr;
        HeldCall held(producer, kCallsOfAnOpening[round / 2 % std::size(kCallsOfAnOpening)]);
        Beside opening([&] { return OVOpenDeviceByIndex(index, &camera); });
        held.WaitFor(1);
        producer.LoseDevice(0, 0);
        Beside update(&UpdateAll);
        // Now and then the update is through before the opening goes on; it can't
        // be while the opening makes the list of streams.
        if (round / 2 % 2 == 0 && kCallsOfAnOpening[round / 2 % std::size(kCallsOfAnOpening)] !=
                                      std::string("DevGetNumDataStreams")) {
            update.Join();
        }
        held.Release();
        EXPECT_EQ(update.Join(), OV_STATUS_SUCCESS) << update.GetText();
        if (opening.Join() == OV_STATUS_SUCCESS) {
            EXPECT_OV_OK(OVCloseDevice(camera));
        }
        ExpectClosed({"Device", "Stream", "Event"});
        EXPECT_EQ(Update(), kCameras - 1);
        producer.ReturnDevice(0, 0);
        EXPECT_EQ(Update(), kCameras);
        EXPECT_OV_OK(OVCloseDevice(Open(IdAt(round, 0, 0))));
    });
}

TEST_F(UpdateRoundsTest, UpdatesAndListsOnThreeThreadsAgree) {
    Run([&](unsigned round) {
        TestProducer& producer = ProducerOf(round);
        producer.LoseDevice(1, 0);
        const auto update = [] {
            uint32_t count = 0;
            return OVUpdateDeviceList(&count, 1000);
        };
        const auto list = [] {
            std::vector<OV_DEVICE_BASE_INFO> records(kCameras);
            size_t size = records.size() * sizeof(OV_DEVICE_BASE_INFO);
            return OVGetAllDeviceBaseInfo(records.data(), &size);
        };
        Beside first(update);
        Beside second(&UpdateAll);
        Beside third(list);
        EXPECT_EQ(first.Join(), OV_STATUS_SUCCESS) << first.GetText();
        EXPECT_EQ(second.Join(), OV_STATUS_SUCCESS) << second.GetText();
        EXPECT_EQ(third.Join(), OV_STATUS_SUCCESS) << third.GetText();
        EXPECT_EQ(Update(), kCameras - 1);
        producer.ReturnDevice(1, 0);
        EXPECT_EQ(Update(), kCameras);
    });
}

}  // namespace
