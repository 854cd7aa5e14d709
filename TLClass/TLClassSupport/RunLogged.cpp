#include "TLClassSupport/RunLogged.h"

#include <exception>

#include "Base/GCException.h"
#include "TLClassSupport/OvLog.h"

namespace OVTLClass {

void LogCaught(const char* file, int line, const char* function) noexcept {
    // Thrown again to find its family: the engine's exceptions have no common base with the
    // standard's.
    try {
        throw;
    } catch (const std::exception& error) {
        LogAt(file, line, function, error.what());
    } catch (const GenICam_3_0_ORVANE::GenericException& error) {
        LogAt(file, line, function, error.what());
    } catch (...) {
        LogAt(file, line, function, "UnKnown Exception");
    }
}

}  // namespace OVTLClass
