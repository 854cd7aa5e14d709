#pragma once
/// A simulated camera behind its network: its registers, its memory with the description, and
/// the virtual camera that both belong to.

#include <memory>
#include <span>

#include "framework/RegisterSpace.h"
#include "gige/protocol/BigEndian.h"
#include "simulator/CameraProfile.h"
#include "simulator/device/BootstrapRegisters.h"
#include "virtual/Camera.h"

namespace OvSimulator {

/// Where the virtual camera's registers begin.
constexpr uint32_t kApplicationBase = 0x00010000;
/// Where the description begins.
constexpr uint32_t kDescriptionAddress = 0x00200000;

/// The trigger that an action signal is, counted from 0.
OvVirtual::TriggerSource SourceOf(uint32_t signal);

/// Used by one thread at a time.
class CameraDevice {
public:
    explicit CameraDevice(const CameraProfile& profile);

    BootstrapRegisters& Bootstrap() { return m_bootstrap; }
    OvVirtual::Camera& Camera() { return *m_camera; }

    /// Any part of the address space in whole words, as a host sees it.
    ///@{
    OvGige::Status Read(uint32_t address, std::span<std::byte> out);
    OvGige::Status Write(uint32_t address, OvGige::ByteView in);
    ///@}

    IpAddresses Addresses() const;
    void SetAddresses(const IpAddresses& addresses);
    /// The addresses that the camera takes at its start: those that it keeps if they are
    /// switched on and make sense, else those that a DHCP server would offer, else one of its
    /// own making.
    IpAddresses StartAddresses() const;

    /// What an answer to a search says.
    OvGige::Bytes Identity();

    /// Does what a camera does whose owner has gone: frames stop, channels close, files close.
    void Release();

private:
    void FillIdentity();
    void FillCapabilities();
    void AddDescription();
    void FollowWrites();
    void CheckTimestampWrites();
    void ShareClock(bool on);
    OvGige::Status ReadWord(uint32_t address, std::span<std::byte> out) const;
    OvGige::Status WriteApplication(uint32_t address, OvGige::ByteView in);

    const CameraProfile m_profile;
    const std::shared_ptr<OvVirtual::Camera> m_camera;
    BootstrapRegisters m_bootstrap;
    OvProducer::RegisterSpace m_application;  // addresses count from kApplicationBase
};

}  // namespace OvSimulator
