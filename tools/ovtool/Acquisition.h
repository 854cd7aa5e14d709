#pragma once

#include "Error.h"
#include "OvIAPI.h"

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
