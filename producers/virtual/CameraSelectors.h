#pragma once
/// The selectors of a virtual camera, which choose what other registers mean.

#include <cstdint>
#include <span>

namespace OvVirtual {

/// Selectors aren't part of the user sets. A camera keeps them, like its settings, as
/// long as it has power.
struct CameraSelectors {
    int64_t temperature = 0;
    int64_t status = 0;
    int64_t balance = 0;
    int64_t lutIndex = 0;
    int64_t userSet = 0;
    int64_t chunk = 0;
    int64_t event = 0;
    int64_t file = 0;
    int64_t fileOperation = 0;
};

using SelectorField = int64_t CameraSelectors::*;

struct SelectorRegister {
    uint64_t address;
    SelectorField field;
    int64_t max;
};

std::span<const SelectorRegister> SelectorRegisters();

}  // namespace OvVirtual
