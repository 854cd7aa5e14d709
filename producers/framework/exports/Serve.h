#pragma once
/// The frame of every exported function: runs its body, turns an exception into a code
/// and keeps the text for `GCGetLastError`.

#include <cstddef>
#include <new>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "Base/UserLog.h"
#include "framework/Backend.h"
#include "framework/Failure.h"
#include "framework/Functions.h"
#include "framework/exports/Library.h"

#define OV_PRODUCER_EXPORT extern "C" __attribute__((visibility("default"))) GenTL::GC_ERROR

// Declares all functions, so that the compiler compares each definition with the table.
#define OV_PRODUCER_DECLARE(name, parameters) OV_PRODUCER_EXPORT name parameters;
OV_GENTL_FUNCTIONS(OV_PRODUCER_DECLARE)
OV_GENTL_OPTIONAL_FUNCTIONS(OV_PRODUCER_DECLARE)
#undef OV_PRODUCER_DECLARE

namespace OvProducer {

/// Logs a call for a user who has switched that on (Base/UserLog.h).
inline void LogCall(Function function, int level, std::string_view outcome) noexcept {
    OvBase::CUserLog& log = ProducerLog();
    if (log.IsOn()) {
        log.Write("Producer", level, NameOf(function), outcome);
    }
}

/// Keeps a failure of the function for `GCGetLastError`. Returns its code.
inline GenTL::GC_ERROR Refuse(Function function, GenTL::GC_ERROR code, const char* text) noexcept {
    StoreLastError(code, text);
    // The time-out of a wait for an event isn't worth a warning.
    LogCall(function,
            code == GenTL::GC_ERR_TIMEOUT ? GenICam_3_0_ORVANE::LogDebug
                                          : GenICam_3_0_ORVANE::LogWarning,
            text);
    return code;
}

/// Runs `body` as the function's work.
template <typename Body>
GenTL::GC_ERROR Serve(Function function, Body&& body) noexcept {
    try {
        CallObserver& observer = Observer();
        observer.Enter(function);
        std::forward<Body>(body)();
        observer.Leave(function);
        LogCall(function, GenICam_3_0_ORVANE::LogDebug, "done");
        return GenTL::GC_ERR_SUCCESS;
    } catch (const Failure& failure) {
        return Refuse(function, failure.Code(), failure.what());
    } catch (const std::bad_alloc&) {
        return Refuse(function, GenTL::GC_ERR_OUT_OF_MEMORY, "Out of memory");
    } catch (const std::exception& error) {
        return Refuse(function, GenTL::GC_ERR_ERROR, error.what());
    }
}

/// Runs `body` on the object that has the handle. The session lives at least as long.
template <typename T, typename Body>
void WorkOn(const void* handle, Body&& body) {
    const std::shared_ptr<T> object = Library::Instance().Get<T>(handle);
    std::forward<Body>(body)(*object);
}

/// Like `Serve`, with the object that has the handle.
template <typename T, typename Body>
GenTL::GC_ERROR ServeOn(Function function, const void* handle, Body&& body) noexcept {
    return Serve(function, [&] { WorkOn<T>(handle, std::forward<Body>(body)); });
}

/// The caller's memory for the answer of an information call.
struct InfoTarget {
    GenTL::INFO_DATATYPE* type;
    void* buffer;
    size_t* size;
};

inline void Answer(Function function, const InfoValue& value, const InfoTarget& target) {
    value.CopyOut(target.type, target.buffer, target.size);
    if (target.buffer == nullptr) {
        *target.size = Observer().ReportedSize(function, *target.size);
    }
}

/// Answers an information command on the object that has the handle.
template <typename T, typename Ask>
GenTL::GC_ERROR ServeInfo(Function function, const void* handle, int32_t command,
                          const InfoTarget& target, Ask&& ask) noexcept {
    return ServeOn<T>(function, handle, [&](T& object) {
        Observer().Ask(function, command);
        Answer(function, ask(object), target);
    });
}

/// Answers a call that returns a text, such as an ID.
template <typename T, typename Ask>
GenTL::GC_ERROR ServeText(Function function, const void* handle, char* text, size_t* size,
                          Ask&& ask) noexcept {
    return ServeOn<T>(function, handle, [&](T& object) {
        Answer(function, InfoValue::Text(ask(object)), {nullptr, text, size});
    });
}

/// Writes a result through a caller's pointer.
template <typename Out, typename Value>
void Put(Out* out, const Value& value) {
    RequirePointer(out, "The result pointer");
    *out = static_cast<Out>(value);
}

/// The ID that a caller passes.
inline std::string IdOf(const char* id) {
    RequirePointer(id, "The ID");
    return id;
}

}  // namespace OvProducer
