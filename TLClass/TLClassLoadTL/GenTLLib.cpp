#include "TLClassLoadTL/GenTLLib.h"

#include "TLClassSupport/OvException.h"
#include "TLClassSupport/OvLog.h"
#include "TLClassSupport/OvString.h"

namespace OVTLClass {

CGenTLLib::CGenTLLib(const std::string& path) {
    if (!m_library.Load(path)) {
        OV_RAISE(CUnexpectedError,
                 COvString::MsgComposer("Failed to load file %s\n", path.c_str()));
    }
    // A producer of an older version lacks some. Each miss is logged, and a call of it fails.
#define OV_GENTL_RESOLVE(name, parameters) name.Set(m_library.Resolve(#name));
    OV_GENTL_FUNCTIONS(OV_GENTL_RESOLVE)
#undef OV_GENTL_RESOLVE
    // Most producers lack these, which is nothing to tell anybody.
#define OV_GENTL_FIND(name, parameters) name.Set(m_library.Find(#name));
    OV_GENTL_OPTIONAL_FUNCTIONS(OV_GENTL_FIND)
#undef OV_GENTL_FIND
    // Only these may be borrowed: others would pass by what the library knows of the modules.
    m_functions = {{"GCReadPort", GCReadPort.GetAddress()},
                   {"GCWritePort", GCWritePort.GetAddress()},
                   {"GCReadPortStacked", GCReadPortStacked.GetAddress()},
                   {"GCWritePortStacked", GCWritePortStacked.GetAddress()},
                   {"GCGetLastError", GCGetLastError.GetAddress()}};
}

CGenTLLib::~CGenTLLib() {
    if (!m_library.Unload()) {
        COvLog::GetInstance().WriteLog("FreeLibrary failed");
    }
}

void* CGenTLLib::GetFunction(const std::string& name) const {
    const auto found = m_functions.find(name);
    return found == m_functions.end() ? nullptr : found->second;
}

}  // namespace OVTLClass
