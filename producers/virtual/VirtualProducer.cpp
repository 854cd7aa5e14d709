/// @file The producer of the virtual cameras: one interface with as many cameras as the
/// environment says.
#include <algorithm>
#include <cstdio>
#include <iterator>

#include "Base/EachFrame.h"
#include "framework/Backend.h"
#include "framework/Failure.h"
#include "virtual/Camera.h"
#include "virtual/CameraPort.h"
#include "virtual/Chunks.h"

namespace OvVirtual {
namespace {

constexpr const char* kVendor = "oviapi";
constexpr const char* kVersion = "1.0.0";

CameraIdentity IdentityOf(unsigned index) {
    CameraIdentity identity;
    identity.index = index;
    identity.color = index % 2 == 0;
    identity.model = identity.color ? "Virtual-5M-Color" : "Virtual-5M-Mono";
    char serial[16];
    std::snprintf(serial, sizeof serial, "VC%06u", index + 1);
    identity.serialNumber = serial;
    return identity;
}

class VirtualStream : public OvProducer::CopyingStream {
public:
    explicit VirtualStream(std::shared_ptr<Camera> camera) : m_camera(std::move(camera)) {}

    OvProducer::StreamFacts Facts() override {
        OvProducer::StreamFacts facts;
        facts.id = "Stream0";
        facts.tlType = GenTL::TLTYPE_CUSTOM;
        facts.chunksMax = static_cast<size_t>(kChunks);
        return facts;
    }

    OvProducer::FrameSource& Source() override { return *m_camera; }
    void CheckUsable() override { m_camera->Link().CheckUsable(); }
    /// No frame comes from a camera that has left the bus.
    void CheckAfterTimeout() override { m_camera->Link().CheckUsable(); }

private:
    std::shared_ptr<Camera> m_camera;
};

class VirtualDevice : public OvProducer::DeviceBackend {
public:
    explicit VirtualDevice(std::shared_ptr<Camera> camera)
        : m_camera(std::move(camera)), m_stream(std::make_shared<VirtualStream>(m_camera)) {}

    OvProducer::DeviceFacts Facts() override {
        const CameraIdentity& identity = m_camera->Identity();
        OvProducer::DeviceFacts facts;
        facts.id = identity.model + "_" + identity.serialNumber;
        facts.vendor = kVendor;
        facts.model = identity.model;
        facts.tlType = GenTL::TLTYPE_CUSTOM;
        facts.displayName = identity.model + " (" + identity.serialNumber + ")";
        facts.userId = m_camera->UserId();
        facts.serialNumber = identity.serialNumber;
        facts.version = kVersion;
        facts.timestampFrequency = Camera::kTicksPerSecond;
        facts.accessStatus = AccessStatus();
        return facts;
    }

    bool IsOnBus() const { return m_camera->Link().IsOnBus(); }

    void Open(GenTL::DEVICE_ACCESS_FLAGS flags,
              std::weak_ptr<OvProducer::EventSink> sink) override {
        m_camera->Lock().Take(flags);
        try {
            m_camera->Link().Open(std::move(sink));
        } catch (const OvProducer::Failure&) {
            m_camera->Lock().Release();
            throw;
        }
        m_status = flags == GenTL::DEVICE_ACCESS_READONLY
                       ? GenTL::DEVICE_ACCESS_STATUS_OPEN_READONLY
                       : GenTL::DEVICE_ACCESS_STATUS_OPEN_READWRITE;
        m_camera->Recall();
    }

    void Close() override {
        // A camera whose host closes it stops, and another host can open it.
        m_camera->Stop();
        m_camera->SetParamsLocked(false);
        m_camera->Files().Reset();
        if (!IsReader()) {
            m_camera->Keep();
        }
        m_camera->Link().Close();
        m_status = GenTL::DEVICE_ACCESS_STATUS_UNKNOWN;
        m_camera->Lock().Release();
    }

