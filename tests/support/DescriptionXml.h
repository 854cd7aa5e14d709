#pragma once
/// Builds camera descriptions for tests that need a few nodes.

#include <cstdint>
#include <string>

namespace DescriptionXml {

inline std::string Element(const std::string& tag, const std::string& content) {
    return "<" + tag + ">" + content + "</" + tag + ">";
}
/// The element of an address.
inline std::string At(int64_t address) {
    return Element("Address", std::to_string(address));
}
inline std::string NodeXml(const std::string& type, const std::string& name,
                           const std::string& content, bool isStandard = false) {
    return "<" + type + " Name=\"" + name + "\"" + (isStandard ? " NameSpace=\"Standard\">" : ">") +
           content + "</" + type + ">";
}
/// An integer that has a value, or the value of another node if `value` is a link.
inline std::string IntegerXml(const std::string& name, const std::string& common = "",
                              const std::string& value = "<Value>1</Value>") {
    return NodeXml("Integer", name, common + value);
}

/// A register: without other fields, an integer of four bytes in the machine's byte order.
/// Empty fields leave their elements out, except the address.
struct RegXml {
    std::string name;
    int64_t address = 0;
    std::string access = "RW";
    std::string caching = "WriteThrough";
    std::string common = {};  ///< elements that all nodes have
    std::string tail = {};    ///< elements after the byte order
    std::string polling = {};
    std::string type = "IntReg";
    std::string place = {};  ///< elements in place of the address
    std::string length = "<Length>4</Length>";
    std::string port = "Device";
    std::string sign = "Signed";
    std::string endianess = "LittleEndian";

    std::string operator()() const {
        return NodeXml(type, name,
                       common + (place.empty() ? At(address) : place) + length +
                           Element("AccessMode", access) + Element("pPort", port) +
                           Optional("Cachable", caching) + polling + Optional("Sign", sign) +
                           Optional("Endianess", endianess) + tail);
    }

private:
    static std::string Optional(const std::string& tag, const std::string& content) {
        return content.empty() ? "" : Element(tag, content);
    }
};

/// A port for a chunk.
inline std::string ChunkPortXml(const std::string& name, const std::string& id,
                                const std::string& cache = "No") {
    return NodeXml("Port", name, Element("ChunkID", id) + Element("CacheChunkData", cache));
}

/// A chunk's first byte, and the port for the chunk.
inline std::string ChunkByteXml(const std::string& name, const std::string& id,
                                const std::string& cache) {
    return ChunkPortXml(name + "Port", id, cache) + RegXml{.name = name,
                                                           .access = "RO",
                                                           .caching = "",
                                                           .length = "<Length>1</Length>",
                                                           .port = name + "Port",
                                                           .sign = "Unsigned"}();
}

/// A whole description around its nodes.
struct DocumentXml {
    std::string model = "Model";
    std::string vendor = "Vendor";
    std::string toolTip = "A camera";
    std::string nameSpace = "GEV";
    /// Descriptions of version 1.0 may have cycles that later ones may not.
    int schemaMinor = 1;
    std::string versions =
        R"(SchemaSubMinorVersion="7" MajorVersion="4" MinorVersion="5" SubMinorVersion="6")";
    std::string productGuid = "11111111-2222-3333-4444-555555555555";
    std::string versionGuid = "66666666-7777-8888-9999-AAAAAAAAAAAA";

    /// Adds a port "Device" unless the nodes have one.
    std::string operator()(const std::string& nodes) const {
        const bool hasPort = nodes.find("Name=\"Device\"") != std::string::npos;
        const std::string minor = std::to_string(schemaMinor);
        return R"(<?xml version="1.0" encoding="UTF-8"?>
<RegisterDescription)" +
               Attribute("ModelName", model) + Attribute("VendorName", vendor) +
               Attribute("ToolTip", toolTip) + Attribute("StandardNameSpace", nameSpace) +
               Attribute("SchemaMajorVersion", "1") + Attribute("SchemaMinorVersion", minor) + " " +
               versions + Attribute("ProductGuid", productGuid) +
               Attribute("VersionGuid", versionGuid) +
               Attribute("xmlns", "http://www.genicam.org/GenApi/Version_1_" + minor) + ">\n" +
               nodes + (hasPort ? "" : "<Port Name=\"Device\"/>") + "</RegisterDescription>";
    }

private:
    static std::string Attribute(const std::string& name, const std::string& value) {
        return " " + name + "=\"" + value + "\"";
    }
};

}  // namespace DescriptionXml
