#include "description_fuzz.h"

#include "Base/GCException.h"
#include "Base/OvAssert.h"
#include "cache/CacheStream.h"

namespace DescriptionFuzz {

namespace {

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

void Run(const Input& input) {
    CNodeDataMap map;
    try {
        Parse(input, map);
        CNodeDataMapFactory::PreProcessNodeDataMap(&map);
        CheckThatDataReturn(map);
    } catch (const GenICam_3_0_ORVANE::GenericException&) {  // NOLINT(bugprone-empty-catch)
    }
}

}  // namespace

}  // namespace DescriptionFuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size > 0) {
        DescriptionFuzz::Run({data, size});
    }
    return 0;
}
