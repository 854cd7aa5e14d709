// Keeps the descriptions of the test producer's modules while a program's tests run. Thousands
// of sessions then share what was loaded once; how it is loaded has tests of its own.

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "GenApi/NodeMapFactory.h"
#include "support/DescriptionFolder.h"

namespace {

class KeptDescriptions : public testing::Environment {
public:
    void SetUp() override {
        const std::filesystem::path sources = OV_SOURCE_FOLDER;
        for (const char* const folder :
             {"producers/framework/descriptions", "tests/producer/descriptions"}) {
            for (const auto& file : DescriptionsIn(sources / folder)) {
                m_factories.emplace_back(GenApi_3_0_ORVANE::ContentType_Xml, file.c_str())
                    .Preprocess();
            }
        }
    }
    void TearDown() override { m_factories.clear(); }

private:
    std::vector<GenApi_3_0_ORVANE::CNodeMapFactory> m_factories;
};

[[maybe_unused]] const testing::Environment* const kEnvironment =
    testing::AddGlobalTestEnvironment(std::make_unique<KeptDescriptions>().release());

}  // namespace
