#include <memory>

#include "GenApi/IDestroy.h"
#include "description_fuzz.h"
#include "support/EveryUse.h"

namespace DescriptionFuzz {

namespace {

void Run(const Input& input) {
    const auto destroy = [](INodeMap* map) { dynamic_cast<IDestroy&>(*map).Destroy(); };
    EngineTest::TestPort port(64);
    const std::unique_ptr<INodeMap, decltype(destroy)> map(
        CNodeMapFactory(input.document.c_str()).CreateNodeMap(), destroy);
    map->Connect(&port);
    EngineTest::UseEverything(*map);
}

}  // namespace

}  // namespace DescriptionFuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace DescriptionFuzz;  // NOLINT(google-build-using-namespace)
    if (size > 0) {
        EngineTest::AttemptEach([&] { Run({data, size}); });
    }
    return 0;
}
