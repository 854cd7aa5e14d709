/// @file
/// What modules ask of a producer's own classes, with classes of the test's own.
#include <gtest/gtest.h>

#include <functional>
#include <optional>

#include "framework/System.h"

namespace {

using namespace OvProducer;
using namespace std::chrono_literals;

template <typename Facts>
Facts NamedFacts(const char* id) {
    Facts facts{};
    facts.id = id;
    facts.tlType = GenTL::TLTYPE_GEV;
    return facts;
}

class FakeDevice : public DeviceBackend {
public:
    DeviceFacts Facts() override { return m_facts; }
    void Open(GenTL::DEVICE_ACCESS_FLAGS, std::weak_ptr<EventSink>) override {
        ++m_opened;
        m_opening();
    }
    void Close() override { ++m_closed; }
    bool OffersEvent(GenTL::EVENT_TYPE) override { return false; }
    std::unique_ptr<Port> MakeRemotePort() override {
        if (m_hasNoPort) {
            throw Failure(GenTL::GC_ERR_NOT_AVAILABLE, "The camera has no description");
        }
        return std::make_unique<Port>(PortFacts{});
    }
    std::vector<std::shared_ptr<StreamBackend>> Streams() override { return {}; }
    void CheckUsable() override {}
    CommandPatience InitialPatience() override { return {500ms, 2}; }
    void SetPatience(const CommandPatience& patience) override { m_patience = patience; }
    void SetLegacyEndianess(bool isLegacy) override { m_isLegacy = isLegacy; }

    DeviceFacts m_facts = NamedFacts<DeviceFacts>("camera");
    bool m_hasNoPort = false;
    std::function<void()> m_opening = [] {};  // called while it is opened
    int m_opened = 0;
    int m_closed = 0;
    std::optional<CommandPatience> m_patience;
    std::optional<bool> m_isLegacy;
};

class FakeInterface : public InterfaceBackend {
public:
    InterfaceFacts Facts() override { return NamedFacts<InterfaceFacts>("adapter"); }
    std::vector<std::shared_ptr<DeviceBackend>> Discover(uint64_t) override { return {m_device}; }
    std::shared_ptr<DeviceBackend> Reach(const std::string&) override { return nullptr; }
    void ForceAddress(DeviceBackend& device, const NetworkAddress& address) override {
        EXPECT_EQ(&device, m_device.get());
        m_forced = address;
    }

    const std::shared_ptr<FakeDevice> m_device = std::make_shared<FakeDevice>();
    std::optional<NetworkAddress> m_forced;
};

class FakeProducer : public ProducerBackend {
public:
    ProducerFacts Facts() override { return NamedFacts<ProducerFacts>("fake"); }
    std::vector<std::shared_ptr<InterfaceBackend>> Discover(uint64_t) override {
        return {m_interface};
    }

    const std::shared_ptr<FakeInterface> m_interface = std::make_shared<FakeInterface>();
};

class Backend : public testing::Test {
protected:
    Backend() {
        auto producer = std::make_unique<FakeProducer>();
        m_interface = producer->m_interface;
        m_session->producer = std::move(producer);
        m_session->facts = m_session->producer->Facts();
        m_system = std::make_shared<System>(*m_session);
        m_system->UpdateInterfaces(0);
        m_adapter = m_system->OpenInterface("adapter");
        m_adapter->UpdateDevices(0);
    }

    std::shared_ptr<Device> OpenDevice() {
        return m_adapter->OpenDevice("camera", GenTL::DEVICE_ACCESS_CONTROL);
    }
    template <typename T>
    static T Read(const PortObject& module, uint64_t address) {
        T value{};
        module.GetPort().Read(address, std::as_writable_bytes(std::span(&value, 1)));
        return value;
    }
    template <typename T>
    static void Write(const PortObject& module, uint64_t address, T value) {
        module.GetPort().Write(address, std::as_bytes(std::span(&value, 1)));
    }

