#pragma once
/// A module's port: its registers, the descriptions that lie among them, and
/// the facts that the port calls ask for.

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "framework/InfoValue.h"
#include "framework/RegisterSpace.h"

namespace OvProducer {

/// What `GCGetPortInfo` tells.
struct PortFacts {
    std::string id;
    std::string vendor;
    std::string model;
    std::string tlType;
    std::string module;   ///< "TLSystem", "TLInterface", "TLDevice", "TLDataStream", "Device"
    std::string version;  ///< of the module
    std::string name;     ///< of the Port node in the module's description
    bool writable = true;
};

/// A module's description, as it is written in the sources.
struct Description {
    std::string name;  ///< file name without extension
    std::string xml;
    bool zipped = false;
    int32_t major = 1;  ///< version of the file
    int32_t minor = 0;
    int32_t subminor = 0;
};

/// One place where a description can be had, as the URL calls tell it.
struct DescriptionUrl {
    std::string url;
    std::string fileName;
    int32_t major = 1;
    int32_t minor = 0;
    int32_t subminor = 0;
    uint64_t address = 0;
    uint64_t size = 0;
};

/// Built once by its module, then used from any thread.
class Port {
public:
    explicit Port(PortFacts facts) : m_facts(std::move(facts)) {}

    RegisterSpace& Registers() { return m_registers; }

    /// Puts the file into the registers at `address`, zipped if it says so, and
    /// adds its URL behind those that are there.
    void AddDescription(const Description& description, uint64_t address);
    /// As above, with the file as it is to lie in the registers.
    void AddFile(const std::string& fileName, std::vector<std::byte> content, uint64_t address);
    /// Adds a URL whose file lies elsewhere.
    void AddUrl(DescriptionUrl url) { m_urls.push_back(std::move(url)); }
    /// Files stay in the registers, but nothing tells of them.
    void ForgetUrls() { m_urls.clear(); }

    /// For a device that was opened for reading only: writes give -1005.
    void MakeReadOnly() { m_facts.writable = false; }
    /// Called before every access; may throw, as for a device that is gone.
    void SetGate(std::function<void()> gate) { m_gate = std::move(gate); }

    void Read(uint64_t address, std::span<std::byte> out) const;
    void Write(uint64_t address, std::span<const std::byte> in) const;

    const PortFacts& Facts() const { return m_facts; }
    const std::vector<DescriptionUrl>& Urls() const { return m_urls; }
    /// -1017 when there is no such URL.
    const DescriptionUrl& UrlAt(size_t index) const;

    InfoValue Info(GenTL::PORT_INFO_CMD command) const;
    InfoValue UrlInfo(size_t index, GenTL::URL_INFO_CMD command) const;

private:
    PortFacts m_facts;
    RegisterSpace m_registers;
    std::vector<DescriptionUrl> m_urls;
    std::function<void()> m_gate;
};

}  // namespace OvProducer
