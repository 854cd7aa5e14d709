// What nodes write to the log, for those who read it beside a camera's traffic.

#include <functional>

#include "GenApi/ICommand.h"
#include "GenApi/IFloat.h"
#include "GenApi/IRegister.h"
#include "NodeGraph.h"

namespace EngineTest {

namespace {

using testing::ElementsAre;
using Line = EngineLog::Line;

std::vector<Line> LinesAt(int level, const std::vector<const char*>& texts) {
    std::vector<Line> lines;
    lines.reserve(texts.size());
    for (const char* const text : texts) {
        lines.push_back({level, text});
    }
    return lines;
}

/// A register beneath a node. The log stands before the map is made.
class NodeLog : public testing::Test {
protected:
    EngineLog m_Log;
    XmlNodeMap m_Nodes{
        RegXml{.name = "Reg", .address = 0, .polling = "<PollingTime>10</PollingTime>"}() +
        IntegerXml("Node", "", Element("pValue", "Reg"))};
    INode& m_Node = m_Nodes.Get("Node");
};

}  // namespace

TEST_F(NodeLog, HasACategoryForEachConcernOfANode) {
    for (const char* const concern :
         {"Access", "Value", "Range", "Port", "Cache", "PreProc", "Misc"}) {
        EXPECT_TRUE(m_Log.HasLogger("GenApi.Device." + std::string(concern) + ".Node")) << concern;
    }
}

TEST_F(NodeLog, ShowsAnAccessModeComputedAndThenRemembered) {
    m_Log.Forget();
    m_Node.GetAccessMode();
    m_Node.GetAccessMode();
    EXPECT_THAT(m_Log.Lines("GenApi.Device.Access.Node"),
                testing::ElementsAreArray(LinesAt(
                    LogInfo, {"GetAccessMode...", "InternalIsAccessModeCacheable = 'Yes'",
                              "...GetAccessMode = 'RW' ", "GetAccessMode = 'RW' (from cache)"})));
    EXPECT_EQ(m_Log.Depth(), 0);
}

TEST_F(NodeLog, ShowsAnAccessModeAsItWasImposed) {
    m_Node.ImposeAccessMode(RO);
    m_Log.Forget();
    m_Node.GetAccessMode();
    m_Node.GetAccessMode();
    EXPECT_THAT(
        m_Log.Texts("GenApi.Device.Access.Node"),
        testing::IsSupersetOf({"...GetAccessMode = 'RO' ", "GetAccessMode = 'RO' (from cache)"}));
}

TEST_F(NodeLog, ShowsTheCachingMode) {
    m_Log.Forget();
    m_Node.GetCachingMode();
    m_Node.GetCachingMode();
    EXPECT_THAT(m_Log.Lines("GenApi.Device.Cache.Node"),
                testing::ElementsAreArray(
                    LinesAt(LogDebug, {"GetCachingMode = 'WriteThrough'",
                                       "GetCachingMode = 'WriteThrough' (from cache)"})));
}

TEST_F(NodeLog, ShowsInvalidation) {
    auto& reg = m_Nodes.Get<INodePrivate>("Reg");
    m_Log.Forget();
    reg.SetInvalid(simAll);
    reg.SetInvalid(simOnlyMe);
    reg.SetInvalid(static_cast<ESetInvalidMode>(7));
    EXPECT_THAT(m_Log.Lines("GenApi.Device.Cache.Reg"),
                testing::ElementsAreArray(
                    LinesAt(LogInfo, {"SetInvalid( simAll )", "SetInvalid( simOnlyMe )",
                                      "SetInvalid( <unknown enum> )"})));
    EXPECT_THAT(m_Log.Texts("GenApi.Device.Cache.Node"), ElementsAre("SetInvalid( simOnlyMe )"));
}

TEST_F(NodeLog, ShowsAPollWhenTheTimeIsOver) {
    m_Log.Forget();
    m_Nodes->Poll(4);
    m_Nodes->Poll(8);
    EXPECT_THAT(m_Log.Lines("GenApi.Device.Misc.Reg"),
                ElementsAre(Line{LogDebug,
                                 "Poll : m_ElapsedTime = 12, m_PollingTime = 10, "
                                 "ElapsedTime = 8"}));
}

TEST_F(NodeLog, ShowsTextsReadAndWritten) {
    m_Nodes.Get<IValue>("Node").ToString();
    m_Log.Forget();
    m_Nodes.Get<IValue>("Node").FromString("5");
    m_Nodes.Get<IValue>("Node").ToString();
    EXPECT_THAT(m_Log.Texts("GenApi.Device.Value.Node"),
                ElementsAre("FromString = '5' ", "SetValue( 5 )...", "...SetValue", "...FromString",
                            "ToString...", "GetValue = 5  (from cache)", "...ToString = 5"));
    EXPECT_EQ(m_Log.Depth(), 0);
}

TEST_F(NodeLog, TakesTheIndentOfAFailedCallBack) {
    auto& node = m_Nodes.Get<IInteger>("Node");
    auto& reg = m_Nodes.Get<IRegister>("Reg");
    uint8_t bytes[4] = {};
    const std::pair<const char*, std::function<void()>> calls[] = {
        {"GetValue", [&] { node.GetValue(false, true); }},
        {"SetValue", [&] { node.SetValue(5); }},
        {"ToString", [&] { node.ToString(false, true); }},
        {"FromString", [&] { node.FromString("5"); }},
        {"FromString of no number", [&] { node.FromString("five"); }},
        {"Get", [&] { reg.Get(bytes, 4, false, true); }},
        {"Set", [&] { reg.Set(bytes, 4); }},
    };
    for (const auto& [name, call] : calls) {
        m_Nodes.Port().FailAccess(1);
        EXPECT_ANY_THROW(call()) << name;
        EXPECT_EQ(m_Log.Depth(), 0) << name;
        m_Nodes->InvalidateNodes();
    }
}

TEST_F(NodeLog, TakesTheIndentOfARefusedCallBack) {
    XmlNodeMap nodes(
        IntegerXml("Away", "", Element("Value", "0")) +
        IntegerXml("Absent", Element("pIsAvailable", "Away")) +
        "<Float Name=\"Steps\"><pIsAvailable>Away</pIsAvailable><Value>1</Value></Float>"
        "<Float Name=\"Smooth\"><Value>1</Value></Float>"
        "<Command Name=\"Start\"><pIsAvailable>Away</pIsAvailable><Value>1</Value>"
        "<CommandValue>1</CommandValue></Command>");
    auto& absent = nodes.Get<IInteger>("Absent");
    auto& steps = nodes.Get<IFloat>("Steps");
    const std::pair<const char*, std::function<void()>> calls[] = {
        {"GetMin", [&] { absent.GetMin(); }},
        {"GetMax", [&] { steps.GetMax(); }},
        {"GetInc", [&] { nodes.Get<IFloat>("Smooth").GetInc(); }},
        {"SetValue", [&] { absent.SetValue(5); }},
        {"ToString", [&] { absent.ToString(); }},
        {"Execute", [&] { nodes.Get<ICommand>("Start").Execute(); }},
    };
    for (const auto& [name, call] : calls) {
        EXPECT_ANY_THROW(call()) << name;
        EXPECT_EQ(m_Log.Depth(), 0) << name;
    }
}

TEST_F(NodeLog, TakesTheIndentOfAFailedAccessModeBack) {
    XmlNodeMap nodes(RegXml{.name = "Reg", .address = 0, .caching = "NoCache"}() +
                     IntegerXml("Node", Element("pIsLocked", "Reg"), "<Value>1</Value>"));
    auto& node = nodes.Get<IInteger>("Node");
    nodes.Port().FailAccess(1);
    EXPECT_ANY_THROW(nodes.Get("Node").GetAccessMode());
    EXPECT_EQ(m_Log.Depth(), 0);
    EXPECT_EQ(node.GetValue(), 1);
    EXPECT_EQ(m_Log.Depth(), 0);
}

TEST(MapLog, TellsOfANewMap) {
    EngineLog log;
    XmlNodeMap nodes(IntegerXml("Node"));
    EXPECT_THAT(log.Lines("GenApi.Device.Misc._RegisterDescription"),
                ElementsAre(Line{LogInfo, "Instantiated NodeMap: Vendor = Vendor, Model = Model"}));
}

TEST(MapLog, IsSilentWhenItsCategoriesDoNotExist) {
    EngineLog log;
    log.SetExists(false);
    XmlNodeMap nodes(IntegerXml("Node"));
    nodes.Get<IInteger>("Node").GetValue();
    EXPECT_EQ(log.CountLoggers(), 0U);
}

TEST(LogLevel, KeepsLesserLinesOut) {
    EngineLog log(LogError);
    XmlNodeMap nodes(RegXml{.name = "Node", .address = 0}());
    nodes.Get<IInteger>("Node").SetValue(5);
    nodes.Get<IInteger>("Node").GetValue();
    for (const char* const concern : {"Access", "Value", "Cache", "Misc"}) {
        EXPECT_TRUE(log.Lines("GenApi.Device." + std::string(concern) + ".Node").empty());
    }
}

}  // namespace EngineTest
