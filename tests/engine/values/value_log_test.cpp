// What the typed faces write to the log, for those who read it side by side
// with a camera's traffic.

#include <set>

#include "Base/Log.h"
#include "ValueGraph.h"

namespace ValueTest {

namespace {

/// Stands behind the log and keeps what one node writes in one category.
class LogRecorder {
public:
    LogRecorder() {
        static const CLogBackend kBackend = {
            [](const char*) { return true; },
            [](const char* name) -> void* {
                return const_cast<std::string*>(&*s_Names.insert(name).first);
            },
            [](void*, int level) { return level <= LogInfo; },
            [](void* logger, int, const char* line) {
                if (*static_cast<std::string*>(logger) == s_Wanted) {
                    s_Lines.emplace_back(line);
                }
            },
            [](const char*) { ++s_Depth; },
            [] { --s_Depth; },
            [](int) {},
            [](const char*) {},
            [](const char*) {},
        };
        CLog::SetBackend(&kBackend);
    }
    ~LogRecorder() { CLog::SetBackend(nullptr); }
    LogRecorder(const LogRecorder&) = delete;
    LogRecorder& operator=(const LogRecorder&) = delete;

    static void Want(const char* category) {
        s_Wanted = std::string("GenApi.Device.") + category + ".Node";
        s_Lines.clear();
        s_Depth = 0;
    }

    static inline std::set<std::string> s_Names;
    static inline std::string s_Wanted;
    static inline std::vector<std::string> s_Lines;
    static inline int s_Depth = 0;
};

/// The backend has to stand before the map asks for it.
class ValueLog : private LogRecorder, public ValueGraph {
protected:
    using LogRecorder::s_Depth;
    using LogRecorder::Want;

    /// The lines since the last call of Want, which must be balanced.
    static const std::vector<std::string>& Lines() {
        EXPECT_EQ(s_Depth, 0);
        return s_Lines;
    }
    void BuildOver(CNodeData::ENodeType_t type, const std::vector<Link>& links = {}) {
        AddReg("Reg", 0);
        auto all = links;
        all.push_back({ID::pValue_ID, "Reg"});
        Add(type, "Node", all);
        if (type == CNodeData::Command_ID) {
            m_Data.GetLastNodeData()->AddProperty(ID::CommandValue_ID, 5);
        }
        Build();
    }
};

}  // namespace

TEST_F(ValueLog, ShowsReadsAndWritesOfAnInteger) {
    BuildOver(CNodeData::Integer_ID);
    auto& node = Get<IInteger>("Node");
    Want("Value");
    node.SetValue(5);
    node.GetValue();
    node.GetValue(true);
    EXPECT_THAT(Lines(), testing::ElementsAre("SetValue( 5 )...", "...SetValue",
                                              "GetValue = 5  (from cache)", "GetValue...",
                                              "...GetValue = 5"));
}

TEST_F(ValueLog, ShowsTheLimitsOfAnInteger) {
    BuildOver(CNodeData::Integer_ID);
    auto& node = Get<IInteger>("Node");
    Want("Range");
    node.ImposeMin(1);
    node.ImposeMax(9);
    node.GetMin();
    node.GetMax();
    node.GetInc();
    node.GetIncMode();
    node.GetListOfValidValues();
    EXPECT_THAT(Lines(),
                testing::ElementsAre("GetMin...", "...GetMin = 1", "GetMax...", "...GetMax = 9",
                                     "GetInc...", "...GetInc = 1", "GetIncMode...", "...GetIncMode",
                                     "GetListOfValidValues...", "...GetListOfValidValues"));
}

TEST_F(ValueLog, ShowsReadsAndWritesOfAFloat) {
    BuildOver(CNodeData::Float_ID);
    auto& node = Get<IFloat>("Node");
    Want("Value");
    node.SetValue(2.5);
    node.GetValue();
    node.GetValue(false, true);
    EXPECT_THAT(Lines(), testing::ElementsAre("SetValue( 2.500000 )...", "...SetValue",
                                              "GetValue = 2.500000  (from cache)", "GetValue...",
                                              "...GetValue = 3.000000"));
}

TEST_F(ValueLog, ShowsTheLimitsOfAFloat) {
    BuildOver(CNodeData::Float_ID);
    auto& node = Get<IFloat>("Node");
    Want("Range");
    node.ImposeMin(0.5);
    node.GetMin();
    node.HasInc();
    node.GetInc();
    EXPECT_THAT(Lines(), testing::ElementsAre("GetMin...", "...GetMin = 0.500000", "HasInc...",
                                              "...HasInc = true", "GetInc...", "HasInc...",
                                              "...HasInc = true", "...GetInc = 1.000000"));
}

TEST_F(ValueLog, ShowsReadsAndWritesOfAnEnumeration) {
    AddEntry("Five", 5);
    BuildOver(CNodeData::Enumeration_ID, {{ID::pEnumEntry_ID, "Five"}});
    auto& node = Get<IEnumeration>("Node");
    Want("Value");
    node.SetIntValue(5);
    node.GetIntValue(true);
    EXPECT_THAT(Lines(), testing::ElementsAre("SetIntValue( 5 )...", "...SetIntValue",
                                              "GetIntValue...", "...GetIntValue = 5"));
}

TEST_F(ValueLog, ShowsTheCourseOfACommand) {
    BuildOver(CNodeData::Command_ID);
    auto& node = Get<ICommand>("Node");
    Want("Value");
    node.Execute();
    node.IsDone();
    m_Port.Put(0, 0);
    node.IsDone();
    EXPECT_THAT(Lines(),
                testing::ElementsAre("Execute...", "...Execute", "IsDone...", "...IsDone = false",
                                     "IsDone...", "...IsDone = true"));
}

TEST_F(ValueLog, ShowsReadsAndWritesOfAText) {
    CNodeData& reg = Add(CNodeData::StringReg_ID, "Reg", {{ID::pPort_ID, "Device"}});
    reg.AddProperty(ID::Address_ID, 0);
    reg.AddProperty(ID::Length_ID, 8);
    reg.AddProperty(ID::AccessMode_ID, CProperty::EAccessMode_ID, RW);
    Add(CNodeData::String_ID, "Node", {{ID::pValue_ID, "Reg"}});
    Build();
    auto& node = Get<IString>("Node");
    Want("Value");
    node.SetValue("cam");
    node.GetValue(true);
    node.GetMaxLength();
    EXPECT_THAT(Lines(), testing::ElementsAre("SetValue( 'cam' )...", "...SetValue", "GetValue...",
                                              "...GetValue = cam", "GetMaxLength...",
                                              "...GetMaxLength = 8"));
}

}  // namespace ValueTest
