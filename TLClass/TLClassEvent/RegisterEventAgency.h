#pragma once
/// A registered GenTL event, as long as this object lives.

#include <memory>

#include "Base/GCException.h"
#include "TLClassLoadTL/GenTLErrrorCodeVerifier.h"
#include "TLClassSupport/Agency.h"
#include "TLClassSupport/OvException.h"
#include "TLClassSupport/OvLog.h"

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

/// Registers an event that a producer may not offer. Producers refuse it by different
/// statuses.
/// @return null, with a line in the log, for an event that isn't offered
inline std::unique_ptr<CGCRegisterEventAgency> RegisterOfferedEvent(const CGenTLLib& lib,
                                                                    void* module,
                                                                    GenTL::EVENT_TYPE type,
                                                                    const char* file, int line,
                                                                    const char* function) {
    try {
        return std::make_unique<CGCRegisterEventAgency>(lib, module, type);
    } catch (const CNotImplementedError& error) {
        LogAt(file, line, function, error.what());
    } catch (const CInvalidParameterError& error) {
        LogAt(file, line, function, error.what());
    } catch (const CUnexpectedError& error) {
        if (error.GetStatus() != GenTL::GC_ERR_INVALID_ID) {
            throw;
        }
        LogAt(file, line, function, error.what());
    } catch (const GenICam_3_0_ORVANE::GenericException& error) {
        LogAt(file, line, function, error.what());
    }
    return nullptr;
}

}  // namespace OVTLClass

/// Logs an event that isn't offered with the place of this line.
#define OV_REGISTER_OFFERED_EVENT(lib, module, type) \
    ::OVTLClass::RegisterOfferedEvent((lib), (module), (type), __FILE__, __LINE__, __func__)
