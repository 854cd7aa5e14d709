#pragma once
/// The cameras that a test program has, and how they differ from those of others.

#include <cstdint>
#include <memory>
#include <string>

#include "support/RandomCalls.h"

/// Two cameras of the same kind with the features of the virtual ones. They are there, as they
/// are when they are switched on, from its construction to its end; the library finds them when
/// it is initialised in between.
class CameraSupply {
public:
    static constexpr uint32_t kCameras = 2;

    /// Each program has its own.
    static std::unique_ptr<CameraSupply> Make();
    virtual ~CameraSupply() = default;

    /// How long a search takes that finds them most likely, in milliseconds.
    virtual uint32_t SearchTime() const { return 0; }
    /// Where the registers begin that both kinds have.
    virtual uint64_t RegisterBase() const { return 0; }
    /// The number of the first frame after a start.
    virtual uint64_t FirstFrame() const { return 0; }
    virtual OV_DEVICE_CLASS DeviceClass() const = 0;
    virtual std::string ModelPrefix() const = 0;
    virtual HarmlessArguments Harmless() const = 0;
    /// Has a camera's loss noticed as soon as it can be.
    virtual void HastenLoss(OV_DEV_HANDLE /*camera*/) {}
};
