// Entry points of parsing: where the text comes from and whether it is zipped. The
// document is one piece of memory from here on; real ones are a few megabytes at most.

#include "reader/NodeDataMapFactory.h"

#include <fstream>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>

#include "Base/Environment.h"
#include "Base/GCException.h"
#include "Base/OvAssert.h"
#include "nodes/NodeDataMap.h"
#include "preprocessing/NodeDataPreprocessor.h"
#include "reader/DescriptionReader.h"
#include "zip/ZipReader.h"

namespace GenApi_3_0_ORVANE {

namespace {

constexpr std::string_view kVersion11 = "http://www.genicam.org/GenApi/Version_1_1";
constexpr std::string_view kVersion10 = "http://www.genicam.org/GenApi/Version_1_0";

/// Only names of zipped files may hold variables.
std::string UnzipFile(const std::string& fileName) {
    GenICam_3_0_ORVANE::gcstring expanded(fileName.c_str());
    GenICam_3_0_ORVANE::ReplaceEnvironmentVariables(expanded, false);
    const char* const name = expanded.c_str();
    std::string text;
    switch (CZipReader::ReadFile(name, text)) {
        case CZipReader::Result::NotOpened:
            RUNTIME_EXCEPTION("File open failed in ParseXmlFile. Filename = '%s'", name);
        case CZipReader::Result::NoEntry:
            RUNTIME_EXCEPTION("File stat failed in ParseXmlFile. Filename = '%s'", name);
        case CZipReader::Result::NotExtracted:
            RUNTIME_EXCEPTION("File unzip failed in ParseXmlFile. Filename = '%s'", name);
        case CZipReader::Result::Done:
            break;
    }
    return text;
}

std::string UnzipMemory(const void* data, size_t size) {
    std::string text;
    switch (CZipReader::ReadMemory(data, size, text)) {
        case CZipReader::Result::NotOpened:
            RUNTIME_EXCEPTION("Invalid ZIP string in ParseXmlBuffer");
        case CZipReader::Result::NoEntry:
            RUNTIME_EXCEPTION("Zip stat failed in ParseXmlBuffer");
        case CZipReader::Result::NotExtracted:
            RUNTIME_EXCEPTION("Unzip failed in ParseXmlBuffer");
        case CZipReader::Result::Done:
            break;
    }
    return text;
}

/// In one piece: descriptions are a few megabytes at most.
std::string ReadFile(const std::string& fileName) {
    std::ifstream file(fileName, std::ios::binary);
    if (!file) {
        RUNTIME_EXCEPTION("Failed to open xml file %s.", fileName.c_str());
    }
    // Inserting nothing sets the fail bit of this stream, which nobody asks for: an empty
    // file is an empty document, and expat reports it.
    std::ostringstream text;
    text << file.rdbuf();
    return std::move(text).str();
}

}  // namespace

/// An enumeration of a caller may hold any number.
std::string CNodeDataMapFactory::ReadXmlFile(EContentType_t contentType,
                                             const std::string& fileName) {
    switch (contentType) {
        case ContentType_Xml:
            return ReadFile(fileName);
        case ContentType_ZippedXml:
            return UnzipFile(fileName);
    }
    RUNTIME_EXCEPTION("ParseXmlBuffer not implemented.");
}

std::string_view CNodeDataMapFactory::ReadXmlBuffer(EContentType_t contentType, const void* pData,
                                                    size_t size, std::string& unpacked) {
    switch (contentType) {
        case ContentType_Xml:
            return {static_cast<const char*>(pData), size};
        case ContentType_ZippedXml:
            unpacked = UnzipMemory(pData, size);
            return unpacked;
    }
    RUNTIME_EXCEPTION("ParseXmlBuffer not implemented.");
}

/// Descriptions name one of two name spaces, and an element of the wrong one is
/// unexpected. So is any other element out of place: then the second run fails, too, and
/// its error is the one reported.
void CNodeDataMapFactory::ParseXml(CNodeDataMap* pNodeDataMap, std::string_view document,
                                   bool suppressStrings) {
    CNodeDataMap& map = *pNodeDataMap;
    auto error = CDescriptionReader(map, suppressStrings, kVersion11).Read(document);
    if (error && error->code == SchemaError::UnexpectedElement) {
        // What the first run stored before it failed must not meet its own repeat. The
        // same grammar serves both versions of the schema.
        map.Clear();
        error = CDescriptionReader(map, suppressStrings, kVersion10).Read(document);
    }
    if (error) {
        RUNTIME_EXCEPTION("Error while parsing XML stream at line %lu and column %lu : '%s'",
                          error->line, error->column, error->text.c_str());
    }
}

void CNodeDataMapFactory::PreProcessNodeDataMap(CNodeDataMap* pNodeDataMap) {
    OV_ASSERT(pNodeDataMap);
    CNodeDataPreprocessor(*pNodeDataMap).Run();
}

}  // namespace GenApi_3_0_ORVANE
