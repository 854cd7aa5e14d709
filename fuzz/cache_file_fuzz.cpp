#include <cstdint>
#include <string>

#include "Base/OvAssert.h"
#include "cache/CacheStream.h"
#include "nodes/NodeDataMap.h"

namespace CacheFuzz {

namespace {

using namespace GenApi_3_0_ORVANE;  // NOLINT(google-build-using-namespace)

std::string BytesOf(const CNodeDataMap& map) {
    CCacheWriter writer;
    map.ToFile(writer);
    return writer.GetBytes();
}

/// What could be read can be written, and read again.
void Run(const std::string& bytes) {
    CCacheReader reader(bytes);
    CNodeDataMap map;
    map.FromFile(reader);
    if (!reader.IsGood()) {
        return;
    }
    const std::string written = BytesOf(map);
    CCacheReader rereader(written);
    CNodeDataMap again;
    again.FromFile(rereader);
    OV_ASSERT(rereader.IsGood() && rereader.GetRest() == 0);
    OV_ASSERT(BytesOf(again) == written);
}

}  // namespace

}  // namespace CacheFuzz

/// The input is what follows the beginning that all files have.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace CacheFuzz;  // NOLINT(google-build-using-namespace)
    const std::string bytes = std::string(GetCacheFileHeader()) + std::string(data, data + size);
    Run(bytes);
    return 0;
}
