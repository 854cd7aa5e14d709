// Reads that are refused without an exception: the answer is the exception that the same read
// throws where no answer is expected.

#include "FeatureNodes.h"
#include "TransportTest.h"

namespace OVTLClass {
namespace {

const std::string kRefusedFeatures = UncachedRegXml("Raw", 0, "WO") + UncachedRegXml("Gate", 4) +
                                     R"(<Integer Name="No"><Value>0</Value></Integer>
       <Integer Name="Width"><pValue>Raw</pValue></Integer>
       <Integer Name="Height"><pIsAvailable>Gate</pIsAvailable><Value>5</Value></Integer>
       <Integer Name="OffsetX"><pIsImplemented>No</pIsImplemented><Value>1</Value></Integer>
       <IntSwissKnife Name="OffsetY"><Formula>1 + )</Formula></IntSwissKnife>
       <Float Name="Gain"><pIsAvailable>Gate</pIsAvailable><Value>2.5</Value></Float>
       <Enumeration Name="Mode"><pIsAvailable>Gate</pIsAvailable>
         <EnumEntry Name="On"><Value>3</Value></EnumEntry><Value>3</Value></Enumeration>
       <Boolean Name="Active"><pIsAvailable>Gate</pIsAvailable><Value>1</Value></Boolean>
       <String Name="Owner"><pIsAvailable>Gate</pIsAvailable><Value>Left</Value></String>)";

constexpr int kReadTimes = 3;

/// A name with a number is known from the first call on, one without is looked up each time.
class FeatureRefusals : public ::testing::TestWithParam<bool> {
protected:
    CFeatureName Name(const char* name, size_t number) const {
        return GetParam() ? CFeatureName(name, number) : CFeatureName(name);
    }
    void SetGate(int32_t state) { nodes.Port().Put<int32_t>(4, state); }

    template <class Error, class Ask, class Read>
    void ExpectRefused(const std::string& text, const std::string& function, const Ask& ask,
                       const Read& read) {
        for (int time = 0; time < kReadTimes; ++time) {
            const auto thrown = Raised<Error>(read);
            EXPECT_EQ(thrown.GetDescription(), text);
            EXPECT_EQ(thrown.GetFunction(), function);
            const auto answer = ask();
            ASSERT_NE(answer.GetRefusal(), nullptr);
            const COvException& refusal = answer.GetRefusal()->Get();
            EXPECT_EQ(typeid(refusal), typeid(Error));
            EXPECT_STREQ(refusal.what(), thrown.what());
            EXPECT_EQ(refusal.GetFile(), thrown.GetFile());
        }
    }
    template <class Error>
    void ExpectIntegerRefused(CFeatureName name, const std::string& text,
                              const std::string& function) {
        ExpectRefused<Error>(
            text, function, [&] { return nodes->GetInt(name); }, [&] { nodes->DoGetInt(name); });
    }

    FeatureNodes nodes{kRefusedFeatures};
};

TEST_P(FeatureRefusals, OfWhatCanOnlyBeWrittenAreTheEngines) {
    ExpectIntegerRefused<CInvalidAccessError>(Name("Width", 0), "Node is not readable.",
                                              "DoGetInt");
}

TEST_P(FeatureRefusals, OfWhatTheCameraLacksSaySo) {
    ExpectIntegerRefused<CNotImplementedError>(
        Name("OffsetX", 1), "The feature \"OffsetX\" is not implemented", "__GetNodeHandle");
    ExpectIntegerRefused<CNotImplementedError>(
        Name("Nowhere", 2), "The feature \"Nowhere\" is not implemented", "__GetGenAPINode");
}

TEST_P(FeatureRefusals, OfAllTypesNameTheRead) {
    constexpr const char* kText = "Node is not readable.";
    ExpectRefused<CInvalidAccessError>(
        kText, "DoGetFloat", [&] { return nodes->GetFloat(Name("Gain", 3)); },
        [&] { nodes->DoGetFloat(Name("Gain", 3)); });
    ExpectRefused<CInvalidAccessError>(
        kText, "DoGetEnum", [&] { return nodes->GetEnum(Name("Mode", 4)); },
        [&] { nodes->DoGetEnum(Name("Mode", 4)); });
    ExpectRefused<CInvalidAccessError>(
        kText, "DoGetBool", [&] { return nodes->GetBool(Name("Active", 5)); },
        [&] { nodes->DoGetBool(Name("Active", 5)); });
    ExpectRefused<CInvalidAccessError>(
        kText, "DoGetString", [&] { return nodes->GetString(Name("Owner", 6)); },
        [&] { nodes->DoGetString(Name("Owner", 6)); });
    SetGate(1);
    EXPECT_EQ(nodes->GetFloat(Name("Gain", 3)).Value(), 2.5);
    EXPECT_EQ(nodes->GetEnum(Name("Mode", 4)).Value(), 3);
    EXPECT_TRUE(nodes->GetBool(Name("Active", 5)).Value());
    EXPECT_EQ(nodes->GetString(Name("Owner", 6)).Value(), "Left");
}

TEST_P(FeatureRefusals, EndWithTheirReason) {
    const CFeatureName height = Name("Height", 7);
    for (int round = 0; round < 2; ++round) {
        SetGate(0);
        ExpectIntegerRefused<CInvalidAccessError>(height, "Node is not readable.", "DoGetInt");
        SetGate(1);
        EXPECT_EQ(nodes->GetInt(height).Value(), 5);
        EXPECT_EQ(nodes->GetInt(height).GetRefusal(), nullptr);
    }
}

/// The fault is the node's own, and no answer that is known beforehand.
TEST_P(FeatureRefusals, AreNoneForAFaultyNode) {
    const CFeatureName faulty = Name("OffsetY", 8);
    for (int time = 0; time < kReadTimes; ++time) {
        EXPECT_UNEXPECTED(
            -1,
            "OffsetY : Failed to parse formula '1 + )' : error message is '#Brackets do not "
            "match!'",
            static_cast<void>(nodes->GetInt(faulty)));
    }
}

INSTANTIATE_TEST_SUITE_P(Of, FeatureRefusals, ::testing::Bool(), [](const auto& isKnown) {
    return isKnown.param ? "AKnownFeature" : "AName";
});

}  // namespace
}  // namespace OVTLClass
