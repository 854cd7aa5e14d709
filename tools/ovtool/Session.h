#pragma once
/// An initialised library, and an open camera in it.

#include <cstdint>
#include <string>
#include <vector>

#include "OvIAPI.h"

/// The library, from OVInitLib to OVCloseLib.
class Library {
public:
    Library();
    ~Library();
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;

    /// Searches and gives the cameras, in the order of their places.
    static std::vector<OV_DEVICE_BASE_INFO> FindCameras(uint32_t timeout);
};

/// Which camera a command works on: an index from 1, or a serial number.
struct CameraChoice {
    std::string key = "1";
    bool readOnly = false;
};

/// A camera, open for the life of the object.
class Camera {
public:
    explicit Camera(const CameraChoice& choice);
    ~Camera();
    Camera(const Camera&) = delete;
    Camera& operator=(const Camera&) = delete;

    OV_DEV_HANDLE Handle() const { return m_handle; }

private:
    Library m_library;
    OV_DEV_HANDLE m_handle = nullptr;
};
