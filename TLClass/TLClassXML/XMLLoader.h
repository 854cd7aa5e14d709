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

    /// How many places the module names where its description is, the best
    /// first. At least 1, or CUnexpectedError.
    uint32_t GetUrlCount() const;
    /// The text of the description at one of those places.
    std::string LoadXML(uint32_t index = 0) const;

private:
    std::string __ReadUrl(uint32_t index) const;
    std::string __ReadOldUrl() const;
    std::string __ReadXMLFromRemoteDevice(const URL_LOCAL_INFO& info) const;
    static std::string __ReadXMLFromFile(const URL_FILE_INFO& info);
    static std::string __GetXMLContent(const std::string& name, std::vector<unsigned char> data);

    const CGenTLLib& m_lib;
    void* m_port;
};

}  // namespace OVTLClass
