#pragma once
/// Descriptions made of what a fuzzer gives.

#include <cstdint>
#include <string>

#include "nodes/NodeDataMap.h"
#include "reader/NodeDataMapFactory.h"
#include "support/XmlNodeMap.h"

namespace DescriptionFuzz {

using namespace GenApi_3_0_ORVANE;  // NOLINT(google-build-using-namespace)

/// An input: its first byte says how, the others are a document or what stands
/// in one.
struct Input {
    Input(const uint8_t* data, size_t size)
        : suppressStrings((data[0] & 2) != 0),
          document(reinterpret_cast<const char*>(data) + 1, size - 1) {
        const bool isWhole = (data[0] & 1) != 0;
        if (!isWhole) {
            document = EngineTest::XmlNodeMap::Describe(document);
        }
    }

    bool suppressStrings;
    std::string document;
};

/// Fills the map. Raises for a malformed document.
inline void Parse(const Input& input, CNodeDataMap& map) {
    CNodeDataMapFactory::ParseXml(&map, input.document, input.suppressStrings);
}

}  // namespace DescriptionFuzz
