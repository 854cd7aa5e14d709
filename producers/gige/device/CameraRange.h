#pragma once
/// A camera's addresses as the registers of a port.

#include "framework/RegisterSpace.h"
#include "gige/control/CameraMemory.h"

namespace OvGige {

/// All 32 bits of them.
class CameraRange : public OvProducer::RegisterRange {
public:
    explicit CameraRange(CameraMemory& camera) : m_camera(camera) {}

    size_t Length() const override { return size_t{1} << 32; }
    void Read(size_t offset, std::span<std::byte> out) const override {
        m_camera.Read(offset, out);
    }
    void Write(size_t offset, std::span<const std::byte> in) override {
        m_camera.Write(offset, in);
    }

private:
    CameraMemory& m_camera;
};

}  // namespace OvGige
