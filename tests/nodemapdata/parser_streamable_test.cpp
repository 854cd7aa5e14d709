// An element "Streamable" that says nothing.

#include "Base/Log.h"
#include "ParserFixture.h"

namespace NodeDataTest {
namespace {

using GenICam_3_0_ORVANE::CLog;
using GenICam_3_0_ORVANE::CLogBackend;

/// Keeps the lines that are logged.
class ParserStreamable : public Parser {
protected:
    ParserStreamable() {
        s_Lines.clear();
        CLog::GetLogger("");
        CLog::SetBackend(&kBackend);
    }
    ~ParserStreamable() override { CLog::SetBackend(nullptr); }

    static inline std::vector<std::string> s_Lines;
    static inline int s_Logger = 0;
    static constexpr CLogBackend kBackend = {
        [](const char* name) { return std::string(name) == "GenApi"; },
        [](const char* name) -> void* {
            return std::string(name) == "GenApi.XmlParser" ? &s_Logger : nullptr;
        },
        [](void*, int) { return true; },
        [](void*, int level, const char* line) {
            s_Lines.push_back(std::to_string(level) + " " + line);
        },
        [](const char*) {},
        [] {},
        [](int) {},
        [](const char*) {},
        [](const char*) {}};
};

TEST_F(ParserStreamable, CountsAsNoWhenItIsEmpty) {
    for (const char* const element :
         {"<Streamable/>", "<Streamable></Streamable>", "<Streamable> \n </Streamable>"}) {
        m_Map.Clear();
        s_Lines.clear();
        Parse(std::string("<Integer Name=\"Gain\">") + element + "<Value>1</Value></Integer>");
        EXPECT_THAT(PropertiesOf("Gain"),
                    ElementsAre("<Streamable>No</Streamable>", "<Value>1</Value>"));
        EXPECT_THAT(s_Lines,
                    ElementsAre("400 Node 'Gain' : the empty element 'Streamable' counts as 'No'"));
    }
}

TEST_F(ParserStreamable, MayBeEmptyInAStructure) {
    Parse("<StructReg><Streamable/><Address>0</Address>" + std::string(kRegisterRest) +
          "<StructEntry Name=\"S\"><Bit>1</Bit></StructEntry></StructReg>");
    EXPECT_THAT(PropertiesOf("S"), testing::Contains("<Streamable>No</Streamable>"));
    EXPECT_THAT(s_Lines,
                ElementsAre("400 Node '' : the empty element 'Streamable' counts as 'No'"));
}

TEST_F(ParserStreamable, IsRefusedWithAnotherText) {
    EXPECT_NE(FailureOfBody("<Integer Name=\"A\"><Streamable>Maybe</Streamable><Value>1</Value>"
                            "</Integer>"),
              "");
    EXPECT_NE(FailureOfBody("<Integer Name=\"A\"><IsDeprecated/><Value>1</Value></Integer>"), "");
    EXPECT_THAT(s_Lines, IsEmpty());
}

}  // namespace
}  // namespace NodeDataTest