    bool OffersEvent(GenTL::EVENT_TYPE type) override {
        return type == GenTL::EVENT_DEVICE_OFFLINE || type == GenTL::EVENT_REMOTE_DEVICE;
    }

    std::unique_ptr<OvProducer::Port> MakeRemotePort() override {
        const OvProducer::DeviceFacts facts = Facts();
        auto port = MakeCameraPort(m_camera, {facts.id, facts.vendor, facts.model, facts.tlType,
                                              "Device", facts.version, "Device"});
        port->SetGate([camera = m_camera, isReader = IsReader()] {
            camera->Link().CheckUsable();
            if (isReader) {
                camera->Follow();
            }
        });
        port->SetAfterWrite([camera = m_camera] { camera->Keep(); });
        return port;
    }

    std::vector<std::shared_ptr<OvProducer::StreamBackend>> Streams() override {
        return {m_stream};
    }

    void CheckUsable() override { m_camera->Link().CheckUsable(); }

private:
    /// Another process keeps what a reader sees.
    bool IsReader() const { return m_status == GenTL::DEVICE_ACCESS_STATUS_OPEN_READONLY; }
    GenTL::DEVICE_ACCESS_STATUS AccessStatus() const {
        const GenTL::DEVICE_ACCESS_STATUS status = m_status;
        return status == GenTL::DEVICE_ACCESS_STATUS_UNKNOWN ? m_camera->Lock().Status() : status;
    }

    const std::shared_ptr<Camera> m_camera;
    const std::shared_ptr<VirtualStream> m_stream;
    /// Unknown unless it is open here.
    std::atomic<GenTL::DEVICE_ACCESS_STATUS> m_status = GenTL::DEVICE_ACCESS_STATUS_UNKNOWN;
};

class VirtualInterface : public OvProducer::InterfaceBackend {
public:
    VirtualInterface() {
        const Environment environment = ReadEnvironment();
        for (unsigned index = 0; index < environment.cameras; ++index) {
            m_devices.push_back(std::make_shared<VirtualDevice>(
                std::make_shared<Camera>(IdentityOf(index), environment)));
        }
    }

    OvProducer::InterfaceFacts Facts() override {
        OvProducer::InterfaceFacts facts;
        facts.id = "VirtualInterface0";
        facts.displayName = "Virtual Interface";
        facts.tlType = GenTL::TLTYPE_CUSTOM;
        facts.description = "Cameras that need no hardware";
        return facts;
    }

    std::vector<std::shared_ptr<OvProducer::DeviceBackend>> Discover(uint64_t) override {
        std::vector<std::shared_ptr<OvProducer::DeviceBackend>> found;
        std::copy_if(m_devices.begin(), m_devices.end(), std::back_inserter(found),
                     [](const auto& device) { return device->IsOnBus(); });
        return found;
    }

    std::shared_ptr<OvProducer::DeviceBackend> Reach(const std::string&) override {
        return nullptr;
    }

private:
    std::vector<std::shared_ptr<VirtualDevice>> m_devices;
};

class VirtualProducer : public OvProducer::ProducerBackend {
public:
    OvProducer::ProducerFacts Facts() override {
        return {"KwTL",           kVendor, "Virtual Cameras", kVersion, GenTL::TLTYPE_CUSTOM,
                "Virtual cameras"};
    }

    std::vector<std::shared_ptr<OvProducer::InterfaceBackend>> Discover(uint64_t) override {
        return {m_interface};
    }

private:
    const std::shared_ptr<VirtualInterface> m_interface = std::make_shared<VirtualInterface>();
};

}  // namespace
}  // namespace OvVirtual

namespace OvProducer {

std::unique_ptr<ProducerBackend> MakeProducer() {
    return std::make_unique<OvVirtual::VirtualProducer>();
}

OV_EACH_FRAME CallObserver& Observer() {
    static CallObserver observer;
    return observer;
}

}  // namespace OvProducer
