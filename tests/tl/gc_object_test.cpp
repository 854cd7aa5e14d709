// Children of a module, and the guards that undo steps.

#include "Base/GCException.h"
#include "TLClassModule/GcObject.h"
#include "TLClassSupport/Agency.h"
#include "TransportTest.h"

namespace OVTLClass {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class PlainModule : public CGcObject {
public:
    using CGcObject::_AddChild;
    using CGcObject::_ClearChildrenList;
    using CGcObject::_GetGcObjectList;
    using CGcObject::_RemoveChild;
    using CGcObject::_UpdateChildrenList;
    using CGcObject::CGcObject;
};

class OtherModule : public CGcObject {
public:
    using CGcObject::CGcObject;
};

class ModuleTest : public ::testing::Test {
protected:
    std::shared_ptr<PlainModule> Make() { return std::make_shared<PlainModule>(lib); }

    std::shared_ptr<const CGenTLLib> lib = std::make_shared<const CGenTLLib>(Staged("Empty.cti"));
    PlainModule parent{lib};
};

TEST_F(ModuleTest, GivesItsChildrenInOrder) {
    const auto first = Make();
    const auto second = Make();
    parent._AddChild(first);
    parent._AddChild(second);
    EXPECT_THAT(parent._GetGcObjectList<PlainModule>(), ElementsAre(first, second));
}

TEST_F(ModuleTest, LogsAndLeavesOutAChildOfAnotherType) {
    const LogCapture log;
    const auto first = Make();
    parent._AddChild(std::make_shared<OtherModule>(lib));
    parent._AddChild(first);
    EXPECT_THAT(parent._GetGcObjectList<PlainModule>(), ElementsAre(first));
    EXPECT_THAT(log.Lines(),
                ElementsAre(::testing::MatchesRegex(
                    ".*GcObject\\.h\\([0-9]+\\):'_GetGcObjectList':Invalid CGcObject type")));
}

TEST_F(ModuleTest, GivesTheSharedPointerOfAChild) {
    const auto first = Make();
    parent._AddChild(first);
    EXPECT_EQ(parent.GetChild(first.get()), first);
}

TEST_F(ModuleTest, GivesAnEmptyPointerForAForeignObject) {
    const auto foreign = Make();
    EXPECT_EQ(parent.GetChild(foreign.get()), nullptr);
    EXPECT_EQ(parent.GetChild(&parent), nullptr);
    EXPECT_EQ(parent.GetChild(nullptr), nullptr);
}

TEST_F(ModuleTest, RemovesOneChild) {
    const auto first = Make();
    const auto second = Make();
    parent._UpdateChildrenList({first, second});
    parent._RemoveChild(first.get());
    EXPECT_THAT(parent._GetGcObjectList<PlainModule>(), ElementsAre(second));
}

TEST_F(ModuleTest, ReplacesTheWholeList) {
    const auto first = Make();
    const auto second = Make();
    parent._UpdateChildrenList({first});
    parent._UpdateChildrenList({second});
    EXPECT_THAT(parent._GetGcObjectList<PlainModule>(), ElementsAre(second));
    parent._ClearChildrenList();
    EXPECT_THAT(parent._GetGcObjectList<PlainModule>(), IsEmpty());
}

TEST_F(ModuleTest, LetsGoOfItsChildren) {
    auto child = Make();
    const std::weak_ptr<PlainModule> watch = child;
    parent._AddChild(std::move(child));
    EXPECT_FALSE(watch.expired());
    parent._ClearChildrenList();
    EXPECT_TRUE(watch.expired());
}

/// Writes down its steps.
class Guard : public CAgency {
public:
    Guard(std::vector<std::string>& steps, const std::string& name) {
        steps.push_back("do " + name);
        Arm([&steps, kept = std::string(name)] { steps.push_back("undo " + kept); });
    }
};

TEST(Agency, UndoesInReverseOrderWhatWasNotCommitted) {
    std::vector<std::string> steps;
    {
        const Guard first(steps, "first");
        const Guard second(steps, "second");
    }
    EXPECT_THAT(steps, ElementsAre("do first", "do second", "undo second", "undo first"));
}

TEST(Agency, KeepsWhatWasCommitted) {
    std::vector<std::string> steps;
    {
        Guard guard(steps, "step");
        guard.Commit();
    }
    EXPECT_THAT(steps, ElementsAre("do step"));
}

TEST(Agency, LogsWhatItsUndoRaises) {
    const LogCapture log;
    {
        const CRollback standard([] { throw std::runtime_error("standard"); });
    }
    {
        const CRollback engine([] { RUNTIME_EXCEPTION("engine"); });
    }
    {
        const CRollback other([] { throw 1; });
    }
    const auto place = ":'~CAgency':";
    EXPECT_THAT(
        log.Lines(),
        ElementsAre(::testing::EndsWith(place + std::string("standard")),
                    ::testing::AllOf(::testing::HasSubstr(place), ::testing::HasSubstr("engine")),
                    ::testing::EndsWith(place + std::string("UnKnown Exception"))));
}

}  // namespace
}  // namespace OVTLClass
