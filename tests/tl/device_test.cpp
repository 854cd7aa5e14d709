// A device: its two sides, opening step by step, and closing whatever runs.

#include "TLClassDevice/Device.h"

#include <algorithm>
#include <map>

#include "TLClassBuffer/BufferInitInfo.h"
#include "TLClassDevice/DeviceFactory.h"
#include "TLClassFeature/IFeatureControl.h"
#include "TLClassStream/DataStream.h"
#include "TransportTest.h"

namespace OVTLClass {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr int32_t kReadOnly = 2;
constexpr int32_t kControl = 3;

class DeviceTest : public ProducerTest {
protected:
    explicit DeviceTest(const char* fileName = "KwTL.cti") : ProducerTest(fileName) {}
    void SetUp() override {
        device = InitDevice();
        producer.ClearLog();
    }
    void Open() { device->DoOpenDevice(kControl); }

    void ExpectClosed() {
        EXPECT_FALSE(device->DoIsDeviceOpen());
        EXPECT_EQ(device->GetFeatureControl(), nullptr);
        EXPECT_EQ(device->DoGetDeviceNodeMapRef(), nullptr);
        EXPECT_EQ(device->DoGetRemoteDeviceFeatureControl(), nullptr);
        EXPECT_EQ(device->DoGetRemoteDeviceNodeMapRef(), nullptr);
        EXPECT_EQ(device->GetXML() + device->DoGetRemoteDeviceXML(), "");
        EXPECT_EQ(device->DoGetDeviceHandle(), nullptr);
        EXPECT_EQ(device->DoGetRemoteDeviceHandle(), nullptr);
        EXPECT_THAT(device->DoGetDataStreamList(), IsEmpty());
    }

