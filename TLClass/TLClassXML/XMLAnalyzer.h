#pragma once
/// The description of one module, as text and as live nodes.

#include <memory>
#include <string>

#include "GenApi/NodeMapRef.h"
#include "TLClassLoadTL/GenTLLib.h"
#include "TLClassSupport/OvLock.h"
#include "TLClassXML/Port.h"

namespace OVTLClass {

class CXMLLoader;

/// Empty or loaded; may be loaded again.
class CXMLAnalyzer {
public:
    explicit CXMLAnalyzer(const CGenTLLib& lib);
    ~CXMLAnalyzer();
    CXMLAnalyzer(const CXMLAnalyzer&) = delete;
    CXMLAnalyzer& operator=(const CXMLAnalyzer&) = delete;

    /// Fetches the description of a port's module, makes its nodes and connects
    /// them to the port. Of several places that the module names, the first one
    /// with a description that can be used counts; where none has one, throws
    /// the failure of the first.
    void LoadXMLFromPortHandle(void* port);
    void UnloadXML();

    std::string GetXML() const { return m_xml; }
    /// Null while empty. Owned here.
    GenApi_3_0_ORVANE::CNodeMapRef* GetNodeMapRef() const { return m_nodeMap.get(); }

private:
    /// The same for one of the places.
    void LoadXMLFromPortHandle(const CXMLLoader& loader, uint32_t index, void* port);
    void __TryExceptionLoadXmlFromString();
    void __RetrieveXmlFromString();
    [[noreturn]] static void __ThrowExceptionFromTryExcept();
    std::string __ReadPortName(void* port) const;

    /// Making of nodes is not safe side by side, so devices queue for it.
    static CLock ms_objGenApiLoadXMLLock;

    const CGenTLLib& m_lib;
    std::string m_xml;
    std::unique_ptr<CPort> m_port;
    std::unique_ptr<GenApi_3_0_ORVANE::CNodeMapRef> m_nodeMap;
};

}  // namespace OVTLClass
