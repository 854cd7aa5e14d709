// Reads that are refused: the same each time, however often, and only as long as there is a reason.

#include "NodeTest.h"

namespace {

constexpr int kAskedTimes = 3;

const char* const kRefusedNodes =
    "<Integer Name=\"No\"><Value>0</Value></Integer>"
    "<Integer Name=\"Secret\"><pValue>SecretReg</pValue></Integer>"
    "<IntReg Name=\"SecretReg\"><Address>0x400</Address><Length>4</Length>"
    "<AccessMode>WO</AccessMode><pPort>Device</pPort><Sign>Unsigned</Sign>"
    "<Endianess>LittleEndian</Endianess></IntReg>"
    "<Integer Name=\"Gate\"><Value>0</Value></Integer>"
    "<Integer Name=\"Gated\"><pIsAvailable>Gate</pIsAvailable><Value>5</Value></Integer>"
    "<Float Name=\"GatedFloat\"><pIsAvailable>Gate</pIsAvailable><Value>2.5</Value></Float>"
    "<Integer Name=\"Lacking\"><pIsImplemented>No</pIsImplemented><Value>1</Value></Integer>"
    "<IntSwissKnife Name=\"Faulty\"><Formula>1 + )</Formula></IntSwissKnife>"
    "<IntSwissKnife Name=\"LackingAndFaulty\"><pIsImplemented>No</pIsImplemented>"
    "<Formula>1 + )</Formula></IntSwissKnife>";

class NodeRefusals : public NodeTest {
protected:
    void SetUp() override {
        NodeTest::SetUp();
        Describe(DescribeCamera(kRefusedNodes));
    }

    void ExpectIntegerRefused(const char* name, OV_STATUS status, const std::string& text) const {
        SCOPED_TRACE(name);
        const OV_NODE_HANDLE node = Node(name);
        for (int time = 0; time < kAskedTimes; ++time) {
            int64_t value = 7;
            ExpectFailure(OvNodeGetInteger(node, &value), status, text);
            EXPECT_EQ(value, 7);
        }
    }
    void ExpectTextRefused(const char* name, OV_STATUS status, const std::string& text) const {
        SCOPED_TRACE(name);
        const OV_NODE_HANDLE node = Node(name);
        for (int time = 0; time < kAskedTimes; ++time) {
            char content[16] = "kept";
            size_t size = sizeof content;
            ExpectFailure(OvNodeGetAsText(node, content, &size), status, text);
            EXPECT_STREQ(content, "kept");
            EXPECT_EQ(size, sizeof content);
        }
    }
};

TEST_F(NodeRefusals, OfWhatCanOnlyBeWrittenAreTheNodes) {
    ExpectIntegerRefused("Secret", OV_STATUS_INVALID_ACCESS, "Node is not readable.");
    ExpectTextRefused("Secret", OV_STATUS_INVALID_ACCESS, "Node is not readable");
}

TEST_F(NodeRefusals, EndWithTheirReason) {
    const OV_NODE_HANDLE gate = Node("Gate");
    for (int round = 0; round < 2; ++round) {
        EXPECT_OV_OK(OvNodeSetInteger(gate, 0));
        ExpectIntegerRefused("Gated", OV_STATUS_INVALID_ACCESS, "Node is not readable.");
        ExpectTextRefused("GatedFloat", OV_STATUS_INVALID_ACCESS, "Node is not readable");
        EXPECT_OV_OK(OvNodeSetInteger(gate, 1));
        int64_t value = 0;
        EXPECT_OV_OK(OvNodeGetInteger(Node("Gated"), &value));
        EXPECT_EQ(value, 5);
        EXPECT_EQ(Value(Node("GatedFloat")), "2.5");
    }
}

TEST_F(NodeRefusals, OfWhatTheCameraLacksSaySo) {
    const std::string text = "The feature \"Lacking\" is not implemented";
    ExpectIntegerRefused("Lacking", OV_STATUS_NOT_IMPLEMENTED, text);
    ExpectTextRefused("Lacking", OV_STATUS_NOT_IMPLEMENTED, text);
}

TEST_F(NodeRefusals, OfAFaultyNodeGiveTheFault) {
    const std::string text =
        "Faulty : Failed to parse formula '1 + )' : error message is '#Brackets do not match!'";
    ExpectIntegerRefused("Faulty", OV_STATUS_ERROR, text);
    ExpectTextRefused("Faulty", OV_STATUS_ERROR, text);
    ExpectIntegerRefused("Faulty", OV_STATUS_ERROR, text);
}

/// The text is asked for after whether the camera has the feature, the number before.
TEST_F(NodeRefusals, OfAFaultyNodeThatTheCameraLacksDependOnTheQuestion) {
    const std::string fault =
        "LackingAndFaulty : Failed to parse formula '1 + )' : error message is '#Brackets do not "
        "match!'";
    ExpectIntegerRefused("LackingAndFaulty", OV_STATUS_ERROR, fault);
    ExpectTextRefused("LackingAndFaulty", OV_STATUS_NOT_IMPLEMENTED,
                      "The feature \"LackingAndFaulty\" is not implemented");
    ExpectIntegerRefused("LackingAndFaulty", OV_STATUS_ERROR, fault);
}

TEST_F(NodeRefusals, OfAMemoryThatIsTooSmallNameTheFunction) {
    Describe(DescribeCamera("<String Name=\"Owner\"><Value>Left</Value></String>"));
    const OV_NODE_HANDLE owner = Node("Owner");
    const struct {
        std::string function;
        OV_STATUS (*get)(OV_NODE_HANDLE, char*, size_t*);
    } rows[] = {{"OvNodeGetAsText", &OvNodeGetAsText}, {"OvNodeGetString", &OvNodeGetString}};
    for (const auto& row : rows) {
        char content[4] = "old";
        size_t size = sizeof content;
        ExpectFailure(row.get(owner, content, &size), OV_STATUS_NEED_MORE_BUFFER,
                      "Need more buffer");
        EXPECT_NE(LastError::Get().text.find("{" + row.function + ":line["), std::string::npos);
        EXPECT_STREQ(content, "old");
        EXPECT_EQ(size, sizeof content);
    }
}

}  // namespace
