#include "framework/Port.h"

#include <cstdio>

#include "framework/Zip.h"

namespace OvProducer {
namespace {

std::vector<std::byte> BytesOf(std::string_view text) {
    const auto* first = reinterpret_cast<const std::byte*>(text.data());
    return {first, first + text.size()};
}

GenTL::URL_SCHEME_ID SchemeOf(const std::string& url) {
    switch (url.empty() ? '\0' : url.front()) {
        case 'H':
        case 'h':
            return GenTL::URL_SCHEME_HTTP;
        case 'F':
        case 'f':
            return GenTL::URL_SCHEME_FILE;
        default:
            return GenTL::URL_SCHEME_LOCAL;
    }
}

InfoValue OnlyLocal(const DescriptionUrl& url, uint64_t value) {
    if (SchemeOf(url.url) != GenTL::URL_SCHEME_LOCAL) {
        ThrowNotAvailable();
    }
    return InfoValue::Uint64(value);
}

template <std::string PortFacts::*field>
InfoValue TextField(const PortFacts& facts) {
    return InfoValue::Text(facts.*field);
}

template <bool value>
InfoValue Fixed(const PortFacts&) {
    return InfoValue::Bool(value);
}

constexpr InfoRow<PortFacts> kPortRows[] = {
    {GenTL::PORT_INFO_ID, TextField<&PortFacts::id>},
    {GenTL::PORT_INFO_VENDOR, TextField<&PortFacts::vendor>},
    {GenTL::PORT_INFO_MODEL, TextField<&PortFacts::model>},
    {GenTL::PORT_INFO_TLTYPE, TextField<&PortFacts::tlType>},
    {GenTL::PORT_INFO_MODULE, TextField<&PortFacts::module>},
    {GenTL::PORT_INFO_LITTLE_ENDIAN,
     [](const PortFacts& facts) { return InfoValue::Bool(!facts.isBigEndian); }},
    {GenTL::PORT_INFO_BIG_ENDIAN,
     [](const PortFacts& facts) { return InfoValue::Bool(facts.isBigEndian); }},
    {GenTL::PORT_INFO_ACCESS_READ, Fixed<true>},
    {GenTL::PORT_INFO_ACCESS_WRITE,
     [](const PortFacts& facts) { return InfoValue::Bool(facts.writable); }},
    {GenTL::PORT_INFO_ACCESS_NA, Fixed<false>},
    {GenTL::PORT_INFO_ACCESS_NI, Fixed<false>},
    {GenTL::PORT_INFO_VERSION, TextField<&PortFacts::version>},
    {GenTL::PORT_INFO_PORTNAME, TextField<&PortFacts::name>},
};

template <int32_t DescriptionUrl::*field>
InfoValue NumberField(const DescriptionUrl& url) {
    return InfoValue::Int32(url.*field);
}

constexpr InfoRow<DescriptionUrl> kUrlRows[] = {
    {GenTL::URL_INFO_URL, [](const DescriptionUrl& url) { return InfoValue::Text(url.url); }},
    {GenTL::URL_INFO_SCHEMA_VER_MAJOR, [](const DescriptionUrl&) { return InfoValue::Int32(1); }},
    {GenTL::URL_INFO_SCHEMA_VER_MINOR, [](const DescriptionUrl&) { return InfoValue::Int32(1); }},
    {GenTL::URL_INFO_FILE_VER_MAJOR, NumberField<&DescriptionUrl::major>},
    {GenTL::URL_INFO_FILE_VER_MINOR, NumberField<&DescriptionUrl::minor>},
    {GenTL::URL_INFO_FILE_VER_SUBMINOR, NumberField<&DescriptionUrl::subminor>},
    {GenTL::URL_INFO_FILE_SHA1_HASH,
     [](const DescriptionUrl&) -> InfoValue { ThrowNotAvailable(); }},
    {GenTL::URL_INFO_FILE_REGISTER_ADDRESS,
     [](const DescriptionUrl& url) { return OnlyLocal(url, url.address); }},
    {GenTL::URL_INFO_FILE_SIZE, [](const DescriptionUrl& url) { return OnlyLocal(url, url.size); }},
    {GenTL::URL_INFO_SCHEME,
     [](const DescriptionUrl& url) { return InfoValue::Int32(SchemeOf(url.url)); }},
    {GenTL::URL_INFO_FILENAME,
     [](const DescriptionUrl& url) { return InfoValue::Text(url.fileName); }},
};

}  // namespace

void Port::AddDescription(const Description& description, uint64_t address) {
    const std::string xmlName = description.name + ".xml";
    if (description.zipped) {
        AddFile(description.name + ".zip", MakeZip(xmlName, description.xml), address);
    } else {
        AddFile(xmlName, BytesOf(description.xml), address);
    }
    m_urls.back().major = description.major;
    m_urls.back().minor = description.minor;
    m_urls.back().subminor = description.subminor;
}

void Port::AddFile(const std::string& fileName, std::vector<std::byte> content, uint64_t address) {
    AddPlace(fileName, address, content.size());
    m_urls.back().url += "?SchemaVersion=1.1.0";
    m_registers.AddConstant(address, std::move(content));
}

void Port::AddPlace(const std::string& fileName, uint64_t address, uint64_t size) {
    char place[64];
    std::snprintf(place, sizeof place, ";%llX;%llX", static_cast<unsigned long long>(address),
                  static_cast<unsigned long long>(size));
    DescriptionUrl url;
    url.url = "Local:" + fileName + place;
    url.fileName = fileName;
    url.address = address;
    url.size = size;
    AddUrl(std::move(url));
}

void Port::Read(uint64_t address, std::span<std::byte> out) const {
    if (m_gate) {
        m_gate();
    }
    m_registers.Read(address, out);
}

void Port::Write(uint64_t address, std::span<const std::byte> in) const {
    if (m_gate) {
        m_gate();
    }
    if (!m_facts.writable) {
        throw Failure(GenTL::GC_ERR_ACCESS_DENIED, "The device is open for reading only");
    }
    m_registers.Write(address, in);
    if (m_afterWrite) {
        m_afterWrite();
    }
}

const DescriptionUrl& Port::UrlAt(size_t index) const {
    if (index >= m_urls.size()) {
        throw Failure(GenTL::GC_ERR_INVALID_INDEX,
                      "The port has no URL of index " + std::to_string(index));
    }
    return m_urls[index];
}

InfoValue Port::Info(GenTL::PORT_INFO_CMD command) const {
    return AnswerFrom(kPortRows, command, m_facts);
}

InfoValue Port::UrlInfo(size_t index, GenTL::URL_INFO_CMD command) const {
    return AnswerFrom(kUrlRows, command, UrlAt(index));
}

}  // namespace OvProducer