    std::shared_ptr<IDevice> device;
};

TEST_F(DeviceTest, IsClosedAtFirst) {
    ExpectClosed();
    EXPECT_EQ(device->DoGetDeviceAccessMode(), 1);
}

TEST_F(DeviceTest, HasTwoSidesWhileOpen) {
    Open();
    EXPECT_TRUE(device->DoIsDeviceOpen());
    EXPECT_EQ(device->DoGetDeviceAccessMode(), kControl);
    EXPECT_EQ(device->GetFeatureControl()->DoGetString("DeviceID"), "TestCamera0_0");
    EXPECT_FALSE(device->GetFeatureControl()->DoExist("Width"));
    EXPECT_EQ(device->DoGetRemoteDeviceFeatureControl()->DoGetInt("Width"), 64);
    EXPECT_THAT(device->DoGetRemoteDeviceXML(), ::testing::HasSubstr("ModelName=\"TestCamera\""));
    EXPECT_THAT(device->GetXML(), ::testing::HasSubstr("ModelName=\"DeviceModule\""));
    EXPECT_NE(device->DoGetDeviceHandle(), nullptr);
    EXPECT_NE(device->DoGetRemoteDeviceHandle(), nullptr);
}

TEST_F(DeviceTest, MakesItsStreamsClosed) {
    producer.SetStreamNumber(0, 0, "Count", 3);
    Open();
    EXPECT_EQ(device->DoGetDataStreamList().size(), 3U);
    for (const auto& stream : device->DoGetDataStreamList()) {
        EXPECT_FALSE(stream->DoIsDataStreamOpen());
        EXPECT_EQ(stream->DoGetDevice(), device);
    }
    EXPECT_EQ(producer.CallCount("DevOpenDataStream"), 0U);
}

TEST_F(DeviceTest, OpensStepByStep) {
    Open();
    EXPECT_THAT(
        producer.Log(),
        ElementsAre("IFOpenDevice",                                                // the device
                    "GCGetNumPortURLs", "GCGetPortURLInfo", "GCGetPortURLInfo",    // its own side
                    "GCReadPort", "GCGetPortInfo", "GCGetPortInfo", "DevGetPort",  //
                    "GCGetNumPortURLs", "GCGetPortURLInfo", "GCGetPortURLInfo",    // the camera
                    "GCReadPort", "GCGetPortInfo", "GCGetPortInfo",                //
                    "DevGetNumDataStreams", "DevGetDataStreamID", "DevGetDataStreamID"));
}

TEST_F(DeviceTest, OpenedAgainInTheSameWayStaysAsItIs) {
    Open();
    producer.ClearLog();
    Open();
    EXPECT_THAT(producer.Log(), IsEmpty());
}

TEST_F(DeviceTest, RefusesToBeOpenedAgainInAnotherWay) {
    Open();
    EXPECT_RAISES(CInvalidAccessError, "The device has already been opened",
                  device->DoOpenDevice(kReadOnly));
    EXPECT_EQ(device->DoGetDeviceAccessMode(), kControl);
}

TEST_F(DeviceTest, CanBeOpenedAnewInAnotherWay) {
    Open();
    device->DoCloseDevice();
    ExpectClosed();
    device->DoOpenDevice(kReadOnly);
    EXPECT_EQ(device->DoGetDeviceAccessMode(), kReadOnly);
    EXPECT_RAISES(CInvalidAccessError, "Access denied:The device is open for reading only",
                  device->DoGetRemoteDeviceFeatureControl()->DoSetInt("Width", 32));
}

TEST_F(DeviceTest, CloseOfAClosedDeviceDoesNothing) {
    device->DoCloseDevice();
    EXPECT_THAT(producer.Log(), IsEmpty());
}

TEST_F(DeviceTest, WithoutADescriptionOfTheCameraIsClosedAgain) {
    producer.SetUrl("Remote", "");
    EXPECT_UNEXPECTED(-1, "UrlNum <= 0", Open());
    ExpectClosed();
    EXPECT_EQ(producer.SuccessCount("IFOpenDevice"), 1U);
    EXPECT_EQ(producer.SuccessCount("DevClose"), 1U);
    EXPECT_EQ(producer.Log().back(), "DevClose");
}

TEST_F(DeviceTest, UndoesEveryStepWhenALaterOneFails) {
    producer.SetStreamNumber(0, 0, "Count", 2);
    Open();
    const std::vector<std::string> calls = producer.Log();
    device->DoCloseDevice();
    std::map<std::string, unsigned> seen;
    for (const std::string& call : calls) {
        SCOPED_TRACE(call + " " + std::to_string(++seen[call]));
        producer.FailCall(call.c_str(), seen[call], GenTL::GC_ERR_ERROR);
        try {
            Open();
            device->DoCloseDevice();
        } catch (const CUnexpectedError& error) {
            EXPECT_EQ(error.GetStatus(), GenTL::GC_ERR_ERROR);
            EXPECT_EQ(error.GetDescription(), "Planned failure of " + call);
        }
        ExpectClosed();
        EXPECT_EQ(producer.OpenCount("Device"), 0);
    }
    Open();
}

TEST_F(DeviceTest, LogsAnUndoThatFails) {
    const LogCapture log;
    producer.SetUrl("Remote", "");
    producer.FailAfterCall("DevClose", 1, GenTL::GC_ERR_ERROR);
    EXPECT_UNEXPECTED(-1, "UrlNum <= 0", Open());
    EXPECT_THAT(log.Lines(), HasLogged("~CIFOpenDeviceAgency", "Planned failure of DevClose"));
    manager.DoUninit();
    producer.Reset();
}

TEST_F(DeviceTest, LogsAFailedClose) {
    Open();
    const LogCapture log;
    producer.FailAfterCall("DevClose", 1, GenTL::GC_ERR_ERROR);
    device->DoCloseDevice();
    ExpectClosed();
    EXPECT_THAT(log.Lines(), HasLogged("DoCloseDevice", "Planned failure of DevClose"));
    manager.DoUninit();
    producer.Reset();
}

TEST_F(DeviceTest, GivesItsBuffersBackBeforeItCloses) {
    Open();
    const auto stream = device->DoGetDataStreamList().at(0);
    stream->DoOpenDataStream();
    stream->SetAcqusitionBufferNumber(2);
    CBufferInitInfo info;
    info.SetPayloadSize(64 * 48);
    stream->DoStartDataStreamAcqusition(info);
    producer.ClearLog();
    device->DoCloseDevice();
    std::vector<std::string> calls = producer.Log();
    const auto isPort = [](const std::string& call) {
        return call == "GCReadPort" || call == "GCWritePort";
    };
    calls.erase(std::remove_if(calls.begin(), calls.end(), isPort), calls.end());
    EXPECT_THAT(calls,
                ElementsAre("EventKill", "GCUnregisterEvent", "DSStopAcquisition", "DSFlushQueue",
                            "DSRevokeBuffer", "DSRevokeBuffer", "DSClose", "DevClose"));
    EXPECT_FALSE(stream->DoIsDataStreamOpen());
}

TEST_F(DeviceTest, ClosesThoughTheCameraIsLost) {
    Open();
    const auto stream = device->DoGetDataStreamList().at(0);
    stream->DoOpenDataStream();
    CBufferInitInfo info;
    info.SetPayloadSize(64 * 48);
    stream->DoStartDataStreamAcqusition(info);
    producer.LoseDevice(0, 0);
    device->DoCloseDevice();
    ExpectClosed();
    for (const char* const kind : {"Device", "Stream", "Buffer", "Event", "Acquisition"}) {
        EXPECT_EQ(producer.OpenCount(kind), 0) << kind;
    }
}

TEST_F(DeviceTest, ReportsALostCameraAsSuch) {
    Open();
    producer.LoseDevice(0, 0);
    EXPECT_RAISES(CDeviceOfflineError, "The device is lost",
                  device->DoGetRemoteDeviceFeatureControl()->DoSetInt("Width", 32));
}

TEST_F(DeviceTest, TakesNewInformationAndKeepsWhatIsNotGiven) {
    DEV_INFO info = device->DoGetDeviceInfo();
    info.displayName = {"Other", true};
    device->DoUpdateDeviceInformation(info);
    EXPECT_EQ(device->DoGetDeviceInfo().displayName.value, "Other");
    EXPECT_EQ(device->DoGetCommonDeviceInfo().serialNumber.value, "SN0_0");
    COMMON_DEVICE_INFO common;
    common.serialNumber = {"New", true};
    info.pCommonInfo = &common;
    device->DoUpdateDeviceInformation(info);
    EXPECT_EQ(device->DoGetCommonDeviceInfo().serialNumber.value, "New");
    EXPECT_EQ(device->DoGetDeviceInfo().pCommonInfo, nullptr);
}

TEST_F(DeviceTest, IsConfiguredThoughItWasNeverOpened) {
    device->DoForceIp("10.0.0.5", "255.0.0.0", "10.0.0.1");
    EXPECT_EQ(producer.ExtensionCall(), "IFForceIp|TestCamera0_0|10.0.0.5|255.0.0.0|10.0.0.1");
    device->DoIpConfiguration(7, "10.0.0.6", "255.255.0.0", "10.0.0.2", "Left");
    EXPECT_EQ(producer.ExtensionCall(),
              "IFIpConfiguration|TestCamera0_0|7|10.0.0.6|255.255.0.0|10.0.0.2|Left");
    device->DoResetDevice(2);
    EXPECT_EQ(producer.ExtensionCall(), "IFResetDevice|TestCamera0_0|2");
    EXPECT_THAT(producer.Log(), ElementsAre("IFForceIp", "IFIpConfiguration", "IFResetDevice"));
}

TEST_F(DeviceTest, RaisesWhenAConfigurationIsRefused) {
    producer.FailCall("IFForceIp", 1, GenTL::GC_ERR_TIMEOUT);
    EXPECT_RAISES(CTimeoutError, "Planned failure of IFForceIp",
                  device->DoForceIp("10.0.0.5", "255.0.0.0", "10.0.0.1"));
}

/// A device of a producer without the calls beyond the standard.
class PlainDeviceTest : public DeviceTest {
protected:
    PlainDeviceTest() : DeviceTest("Plain.cti") {}
};

TEST_F(PlainDeviceTest, CannotBeConfigured) {
    const char* const text = "The TL library is not complete";
    EXPECT_UNEXPECTED(-1, text, device->DoForceIp("10.0.0.5", "255.0.0.0", "10.0.0.1"));
    EXPECT_UNEXPECTED(-1, text, device->DoIpConfiguration(1, "", "", "", ""));
    EXPECT_UNEXPECTED(-1, text, device->DoResetDevice(1));
}

TEST_F(PlainDeviceTest, OpensLikeAnyOther) {
    Open();
    EXPECT_EQ(device->DoGetRemoteDeviceFeatureControl()->DoGetInt("Width"), 64);
}

/// The choice of a device's class.
class DeviceFactory : public ::testing::Test {
protected:
    std::unique_ptr<IDevice> Create() {
        return CDeviceFactory::CreateDevice(lib, nullptr, nullptr, info);
    }

