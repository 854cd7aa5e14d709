#include "TLClassMain/Agency.h"

#include <exception>

#include "Base/GCException.h"
#include "TLClassLoadTL/OvLog.h"

namespace OVTLClass {

CAgency::~CAgency() {
    if (m_undo) {
        OV_RUN_LOGGED(m_undo);
    }
}

void RunLogged(const std::function<void()>& action, const char* file, int line,
               const char* function) {
    try {
        action();
    } catch (const std::exception& error) {
        LogAt(file, line, function, error.what());
    } catch (const GenICam_3_0_ORVANE::GenericException& error) {
        LogAt(file, line, function, error.what());
    } catch (...) {
        LogAt(file, line, function, "UnKnown Exception");
    }
}

}  // namespace OVTLClass
