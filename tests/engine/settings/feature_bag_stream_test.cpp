// The text form of a bag.

#include <sstream>

#include "BagSupport.h"
#include "GenApi/FeatureBagStream.h"

namespace EngineTest {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::string kMark = "# {05D8C294-F295-4dfb-9D01-096BD04049F4}\n";

std::string TextOf(const CFeatureBag& bag) {
    std::ostringstream stream;
    stream << bag;
    return stream.str();
}

std::vector<std::string> Read(const std::string& text) {
    CFeatureBag bag;
    std::istringstream stream(text);
    stream >> bag;
    return EntriesOf(bag);
}

/// What reading the text raises, with "" for nothing.
std::string RefusalOf(std::istream& stream) {
    CFeatureBag bag;
    try {
        stream >> bag;
    } catch (const GenICam_3_0_ORVANE::RuntimeException& error) {
        EXPECT_THAT(EntriesOf(bag), IsEmpty());
        return error.GetDescription();
    }
    return "";
}
std::string RefusalOf(const std::string& text) {
    std::istringstream stream(text);
    return RefusalOf(stream);
}

// Writing.

TEST(BagText, OfAnEmptyBagIsTheMark) {
    EXPECT_EQ(TextOf(CFeatureBag()), kMark);
}

TEST(BagText, HasALineForEachEntryInTheOrderOfTheBag) {
    CFeatureBag bag;
    bag.Append("Gain", "1.5");
    bag.Append("Bank", "2");
    bag.Append("Gain", "");
    EXPECT_EQ(TextOf(bag), kMark + "Gain\t1.5\nBank\t2\nGain\t\n");
}

TEST(BagText, TellsVersionAndInfoWhenTheBagHasInfo) {
    CFeatureBag bag;
    bag.SetInfo("oviapi.Camera::A camera");
    bag.Append("Gain", "1.5");
    EXPECT_EQ(TextOf(bag), kMark +
                               "# GenApi persistence file (version 3.0.2)\n"
                               "# oviapi.Camera::A camera\n"
                               "Gain\t1.5\n");
}

TEST(BagText, OfADeviceIsReadBack) {
    Device device(RootXml({"Offset"}) +
                  RegXml{.name = "Offset", .address = 0x20, .common = kStreamable}());
    device.Port().Put<int32_t>(0x20, 7);
    CFeatureBag bag;
    bag.StoreToBag(device.Map());
    const std::string text = TextOf(bag);
    EXPECT_THAT(text, testing::HasSubstr("# Vendor.Model::A camera = Device version = 4.5.6"));
    EXPECT_THAT(Read(text), ElementsAre("Offset=7"));
}

// Reading.

TEST(BagReading, AppendsToWhatTheBagHas) {
    CFeatureBag bag;
    bag.Append("Gain", "1");
    std::istringstream stream(kMark + "Bank\t2\n");
    stream >> bag;
    EXPECT_THAT(EntriesOf(bag), ElementsAre("Gain=1", "Bank=2"));
}

TEST(BagReading, SkipsCommentsOfAnyLengthWhereverTheyStand) {
    const std::string comment = "#" + std::string(5000, 'x') + "\tno value\n";
    EXPECT_THAT(Read(kMark + comment + "#\nGain\t1\n" + comment + comment + "Bank\t2\n" + comment),
                ElementsAre("Gain=1", "Bank=2"));
}

TEST(BagReading, ACommentMayEndTheText) {
    EXPECT_THAT(Read(kMark + "Gain\t1\n# the end"), ElementsAre("Gain=1"));
}

TEST(BagReading, NeedsNoLineFeedAtTheEnd) {
    EXPECT_THAT(Read(kMark + "Gain\t1"), ElementsAre("Gain=1"));
    EXPECT_THAT(Read(kMark + "Gain\t"), ElementsAre("Gain="));
}

TEST(BagReading, EmptyLinesAtTheEndAreNoEntry) {
    EXPECT_THAT(Read(kMark + "Gain\t1\n\n"), ElementsAre("Gain=1"));
    EXPECT_THAT(Read(kMark + "\r\n \n"), IsEmpty());
}

TEST(BagReading, OfTheMarkAloneGivesNothing) {
    EXPECT_THAT(Read(kMark), IsEmpty());
    EXPECT_THAT(Read("{05D8C294-F295-4dfb-9D01-096BD04049F4}"), IsEmpty());
}

TEST(BagReading, AValueMayHaveTabsAndAnyLength) {
    const std::string value = "a\tb#" + std::string(20000, 'v');
    EXPECT_THAT(Read(kMark + "Gain\t" + value + "\nBank\t2\n"),
                ElementsAre("Gain=" + value, "Bank=2"));
}

TEST(BagReading, ALineWithoutATabIsPartOfTheNextName) {
    EXPECT_THAT(Read(kMark + "Gain 1\nBank\t2\nOffset\t3\n"),
                ElementsAre("Gain 1\nBank=2", "Offset=3"));
}

TEST(BagReading, ARestWithoutATabIsAnEntryWithoutValue) {
    EXPECT_THAT(Read(kMark + "Bank\t2\nGain 1\n"), ElementsAre("Bank=2", "Gain 1\n="));
}

TEST(BagReading, OfANameThatIsTooLongTheRestIsValue) {
    const std::string name(1023, 'n');
    EXPECT_THAT(Read(kMark + name + "\t1\n"), ElementsAre(name + "=1"));
    EXPECT_THAT(Read(kMark + name + "mes\t1\nBank\t2\n"), ElementsAre(name + "=mes\t1", "Bank=2"));
}

TEST(BagReading, RefusesAStreamThatHasEnded) {
    std::istringstream stream("");
    stream.get();
    EXPECT_EQ(RefusalOf(stream), "The stream is eof");
}

TEST(BagReading, RefusesTheTextOfABagger) {
    EXPECT_EQ(RefusalOf("# {4709CB3C-7322-4460-84C3-DA11DDA09939}\nGain\t1\n"),
              "The stream has been created using the CFeatureBagger class thus must be restored "
              "using the CFeatureBagger class as well");
}

TEST(BagReading, RefusesATextWithoutTheMarkInItsFirstLine) {
    const std::string refusal =
        "The stream is not a GenApi feature stream since it is missing the magic GUID in the "
        "first line";
    EXPECT_EQ(RefusalOf(""), refusal);
    EXPECT_EQ(RefusalOf("Gain\t1\n"), refusal);
    EXPECT_EQ(RefusalOf("\n" + kMark), refusal);
    EXPECT_EQ(RefusalOf("# {05d8c294-f295-4dfb-9d01-096bd04049f4}\n"), refusal);
    EXPECT_EQ(RefusalOf(std::string(1024, ' ') + kMark), refusal);
}

}  // namespace

}  // namespace EngineTest