    std::shared_ptr<const CGenTLLib> lib = std::make_shared<const CGenTLLib>(Staged("Empty.cti"));
    COMMON_DEVICE_INFO common;
    GEV_DEV_INFO gevDevice;
    GEV_IF_INFO gevInterface;
    DEV_INFO info;
};

TEST_F(DeviceFactory, MakesAGigEVisionDeviceWithItsAddresses) {
    gevDevice.ipAddress = {5, true};
    info.tlType.value = "GEV";
    info.pCommonInfo = &common;
    info.pSpecialInfo = &gevDevice;
    const auto device = Create();
    EXPECT_EQ(device->DoGetGevDeviceInfo()->ipAddress.value, 5);
    EXPECT_EQ(info.pCommonInfo, nullptr);
    EXPECT_EQ(info.pSpecialInfo, nullptr);
}

TEST_F(DeviceFactory, MakesAPlainDeviceForEveryOtherTransport) {
    common.serialNumber = {"SN", true};
    for (const char* const type : {"U3V", "Custom", "", "gev"}) {
        info.tlType.value = type;
        info.pCommonInfo = &common;
        info.pSpecialInfo = &gevDevice;
        const auto device = Create();
        EXPECT_TRUE(IsExactly<CDevice>(device)) << type;
        EXPECT_EQ(device->DoGetCommonDeviceInfo().serialNumber.value, "SN");
        EXPECT_EQ(info.pCommonInfo, nullptr);
        EXPECT_EQ(info.pSpecialInfo, nullptr);
    }
}

TEST_F(DeviceFactory, WantsTheCommonInformation) {
    EXPECT_UNEXPECTED(-1, "Invalid parameter", Create());
}

TEST_F(DeviceFactory, WantsTheAddressesOfAGigEVisionDevice) {
    info.tlType.value = "GEV";
    info.pCommonInfo = &common;
    EXPECT_UNEXPECTED(-1, "Invalid parameter", Create());
    info.pSpecialInfo = &gevInterface;
    EXPECT_UNEXPECTED(-1, "Invalid parameter", Create());
}

}  // namespace
}  // namespace OVTLClass
