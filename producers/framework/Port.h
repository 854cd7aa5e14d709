#pragma once
/// A module's port: its registers, the descriptions that are stored among them, and the
/// answers of the port calls.

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "framework/InfoValue.h"
#include "framework/RegisterSpace.h"

namespace OvProducer {

/// The answers of `GCGetPortInfo`.
struct PortFacts {
    std::string id;
    std::string vendor;
    std::string model;
    std::string tlType;
    std::string module;   ///< "TLSystem", "TLInterface", "TLDevice", "TLDataStream", "Device"
    std::string version;  ///< of the module
    std::string name;     ///< of the Port node in the module's description
    bool writable = true;
    bool isBigEndian = false;  ///< as which its numbers are stored
};

/// A module's description, as text.
struct Description {
    std::string name;  ///< file name without extension
    std::string xml;
    bool zipped = false;
    int32_t major = 1;  ///< version of the file
    int32_t minor = 0;
    int32_t subminor = 0;
};

/// One place of a description, for the URL calls.
struct DescriptionUrl {
    std::string url;
    std::string fileName;
    int32_t major = 1;
    int32_t minor = 0;
    int32_t subminor = 0;
    uint64_t address = 0;
    uint64_t size = 0;
};

/// The module sets it up once. Any thread may use it afterwards.
class Port {
public:
    explicit Port(PortFacts facts) : m_facts(std::move(facts)) {}

    RegisterSpace& Registers() { return m_registers; }

    /// Stores the file in the registers at `address`, zipped if `zipped` is set, and adds
    /// its URL to the end of the list.
    void AddDescription(const Description& description, uint64_t address);
    /// Like `AddDescription`, with the bytes of the file.
    void AddFile(const std::string& fileName, std::vector<std::byte> content, uint64_t address);
    /// Adds the URL of a file that readers of the port find at the address.
    void AddPlace(const std::string& fileName, uint64_t address, uint64_t size);
    /// Adds any other URL.
    void AddUrl(DescriptionUrl url) { m_urls.push_back(std::move(url)); }
    /// Removes all URLs. The files stay in the registers.
    void ForgetUrls() { m_urls.clear(); }

    /// Makes writes fail with -1005, for a device that was opened for reading only.
    void MakeReadOnly() { m_facts.writable = false; }
    /// Sets a function that is called before every access and may throw, for instance
    /// because the device is gone.
    void SetGate(std::function<void()> gate) { m_gate = std::move(gate); }
    /// Called after every write that was done.
    void SetAfterWrite(std::function<void()> afterWrite) { m_afterWrite = std::move(afterWrite); }

    void Read(uint64_t address, std::span<std::byte> out) const;
    void Write(uint64_t address, std::span<const std::byte> in) const;

    const PortFacts& Facts() const { return m_facts; }
    const std::vector<DescriptionUrl>& Urls() const { return m_urls; }
    /// Fails with -1017 if there is no such URL.
    const DescriptionUrl& UrlAt(size_t index) const;

    InfoValue Info(GenTL::PORT_INFO_CMD command) const;
    InfoValue UrlInfo(size_t index, GenTL::URL_INFO_CMD command) const;

private:
    PortFacts m_facts;
    RegisterSpace m_registers;
    std::vector<DescriptionUrl> m_urls;
    std::function<void()> m_gate;
    std::function<void()> m_afterWrite;
};

}  // namespace OvProducer
