#pragma once
/// The place where the engine's exceptions become the transport model's.

#include "Base/GCException.h"
#include "TLClassLoadTL/OvException.h"

namespace OVTLClass {

/// Whether arguments of the caller can be at fault: only a setter's are.
enum class EngineCallKind { Getter, Setter };

/// Runs `call`. A failure of the engine is raised anew with its description
/// and the caller's place; a failure of the transport model, which a port
/// raised beneath, passes as it is.
template <EngineCallKind Kind, class Call>
auto CallEngine(const char* file, int line, const char* function, const Call& call) {
    namespace Engine = GenICam_3_0_ORVANE;
    try {
        return call();
    } catch (const Engine::AccessException& error) {
        throw CInvalidAccessError(error.GetDescription(), file, line, function);
    } catch (const Engine::InvalidArgumentException& error) {
        if constexpr (Kind == EngineCallKind::Setter) {
            throw CInvalidParameterError(error.GetDescription(), file, line, function);
        }
        throw CUnexpectedError(error.GetDescription(), file, line, function);
    } catch (const Engine::OutOfRangeException& error) {
        if constexpr (Kind == EngineCallKind::Setter) {
            throw COutOfRangeError(error.GetDescription(), file, line, function);
        }
        throw CUnexpectedError(error.GetDescription(), file, line, function);
    } catch (const Engine::GenericException& error) {
        throw CUnexpectedError(error.GetDescription(), file, line, function);
    }
}

}  // namespace OVTLClass

#define OV_ENGINE_GET(call)                                                                    \
    ::OVTLClass::CallEngine<::OVTLClass::EngineCallKind::Getter>(__FILE__, __LINE__, __func__, \
                                                                 [&] { return call; })
#define OV_ENGINE_SET(call)                                                                    \
    ::OVTLClass::CallEngine<::OVTLClass::EngineCallKind::Setter>(__FILE__, __LINE__, __func__, \
                                                                 [&] { return call; })
