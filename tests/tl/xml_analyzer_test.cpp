// From a port to live nodes that are connected to it.

#include <array>
#include <thread>

#include "GenApi/IInteger.h"
#include "SystemPortTest.h"
#include "TLClassFeature/FeatureControl.h"
#include "TLClassXML/Port.h"
#include "TLClassXML/XMLAnalyzer.h"
#include "TLClassXML/XMLLoadAgency.h"

namespace OVTLClass {
namespace {

class Analyzer : public SystemPortTest {
protected:
    void Load() { analyzer.LoadXMLFromPortHandle(Open()); }
    int64_t Number() { return CFeatureControl(analyzer.GetNodeMapRef()).DoGetInt("Number"); }

    /// Expects that loading fails as for a text that is no description.
    void ExpectParseFailure() {
        const auto raised = Raised<CUnexpectedError>([&] { Load(); });
        EXPECT_EQ(raised.GetStatus(), -1);
        EXPECT_EQ(raised.GetFunction(), "LoadXMLFromPortHandle");
        EXPECT_THAT(raised.GetDescription(),
                    ::testing::MatchesRegex("\\{__ThrowExceptionFromTryExcept:line\\[[0-9]+\\]\\}"
                                            "\\{CNodeMapRef::_LoadXMLFromString failed\\}"));
    }

