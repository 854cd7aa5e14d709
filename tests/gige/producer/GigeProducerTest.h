#pragma once
/// A test of the producer's file with simulated cameras on this machine's loopback.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "GenTLApi.h"
#include "LoopbackSocket.h"
#include "gige/protocol/BigEndian.h"
#include "simulator/SimulatedCamera.h"

class GigeProducerTest : public testing::Test {
protected:
    using Clock = std::chrono::steady_clock;

    /// Searches reach loopback and nothing else.
    GigeProducerTest() {
        setenv("OV_GIGE_ADAPTERS", "lo", 1);
        unsetenv("OV_GIGE_ADDRESSES");
    }
    ~GigeProducerTest() override {
        if (m_camera && m_camera->library) {
            Api().GCCloseLib();
            m_camera->library = false;
        }
        unsetenv("OV_GIGE_ADAPTERS");
        unsetenv("OV_GIGE_ADDRESSES");
    }

    /// Adds a camera. Cameras differ by their number.
    OvSimulator::SimulatedCamera& AddCamera(
        unsigned index = 0, const OvSimulator::Faults& faults = {},
        OvSimulator::MessageKind messages = OvSimulator::MessageKind::EventData) {
        constexpr OvSimulator::IpAddresses kHere{
            .ip = kLoopback, .mask = {0xFF000000}, .gateway = {}};
        OvSimulator::CameraProfile profile = OvSimulator::MakeProfile(index, kHere, 0);
        profile.faults = faults;
        profile.messages = messages;
        m_simulated.push_back(std::make_unique<OvSimulator::SimulatedCamera>(profile));
        return *m_simulated.back();
    }
    OvSimulator::SimulatedCamera& Simulated(size_t index = 0) { return *m_simulated[index]; }
    std::string IdOfCamera(size_t index = 0) {
        return OvGige::TextOf(Simulated(index).Profile().mac);
    }
    void RemoveCameras() { m_simulated.clear(); }

    const GenTLApi& Api() {
        if (!m_api) {
            m_api.emplace(OV_TEST_GIGE_PRODUCER);
        }
        return *m_api;
    }
    /// The way down; names the cameras' addresses to the producer first.
    OpenCamera& Way() {
        if (!m_camera) {
            std::string addresses;
            for (const auto& simulated : m_simulated) {
                addresses += OvGige::TextOf(simulated->Address()) + ",";
            }
            setenv("OV_GIGE_ADDRESSES", addresses.c_str(), 1);
            m_camera.emplace(Api());
        }
        return *m_camera;
    }

    uint32_t CountCameras() {
        uint32_t count = 0;
        EXPECT_EQ(Api().IFGetNumDevices(Way().iface, &count), 0);
        return count;
    }
    /// Searches until that many cameras are listed.
    void Find(uint32_t count) {
        const auto end = Clock::now() + std::chrono::minutes(1);
        do {
            ASSERT_EQ(Api().IFUpdateDeviceList(Way().iface, nullptr, 50), 0);
        } while (CountCameras() != count && Clock::now() < end);
        ASSERT_EQ(CountCameras(), count);
    }
    /// Opens the interface and finds all cameras.
    void FindAll() {
        Way().OpenInterface();
        Find(static_cast<uint32_t>(m_simulated.size()));
    }
    GenTL::GC_ERROR Open(const std::string& id,
                         GenTL::DEVICE_ACCESS_FLAGS access = GenTL::DEVICE_ACCESS_CONTROL) {
        const GenTL::GC_ERROR code =
            Api().IFOpenDevice(Way().iface, id.c_str(), access, &Way().device);
        return code != 0 ? code : Api().DevGetPort(Way().device, &Way().port);
    }
    /// Adds one camera, finds it and opens it.
    void OpenOne(GenTL::DEVICE_ACCESS_FLAGS access = GenTL::DEVICE_ACCESS_CONTROL) {
        AddCamera();
        FindAll();
        ASSERT_EQ(Open(IdOfCamera(), access), 0) << LastError();
    }

    std::string LastError() {
        std::string text(512, '\0');
        size_t size = text.size();
        Api().GCGetLastError(nullptr, text.data(), &size);
        return text.c_str();
    }

    template <typename T>
    T DeviceInfo(const std::string& id, GenTL::DEVICE_INFO_CMD command) {
        return GenTLApi::Number<T>([&](auto* type, void* out, size_t* size) {
            return Api().IFGetDeviceInfo(Way().iface, id.c_str(), command, type, out, size);
        });
    }
    std::string DeviceText(const std::string& id, GenTL::DEVICE_INFO_CMD command) {
        return GenTLApi::Text([&](auto* type, void* out, size_t* size) {
            return Api().IFGetDeviceInfo(Way().iface, id.c_str(), command, type, out, size);
        });
    }
    std::string InterfaceText(GenTL::INTERFACE_INFO_CMD command) {
        return GenTLApi::Text([&](auto* type, void* out, size_t* size) {
            return Api().IFGetInfo(Way().iface, command, type, out, size);
        });
    }

    template <typename T>
    T Read(GenTL::PORT_HANDLE port, uint64_t address) {
        T value{};
        size_t size = sizeof value;
        EXPECT_EQ(Api().GCReadPort(port, address, &value, &size), 0) << LastError();
        return value;
    }
    template <typename T>
    GenTL::GC_ERROR Write(GenTL::PORT_HANDLE port, uint64_t address, T value) {
        size_t size = sizeof value;
        return Api().GCWritePort(port, address, &value, &size);
    }
    /// Registers of the camera, which have the most significant byte first.
    ///@{
    uint32_t ReadBigRegister(uint32_t address) {
        const auto bytes = Read<std::array<std::byte, 4>>(Way().port, address);
        return OvGige::ReadBig<uint32_t>(bytes);
    }
    GenTL::GC_ERROR WriteBigRegister(uint32_t address, uint32_t value) {
        std::array<std::byte, 4> bytes{};
        OvGige::WriteBig(std::span<std::byte>(bytes), value);
        return Write(Way().port, address, bytes);
    }
    ///@}
    GenTL::GC_ERROR WriteText(GenTL::PORT_HANDLE port, uint64_t address, const std::string& text) {
        size_t size = text.size() + 1;
        return Api().GCWritePort(port, address, text.c_str(), &size);
    }
    std::string ReadText(GenTL::PORT_HANDLE port, uint64_t address, size_t length) {
        std::string text(length, '\0');
        EXPECT_EQ(Api().GCReadPort(port, address, text.data(), &length), 0) << LastError();
        return text.c_str();
    }

private:
    std::vector<std::unique_ptr<OvSimulator::SimulatedCamera>> m_simulated;
    std::optional<GenTLApi> m_api;
    std::optional<OpenCamera> m_camera;
};
