#include <cstdint>
#include <span>
#include <string>

#include "Base/GCException.h"
#include "Base/OvAssert.h"
#include "NodeMapData/CacheStream.h"
#include "NodeMapData/NodeDataMap.h"
#include "NodeMapData/NodeDataMapFactory.h"
#include "support/XmlNodeMap.h"

namespace DescriptionFuzz {

namespace {

using namespace GenApi_3_0_ORVANE;  // NOLINT(google-build-using-namespace)
using GenICam_3_0_ORVANE::GenericException;

/// A selector that reads what it selects ends the process.
bool HasSelectors(const CNodeDataMap& map) {
    for (size_t i = 0; i < map.GetNumNodeIDs(); ++i) {
        const CNodeData* const node = map.GetNodeData(NodeID_t(i));
        if (node != nullptr && node->FindProperty(CPropertyID::pSelected_ID) != nullptr) {
            return true;
        }
    }
    return false;
}

std::string CacheFileOf(const CNodeDataMap& map) {
    CCacheWriter writer;
    map.ToFile(writer);
    return writer.GetBytes();
}

/// What could be read can be kept, and comes back as it was.
void CheckThatDataReturn(const CNodeDataMap& map) {
    const std::string kept = CacheFileOf(map);
    CCacheReader reader(kept);
    CNodeDataMap again;
    again.FromFile(reader);
    OV_ASSERT(reader.IsGood() && reader.GetRest() == 0);
    OV_ASSERT(CacheFileOf(again) == kept);
}

void Run(const std::string& document, bool suppressStrings) {
    CNodeDataMap map;
    try {
        CNodeDataMapFactory::ParseXmlBuffer(&map, ContentType_Xml, document.data(), document.size(),
                                            suppressStrings);
        if (!HasSelectors(map)) {
            CNodeDataMapFactory::PreProcessNodeDataMap(&map);
            CheckThatDataReturn(map);
        }
    } catch (const GenericException&) {  // NOLINT(bugprone-empty-catch): malformed
    }
}

}  // namespace

}  // namespace DescriptionFuzz

/// The first byte says how, the others are a document or what stands in one.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size > 0) {
        const std::string text(reinterpret_cast<const char*>(data) + 1, size - 1);
        const bool isWhole = (data[0] & 1) != 0;
        const bool suppressStrings = (data[0] & 2) != 0;
        DescriptionFuzz::Run(isWhole ? text : EngineTest::XmlNodeMap::Describe(text),
                             suppressStrings);
    }
    return 0;
}
