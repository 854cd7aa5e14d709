#pragma once
/// Fetches the description of one module.

#include <string>
#include <vector>

#include "TLClassLoadTL/GenTLLib.h"
#include "TLClassXML/XMLUrl.h"

namespace OVTLClass {

class CXMLLoader {
public:
    CXMLLoader(const CGenTLLib& lib, void* portHandle) : m_lib(lib), m_port(portHandle) {}

    /// The text of the description that the module's first URL names.
    std::string LoadXML() const;

private:
    std::string __ReadUrl() const;
    std::string __ReadXMLFromRemoteDevice(const URL_LOCAL_INFO& info) const;
    static std::string __ReadXMLFromFile(const URL_FILE_INFO& info);
    static std::string __GetXMLContent(const std::string& name, std::vector<unsigned char> data);

    const CGenTLLib& m_lib;
    void* m_port;
};

}  // namespace OVTLClass
