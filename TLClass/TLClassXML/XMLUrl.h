#pragma once
/// The URL of a module's description.

#include <cstdint>
#include <string>

namespace OVTLClass {

/// A description in the module's own registers.
struct URL_LOCAL_INFO {
    std::string fileName;
    uint64_t address = 0;
    uint64_t length = 0;
};

/// A description in a file of this machine.
struct URL_FILE_INFO {
    std::string path;
};

enum class XmlLocation : int32_t { Unknown = 0, Local = 1, File = 2 };

struct XML_URL_INFO {
    XmlLocation location = XmlLocation::Unknown;
    URL_LOCAL_INFO local;
    URL_FILE_INFO file;
};

/// Takes a URL apart. All of it is read in upper case, names of files too, so
/// that a file is found only by a path in capitals. Throws "XML format error:
/// ..." for a text of another form.
XML_URL_INFO AnalyzeXmlUrl(const std::string& url);

/// Upper-case copy of an ASCII text.
std::string ToUpperCase(std::string text);

}  // namespace OVTLClass