    HandleTable m_handles;
    const std::shared_ptr<Session> m_session = std::make_shared<Session>(m_handles);
    std::shared_ptr<FakeInterface> m_interface;
    std::shared_ptr<System> m_system;
    std::shared_ptr<Interface> m_adapter;
};

TEST_F(Backend, IsClosedWhenItsPortCantBeMade) {
    FakeDevice& camera = *m_interface->m_device;
    camera.m_hasNoPort = true;
    try {
        OpenDevice();
        FAIL();
    } catch (const Failure& failure) {
        EXPECT_STREQ(failure.what(), "The camera has no description");
    }
    EXPECT_EQ(camera.m_opened, 1);
    EXPECT_EQ(camera.m_closed, 1);
    camera.m_hasNoPort = false;
    OpenDevice();
    EXPECT_EQ(camera.m_opened, 2);
    EXPECT_EQ(camera.m_closed, 1);
}

TEST_F(Backend, MayBeListedWhileItIsOpened) {
    m_interface->m_device->m_opening = [this] {
        EXPECT_EQ(m_adapter->Devices().Count(), 1U);
        EXPECT_FALSE(m_adapter->UpdateDevices(0));
        EXPECT_THROW(OpenDevice(), Failure);
    };
    EXPECT_TRUE(OpenDevice());
    EXPECT_EQ(m_interface->m_device->m_opened, 1);
}

TEST_F(Backend, IsClosedAgainWhenItsInterfaceClosesWhileItIsOpened) {
    m_interface->m_device->m_opening = [this] { m_system->CloseInterface(m_adapter); };
    try {
        OpenDevice();
        FAIL();
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.Code(), GenTL::GC_ERR_INVALID_HANDLE);
        EXPECT_STREQ(failure.what(), "The module was closed meanwhile");
    }
    EXPECT_EQ(m_interface->m_device->m_closed, 1);
}

TEST_F(Backend, IsToldHowLongCommandsMayTake) {
    const auto device = OpenDevice();
    EXPECT_EQ(Read<int64_t>(*device, 0x03D0), 500);
    EXPECT_EQ(Read<int64_t>(*device, 0x03D8), 2);
    Write<int64_t>(*device, 0x03D0, 700);
    Write<int64_t>(*device, 0x03D8, 5);
    EXPECT_EQ(m_interface->m_device->m_patience.value().timeout, 700ms);
    EXPECT_EQ(m_interface->m_device->m_patience.value().retries, 5);
    EXPECT_EQ(Read<int64_t>(*device, 0x03D0), 700);
    EXPECT_EQ(Read<int64_t>(*device, 0x03D8), 5);
}

TEST_F(Backend, IsToldHowRegistersAreRead) {
    const auto device = OpenDevice();
    EXPECT_EQ(Read<int64_t>(*device, 0x03E0), 1);
    Write<int64_t>(*device, 0x03E0, 0);
    EXPECT_EQ(m_interface->m_device->m_isLegacy, true);
    EXPECT_EQ(Read<int64_t>(*device, 0x03E0), 0);
    Write<int64_t>(*device, 0x03E0, 1);
    EXPECT_EQ(m_interface->m_device->m_isLegacy, false);
}

TEST_F(Backend, ForcesAnAddressOnTheSelectedDevice) {
    Write<int64_t>(*m_adapter, 0x0580, 0x0A000005);
    Write<int64_t>(*m_adapter, 0x0588, 0xFF000000);
    Write<int64_t>(*m_adapter, 0x0590, 0x0A000001);
    EXPECT_FALSE(m_interface->m_forced);
    Write<uint32_t>(*m_adapter, 0x0598, 1);
    ASSERT_TRUE(m_interface->m_forced);
    EXPECT_EQ(m_interface->m_forced->ip, 0x0A000005);
    EXPECT_EQ(m_interface->m_forced->mask, 0xFF000000);
    EXPECT_EQ(m_interface->m_forced->gateway, 0x0A000001);
}

TEST_F(Backend, HasNoNamedAddressesUnlessItSaysSo) {
    EXPECT_EQ(Read<char>(*m_system, 0x0880), '\0');
    try {
        Write<char>(*m_system, 0x0880, '1');
        FAIL();
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.Code(), GenTL::GC_ERR_NOT_IMPLEMENTED);
        EXPECT_STREQ(failure.what(), "These devices have no network addresses");
    }
}

TEST_F(Backend, IsTheSameEntryOfTheListWithAnotherAddress) {
    EXPECT_FALSE(m_adapter->UpdateDevices(0));
    m_interface->m_device->m_facts.address.ip = 0x0A000005;
    EXPECT_FALSE(m_adapter->UpdateDevices(0));
}

}  // namespace
