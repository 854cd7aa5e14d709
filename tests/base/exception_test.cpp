#include <gtest/gtest.h>

#include <string>

#include "Base/GCException.h"

namespace BaseTest {
namespace {

using namespace GenICam_3_0_ORVANE;

TEST(GenericException, ShortFormTellsCauseAndPlace) {
    const RuntimeException failure("The cause", "/deep/in/a\\source.cpp", 12);
    EXPECT_STREQ(failure.what(), "The cause (file 'source.cpp', line 12)");
    EXPECT_STREQ(failure.GetDescription(), "The cause");
    EXPECT_STREQ(failure.GetSourceFileName(), "/deep/in/a\\source.cpp");
    EXPECT_EQ(failure.GetSourceLine(), 12U);
}

TEST(GenericException, TypedFormTellsTheType) {
    const AccessException failure("The cause", "source.cpp", 1, "AccessException");
    EXPECT_STREQ(failure.what(), "The cause : AccessException thrown (file 'source.cpp', line 1)");
}

TEST(GenericException, NodeFormTellsNodeAndCall) {
    const AccessException failure("The cause", "src/source.cpp", 4294967295U, "SetValue", "Gain",
                                  "AccessException");
    EXPECT_STREQ(failure.what(),
                 "The cause : AccessException thrown in node 'Gain' while calling 'SetValue' "
                 "(file 'source.cpp', line 4294967295)");
}

TEST(GenericException, LeavesOutWhatIsEmpty) {
    const AccessException noNode("C", "s.cpp", 1, "Set", "", "");
    EXPECT_STREQ(noNode.what(), "C while calling 'Set' (file 's.cpp', line 1)");
    const AccessException noCall("C", "s.cpp", 1, "", "N", "T");
    EXPECT_STREQ(noCall.what(), "C : T thrown in node 'N' (file 's.cpp', line 1)");
}

TEST(GenericException, IsNoStandardException) {
    EXPECT_FALSE((std::is_base_of_v<std::exception, GenericException>));
}

TEST(GenericException, CopiesKeepEveryPart) {
    const RuntimeException failure("C", "s.cpp", 3, "RuntimeException");
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): it is the subject
    const RuntimeException copy(failure);
    EXPECT_STREQ(copy.what(), failure.what());
    EXPECT_NE(copy.what(), failure.what());
}

TEST(ExceptionReporter, CutsADescriptionAt255Characters) {
    const ExceptionReporter<RuntimeException> reporter("s.cpp", 9, "RuntimeException");
    const std::string longText(400, 'x');
    const RuntimeException failure = reporter.Report("%s", longText.c_str());
    EXPECT_EQ(failure.GetDescription(), std::string(255, 'x'));
    EXPECT_EQ(failure.what(),
              std::string(255, 'x') + " : RuntimeException thrown (file 's.cpp', line 9)");
    EXPECT_EQ(reporter.Report("%s", std::string(255, 'y').c_str()).GetDescription(),
              std::string(255, 'y'));
}

/// Every class of the family with the macro that raises it.
template <class Exception>
void ExpectTyped(const char* type, void (*raise)()) {
    try {
        raise();
        ADD_FAILURE() << type;
    } catch (const Exception& failure) {
        const std::string text = failure.what();
        EXPECT_EQ(text.rfind(std::string("number 7 : ") + type +
                                 " thrown (file "
                                 "'exception_test.cpp', line ",
                             0),
                  0U)
            << text;
    }
}

TEST(ExceptionReporter, NamesTheClassThatItRaises) {
    ExpectTyped<InvalidArgumentException>("InvalidArgumentException",
                                          [] { INVALID_ARGUMENT_EXCEPTION("number %d", 7); });
    ExpectTyped<OutOfRangeException>("OutOfRangeException",
                                     [] { OUT_OF_RANGE_EXCEPTION("number %d", 7); });
    ExpectTyped<PropertyException>("PropertyException", [] { PROPERTY_EXCEPTION("number %d", 7); });
    ExpectTyped<RuntimeException>("RuntimeException", [] { RUNTIME_EXCEPTION("number %d", 7); });
    ExpectTyped<LogicalErrorException>("LogicalErrorException",
                                       [] { LOGICAL_ERROR_EXCEPTION("number %d", 7); });
    ExpectTyped<AccessException>("AccessException", [] { ACCESS_EXCEPTION("number %d", 7); });
    ExpectTyped<TimeoutException>("TimeoutException", [] { TIMEOUT_EXCEPTION("number %d", 7); });
    ExpectTyped<DynamicCastException>("DynamicCastException",
                                      [] { DYNAMICCAST_EXCEPTION("number %d", 7); });
}

TEST(ThrowBadAlloc, HasAnEmptyDescription) {
    try {
        ThrowBadAlloc("a/b.cpp", 5);
    } catch (const BadAllocException& failure) {
        EXPECT_STREQ(failure.GetDescription(), "");
        EXPECT_EQ(failure.GetSourceLine(), 5U);
    }
}

}  // namespace
}  // namespace BaseTest
