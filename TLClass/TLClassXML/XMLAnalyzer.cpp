#include "TLClassXML/XMLAnalyzer.h"

#include <exception>

#include "TLClassLoadTL/GenTLErrrorCodeVerifier.h"
#include "TLClassLoadTL/GenTLText.h"
#include "TLClassSupport/OvException.h"
#include "TLClassSupport/OvLog.h"
#include "TLClassXML/XMLLoader.h"

namespace OVTLClass {

using GenApi_3_0_ORVANE::CNodeMapRef;
using GenApi_3_0_ORVANE::gcstring;

CLock CXMLAnalyzer::ms_objGenApiLoadXMLLock(LockRank::LoadDescription);

CXMLAnalyzer::CXMLAnalyzer(const CGenTLLib& lib) : m_lib(lib) {}

CXMLAnalyzer::~CXMLAnalyzer() {
    UnloadXML();
}

void CXMLAnalyzer::LoadXMLFromPortHandle(void* port) {
    const CXMLLoader loader(m_lib, port);
    const uint32_t count = loader.GetUrlCount();
    std::exception_ptr firstFailure;
    for (uint32_t index = 0; index < count; ++index) {
        try {
            LoadXMLFromPortHandle(loader, index, port);
            return;
            // A camera that is gone has no description at another place, either.
        } catch (const CDeviceOfflineError&) {
            throw;
        } catch (const std::exception& error) {
            if (!firstFailure) {
                firstFailure = std::current_exception();
            }
            if (count > 1) {
                OV_LOG(error.what());
            }
        }
    }
    // The first place is the best one, so that its failure is the one to report.
    std::rethrow_exception(firstFailure);
}

void CXMLAnalyzer::LoadXMLFromPortHandle(const CXMLLoader& loader, uint32_t index, void* port) {
    m_xml = loader.LoadXML(index);
    // The old nodes point at the old port and go before it.
    m_nodeMap.reset();
    m_port = std::make_unique<CPort>(m_lib, port);
    m_nodeMap = std::make_unique<CNodeMapRef>("Device");
    try {
        const CAutoLock lock(ms_objGenApiLoadXMLLock);
        __TryExceptionLoadXmlFromString();
    } catch (const std::exception& error) {
        OV_RAISE(CUnexpectedError, error.what());
    }
    // Nobody else knows the map before this point.
    m_nodeMap->GetMap()->GetLock().SetRank(LockRank::NodeMap);
    if (!m_nodeMap->_Connect(m_port.get(), __ReadPortName(port).c_str())) {
        OV_RAISE(CUnexpectedError, "CNodeMapRef::_connect failed");
    }
}

void CXMLAnalyzer::UnloadXML() {
    m_xml.clear();
    m_nodeMap.reset();
    m_port.reset();
}

void CXMLAnalyzer::__TryExceptionLoadXmlFromString() {
    try {
        __RetrieveXmlFromString();
        // Whatever is wrong with a description, from its XML to its formulas, the module can't be
        // used. The engine's log has the reason.
    } catch (...) {
        __ThrowExceptionFromTryExcept();
    }
}

void CXMLAnalyzer::__RetrieveXmlFromString() {
    m_nodeMap->_LoadXMLFromString(gcstring(m_xml.data(), m_xml.size()));
}

void CXMLAnalyzer::__ThrowExceptionFromTryExcept() {
    OV_RAISE(CUnexpectedError, "CNodeMapRef::_LoadXMLFromString failed");
}

std::string CXMLAnalyzer::__ReadPortName(void* port) const {
    const auto portName = [this, port](char* text, size_t* size) {
        int32_t type = GenTL::INFO_DATATYPE_STRING;
        return m_lib.GCGetPortInfo(port, GenTL::PORT_INFO_PORTNAME, &type, text, size);
    };
    std::string name;
    OV_VERIFY(ReadGenTLText(portName, name), m_lib);
    return name;
}

}  // namespace OVTLClass
