/// @file
/// Every description that our producers serve, alive over its port.
#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "GenApi/ICommand.h"
#include "GenApi/IEnumeration.h"
#include "GenApi/IFloat.h"
#include "GenApi/IInteger.h"
#include "LiveDescription.h"

using GenApi::EAccessMode;
using GenApi::IValue;

namespace {

struct ModuleCase {
    const char* name;
    const char* producer;
    std::uint32_t device;
    GenTL::PORT_HANDLE OpenCamera::*port;
};

class Descriptions : public testing::TestWithParam<ModuleCase> {
protected:
    Descriptions() {
        camera.OpenStream(GetParam().device);
        live.emplace(api, camera.*GetParam().port);
    }

    static std::string NameOf(IValue* feature) { return feature->GetNode()->GetName().c_str(); }
    static bool Implemented(IValue* feature) {
        return feature->GetNode()->GetAccessMode() != GenApi::NI;
    }

    GenTLApi api{GetParam().producer};
    OpenCamera camera{api};
    std::optional<LiveDescription> live;
};

TEST_P(Descriptions, EveryReadableFeatureCanBeRead) {
    for (IValue* feature : live->Features()) {
        if (GenApi::IsReadable(feature->GetNode()->GetAccessMode())) {
            EXPECT_NO_THROW(feature->ToString(true, true)) << NameOf(feature);
        }
    }
}

TEST_P(Descriptions, EveryFeatureIsExplained) {
    for (IValue* feature : live->Features()) {
        EXPECT_GT(feature->GetNode()->GetToolTip().size(), 0U) << NameOf(feature);
        EXPECT_NE(feature->GetNode()->GetVisibility(), GenApi::_UndefinedVisibility)
            << NameOf(feature);
    }
}

TEST_P(Descriptions, EveryNumberLiesInItsRange) {
    for (IValue* feature : live->Features()) {
        if (!GenApi::IsReadable(feature->GetNode()->GetAccessMode())) {
            continue;
        }
        if (auto* integer = dynamic_cast<GenApi::IInteger*>(feature)) {
            EXPECT_LE(integer->GetMin(), integer->GetValue()) << NameOf(feature);
            EXPECT_GE(integer->GetMax(), integer->GetValue()) << NameOf(feature);
            // Unsigned, since a range may be as wide as the type.
            const uint64_t above = static_cast<uint64_t>(integer->GetValue()) -
                                   static_cast<uint64_t>(integer->GetMin());
            EXPECT_EQ(above % static_cast<uint64_t>(integer->GetInc()), 0U) << NameOf(feature);
        } else if (auto* number = dynamic_cast<GenApi::IFloat*>(feature)) {
            EXPECT_LE(number->GetMin(), number->GetValue()) << NameOf(feature);
            EXPECT_GE(number->GetMax(), number->GetValue()) << NameOf(feature);
        }
    }
}

TEST_P(Descriptions, EveryWritableFeatureTakesItsOwnValue) {
    for (IValue* feature : live->Features()) {
        const EAccessMode mode = feature->GetNode()->GetAccessMode();
        if (mode == GenApi::RW && dynamic_cast<GenApi::ICommand*>(feature) == nullptr) {
            EXPECT_NO_THROW(feature->FromString(feature->ToString())) << NameOf(feature);
        }
    }
}

TEST_P(Descriptions, EveryFormulaIsSound) {
    GenApi::gcstring_vector errors;
    EXPECT_TRUE(live->Map().ParseSwissKnifes(&errors));
    EXPECT_EQ(errors.size(), 0U);
}

TEST_P(Descriptions, GigEVisionFeaturesAreForGigEVisionAlone) {
    const std::string name = GetParam().name;
    // The steered camera plays cameras of all kinds with one description.
    const bool gev = name.starts_with("GigE") || name == "TestCamera";
    for (IValue* feature : live->Features()) {
        if (NameOf(feature).starts_with("Gev")) {
            EXPECT_EQ(Implemented(feature), gev) << NameOf(feature);
        }
    }
}

constexpr const char* kTest = OV_TEST_PRODUCER;
constexpr const char* kGev = OV_TEST_GEV_PRODUCER;
constexpr const char* kVirtual = OV_TEST_VIRTUAL_PRODUCER;

INSTANTIATE_TEST_SUITE_P(Modules, Descriptions,
                         testing::Values(ModuleCase{"System", kVirtual, 0, &OpenCamera::system},
                                         ModuleCase{"Interface", kVirtual, 0, &OpenCamera::iface},
                                         ModuleCase{"Device", kVirtual, 0, &OpenCamera::device},
                                         ModuleCase{"Stream", kVirtual, 0, &OpenCamera::stream},
                                         ModuleCase{"ColorCamera", kVirtual, 0, &OpenCamera::port},
                                         ModuleCase{"MonoCamera", kVirtual, 1, &OpenCamera::port},
                                         ModuleCase{"GigESystem", kGev, 0, &OpenCamera::system},
                                         ModuleCase{"GigEInterface", kGev, 0, &OpenCamera::iface},
                                         ModuleCase{"GigEDevice", kGev, 0, &OpenCamera::device},
                                         ModuleCase{"TestCamera", kTest, 0, &OpenCamera::port}),
                         [](const auto& module) { return module.param.name; });

}  // namespace
