#pragma once

#include <cstdint>

namespace GenApi_3_0_ORVANE {

/// The form in which a description is passed. Callers may pass other numbers, which are refused.
enum EContentType_t : uint32_t {
    ContentType_Xml = 0,       ///< plain XML
    ContentType_ZippedXml = 1  ///< zip archive whose first entry is the XML
};

}  // namespace GenApi_3_0_ORVANE
