// The description of a simulated camera as live nodes over its registers.

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "GenApi/EventAdapterGeneric.h"
#include "GenApi/IBoolean.h"
#include "GenApi/ICategory.h"
#include "GenApi/ICommand.h"
#include "GenApi/IEnumeration.h"
#include "GenApi/IInteger.h"
#include "GenApi/INodeMap.h"
#include "GenApi/IPort.h"
#include "GenApi/NodeMapFactory.h"
#include "gige/protocol/GvcpEvent.h"
#include "simulator/device/CameraDevice.h"
#include "simulator/device/GigeDescription.h"
#include "simulator/message/MessageRegisters.h"
#include "simulator/stream/StreamRegisters.h"

namespace {

namespace GenApi = GenApi_3_0_ORVANE;
using namespace OvSimulator;

class DevicePort : public GenApi::IPort {
public:
    explicit DevicePort(CameraDevice& device) : m_device(device) {}

    GenApi::EAccessMode GetAccessMode() override { return GenApi::RW; }
    void Read(void* buffer, int64_t address, int64_t length) override {
        Require(m_device.Read(static_cast<uint32_t>(address),
                              {static_cast<std::byte*>(buffer), static_cast<size_t>(length)}),
                address);
    }
    void Write(const void* buffer, int64_t address, int64_t length) override {
        Require(
            m_device.Write(static_cast<uint32_t>(address),
                           {static_cast<const std::byte*>(buffer), static_cast<size_t>(length)}),
            address);
    }

private:
    static void Require(OvGige::Status status, int64_t address) {
        if (status != OvGige::Status::Success) {
            throw std::runtime_error("Address " + std::to_string(address) + ": " +
                                     OvGige::NameOf(status));
        }
    }

    CameraDevice& m_device;
};

class SimulatedDescription : public testing::Test {
protected:
    SimulatedDescription() {
        const std::string xml = GigeDescription(kApplicationBase);
        m_map = GenApi::CNodeMapFactory(GenApi::ContentType_Xml, xml.data(), xml.size())
                    .CreateNodeMap();
        m_map->Connect(&m_port, "Device");
        ConnectStreamRegisters(
            m_device.Bootstrap(), [](const StreamSetup&) {}, [] {});
    }
    ~SimulatedDescription() override { dynamic_cast<GenApi::IDestroy*>(m_map)->Destroy(); }

    template <class T>
    T& As(const std::string& name) {
        return dynamic_cast<T&>(*m_map->GetNode(name.c_str()));
    }

    std::vector<GenApi::IValue*> Features(const std::string& category) {
        GenApi::value_vector values;
        As<GenApi::ICategory>(category).GetFeatures(values);
        std::vector<GenApi::IValue*> found;
        for (GenApi::IValue* value : values) {
            if (dynamic_cast<GenApi::ICategory*>(value) == nullptr) {
                found.push_back(value);
                continue;
            }
            const auto below = Features(value->GetNode()->GetName().c_str());
            found.insert(found.end(), below.begin(), below.end());
        }
        return found;
    }

