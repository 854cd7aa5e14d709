#pragma once
/// A registered GenTL event, as long as this object lives.

#include "TLClassLoadTL/GenTLErrrorCodeVerifier.h"
#include "TLClassMain/Agency.h"

namespace OVTLClass {

/// Registers an event of a module; unregisters it unless committed.
class CGCRegisterEventAgency : public CAgency {
public:
    CGCRegisterEventAgency(const CGenTLLib& lib, void* module, GenTL::EVENT_TYPE type) {
        OV_VERIFY(lib.GCRegisterEvent(module, type, &m_event), lib);
        Arm([&lib, module, type] {
            OV_LOG_UNDO_IF_FAILED(CGCRegisterEventAgency, lib.GCUnregisterEvent(module, type), lib);
        });
    }
    void* GetEventHandle() const { return m_event; }

private:
    void* m_event = nullptr;
};

}  // namespace OVTLClass
