#pragma once
/// The features that a stream of a network camera has beside those of every stream.

#include <functional>
#include <span>
#include <string>

#include "framework/RegisterSpace.h"
#include "gige/assembly/StreamAccount.h"
#include "gige/stream/StreamSettings.h"

namespace OvGige {

/// A number that the user sets.
struct SettingFeature {
    const char* name;
    const char* displayName;
    const char* description;
    const char* unit;  ///< empty if it has none
    int64_t min;
    int64_t max;
    int64_t StreamSettings::*field;
};

/// A number that the stream has now.
struct FactFeature {
    const char* name;
    const char* displayName;
    const char* description;
    const char* unit;
    int64_t ReceiverFacts::*field;
};

/// A counter.
struct CountFeature {
    const char* name;
    const char* displayName;
    const char* description;
    Count StreamAccount::*field;
};

std::span<const SettingFeature> SettingFeatures();
std::span<const FactFeature> FactFeatures();
std::span<const CountFeature> CountFeatures();

/// How registers reach what they show.
struct FeatureAccess {
    std::function<int64_t(const SettingFeature&)> readSetting;
    std::function<void(const SettingFeature&, int64_t)> writeSetting;
    std::function<int64_t(const FactFeature&)> readFact;
    std::function<uint64_t(const CountFeature&)> readCount;
};

/// Adds the features' registers, eight bytes each.
void AddFeatureRegisters(OvProducer::RegisterSpace& registers, const FeatureAccess& access);

/// Adds the features to the description of a stream module.
std::string WithStreamFeatures(std::string description);

}  // namespace OvGige
