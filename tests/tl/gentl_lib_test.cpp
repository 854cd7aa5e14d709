// Loading a producer and binding its calls.

#include "TLClassLoadTL/GenTLLib.h"
#include "TLClassLoadTL/OvLibrary.h"
#include "TransportTest.h"

namespace OVTLClass {
namespace {

#define OV_TEST_NAME(name, parameters) #name,
const std::vector<std::string> kAllNames = {OV_GENTL_FUNCTIONS(OV_TEST_NAME)};
#undef OV_TEST_NAME

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;

TEST(Library, HoldsOneFileAtATime) {
    COvLibrary library;
    EXPECT_TRUE(library.Load(Staged("Empty.cti")));
    EXPECT_FALSE(library.Load(Staged("Empty.cti")));
    EXPECT_TRUE(library.Unload());
    EXPECT_TRUE(library.Load(Staged("Empty.cti")));
    EXPECT_TRUE(library.Unload());
}

TEST(Library, UnloadOfNothingSucceeds) {
    COvLibrary library;
    EXPECT_TRUE(library.Unload());
}

TEST(Library, ResolvesNothingWhileNothingIsLoaded) {
    const LogCapture log;
    const COvLibrary library;
    EXPECT_EQ(library.Resolve("GCInitLib"), nullptr);
    EXPECT_THAT(log.Lines(), IsEmpty());
}

TEST(Library, LogsANameThatIsNotExported) {
    const LogCapture log;
    COvLibrary library;
    ASSERT_TRUE(library.Load(Staged("Empty.cti")));
    EXPECT_EQ(library.Resolve("GCInitLib"), nullptr);
    EXPECT_THAT(log.Lines(), ElementsAre("Failed to get ProcAddress GCInitLib", ""));
    library.Unload();
}

TEST(ProducerLibrary, ThatIsMissingIsNamedInTheFailure) {
    EXPECT_UNEXPECTED(-1, "Failed to load file /nowhere/OvGVTL.cti\n",
                      CGenTLLib("/nowhere/OvGVTL.cti"));
}

TEST(ProducerLibrary, ThatIsNoLibraryIsNamedInTheFailure) {
    const std::string path = Staged("Broken.cti");
    EXPECT_UNEXPECTED(-1, "Failed to load file " + path + "\n", const CGenTLLib lib(path));
}

TEST(ProducerLibrary, WithoutAnyCallLoadsAndLogsEachNameOnceInOrder) {
    const LogCapture log;
    const CGenTLLib lib(Staged("Empty.cti"));
    std::vector<std::string> expected;
    for (const std::string& name : kAllNames) {
        expected.push_back("Failed to get ProcAddress " + name);
        expected.emplace_back();
    }
    EXPECT_EQ(kAllNames.size(), 55U);
    EXPECT_THAT(log.Lines(), ElementsAreArray(expected));
}

TEST(ProducerLibrary, AnswersMinusOneForEachCallThatIsMissing) {
    const CGenTLLib lib(Staged("Empty.cti"));
    void* handle = nullptr;
    size_t size = 0;
    EXPECT_EQ(lib.GCInitLib(), -1);
    EXPECT_EQ(lib.TLOpen(&handle), -1);
    EXPECT_EQ(lib.GCReadPort(nullptr, 0, nullptr, &size), -1);
    EXPECT_EQ(lib.DSQueueBuffer(nullptr, nullptr), -1);
    EXPECT_EQ(lib.IFForceIp(nullptr, "", "", "", ""), -1);
    EXPECT_EQ(lib.IFResetDevice(nullptr, "", 0), -1);
    EXPECT_EQ(lib.GetFunction("GCReadPort"), nullptr);
}

TEST(ProducerLibrary, WithoutTheExtensionsLoadsAndLacksOnlyThem) {
    const LogCapture log;
    const CGenTLLib lib(Staged("Plain.cti"));
    EXPECT_THAT(log.Lines(), ElementsAre("Failed to get ProcAddress GCGetNumPortURLs", "",
                                         "Failed to get ProcAddress GCGetPortURLInfo", "",
                                         "Failed to get ProcAddress GCReadPortStacked", "",
                                         "Failed to get ProcAddress GCWritePortStacked", "",
                                         "Failed to get ProcAddress DSGetBufferChunkData", "",
                                         "Failed to get ProcAddress IFIpConfiguration", "",
                                         "Failed to get ProcAddress IFForceIp", "",
                                         "Failed to get ProcAddress IFResetDevice", ""));
    EXPECT_EQ(lib.GCInitLib(), 0);
    EXPECT_EQ(lib.GCCloseLib(), 0);
    EXPECT_EQ(lib.DSGetBufferChunkData(nullptr, nullptr, nullptr, nullptr), -1);
}

class BorrowedFunction : public ::testing::TestWithParam<const char*> {};

TEST_P(BorrowedFunction, IsTheCallOfTheProducer) {
    const CGenTLLib lib(Staged("KwTL.cti"));
    const TestProducer producer(Staged("KwTL.cti"));
    EXPECT_EQ(lib.GetFunction(GetParam()), producer.Function<void*>(GetParam()));
    EXPECT_NE(lib.GetFunction(GetParam()), nullptr);
}

INSTANTIATE_TEST_SUITE_P(All, BorrowedFunction,
                         ::testing::Values("GCReadPort", "GCWritePort", "GCReadPortStacked",
                                           "GCWritePortStacked", "GCGetLastError"));

TEST(ProducerLibrary, LendsNoOtherCallThoughItHasIt) {
    const CGenTLLib lib(Staged("KwTL.cti"));
    for (const char* const name : {"GCInitLib", "TLOpen", "", "gcreadport", "NoSuchCall"}) {
        EXPECT_EQ(lib.GetFunction(name), nullptr) << name;
    }
}

TEST(ProducerLibrary, NeitherStartsNorClosesTheProducerByItself) {
    TestProducer producer(Staged("KwTL.cti"));
    producer.Reset();
    { const CGenTLLib lib(Staged("KwTL.cti")); }
    EXPECT_THAT(producer.Log(), IsEmpty());
}

TEST(ProducerLibrary, IsUnloadedWithItsLastOwner) {
    const std::string path = Staged("OvGVTL.cti");
    const auto isLoaded = [&path] {
        void* const handle = dlopen(path.c_str(), RTLD_LAZY | RTLD_NOLOAD);
        return handle != nullptr && dlclose(handle) == 0;
    };
    auto lib = std::make_shared<const CGenTLLib>(path);
    auto other = lib;
    lib.reset();
    EXPECT_TRUE(isLoaded());
    other.reset();
    EXPECT_FALSE(isLoaded());
}

}  // namespace
}  // namespace OVTLClass