    static constexpr IpAddresses kHere{
        .ip = {0xC0A80702}, .mask = {0xFFFFFF00}, .gateway = {0xC0A80701}};
    CameraDevice m_device{MakeProfile(0, kHere, 0)};
    DevicePort m_port{m_device};
    GenApi::INodeMap* m_map = nullptr;
};

TEST_F(SimulatedDescription, HasFeaturesThatCanAllBeReadAndWritten) {
    for (GenApi::IValue* const feature : Features("Root")) {
        GenApi::INode& node = *feature->GetNode();
        const std::string name = node.GetName().c_str();
        if (GenApi::IsReadable(node.GetAccessMode())) {
            EXPECT_NO_THROW(feature->ToString(true, true)) << name;
        }
        if (node.GetAccessMode() == GenApi::RW &&
            dynamic_cast<GenApi::ICommand*>(feature) == nullptr) {
            EXPECT_NO_THROW(feature->FromString(feature->ToString())) << name;
        }
        EXPECT_GT(node.GetToolTip().size(), 0U) << name;
    }
}

TEST_F(SimulatedDescription, HasTheFeaturesOfTheVirtualCameraAtMovedAddresses) {
    As<GenApi::IInteger>("Width").SetValue(320);
    EXPECT_EQ(m_device.Camera().Settings().width, 320);
}

TEST_F(SimulatedDescription, HasTheFeaturesOfEveryGigEVisionCamera) {
    EXPECT_EQ(As<GenApi::IInteger>("GevVersionMajor").GetValue(), 2);
    EXPECT_EQ(As<GenApi::IInteger>("GevVersionMinor").GetValue(), 0);
    EXPECT_EQ(As<GenApi::IInteger>("GevCurrentIPAddress").GetValue(), 0xC0A80702);
    EXPECT_EQ(As<GenApi::IInteger>("GevMACAddress").GetValue(),
              static_cast<int64_t>(MakeProfile(0, kHere, 0).mac.Value()));
    EXPECT_EQ(As<GenApi::IInteger>("GevTimestampTickFrequency").GetValue(), 1'000'000'000);
    EXPECT_EQ(As<GenApi::IInteger>("GevSCPSPacketSize").GetValue(), 1500);
    As<GenApi::IInteger>("GevHeartbeatTimeout").SetValue(10'000);
    EXPECT_EQ(m_device.Bootstrap().Get(OvGige::kRegHeartbeatTimeout), 10'000U);
}

TEST_F(SimulatedDescription, FindsTimeAndDataOfEventsInBothForms) {
    OvGige::Bytes data;
    OvGige::Append(data, uint64_t{7});
    GenApi::CEventAdapterGeneric adapter(m_map);
    for (const bool isExtended : {false, true}) {
        As<GenApi::IBoolean>("GevGVSPExtendedIDMode").SetValue(isExtended);
        const OvGige::Bytes event =
            OvGige::BuildEvent({.id = 0x9001, .timestamp = 123, .data = data}, isExtended);
        adapter.DeliverMessage(reinterpret_cast<const uint8_t*>(event.data()),
                               static_cast<int64_t>(event.size()), 0x9001);
        EXPECT_EQ(As<GenApi::IInteger>("EventExposureEnd").GetValue(), 0x9001);
        EXPECT_EQ(As<GenApi::IInteger>("EventExposureEndTimestamp").GetValue(), 123);
        EXPECT_EQ(As<GenApi::IInteger>("EventExposureEndFrameID").GetValue(), 7);
    }
}

TEST_F(SimulatedDescription, ShowsTheMessageChannel) {
    ConnectMessageRegisters(m_device.Bootstrap(), MessageKind::EventData,
                            [](const MessageSetup&) {});
    EXPECT_EQ(As<GenApi::IInteger>("GevMessageChannelCount").GetValue(), 1);
    As<GenApi::IInteger>("GevMCTT").SetValue(50);
    As<GenApi::IInteger>("GevMCRC").SetValue(3);
    As<GenApi::IInteger>("GevMCDA").SetValue(0x0A010001);
    As<GenApi::IInteger>("GevMCPHostPort").SetValue(50'000);
    EXPECT_EQ(MessageSetupOf(m_device.Bootstrap()),
              (MessageSetup{.destination = {{0x0A010001}, 50'000},
                            .timeout = std::chrono::milliseconds(50),
                            .retries = 3}));
}

TEST_F(SimulatedDescription, SetsUpEachActionSignal) {
    using OvVirtual::TriggerSource;
    As<GenApi::IInteger>("ActionDeviceKey").SetValue(7);
    EXPECT_EQ(m_device.Bootstrap().Get(OvGige::kRegActionDeviceKey), 7U);
    for (const int64_t signal : {1, 2}) {
        As<GenApi::IInteger>("ActionSelector").SetValue(signal);
        As<GenApi::IInteger>("ActionGroupKey").SetValue(10 * signal);
        As<GenApi::IInteger>("ActionGroupMask").SetValue(100 * signal);
    }
    EXPECT_EQ(m_device.Bootstrap().Get(OvGige::kRegActionGroupKey), 10U);
    EXPECT_EQ(m_device.Bootstrap().Get(OvGige::kRegActionGroupMask), 100U);
    EXPECT_EQ(m_device.Bootstrap().Get(OvGige::kRegActionGroupKey + 0x10), 20U);
    EXPECT_EQ(m_device.Bootstrap().Get(OvGige::kRegActionGroupMask + 0x10), 200U);
    As<GenApi::IEnumeration>("TriggerSource").FromString("Action2");
    EXPECT_EQ(m_device.Camera().Settings().triggerSource,
              static_cast<int64_t>(TriggerSource::Action2));
    As<GenApi::IEnumeration>("ActionUnconditionalMode").FromString("On");
    EXPECT_EQ(m_device.Bootstrap().Get(OvGige::kRegControlConfig),
              OvGige::kConfigUnconditionalAction);
}

TEST_F(SimulatedDescription, SaysWhatItsSharedClockIsDoing) {
    EXPECT_STREQ(As<GenApi::IEnumeration>("PtpStatus").ToString().c_str(), "Disabled");
    As<GenApi::IBoolean>("PtpEnable").SetValue(true);
    EXPECT_STREQ(As<GenApi::IEnumeration>("PtpStatus").ToString().c_str(), "Slave");
}

TEST_F(SimulatedDescription, KeepsTheTimeThatIsLatched) {
    As<GenApi::ICommand>("GevTimestampControlLatch").Execute();
    const int64_t first = As<GenApi::IInteger>("GevTimestampValue").GetValue();
    EXPECT_GT(first, 0);
    EXPECT_EQ(As<GenApi::IInteger>("GevTimestampValue").GetValue(), first);
    As<GenApi::ICommand>("GevTimestampControlLatch").Execute();
    EXPECT_GT(As<GenApi::IInteger>("GevTimestampValue").GetValue(), first);
}

}  // namespace
