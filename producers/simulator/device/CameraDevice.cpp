#include "simulator/device/CameraDevice.h"

#include <algorithm>
#include <cstdio>

#include "Base/OvAssert.h"
#include "framework/Failure.h"
#include "framework/Zip.h"
#include "gige/protocol/Discovery.h"
#include "simulator/device/GigeDescription.h"
#include "virtual/CameraPort.h"

namespace OvSimulator {
namespace {

using namespace OvGige;

constexpr uint32_t kHeartbeatDefault = 3000;
constexpr uint32_t kHeartbeatMin = 500;
constexpr uint32_t kPendingMax = 5000;
constexpr uint32_t kLinkSpeed = 1000;

/// 169.254.x.y with what the MAC address says, which no other camera has.
constexpr Ipv4 kLinkLocal{0xA9FE0000};
constexpr Ipv4 kLinkLocalMask{0xFFFF0000};

// Bits of the timestamp control register.
constexpr uint32_t kResetTime = 0x1;
constexpr uint32_t kLatchTime = 0x2;

constexpr uint32_t kOffered =
    kOffersUserName | kOffersSerialNumber | kOffersHeartbeatOff | kOffersLinkSpeed | kOffersOwner |
    kOffersExtendedStatus1 | kOffersExtendedStatus2 | kOffersPending | kOffersResend |
    kOffersWriteMemory | kOffersConcatenation | kOffersAction | kOffersScheduledAction |
    kOffersUnconditionalAction | kOffersSharedClock;
constexpr uint32_t kSwitches = kConfigExtendedStatus2 | kConfigExtendedStatus1 | kConfigPending |
                               kConfigHeartbeatOff | kConfigUnconditionalAction |
                               kConfigSharedClock;

constexpr uint32_t kActionSignals = 2;
constexpr uint32_t kActionQueue = 16;

Status StatusOf(const OvProducer::Failure& failure) {
    switch (failure.Code()) {
        case GenTL::GC_ERR_INVALID_ADDRESS:
            return Status::InvalidAddress;
        case GenTL::GC_ERR_ACCESS_DENIED:
            return Status::AccessDenied;
        case GenTL::GC_ERR_INVALID_VALUE:
            return Status::InvalidParameter;
        default:
            return Status::Error;
    }
}

template <class Access>
Status StatusAfter(const Access& access) {
    try {
        access();
        return Status::Success;
    } catch (const OvProducer::Failure& failure) {
        return StatusOf(failure);
    }
}

OvVirtual::CameraIdentity IdentityOf(const CameraProfile& profile) {
    return {.index = profile.index,
            .color = profile.color,
            .model = profile.model,
            .serialNumber = profile.serialNumber};
}

/// A place in the camera's memory, as cameras write it.
std::string UrlOf(const std::string& fileName, size_t size) {
    char place[32];
    std::snprintf(place, sizeof place, ";%X;%zX", kDescriptionAddress, size);
    return "Local:" + fileName + place;
}

/// The length that the camera says, which needn't be true.
size_t DescriptionLength(size_t length, const Faults& faults) {
    const int64_t said = static_cast<int64_t>(length) + faults.control.wrongLength;
    return static_cast<size_t>(std::max<int64_t>(said, 0));
}

/// A simulated camera forgets what it was set to when its process ends, as without power.
OvVirtual::Environment WithoutMemory() {
    return {.cameras = 1, .frameRate = {}, .stateFolder = {}};
}

}  // namespace

OvVirtual::TriggerSource SourceOf(uint32_t signal) {
    OV_ASSERT(signal < kActionSignals);
    return OvVirtual::TriggerSource{static_cast<int64_t>(OvVirtual::TriggerSource::Action1) +
                                    signal};
}

CameraDevice::CameraDevice(const CameraProfile& profile)
    : m_profile(profile),
      m_camera(std::make_shared<OvVirtual::Camera>(IdentityOf(profile), WithoutMemory())) {
    OvProducer::PortFacts facts;
    facts.vendor = profile.vendor;
    facts.model = profile.model;
    facts.version = profile.version;
    OvVirtual::AddCameraRegisters(m_application, m_camera, facts);
    m_camera->SetUserId(profile.userName);
    AddDescription();
    FillIdentity();
    FillCapabilities();
    FollowWrites();
}

void CameraDevice::FillIdentity() {
    constexpr uint32_t kVersion = 0x00020000;
    const uint64_t mac = m_profile.mac.Value();
    m_bootstrap.Set(kRegVersion, kVersion);
    m_bootstrap.Set(kRegDeviceMode, kModeBigEndian | kModeUtf8);
    m_bootstrap.Set(kRegMacHigh, static_cast<uint32_t>(mac >> 32));
    m_bootstrap.Set(kRegMacLow, static_cast<uint32_t>(mac));
    m_bootstrap.Set(kRegSupportedIpConfig, kIpPersistent | kIpDhcp | kIpLinkLocal);
    m_bootstrap.Set(kRegCurrentIpConfig, kIpDhcp | kIpLinkLocal);
    m_bootstrap.SetText(kRegVendor, m_profile.vendor);
    m_bootstrap.SetText(kRegModel, m_profile.model);
    m_bootstrap.SetText(kRegDeviceVersion, m_profile.version);
    m_bootstrap.SetText(kRegVendorInfo, "Simulated camera");
    m_bootstrap.SetText(kRegSerialNumber, m_profile.serialNumber);
    SetAddresses(m_profile.address);
}

void CameraDevice::FillCapabilities() {
    constexpr uint32_t kSingleLink = 1;
    m_bootstrap.Set(kRegInterfaceCount, 1);
    m_bootstrap.Set(kRegLinkSpeed, kLinkSpeed);
    m_bootstrap.Set(kRegActiveLinkCount, 1);
    m_bootstrap.Set(kRegLinkCapability, kSingleLink);
    m_bootstrap.Set(kRegLinkConfig, kSingleLink);
    m_bootstrap.Set(kRegControlCapability, kOffered);
    m_bootstrap.Set(kRegHeartbeatTimeout, kHeartbeatDefault);
    m_bootstrap.Set(kRegPendingTimeout, kPendingMax);
    m_bootstrap.Set(kRegTickFrequencyLow,
                    static_cast<uint32_t>(OvVirtual::Camera::kTicksPerSecond));
    m_bootstrap.Set(kRegActionSignalCount, kActionSignals);
    m_bootstrap.Set(kRegActionQueueSize, kActionQueue);
    m_bootstrap.Set(kRegClockState, kClockOff);
}

void CameraDevice::AddDescription() {
    const std::string name = "OvSimulatedCamera_1_0_0";
    std::string xml = GigeDescription(kApplicationBase);
    xml.resize(std::max(xml.size(), m_profile.descriptionSize), ' ');
    Bytes content =
        OvGige::Bytes(std::as_bytes(std::span(xml)).begin(), std::as_bytes(std::span(xml)).end());
    if (m_profile.zipped) {
        content = OvProducer::MakeZip(name + ".xml", xml);
    }
    m_bootstrap.SetText(kRegFirstUrl, UrlOf(name + (m_profile.zipped ? ".zip" : ".xml"),
                                            DescriptionLength(content.size(), m_profile.faults)));
    // Hosts read whole words.
    content.resize((content.size() + kWord - 1) / kWord * kWord);
    m_application.AddConstant(kDescriptionAddress - kApplicationBase, std::move(content));
}

void CameraDevice::FollowWrites() {
    m_bootstrap.CheckWrites(kRegHeartbeatTimeout, [](uint32_t& value) {
        value = std::max(value, kHeartbeatMin);
        return Status::Success;
    });
    m_bootstrap.CheckWrites(kRegControlConfig, [](uint32_t& value) {
        value &= kSwitches;
        return Status::Success;
    });
    m_bootstrap.CheckWrites(kRegLinkConfig, [](uint32_t& value) {
        return value == 1 ? Status::Success : Status::InvalidParameter;
    });
    m_bootstrap.FollowWrites(kRegControlConfig, [this](uint32_t value) {
        ShareClock((value & kConfigSharedClock) != 0);
    });
    CheckTimestampWrites();
    for (uint32_t offset = 0; offset < kRegUserName.width; offset += kWord) {
        m_bootstrap.FollowWrites(kRegUserName.address + offset, [this](uint32_t) {
            m_camera->SetUserId(m_bootstrap.GetText(kRegUserName));
        });
    }
}

void CameraDevice::CheckTimestampWrites() {
    m_bootstrap.CheckWrites(kRegTimestampControl, [this](uint32_t& value) {
        // A clock that others share isn't this camera's to set.
        if ((value & kResetTime) != 0 && m_camera->SharesClock()) {
            return Status::AccessDenied;
        }
        if ((value & kLatchTime) != 0) {
            const auto ticks = static_cast<uint64_t>(m_camera->Ticks());
            m_bootstrap.Set(kRegTimestampHigh, static_cast<uint32_t>(ticks >> 32));
            m_bootstrap.Set(kRegTimestampLow, static_cast<uint32_t>(ticks));
        }
        if ((value & kResetTime) != 0) {
            m_camera->ResetTicks();
        }
        value = 0;
        return Status::Success;
    });
}

void CameraDevice::ShareClock(bool on) {
    m_camera->ShareClock(on);
    m_bootstrap.Set(kRegClockState, on ? kClockFollows : kClockOff);
}

Status CameraDevice::ReadWord(uint32_t address, std::span<std::byte> out) const {
    uint32_t value = 0;
    const Status status = m_bootstrap.Read(address, value);
    WriteBig(out, value);
    return status;
}

Status CameraDevice::Read(uint32_t address, std::span<std::byte> out) {
    if (address >= kApplicationBase) {
        return StatusAfter([&] { m_application.Read(address - kApplicationBase, out); });
    }
    // The name has a register among the virtual camera's, too.
    m_bootstrap.SetText(kRegUserName, m_camera->UserId());
    for (size_t offset = 0; offset < out.size(); offset += kWord) {
        const Status status =
            ReadWord(static_cast<uint32_t>(address + offset), out.subspan(offset, kWord));
        if (status != Status::Success) {
            return status;
        }
    }
    return Status::Success;
}

Status CameraDevice::Write(uint32_t address, ByteView in) {
    if (address >= kApplicationBase) {
        return StatusAfter([&] { m_application.Write(address - kApplicationBase, in); });
    }
    for (size_t offset = 0; offset < in.size(); offset += kWord) {
        const Status status = m_bootstrap.Write(static_cast<uint32_t>(address + offset),
                                                ReadBig<uint32_t>(in.subspan(offset)));
        if (status != Status::Success) {
            return status;
        }
    }
    return Status::Success;
}

IpAddresses CameraDevice::Addresses() const {
    return {.ip = {m_bootstrap.Get(kRegCurrentIp)},
            .mask = {m_bootstrap.Get(kRegCurrentMask)},
            .gateway = {m_bootstrap.Get(kRegCurrentGateway)}};
}

void CameraDevice::SetAddresses(const IpAddresses& addresses) {
    m_bootstrap.Set(kRegCurrentIp, addresses.ip.value);
    m_bootstrap.Set(kRegCurrentMask, addresses.mask.value);
    m_bootstrap.Set(kRegCurrentGateway, addresses.gateway.value);
}

IpAddresses CameraDevice::StartAddresses() const {
    const uint32_t config = m_bootstrap.Get(kRegCurrentIpConfig);
    const IpAddresses kept{.ip = {m_bootstrap.Get(kRegPersistentIp)},
                           .mask = {m_bootstrap.Get(kRegPersistentMask)},
                           .gateway = {m_bootstrap.Get(kRegPersistentGateway)}};
    if ((config & kIpPersistent) != 0 && !kept.ip.IsNone() && IsContiguousMask(kept.mask)) {
        return kept;
    }
    if ((config & kIpDhcp) != 0) {
        return m_profile.address;
    }
    // Neither the first nor the last 256 addresses, which are reserved.
    const auto host = static_cast<uint32_t>(0x100 + m_profile.mac.Value() % 0xFE00);
    return {.ip = {kLinkLocal.value | host}, .mask = kLinkLocalMask, .gateway = {}};
}

Bytes CameraDevice::Identity() {
    Bytes identity(kIdentitySize);
    Read(kRegVersion, identity);
    return identity;
}

void CameraDevice::Release() {
    m_camera->Stop();
    m_camera->SetParamsLocked(false);
    m_camera->Files().Reset();
    m_bootstrap.Write(kRegStreamPort, 0);
    m_bootstrap.Write(kRegMessagePort, 0);
}

}  // namespace OvSimulator
