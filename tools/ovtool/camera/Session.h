#pragma once
/// An initialised library, and an open camera in it.

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "OvIAPI.h"
#include "support/Error.h"

/// For each search for cameras, in milliseconds.
constexpr uint32_t kSearchTimeout = 1000;

/// How far a search for cameras goes.
enum class Reach { OwnNetworks, AllNetworks };

/// The library, from OVInitLib to OVCloseLib.
class Library {
public:
    Library();
    ~Library();
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;

    /// Searches and returns the cameras, in the order of their places.
    static std::vector<OV_DEVICE_BASE_INFO> FindCameras(uint32_t timeout,
                                                        Reach reach = Reach::OwnNetworks);
};

/// Which camera a command works on: an index from 1, or a serial number.
struct CameraChoice {
    std::string key = "1";
};

/// What a command does with a camera. Others can look at one that is open for control.
enum class Access { ReadOnly, Control };

/// The camera's place in the list, from 1. Raises when it isn't there.
size_t IndexOf(const CameraChoice& choice, const std::vector<OV_DEVICE_BASE_INFO>& cameras);

/// A camera, open for the life of the object. The library is the caller's
/// business, as is the search before.
class OpenCamera {
public:
    /// @param found  how many cameras the search found
    OpenCamera(const CameraChoice& choice, Access access, size_t found);
    ~OpenCamera();
    OpenCamera(const OpenCamera&) = delete;
    OpenCamera& operator=(const OpenCamera&) = delete;

    /// Open for reading; null when another program holds the camera.
    static std::unique_ptr<OpenCamera> UnlessHeld(const CameraChoice& choice, size_t found);

    OV_DEV_HANDLE Handle() const { return m_handle; }

private:
    OV_DEV_HANDLE m_handle;
};

/// The library, a search, and an open camera.
class Camera {
public:
    Camera(const CameraChoice& choice, Access access);

    OV_DEV_HANDLE Handle() const { return m_open->Handle(); }

    /// Closes the camera and opens it anew, so that values come from the camera and not from
    /// what the library remembers of them.
    void Reopen();

private:
    const CameraChoice m_choice;
    const Access m_access;
    Library m_library;
    size_t m_found;
    std::unique_ptr<OpenCamera> m_open;
};

/// An acquisition for the life of the object.
class Acquisition {
public:
    explicit Acquisition(OV_DEV_HANDLE camera) : m_camera(camera) {
        Check(OVStreamOn(camera), "start the acquisition");
    }
    ~Acquisition() { OVStreamOff(m_camera); }
    Acquisition(const Acquisition&) = delete;
    Acquisition& operator=(const Acquisition&) = delete;

private:
    OV_DEV_HANDLE m_camera;
};
