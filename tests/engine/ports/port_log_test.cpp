// What ports write to the log: the very bytes of a camera's traffic.

#include "GenApi/IPort.h"
#include "GenApi/IPortConstruct.h"
#include "GenApi/IRegister.h"
#include "NodeGraph.h"

namespace EngineTest {

namespace {

using testing::ElementsAre;
using Line = EngineLog::Line;

class PortLog : public testing::Test {
protected:
    PortLog() { m_Log.Forget(); }
    std::vector<Line> Lines() const { return m_Log.Lines("GenApi.Device.Port.Device"); }

    EngineLog m_Log;
    XmlNodeMap m_Nodes{RegXml{.name = "Reg", .address = 0x10}()};
    IPortConstruct& m_Port = m_Nodes.Get<IPortConstruct>("Device");
};

TEST_F(PortLog, ShowsTheBytesThatAreRead) {
    m_Nodes.Port().PutBytes(0x10, {0x01, 0xAB, 0xCD, 0x00});
    m_Nodes.Get<IInteger>("Reg").GetValue();
    EXPECT_THAT(Lines(),
                ElementsAre(Line{LogDebug, "Read( 0x0000000000000010, 4 ) = 0x01ABCD00 )"}));
}

TEST_F(PortLog, ShowsTheBytesThatAreWritten) {
    m_Nodes.Get<IInteger>("Reg").SetValue(0x1F);
    EXPECT_THAT(Lines(), ElementsAre(Line{LogDebug, "Write( 0x0000000000000010, 4, 0x1F000000 )"}));
}

TEST_F(PortLog, IsSilentWhenTheCacheAnswers) {
    m_Nodes.Get<IInteger>("Reg").GetValue();
    m_Log.Forget();
    m_Nodes.Get<IInteger>("Reg").GetValue();
    EXPECT_TRUE(Lines().empty());
}

TEST_F(PortLog, TellsOfAWriteBeforeItIsTriedAndOfAReadOnceItIsDone) {
    m_Nodes.Port().FailAccess(1);
    EXPECT_THROW(m_Nodes.Get<IInteger>("Reg").SetValue(1), TimeoutException);
    EXPECT_EQ(Lines().size(), 1U);
    m_Log.Forget();
    m_Nodes.Port().FailAccess(1);
    EXPECT_THROW(m_Nodes.Get<IInteger>("Reg").GetValue(), TimeoutException);
    EXPECT_TRUE(Lines().empty());
}

TEST_F(PortLog, CutsLongTraffic) {
    uint8_t bytes[200] = {};
    m_Port.Read(bytes, 0, sizeof(bytes));
    m_Port.Write(bytes, 0, sizeof(bytes));
    const std::string shown(256, '0');
    EXPECT_THAT(Lines(),
                ElementsAre(Line{LogDebug, "Read( 0x0000000000000000, 200 ) = 0x" + shown + " )"},
                            Line{LogDebug, "Write( 0x0000000000000000, 200, 0x" + shown + " )"}));
}

TEST_F(PortLog, TellsOfATransport) {
    TestPort other;
    m_Port.SetPortImpl(&other);
    EXPECT_THAT(Lines(), ElementsAre(Line{LogInfo, "SetPortImpl"}));
}

TEST_F(PortLog, ShowsWhatRegistersAreGivenAndGive) {
    XmlNodeMap nodes(
        "<Register Name=\"Raw\"><Address>0</Address><Length>2</Length>"
        "<AccessMode>RW</AccessMode><pPort>Device</pPort></Register>");
    m_Log.Forget();
    uint8_t bytes[] = {0xAB, 0x01};
    nodes.Get<IRegister>("Raw").Set(bytes, sizeof(bytes));
    nodes.Get<IRegister>("Raw").Get(bytes, sizeof(bytes));
    EXPECT_THAT(m_Log.Texts("GenApi.Device.Value.Raw"),
                ElementsAre("Set( 2, 0xab01 )...", "...Set", "Get...", "...Get( 2 ) = 0xab01"));
    EXPECT_EQ(m_Log.Depth(), 0);
}

}  // namespace

}  // namespace EngineTest
