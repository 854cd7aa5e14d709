#pragma once
/// The port of a system module, whose description a test replaces before it
/// opens the module.

#include "GenApi/IPort.h"
#include "TransportTest.h"
#include "ZipBytes.h"
#include "support/XmlNodeMap.h"

namespace OVTLClass {

class SystemPortTest : public ProducerTest {
protected:
    SystemPortTest() : lib(Staged(m_fileName)) { lib.GCInitLib(); }
    ~SystemPortTest() override {
        Close();
        lib.GCCloseLib();
    }

    void* Open() {
        Close();
        EXPECT_EQ(lib.TLOpen(&port), 0);
        return port;
    }
    void Close() {
        if (port != nullptr) {
            lib.TLClose(port);
            port = nullptr;
        }
    }

    /// Puts a file at 0x10000 of the module's registers.
    void SetFile(const std::string& fileName, const Bytes& content) {
        producer.SetDescription("System", fileName.c_str(), content.data(), content.size());
    }
    void SetFile(const std::string& fileName, const std::string& content) {
        SetFile(fileName, ToBytes(content));
    }
    void SetUrl(const std::string& url) { producer.SetUrl("System", url.c_str()); }

    const CGenTLLib lib;
    void* port = nullptr;
};

/// A description with one constant number and the port of system modules.
inline std::string SmallDescription(int value, int schemaMinor = 1) {
    return EngineTest::XmlNodeMap::Describe("<Integer Name=\"Number\"><Value>" +
                                                std::to_string(value) +
                                                "</Value></Integer><Port Name=\"TLPort\"/>",
                                            schemaMinor);
}

}  // namespace OVTLClass
