// What is refused in a text of settings, and in which words.

#include "PersistenceTest.h"
#include "TransportTest.h"

namespace OVTLClass {

namespace {

const std::string kFormat = "Invalid feature file format";
const std::string kNoVersion = "Can not find FileVersion";
const std::string kNoModel = "Can not find DeviceModelName";

std::string WithHeader(const std::string& header) {
    return TextWith("", "", "", header);
}
std::string VersionRefusal(const std::string& version) {
    return "The file with version " + version +
           " is not supported. Please select a file with version smaller than or equal to 1.0";
}
std::string ModelRefusal(const std::string& model) {
    return "The device model(" + model +
           ") in file is not the same as that in the device(Camera One)";
}

/// A text that is refused as a whole.
struct BadText {
    const char* name;
    std::string text;
    std::string refusal;
};

const std::string kParts = kRemoteBanner + kMark + kLocalBanner + kMark + kStreamBanner + kMark;

const BadText kBadTexts[] = {
    // The number of parts.
    {"Empty", "", kFormat},
    {"Blanks", " \r\n \n", kFormat},
    {"HeaderAlone", kHeader, kFormat},
    {"NoHeader", kParts, kFormat},
    {"OnlyBlanksBeforeTheFirstBanner", "\r\n " + kParts, kFormat},
    {"TwoParts", kHeader + kRemoteBanner + kMark + kLocalBanner + kMark, kFormat},
    {"FiveParts", kHeader + kParts + kStreamBanner + kMark, kFormat},
    {"AnEmptyPart", kHeader + kRemoteBanner + kLocalBanner + kMark + kStreamBanner + kMark,
     kFormat},
    {"ABlankPart",
     kHeader + kRemoteBanner + " \r\n\n" + kLocalBanner + kMark + kStreamBanner + kMark, kFormat},
    {"ABlankLastPart",
     kHeader + kRemoteBanner + kMark + kLocalBanner + kMark + kStreamBanner + " \n\r\n", kFormat},
    {"ABannerInAValue", TextWith("Offset\t</>5\n"), kFormat},
    // A banner without an end.
    {"ABannerWithoutEndInTheFirstLine", "</banner", "Failed to parse the 1th line"},
    {"ABannerWithoutEndBehindTheHeader", kHeader + "</" + kHyphens, "Failed to parse the 3th line"},
    {"ALastBannerWithoutEnd",
     kHeader + kRemoteBanner + kMark + kLocalBanner + kMark + "\n</Stream\n\n",
     "Failed to parse the 10th line"},
    // The version.
    {"NoVersion", WithHeader("DeviceModelName: Camera One\n"), kNoVersion},
    {"AVersionInAnotherPart", TextWith("FileVersion: 1.0\n", "", "", "Header\n"), kNoVersion},
    {"AVersionInOtherLetters", WithHeader("fileversion: 1.0\n"), kNoVersion},
    {"AVersionBehindALetter", WithHeader("FileVersions: 1.0\n"), kNoVersion},
    {"AVersionBehindAnEqualsSign", WithHeader("FileVersion=1.0\n"), kNoVersion},
    {"AVersionKeyBeforeALineEnd", WithHeader("FileVersion\n: 1.0\n"), kNoVersion},
    {"AVersionKeyAtTheEnd", WithHeader("FileVersion"), kNoVersion},
    {"NothingBehindTheVersionKey", WithHeader("FileVersion: "), kNoVersion},
    {"AnEmptyVersion", WithHeader("FileVersion: \nDeviceModelName: Camera One\n"), kNoVersion},
    {"ANewerVersion", WithHeader("FileVersion: 1.1\n"), VersionRefusal("1.1")},
    {"AnOlderVersion", WithHeader("FileVersion: 0.9\n"), VersionRefusal("0.9")},
    {"AnEqualNumber", WithHeader("FileVersion: 1.00\n"), VersionRefusal("1.00")},
    {"AShorterVersion", WithHeader("FileVersion: 1\n"), VersionRefusal("1")},
    {"AVersionWithABlankBehind", WithHeader("FileVersion: 1.0 \n"), VersionRefusal("1.0 ")},
    {"AVersionWithACarriageReturn", WithHeader("FileVersion: 1.0\r\nDeviceModelName: X\r\n"),
     VersionRefusal("1.0\r")},
    {"TheFirstOfTwoVersions", WithHeader("FileVersion: 2.0\nFileVersion: 1.0\n"),
     VersionRefusal("2.0")},
    // The model.
    {"NoModel", WithHeader("FileVersion: 1.0\n"), kNoModel},
    {"AnEmptyModel", WithHeader("FileVersion: 1.0\nDeviceModelName:\n"), kNoModel},
    {"NothingBehindTheModelKey", WithHeader("FileVersion: 1.0\nDeviceModelName \t:"), kNoModel},
    {"AnotherModel", WithHeader("FileVersion: 1.0\nDeviceModelName: Camera Two\n"),
     ModelRefusal("Camera Two")},
    {"AModelInOtherLetters", WithHeader("FileVersion: 1.0\nDeviceModelName: camera one\n"),
     ModelRefusal("camera one")},
    {"AModelUpToATab", WithHeader("FileVersion: 1.0\nDeviceModelName: Camera\tOne\n"),
     ModelRefusal("Camera")},
    {"AModelWithACarriageReturn", WithHeader("FileVersion: 1.0\nDeviceModelName: Camera One\r\n"),
     ModelRefusal("Camera One\r")},
    // Which of two faults is reported.
    {"VersionBeforeModel", WithHeader("DeviceModelName: Camera Two\nFileVersion: 1.1\n"),
     VersionRefusal("1.1")},
    {"PartsBeforeVersion", "FileVersion: 1.1\n" + kRemoteBanner, kFormat},
    {"BannerBeforeParts", "FileVersion: 1.1\n</", "Failed to parse the 2th line"},
};

class BadPersistenceText : public PersistenceTest, public testing::WithParamInterface<BadText> {};

TEST_P(BadPersistenceText, IsRefusedAndNothingIsWritten) {
    remote.port.Put<int32_t>(remote_camera::kOffset, 7);
    EXPECT_EQ(RefusalOf(GetParam().text), GetParam().refusal);
    EXPECT_EQ(remote.port.GetWrites(), 0U);
}

INSTANTIATE_TEST_SUITE_P(All, BadPersistenceText, testing::ValuesIn(kBadTexts),
                         [](const auto& test) { return std::string(test.param.name); });

/// A text that looks strange and is taken.
struct OddText {
    const char* name;
    std::string text;
};

const OddText kOddTexts[] = {
    {"BlanksAndTabsBehindKeys", WithHeader("FileVersion \t: 1.0\nDeviceModelName\t:: Camera One")},
    {"NoBlankBehindKeys", WithHeader("FileVersion:1.0\nDeviceModelName:Camera One\n")},
    {"AVersionUpToATab", WithHeader("FileVersion: 1.0\t2\nDeviceModelName: Camera One\n")},
    {"KeysInTheOtherOrder", WithHeader("DeviceModelName: Camera One\nFileVersion: 1.0\n")},
    {"KeysBehindOtherText", WithHeader("MyFileVersion: 1.0\n# DeviceModelName: Camera One")},
    {"OtherTitles", kHeader + "</a>" + kMark + "</b>" + kMark + "</c>" + kMark},
    {"NoLineEndBehindBanners", kHeader + "</>" + kMark + "</>" + kMark + "</>" + kMark},
    {"ABannerOverManyLines", kHeader + "</\n\n>" + kMark + "</>" + kMark + "</>" + kMark},
    {"BlanksAroundParts",
     "\r\n " + kHeader + "</> \r\n" + kMark + " \n</>\n\n" + kMark + "</>  " + kMark + "\n\r\n"},
};

class OddPersistenceText : public PersistenceTest, public testing::WithParamInterface<OddText> {};

TEST_P(OddPersistenceText, IsTaken) {
    EXPECT_THAT(Import(GetParam().text), testing::IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(All, OddPersistenceText, testing::ValuesIn(kOddTexts),
                         [](const auto& test) { return std::string(test.param.name); });

// Parts that the engine refuses.

constexpr const char* kNoMark =
    "The stream is not a GenApi feature stream since it is missing the magic GUID in the first "
    "line";

TEST_F(PersistenceTest, APartWithoutItsMarkIsRefused) {
    EXPECT_UNEXPECTED(-1, kNoMark, Import(kHeader + "</>Offset\t1\n</>" + kMark + "</>" + kMark));
}

TEST_F(PersistenceTest, APartOfSeveralBagsIsRefused) {
    EXPECT_UNEXPECTED(-1,
                      "The stream has been created using the CFeatureBagger class thus must be "
                      "restored using the CFeatureBagger class as well",
                      Import(kHeader + "</># {4709CB3C-7322-4460-84C3-DA11DDA09939}\n</>" + kMark +
                             "</>" + kMark));
}

TEST_F(PersistenceTest, PartsBeforeARefusedOneHaveBeenLoaded) {
    EXPECT_UNEXPECTED(
        -1, kNoMark,
        Import(kHeader + "</>" + kMark + "Offset\t5\n</>Delay\t6\n</>" + kMark + "Depth\t7\n"));
    EXPECT_EQ(remote.At(remote_camera::kOffset), 5);
    EXPECT_EQ(local.At(0x10), 0);
    EXPECT_EQ(stream.At(0x10), 0);
}

}  // namespace

}  // namespace OVTLClass
