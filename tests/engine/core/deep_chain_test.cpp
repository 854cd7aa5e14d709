// Descriptions whose nodes refer to one another over very many steps: loading
// and ending them takes no more stack for it, and what has to follow the chain
// ends in an exception.

#include <pthread.h>

#include <functional>

#include "GenApi/ICategory.h"
#include "GenApi/IFloat.h"
#include "GenApi/IString.h"
#include "NodeGraph.h"
#include "node/NestingScope.h"
#include "values/FloatImpl.h"
#include "values/StringNodeImpl.h"

namespace EngineTest {

namespace {

/// The number of nodes of a chain that no stack would bear.
constexpr int kVeryLong = 10000;
/// As above for descriptions, where each node is told all that depend on it.
constexpr int kLong = 2000;
constexpr size_t kSmallStack = size_t{512} << 10;

/// A function on a thread whose stack is small.
void RunOnSmallStack(const std::function<void()>& action) {
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, kSmallStack), 0);
    pthread_t thread{};
    const auto run = [](void* argument) -> void* {
        (*static_cast<const std::function<void()>*>(argument))();
        return nullptr;
    };
    ASSERT_EQ(
        pthread_create(&thread, &attributes, run, const_cast<std::function<void()>*>(&action)), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
}

// Descriptions.

/// A link from each node to the one with the next number.
struct ChainXml {
    const char* name;
    int length;
    std::string (*node)(int number, const std::string& next);
    std::string end;
    int schemaMinor = 1;
};

void PrintTo(const ChainXml& chain, std::ostream* out) {
    *out << chain.name;
}

std::string ValueNode(int number, const std::string& next) {
    return IntegerXml(Numbered("N", number), "", Element("pValue", next));
}
std::string AvailableNode(int number, const std::string& next) {
    return IntegerXml(Numbered("N", number), Element("pIsAvailable", next));
}
std::string InvalidatedNode(int number, const std::string& next) {
    return IntegerXml(Numbered("N", number), Element("pInvalidator", next));
}
std::string SelectingNode(int number, const std::string& next) {
    return IntegerXml(Numbered("N", number), "", "<Value>1</Value>" + Element("pSelected", next));
}
std::string CategoryNode(int number, const std::string& next) {
    return "<Category Name=\"" + (number == 0 ? "Root" : Numbered("N", number)) + "\">" +
           Element("pFeature", next) + "</Category>";
}
std::string FormulaNode(int number, const std::string& next) {
    return "<IntSwissKnife Name=\"" + Numbered("N", number) + "\"><pVariable Name=\"A\">" + next +
           "</pVariable><Formula>A</Formula></IntSwissKnife>";
}
std::string ConverterNode(int number, const std::string& next) {
    return "<IntConverter Name=\"" + Numbered("N", number) +
           "\"><FormulaTo>FROM</FormulaTo><FormulaFrom>TO</FormulaFrom>" + Element("pValue", next) +
           "</IntConverter>";
}
std::string AddressNode(int number, const std::string& next) {
    return "<IntReg Name=\"" + Numbered("N", number) + "\">" + Element("pAddress", next) +
           "<Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort></IntReg>";
}

const ChainXml kChains[] = {
    {"Values", kLong, &ValueNode, IntegerXml("End")},
    {"ValuesOfADevice", kLong, &ValueNode, RegXml{.name = "End", .caching = "NoCache"}()},
    {"Availabilities", kLong, &AvailableNode, IntegerXml("End")},
    {"AvailabilitiesOfADevice", kLong, &AvailableNode,
     RegXml{.name = "End", .caching = "NoCache"}()},
    {"Invalidators", kLong, &InvalidatedNode, IntegerXml("End")},
    {"Selections", kLong, &SelectingNode, IntegerXml("End")},
    {"Categories", kLong, &CategoryNode, IntegerXml("End")},
    {"Formulas", kLong, &FormulaNode, IntegerXml("End")},
    {"Converters", kLong / 2, &ConverterNode, IntegerXml("End")},
    {"Addresses", kLong, &AddressNode, IntegerXml("End")},
    {"ValuesOfTheFirstSchema", kLong, &ValueNode, IntegerXml("End"), 0},
};

/// What a client can ask of a node. Each of these ends with an answer or with
/// an exception.
void AskEverything(INode& node) {
    const std::function<void()> questions[] = {
        [&] { node.GetAccessMode(); },
        [&] { node.IsAccessModeCacheable(); },
        [&] { node.GetCachingMode(); },
        [&] { node.GetVisibility(); },
        [&] { node.InvalidateNode(); },
        [&] { dynamic_cast<IValue&>(node).ToString(true, true); },
        [&] { dynamic_cast<IValue&>(node).FromString("1"); },
        [&] { dynamic_cast<IInteger&>(node).GetMax(); },
        [&] { dynamic_cast<IInteger&>(node).GetInc(); },
        [&] { dynamic_cast<IInteger&>(node).GetUnit(); },
        [&] { dynamic_cast<IInteger&>(node).GetRepresentation(); },
        [&] { dynamic_cast<IInteger&>(node).GetListOfValidValues(); },
    };
    for (const auto& question : questions) {
        try {
            question();
        } catch (const GenericException& failure) {
            EXPECT_STRNE(failure.GetDescription(), "");
        } catch (const std::bad_cast&) {
            // Not a number.
        }
    }
}

class DeepDescription : public testing::TestWithParam<ChainXml> {};

TEST_P(DeepDescription, LoadsAnswersAndEnds) {
    const ChainXml& chain = GetParam();
    std::string body;
    for (int number = 0; number < chain.length; ++number) {
        const bool isLast = number + 1 == chain.length;
        body += chain.node(number, isLast ? "End" : Numbered("N", number + 1));
    }
    body += chain.end;
    std::unique_ptr<XmlNodeMap> nodes;
    RunOnSmallStack([&] {
        nodes = std::make_unique<XmlNodeMap>(body,
                                             XmlNodeMap::Options{.schemaMinor = chain.schemaMinor});
    });
    ASSERT_NE(nodes, nullptr);
    AskEverything(*(*nodes)->GetNode(Numbered("N", 1).c_str()));
    AskEverything(*(*nodes)->GetNode(Numbered("N", chain.length - 1).c_str()));
    EXPECT_TRUE(IsFreeForOthers((*nodes)->GetLock()));
    RunOnSmallStack([&] { nodes.reset(); });
}

INSTANTIATE_TEST_SUITE_P(Of, DeepDescription, testing::ValuesIn(kChains),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(NestedCategories, PassTheVisibilityOfTheInnermostFeatureUp) {
    std::string body;
    for (int number = 0; number < kLong; ++number) {
        body += CategoryNode(number, number + 1 == kLong ? "End" : Numbered("N", number + 1));
    }
    XmlNodeMap nodes(body + IntegerXml("End", "<Visibility>Guru</Visibility>"));
    EXPECT_EQ(nodes.Get("Root").GetVisibility(), Guru);
    EXPECT_EQ(nodes.Get("N1").GetVisibility(), Guru);
}

/// Each category lists the next one twice, so that there are more ways down
/// than anything could follow.
TEST(NestedCategories, TakeTheirTurnOnce) {
    std::string body = IntegerXml("End", "<Visibility>Expert</Visibility>");
    constexpr int kLevels = 64;
    for (int number = 1; number <= kLevels; ++number) {
        const std::string next = number == kLevels ? "End" : Numbered("N", number + 1);
        std::string twice = next;
        twice.append("</pFeature><pFeature>").append(next);
        body += CategoryNode(number, twice);
    }
    XmlNodeMap nodes(body);
    EXPECT_EQ(nodes.Get("N1").GetVisibility(), Expert);
}

/// Descriptions of the first schema were never checked for such circles.
TEST(NestedCategories, MayFormACircleInTheFirstSchema) {
    XmlNodeMap nodes(CategoryNode(1, "N2") + CategoryNode(2, "N1"),
                     XmlNodeMap::Options{.schemaMinor = 0});
    EXPECT_EQ(nodes.Get("N1").GetVisibility(), Invisible);
    nodes.Get("N1").GetAccessMode();
}

TEST(ReadCycle, ThroughASelectedNodeIsToldByItsNodes) {
    const std::string description = XmlNodeMap::Describe(
        IntegerXml("Selector", "", "<Value>1</Value><pSelected>A</pSelected>") +
        IntegerXml("A", Element("pIsAvailable", "B")) + IntegerXml("B", Element("pIsLocked", "A")));
    const std::string text =
        DescriptionOf<RuntimeException>([&] { CNodeMapFactory(description.c_str()).Preprocess(); });
    EXPECT_EQ(text, "ERROR : read cycle detected : A -> B -> A");
}

// Live nodes.

/// Numbers or texts, each of which shows the next one.
template <class Node>
void AddChain(NodesByHand& nodes, INodePrivate& end, int length) {
    INodePrivate* next = &end;
    for (int number = length - 1; number >= 0; --number) {
        INodePrivate& node = nodes.Add<Node>(Numbered("N", number).c_str());
        nodes.Link(node, CPropertyID::pValue_ID, *next);
        next = &node;
    }
}

/// What the chain from its first node says to all that passes through it.
template <class Interface, class Ask>
std::string Refusal(NodesByHand& nodes, const Ask& ask) {
    return DescriptionOf<RuntimeException>(
        [&] { ask(dynamic_cast<Interface&>(*nodes.Map().GetNode("N0"))); });
}

std::string TooDeepAt(int number) {
    return Numbered("Node 'N", number) +
           "' : the chain of nodes that leads here is longer than 512";
}

TEST(LongChain, OfNumbersEndsInAClearException) {
    NodesByHand nodes;
    AddChain<CInteger>(nodes, nodes.AddValue("End", 7), kVeryLong);
    nodes.Complete();
    const std::string tooDeep = TooDeepAt(kMaxNesting);
    EXPECT_EQ(Refusal<INode>(nodes, [](INode& node) { node.GetAccessMode(); }), tooDeep);
    EXPECT_EQ(Refusal<INode>(nodes, [](INode& node) { node.IsAccessModeCacheable(); }), tooDeep);
    EXPECT_EQ(Refusal<INode>(nodes, [](INode& node) { node.GetCachingMode(); }), tooDeep);
    EXPECT_EQ(Refusal<IInteger>(nodes, [](IInteger& node) { node.GetUnit(); }), tooDeep);
    EXPECT_EQ(Refusal<IInteger>(nodes, [](IInteger& node) { node.GetRepresentation(); }), tooDeep);
    EXPECT_NE(Refusal<IInteger>(nodes, [](IInteger& node) { node.GetValue(); }), "");
    EXPECT_NE(Refusal<IInteger>(nodes, [](IInteger& node) { node.SetValue(1); }), "");
    EXPECT_NE(Refusal<IInteger>(nodes, [](IInteger& node) { node.GetInc(); }), "");
    EXPECT_NE(Refusal<IValue>(nodes, [](IValue& node) { node.ToString(); }), "");
    EXPECT_TRUE(nodes.Map().GetBathometer().IsZero());
    EXPECT_EQ(nodes.Map().GetCallState().GetNesting().Get(), 0);
    EXPECT_EQ(nodes.Map().GetEntryPoint(), "");
}

TEST(LongChain, OfFloatsAndTextsEndsAlike) {
    NodesByHand floats;
    AddChain<CFloat>(floats, floats.AddValue("End", 7), kVeryLong);
    floats.Complete();
    const std::string tooDeep = TooDeepAt(kMaxNesting);
    EXPECT_EQ(Refusal<IFloat>(floats, [](IFloat& node) { node.HasInc(); }), tooDeep);
    EXPECT_EQ(Refusal<IFloat>(floats, [](IFloat& node) { node.GetDisplayNotation(); }), tooDeep);
    EXPECT_EQ(Refusal<IFloat>(floats, [](IFloat& node) { node.GetDisplayPrecision(); }), tooDeep);
    EXPECT_NE(Refusal<IFloat>(floats, [](IFloat& node) { node.GetValue(); }), "");
    NodesByHand texts;
    INodePrivate& end = texts.Add<CStringNode>("End");
    texts.Set(end, CPropertyID::Value_ID, std::string_view("text"));
    AddChain<CStringNode>(texts, end, kVeryLong);
    texts.Complete();
    EXPECT_EQ(Refusal<IString>(texts, [](IString& node) { node.GetMaxLength(); }), tooDeep);
    EXPECT_NE(Refusal<IString>(texts, [](IString& node) { node.GetValue(); }), "");
}

/// A refusal is no answer: what was on the way must not be remembered as one.
TEST(LongChain, IsAnsweredRightFromWhereItIsShortEnough) {
    NodesByHand nodes;
    CInteger& end = nodes.AddValue("End", 7);
    AddChain<CInteger>(nodes, end, 600);
    nodes.Complete();
    const auto at = [&](int number) -> IInteger& {
        return dynamic_cast<IInteger&>(*nodes.Map().GetNode(Numbered("N", number).c_str()));
    };
    EXPECT_THROW(at(0).GetValue(), RuntimeException);
    EXPECT_THROW(at(0).GetNode()->GetCachingMode(), RuntimeException);
    EXPECT_THROW(at(0).GetNode()->IsAccessModeCacheable(), RuntimeException);
    EXPECT_EQ(at(300).GetValue(), 7);
    EXPECT_EQ(at(300).GetNode()->GetAccessMode(), RW);
    // From here on the rest of the way is known.
    EXPECT_EQ(at(0).GetValue(), 7);
    EXPECT_EQ(at(0).GetNode()->GetAccessMode(), RW);
    EXPECT_EQ(at(0).GetNode()->GetCachingMode(), WriteThrough);
    EXPECT_EQ(at(0).GetNode()->IsAccessModeCacheable(), Yes);
}

/// Each node asks the next one several times where nothing may be remembered.
TEST(LongChain, OfQuestionsThatMultiplyEnds) {
    std::string body = RegXml{.name = "End", .caching = "NoCache"}();
    constexpr int kLength = 64;
    for (int number = 0; number < kLength; ++number) {
        body += AvailableNode(number, number + 1 == kLength ? "End" : Numbered("N", number + 1));
    }
    XmlNodeMap nodes(body);
    nodes.Port().Put(0, 1);
    EXPECT_THAT(DescriptionOf<RuntimeException>([&] { nodes.Get("N0").GetAccessMode(); }),
                testing::HasSubstr("the call leads to more than 4194304 calls of other nodes"));
    EXPECT_EQ(nodes.Get(Numbered("N", kLength - 3).c_str()).GetAccessMode(), RW);
}

}  // namespace

}  // namespace EngineTest
