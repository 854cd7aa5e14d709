#pragma once
/// The features that the device module of a network camera has beside those of every device.

#include <functional>
#include <span>
#include <string>

#include "framework/RegisterSpace.h"
#include "gige/message/MessageIntake.h"

namespace OvGige {

/// A counter of the messages that came since the camera was opened.
struct MessageFeature {
    const char* name;
    const char* displayName;
    const char* description;
    std::atomic<uint64_t> MessageAccount::*count;
};

std::span<const MessageFeature> MessageFeatures();

/// Adds the features' registers, eight bytes each.
void AddMessageRegisters(OvProducer::RegisterSpace& registers,
                         const std::function<uint64_t(const MessageFeature&)>& read);

/// Adds the features to the description of a device module.
std::string WithMessageFeatures(std::string description);

}  // namespace OvGige
