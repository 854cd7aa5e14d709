#pragma once
/// A loaded description that is unloaded again when a construction fails.

#include "TLClassSupport/Agency.h"
#include "TLClassXML/XMLAnalyzer.h"

namespace OVTLClass {

class CXMLLoadAgency : public CAgency {
public:
    CXMLLoadAgency(CXMLAnalyzer& analyzer, void* port) {
        Arm([&analyzer] { analyzer.UnloadXML(); });
        analyzer.LoadXMLFromPortHandle(port);
    }
};

}  // namespace OVTLClass
