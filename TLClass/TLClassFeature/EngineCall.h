#pragma once
/// The place where the engine's exceptions become the transport model's.

#include <type_traits>

#include "Base/GCException.h"
#include "TLClassFeature/Reading.h"
#include "TLClassSupport/OvException.h"

namespace OVTLClass {

/// Whose fault a failure may be: the argument's of a setter only, and nobody's
/// where a callback is registered.
enum class EngineCallKind { Getter, Setter, Registration };

/// Where a call of the engine stands, which its failures name.
struct EnginePlace {
    const char* file;
    int line;
    const char* function;
};

/// Runs `call`, which gets the place. A failure of the engine is raised anew with its
/// description and the place; a failure of the transport model, which a port
/// raised beneath, passes as it is.
template <EngineCallKind Kind, class Call>
auto CallEngine(const EnginePlace& place, const Call& call) {
    namespace Engine = GenICam_3_0_ORVANE;
    constexpr bool kIsSetter = Kind == EngineCallKind::Setter;
    using AccessError = std::conditional_t<Kind == EngineCallKind::Registration, CUnexpectedError,
                                           CInvalidAccessError>;
    using ArgumentError = std::conditional_t<kIsSetter, CInvalidParameterError, CUnexpectedError>;
    using RangeError = std::conditional_t<kIsSetter, COutOfRangeError, CUnexpectedError>;
    try {
        return call(place);
    } catch (const Engine::AccessException& error) {
        throw AccessError(error.GetDescription(), place.file, place.line, place.function);
    } catch (const Engine::InvalidArgumentException& error) {
        throw ArgumentError(error.GetDescription(), place.file, place.line, place.function);
    } catch (const Engine::OutOfRangeException& error) {
        throw RangeError(error.GetDescription(), place.file, place.line, place.function);
    } catch (const Engine::GenericException& error) {
        throw CUnexpectedError(error.GetDescription(), place.file, place.line, place.function);
    }
}

/// The engine's words for a node that can't be read at present, with the place of a read.
CRefusal NotReadable(const EnginePlace& place, const char* description = "Node is not readable.");

}  // namespace OVTLClass

// Each operation wraps all that it asks of the engine, the search for the node
// included, so that the failure has its own name.
#define OV_ENGINE_CALL_OF(function, kind, call)                 \
    ::OVTLClass::CallEngine<::OVTLClass::EngineCallKind::kind>( \
        {__FILE__, __LINE__, function},                         \
        [&]([[maybe_unused]] const ::OVTLClass::EnginePlace& enginePlace) { return call; })
#define OV_ENGINE_CALL(kind, call) OV_ENGINE_CALL_OF(__func__, kind, call)
#define OV_ENGINE_GET(call) OV_ENGINE_CALL(Getter, call)
#define OV_ENGINE_SET(call) OV_ENGINE_CALL(Setter, call)
#define OV_ENGINE_REGISTER(call) OV_ENGINE_CALL(Registration, call)
