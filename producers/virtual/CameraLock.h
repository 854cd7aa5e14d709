#pragma once
/// Which process has a virtual camera: one may have control, and others look at it meanwhile
/// unless it has the camera to itself.

#include <filesystem>
#include <string>

#include "GenTL/GenTL.h"

namespace OvVirtual {

/// Processes agree by a file beside the camera's state. A process that ends gives back what it
/// had, however it ends.
class CameraLock {
public:
    /// @param file  empty for a camera that no other process knows
    explicit CameraLock(std::filesystem::path file) : m_file(std::move(file)) {}
    ~CameraLock() { Release(); }
    CameraLock(const CameraLock&) = delete;
    CameraLock& operator=(const CameraLock&) = delete;

    /// -1005 when another process has it, with that process's name and number.
    void Take(GenTL::DEVICE_ACCESS_FLAGS access);
    void Release();

    /// What a process could open the camera for now that doesn't have it.
    GenTL::DEVICE_ACCESS_STATUS Status() const;

private:
    void Open();
    std::string Holder() const;
    void SignAsHolder() const;

    const std::filesystem::path m_file;
    int m_descriptor = -1;
};

}  // namespace OvVirtual
