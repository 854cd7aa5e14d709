#pragma once
/// The way of the node engine to a module's registers.

#include "GenApi/IPort.h"
#include "TLClassLoadTL/GenTLLib.h"

namespace OVTLClass {

/// Reads and writes go to the producer. What it refuses is raised as the
/// transport model's exceptions, which pass through the engine.
class CPort : public GenApi_3_0_ORVANE::IPort {
public:
    CPort(const CGenTLLib& lib, void* portHandle) : m_lib(lib), m_handle(portHandle) {}

    /// Always read-write: what a producer doesn't allow shows at the access.
    GenApi_3_0_ORVANE::EAccessMode GetAccessMode() override;
    void Read(void* buffer, int64_t address, int64_t length) override;
    void Write(const void* buffer, int64_t address, int64_t length) override;

private:
    const CGenTLLib& m_lib;
    void* m_handle;
};

}  // namespace OVTLClass
