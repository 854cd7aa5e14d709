#include "TLClassXML/XMLLoader.h"

#include <algorithm>
#include <fstream>
#include <iterator>

#include "TLClassLoadTL/GenTLErrrorCodeVerifier.h"
#include "TLClassLoadTL/GenTLText.h"
#include "TLClassSupport/OvException.h"
#include "TLClassXML/Zip.h"

namespace OVTLClass {

namespace {

/// No description of a camera comes near it; a length that does is a lie of the
/// producer, and must not take the machine's memory.
constexpr uint64_t kMaxDescriptionSize = 256ULL * 1024 * 1024;

/// A producer that names more places than that is not asked for all of them.
constexpr uint32_t kMostUrls = 16;

/// Whether the producer is of the first version of the standard, which knows
/// one call for all URLs.
bool IsNotOffered(int32_t status) {
    constexpr int32_t kNoEntryPoint = -1;
    return status == kNoEntryPoint || status == GenTL::GC_ERR_NOT_IMPLEMENTED;
}

}  // namespace

uint32_t CXMLLoader::GetUrlCount() const {
    uint32_t count = 0;
    const int32_t status = m_lib.GCGetNumPortURLs(m_port, &count);
    if (IsNotOffered(status)) {
        return 1;
    }
    OV_VERIFY(status, m_lib);
    if (count == 0) {
        OV_RAISE(CUnexpectedError, "UrlNum <= 0");
    }
    return std::min(count, kMostUrls);
}

std::string CXMLLoader::LoadXML(uint32_t index) const {
    const XML_URL_INFO info = AnalyzeXmlUrl(__ReadUrl(index));
    switch (info.location) {
        case XmlLocation::File:
            return __ReadXMLFromFile(info.file);
        case XmlLocation::Local:
            return __ReadXMLFromRemoteDevice(info.local);
        default:
            OV_RAISE(CUnexpectedError, "Invalid XML format");
    }
}

std::string CXMLLoader::__ReadUrl(uint32_t index) const {
    const auto oneUrl = [this, index](char* text, size_t* size) {
        int32_t type = GenTL::INFO_DATATYPE_STRING;
        return m_lib.GCGetPortURLInfo(m_port, index, GenTL::URL_INFO_URL, &type, text, size);
    };
    std::string url;
    const int32_t status = ReadGenTLText(oneUrl, url);
    if (IsNotOffered(status)) {
        return __ReadOldUrl();
    }
    OV_VERIFY(status, m_lib);
    return url;
}

std::string CXMLLoader::__ReadOldUrl() const {
    const auto urls = [this](char* text, size_t* size) {
        return m_lib.GCGetPortURL(m_port, text, size);
    };
    std::string first;
    OV_VERIFY(ReadGenTLText(urls, first), m_lib);
    return first;
}

std::string CXMLLoader::__ReadXMLFromRemoteDevice(const URL_LOCAL_INFO& info) const {
    if (info.length > kMaxDescriptionSize) {
        OV_RAISE(CUnexpectedError, "Invalid XML format");
    }
    // One byte more than asked for: a length of 0 has an address, too.
    std::vector<unsigned char> data(info.length + 1, 0);
    size_t size = info.length;
    OV_VERIFY(m_lib.GCReadPort(m_port, info.address, data.data(), &size), m_lib);
    data.resize(std::min<size_t>(size, info.length));
    return __GetXMLContent(info.fileName, std::move(data));
}

std::string CXMLLoader::__ReadXMLFromFile(const URL_FILE_INFO& info) {
    std::ifstream file(info.path, std::ios::binary);
    if (!file) {
        OV_RAISE(CUnexpectedError, "Failed to read XML from file");
    }
    std::vector<unsigned char> data{std::istreambuf_iterator<char>(file),
                                    std::istreambuf_iterator<char>()};
    return __GetXMLContent(info.path, std::move(data));
}

std::string CXMLLoader::__GetXMLContent(const std::string& name, std::vector<unsigned char> data) {
    if (ToUpperCase(name).ends_with("ZIP")) {
        std::vector<unsigned char> document;
        if (!CZip::Uncompress(data, document)) {
            OV_RAISE(CUnexpectedError, "Uncompress zip file failed");
        }
        return {document.begin(), document.end()};
    }
    // A zero byte ends the text.
    return {data.begin(), std::find(data.begin(), data.end(), 0)};
}

}  // namespace OVTLClass
