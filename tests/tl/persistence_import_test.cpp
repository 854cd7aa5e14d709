// Settings of a text that go into their modules, and the notes on those that don't.

#include "PersistenceTest.h"
#include "TransportTest.h"

namespace OVTLClass {

namespace {

using namespace remote_camera;
using testing::ElementsAre;
using testing::IsEmpty;

TEST_F(PersistenceTest, EachPartGoesIntoItsModule) {
    EXPECT_THAT(Import(TextWith("Offset\t1\n", "Delay\t2\n", "Depth\t3\n")), IsEmpty());
    EXPECT_EQ(remote.At(kOffset), 1);
    EXPECT_EQ(local.At(0x10), 2);
    EXPECT_EQ(stream.At(0x10), 3);
}

TEST_F(PersistenceTest, OrderCountsAndTitlesDoNot) {
    const std::string text = kHeader + kLocalBanner + kMark + "Offset\t1\n" + kStreamBanner +
                             kMark + "Delay\t2\n" + kRemoteBanner + kMark + "Depth\t3\n";
    EXPECT_THAT(Import(text, true), IsEmpty());
    EXPECT_EQ(remote.At(kOffset), 1);
    EXPECT_EQ(local.At(0x10), 2);
    EXPECT_EQ(stream.At(0x10), 3);
}

TEST_F(PersistenceTest, WhatWasExportedComesBackWithoutErrors) {
    remote.port.Put<int32_t>(kOffset, -7);
    remote.port.Put<int32_t>(kBank, 1);
    remote.port.Put<int32_t>(kGainRaw, 25);
    remote.port.Put<int32_t>(kLevel, 100);
    remote.port.Put<int32_t>(kLevel + 4, 200);
    local.port.Put<int32_t>(0x10, 11);
    stream.port.Put<int32_t>(0x10, 12);
    const std::string text = Export();
    EXPECT_THAT(Import(TextWith("Offset\t0\nGain\t0\nBank\t1\nLevel\t0\nBank\t0\nLevel\t0\n",
                                "Delay\t0\n", "Depth\t0\n")),
                IsEmpty());
    EXPECT_EQ(remote.At(kLevel + 4), 0);

    EXPECT_THAT(Import(text, true), IsEmpty());
    EXPECT_EQ(Export(), text);
    EXPECT_EQ(remote.At(kBank), 1);
    EXPECT_EQ(remote.At(kLevel), 100);
    EXPECT_EQ(remote.At(kLevel + 4), 200);
}

TEST_F(PersistenceTest, TheTextIsReadFromItsBeginWhereverTheStreamStands) {
    std::istringstream source(TextWith("Offset\t1\n"));
    source.seekg(100);
    EXPECT_THAT(Persistance().ImportFeaturesFromStream(source, false), IsEmpty());
    EXPECT_EQ(remote.At(kOffset), 1);
}

TEST_F(PersistenceTest, AStreamThatCannotBeReadHasNoParts) {
    std::ifstream source("/nowhere/at/all");
    try {
        Persistance().ImportFeaturesFromStream(source, false);
        ADD_FAILURE() << "nothing was raised";
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), "Invalid feature file format");
    }
}

TEST_F(PersistenceTest, ErrorsComeInTheOrderOfTheTextAndStopNothing) {
    EXPECT_THAT(Import(TextWith("Nothing\t1\nOffset\tmany\nOffset\t5\n", "Delay\t6\nNone\t\n",
                                "Depth\t7\nNever\t8\n")),
                ElementsAre("Error while writing node: 'Nothing' not found ",
                            testing::StartsWith("Error while writing node 'Offset': "),
                            "Error while writing node: 'None' not found ",
                            "Error while writing node: 'Never' not found "));
    EXPECT_EQ(remote.At(kOffset), 5);
    EXPECT_EQ(local.At(0x10), 6);
    EXPECT_EQ(stream.At(0x10), 7);
}

TEST_F(PersistenceTest, AWriteThatFailsIsToldAndTheRestWritten) {
    remote.port.FailAccess(1);
    EXPECT_THAT(Import(TextWith("Offset\t5\nGain\t2\n")),
                ElementsAre(testing::HasSubstr("Error while writing node 'Offset': ")));
    EXPECT_EQ(remote.At(kOffset), 0);
    EXPECT_EQ(remote.At(kGainRaw), 20);
}

// Values that the camera rounds.

TEST_F(PersistenceTest, ARoundedValueIsNoErrorWithoutVerification) {
    EXPECT_THAT(Import(TextWith("Gain\t1.23\n"), false), IsEmpty());
    EXPECT_EQ(remote.At(kGainRaw), 12);
}

TEST_F(PersistenceTest, ARoundedValueIsAnErrorWithVerification) {
    EXPECT_THAT(Import(TextWith("Gain\t1.23\nOffset\t4\n"), true),
                ElementsAre("Error while verifying node 'Gain'. Expected '1.23', but found '1.2'"));
    EXPECT_EQ(remote.At(kGainRaw), 12);
    EXPECT_EQ(remote.At(kOffset), 4);
}

TEST_F(PersistenceTest, AnotherFormOfTheValueIsAnErrorWithVerification) {
    EXPECT_THAT(
        Import(TextWith("Offset\t0x10\n"), true),
        ElementsAre("Error while verifying node 'Offset'. Expected '0x10', but found '16'"));
    EXPECT_EQ(remote.At(kOffset), 16);
}

TEST_F(PersistenceTest, ValuesOfEachSelectionAreVerified) {
    EXPECT_THAT(Import(TextWith("Bank\t0\nLevel\t1\nBank\t1\nLevel\t2\nBank\t0\n"), true),
                IsEmpty());
    EXPECT_EQ(remote.At(kLevel), 1);
    EXPECT_EQ(remote.At(kLevel + 4), 2);
    EXPECT_EQ(remote.At(kBank), 0);
}

TEST_F(PersistenceTest, AValueOutsideTheLimitsIsToldByTheVerification) {
    EXPECT_THAT(Import(TextWith("Bank\t9\n"), true),
                testing::Contains(testing::StartsWith("Error while writing node 'Bank': ")));
}

}  // namespace

}  // namespace OVTLClass