    CXMLAnalyzer analyzer{lib};
};

TEST_F(Analyzer, IsEmptyAtFirst) {
    EXPECT_EQ(analyzer.GetXML(), "");
    EXPECT_EQ(analyzer.GetNodeMapRef(), nullptr);
}

TEST_F(Analyzer, HoldsTheTextAndItsNodes) {
    SetFile("Description.xml", SmallDescription(5));
    Load();
    EXPECT_EQ(analyzer.GetXML(), SmallDescription(5));
    EXPECT_EQ(Number(), 5);
    EXPECT_EQ(analyzer.GetNodeMapRef()->_GetDeviceName(), "Device");
}

TEST_F(Analyzer, HoldsTheUnpackedTextOfAnArchive) {
    SetFile("Description.zip", ZipEntry(SmallDescription(5)).Build());
    Load();
    EXPECT_EQ(analyzer.GetXML(), SmallDescription(5));
    EXPECT_EQ(Number(), 5);
}

TEST_F(Analyzer, TakesDescriptionsOfBothVersions) {
    for (const int minor : {0, 1}) {
        SetFile("Description.xml", SmallDescription(minor, minor));
        Load();
        EXPECT_EQ(Number(), minor);
    }
}

TEST_F(Analyzer, ReadsThroughThePort) {
    Load();
    EXPECT_EQ(CFeatureControl(analyzer.GetNodeMapRef()).DoGetString("TLID"), "OvTest_Custom");
}

TEST_F(Analyzer, LoadedAgainHoldsTheSecondDescriptionOnly) {
    SetFile("Description.xml", SmallDescription(5));
    Load();
    const size_t readsBefore = producer.CallCount("GCReadPort");
    producer.SetDescription("System", nullptr, nullptr, 0);
    Load();
    EXPECT_FALSE(CFeatureControl(analyzer.GetNodeMapRef()).DoExist("Number"));
    EXPECT_EQ(CFeatureControl(analyzer.GetNodeMapRef()).DoGetString("TLID"), "OvTest_Custom");
    EXPECT_GT(producer.CallCount("GCReadPort"), readsBefore + 1);
}

TEST_F(Analyzer, IsEmptyAfterUnloading) {
    Load();
    analyzer.UnloadXML();
    EXPECT_EQ(analyzer.GetXML(), "");
    EXPECT_EQ(analyzer.GetNodeMapRef(), nullptr);
    analyzer.UnloadXML();
    Load();
    EXPECT_NE(analyzer.GetNodeMapRef(), nullptr);
}

TEST_F(Analyzer, AsksForThePortsNameAfterMakingTheNodes) {
    Open();
    producer.ClearLog();
    analyzer.LoadXMLFromPortHandle(port);
    EXPECT_THAT(producer.Log(),
                ::testing::ElementsAre("GCGetNumPortURLs", "GCGetPortURLInfo", "GCGetPortURLInfo",
                                       "GCReadPort", "GCGetPortInfo", "GCGetPortInfo"));
}

TEST_F(Analyzer, TakesTheNextUrlWhereOneCannotBeUsed) {
    for (const char* const unusable : {"http://www.example.com/Name.xml", "File:///NONE/SUCH.XML?",
                                       "Local:Name.txt;10000;10", "Local:Name.xml;7FFF0000;10",
                                       "Local:Name.xml;10000;10000001", "Local:Name.xml;10000;3"}) {
        SetFile("Description.xml", SmallDescription(5));
        char size[20];
        std::snprintf(size, sizeof size, "%zx", SmallDescription(5).size());
        SetUrl(std::string(unusable) + "\nLocal:Description.xml;10000;" + size);
        Load();
        EXPECT_EQ(Number(), 5) << unusable;
    }
}

TEST_F(Analyzer, RaisesTheFailureOfTheFirstUrlWhereNoneCanBeUsed) {
    SetUrl("Local:First.txt;1;2\nLocal:Second.txt;1;2\nhttp://third");
    EXPECT_UNEXPECTED(-1, "XML format error: Local:First.txt;1;2", Load());
    EXPECT_EQ(analyzer.GetNodeMapRef(), nullptr);
}

TEST_F(Analyzer, AsksForSixteenUrlsAtTheMost) {
    std::string urls;
    for (int i = 0; i < 100; ++i) {
        urls += "http://www.example.com/Name.xml\n";
    }
    SetUrl(urls);
    Open();
    producer.ClearLog();
    EXPECT_THROW(analyzer.LoadXMLFromPortHandle(port), CUnexpectedError);
    EXPECT_EQ(producer.CallCount("GCGetPortURLInfo"), 2U * 16U)
        << "size and text of each of the first 16";
}

TEST_F(Analyzer, AsksALostDeviceForNoOtherUrl) {
    SetUrl("Local:First.xml;10000;2\nLocal:Second.xml;10000;2");
    Open();
    producer.FailCall("GCReadPort", 1, GenTL::GC_ERR_CUSTOM_ID);
    EXPECT_RAISES(CDeviceOfflineError, "Planned failure of GCReadPort",
                  analyzer.LoadXMLFromPortHandle(port));
    EXPECT_EQ(producer.CallCount("GCReadPort"), 1U)
        << "a lost device may take seconds to refuse each";
}

/// What the first version of the standard lacks.
class OldAnalyzer : public Analyzer, public ::testing::WithParamInterface<int32_t> {};

TEST_P(OldAnalyzer, TakesTheFirstOfTheUrlsThatOneCallTells) {
    SetFile("Description.xml", SmallDescription(5));
    Open();
    producer.FailCall("GCGetNumPortURLs", 1, GetParam());
    producer.FailCall("GCGetPortURLInfo", 1, GetParam());
    producer.ClearLog();
    analyzer.LoadXMLFromPortHandle(port);
    EXPECT_EQ(Number(), 5);
    EXPECT_EQ(producer.CallCount("GCGetPortURL"), 2U) << "once for the size and once for the text";
}

INSTANTIATE_TEST_SUITE_P(Status, OldAnalyzer,
                         ::testing::Values(-1, int32_t{GenTL::GC_ERR_NOT_IMPLEMENTED}));

class NoDescription : public Analyzer, public ::testing::WithParamInterface<const char*> {};

TEST_P(NoDescription, FailsToParse) {
    SetFile("Description.xml", GetParam());
    ExpectParseFailure();
}

INSTANTIATE_TEST_SUITE_P(Text, NoDescription,
                         ::testing::Values("?", "<a/>", "no description",
                                           "<?xml version=\"1.0\"?><RegisterDescription>"));

TEST_F(Analyzer, FailsToParseTheTextOfABrokenArchive) {
    ZipEntry entry(SmallDescription(5));
    entry.packedSize = 0;
    entry.size = 0;
    SetFile("Description.zip", entry.Build());
    ExpectParseFailure();
    EXPECT_EQ(analyzer.GetXML(), "Unable to uncompress ZIP file");
}

TEST_F(Analyzer, RaisesForAnArchiveThatEndsInItsHeader) {
    SetFile("Description.zip", "PK\3\4");
    EXPECT_UNEXPECTED(-1, "Uncompress zip file failed", Load());
}

TEST_F(Analyzer, RaisesWhenTheDescriptionHasNoPortOfThatName) {
    SetFile("Description.xml", EngineTest::XmlNodeMap::Describe("<Port Name=\"Other\"/>"));
    EXPECT_UNEXPECTED(-1, "CNodeMapRef::_connect failed", Load());
}

TEST_F(Analyzer, RaisesWhenThePortHasNoName) {
    producer.FailCommand("GCGetPortInfo", GenTL::PORT_INFO_PORTNAME, GenTL::GC_ERR_NOT_AVAILABLE);
    EXPECT_UNEXPECTED(GenTL::GC_ERR_NOT_AVAILABLE, "Planned failure of GCGetPortInfo", Load());
}

TEST_F(Analyzer, TakesAPortNameThatIsShorterThanTold) {
    producer.LieAboutSize("GCGetPortInfo", 30);
    Load();
    EXPECT_EQ(CFeatureControl(analyzer.GetNodeMapRef()).DoGetString("TLID"), "OvTest_Custom");
}

TEST_F(Analyzer, CanBeLoadedAfterAFailure) {
    SetFile("Description.xml", "<a/>");
    ExpectParseFailure();
    SetFile("Description.xml", SmallDescription(5));
    Load();
    EXPECT_EQ(Number(), 5);
}

TEST_F(Analyzer, IsUnloadedByItsGuardUnlessCommitted) {
    { const CXMLLoadAgency guard(analyzer, Open()); }
    EXPECT_EQ(analyzer.GetNodeMapRef(), nullptr);
    CXMLLoadAgency(analyzer, port).Commit();
    EXPECT_NE(analyzer.GetNodeMapRef(), nullptr);
}

TEST_F(Analyzer, IsUnloadedByItsGuardWhenLoadingFails) {
    SetFile("Description.xml", EngineTest::XmlNodeMap::Describe("<Port Name=\"Other\"/>"));
    EXPECT_THROW(CXMLLoadAgency(analyzer, Open()), CUnexpectedError);
    EXPECT_EQ(analyzer.GetNodeMapRef(), nullptr);
    EXPECT_EQ(analyzer.GetXML(), "");
}

TEST_F(Analyzer, LoadsBesideOthers) {
    Open();
    const auto loadOften = [this] {
        for (int i = 0; i < 3; ++i) {
            CXMLAnalyzer own(lib);
            own.LoadXMLFromPortHandle(port);
            EXPECT_EQ(CFeatureControl(own.GetNodeMapRef()).DoGetString("TLID"), "OvTest_Custom");
        }
    };
    std::thread other(loadOften);
    loadOften();
    other.join();
}

using PortOfAModule = SystemPortTest;

TEST_F(PortOfAModule, PromisesReadingAndWriting) {
    CPort reader(lib, Open());
    EXPECT_EQ(reader.GetAccessMode(), 4);
}

TEST_F(PortOfAModule, ReadsTheProducersRegisters) {
    CPort reader(lib, Open());
    std::array<char, 128> id{};
    reader.Read(id.data(), 0, id.size());
    EXPECT_STREQ(id.data(), "OvTest_Custom");
}

TEST_F(PortOfAModule, RaisesWhatTheProducerRefuses) {
    CPort writer(lib, Open());
    const int64_t number = 0;
    producer.FailCall("GCWritePort", 1, GenTL::GC_ERR_ACCESS_DENIED);
    EXPECT_RAISES(CInvalidAccessError, "Access denied:Planned failure of GCWritePort",
                  writer.Write(&number, 0x708, sizeof number));
    producer.FailCall("GCReadPort", 1, GenTL::GC_ERR_CUSTOM_ID);
    int64_t back = 0;
    EXPECT_RAISES(CDeviceOfflineError, "Planned failure of GCReadPort",
                  writer.Read(&back, 0x708, sizeof back));
}

TEST_F(PortOfAModule, RaisesWhereAProducerMovesFewerBytesThanAskedFor) {
    CPort access(lib, Open());
    int64_t number = 0;
    lib.TLUpdateInterfaceList(port, nullptr, 0);
    producer.LieAboutSize("GCReadPort", -3);
    EXPECT_UNEXPECTED(-1, "Port returned 5 of 8 bytes", access.Read(&number, 0x708, sizeof number));
    producer.LieAboutSize("GCWritePort", -8);
    EXPECT_UNEXPECTED(-1, "Port returned 0 of 8 bytes",
                      access.Write(&number, 0x708, sizeof number));
}

}  // namespace
}  // namespace OVTLClass
