// The order of operators, names by case, what may be done again, hostile texts.

#include <limits>

#include "FormulaParser.h"
#include "support/CommaLocale.h"

namespace FormulaTest {

namespace {

struct Binary {
    const char* text;
    int priority;
};

/// All operators between two values that give one.
constexpr Binary kBinaries[] = {
    {"<<", 5}, {">>", 5}, {"**", 5}, {"^", 5}, {"&", 5},  {"|", 5},  {"*", 4},
    {"/", 4},  {"%", 4},  {"+", 3},  {"-", 3}, {"<>", 2}, {">=", 2}, {"<=", 2},
    {"&&", 2}, {"||", 2}, {"=", 2},  {">", 2}, {"<", 2},
};

/// An operator behind or before another has to bind as the brackets show.
template <class Parser>
void ExpectOrder(const Binary& first, const Binary& second, const char* a, const char* b,
                 const char* c) {
    const std::string left = std::string(a) + first.text + b;
    const std::string right = std::string(b) + second.text + c;
    const bool isLeftFirst = first.priority >= second.priority;
    const std::string grouped =
        isLeftFirst ? "(" + left + ")" + second.text + c : a + (first.text + ("(" + right + ")"));
    const auto plain = OutcomeOf<Parser>(left + second.text + c);
    EXPECT_TRUE(IsSame(plain, OutcomeOf<Parser>(grouped))) << left + second.text + c;
}

template <class Parser>
void ExpectOrderOfAllPairs() {
    for (const Binary& first : kBinaries) {
        for (const Binary& second : kBinaries) {
            ExpectOrder<Parser>(first, second, "7", "2", "3");
            ExpectOrder<Parser>(first, second, "1", "5", "2");
            ExpectOrder<Parser>(first, second, "0", "4", "1");
        }
    }
}

/// Each value may be a number or the result of an operator before it.
template <class Parser>
void ExpectTheSameFromAnywhere(const std::string& op, const std::string& left,
                               const std::string& right) {
    const auto plain = OutcomeOf<Parser>(left + op + right);
    for (const std::string& formula :
         {"(" + left + "+0)" + op + right, left + op + "(" + right + "+0)",
          "(" + left + "+0)" + op + "(" + right + "+0)"}) {
        EXPECT_TRUE(IsSame(plain, OutcomeOf<Parser>(formula))) << formula;
    }
}

std::string Repeat(const std::string& text, size_t count) {
    std::string repeated;
    repeated.reserve(text.size() * count);
    for (size_t i = 0; i < count; ++i) {
        repeated += text;
    }
    return repeated;
}

}  // namespace

TEST(FormulaOrder, FollowsThePrioritiesOfAllPairsOfOperators) {
    ExpectOrderOfAllPairs<MathParser>();
    ExpectOrderOfAllPairs<Int64MathParser>();
}

TEST(FormulaOperators, TakeTheirValuesFromAnywhere) {
    for (const Binary& op : kBinaries) {
        for (const char* const left : {"7", "2", "0", "3000000000", "5000000000"}) {
            for (const char* const right : {"7", "2", "0", "4294967295", "4294967296"}) {
                ExpectTheSameFromAnywhere<MathParser>(op.text, left, right);
                ExpectTheSameFromAnywhere<Int64MathParser>(op.text, left, right);
            }
        }
    }
}

TEST(FormulaOrder, PutsConditionsBelowAllOtherOperators) {
    for (const Binary& op : kBinaries) {
        const std::string test = std::string("7") + op.text + "2";
        EXPECT_EQ(RunInteger(test + "?10:20"), RunInteger("(" + test + ")?10:20")) << test;
        EXPECT_EQ(RunInteger("1?" + test + ":20"), RunInteger("1?(" + test + "):20")) << test;
    }
}

TEST(FormulaNames, CompareByCase) {
    EXPECT_EQ(RunDouble("zero"), Outcome<double>("compile: # zero - Unknown function/variable!"));
    EXPECT_EQ(RunDouble("Zero"), Outcome<double>(0.0));
}

TEST(FormulaNames, CompareInUpperCaseWhenAskedTo) {
    for (const char* const formula : {"zero+x", "ZERO+X", "Zero+x"}) {
        EXPECT_EQ(OutcomeOf<MathParser>(formula, true), Outcome<double>(5.0)) << formula;
        EXPECT_EQ(OutcomeOf<Int64MathParser>(formula, true), Outcome<int64_t>(5)) << formula;
    }
    EXPECT_EQ(OutcomeOf<MathParser>("gain.max", true), Outcome<double>(640.0));
    EXPECT_EQ(OutcomeOf<MathParser>("gain", true),
              Outcome<double>("compile: # GAIN - Unknown function/variable!"));
}

TEST(FormulaNames, OfFunctionsHideThoseOfVariables) {
    MathParser parser;
    parser.AddVariable("e");
    parser.AddVariable("sgn");
    EXPECT_EQ(parser.Compile("e", false), nullptr);
    double result = 0;
    EXPECT_EQ(parser.Evaluate(result), nullptr);
    EXPECT_EQ(result, 2.718281828459045);
    EXPECT_STREQ(parser.Compile("sgn", false), "#Syntax error!");
}

TEST(FormulaParser, RefusesToEvaluateBeforeItHasCompiled) {
    MathParser parser;
    double result = 1.5;
    EXPECT_STREQ(parser.Evaluate(result), "#Invalid formula");
    EXPECT_STREQ(parser.Compile("1;", false), "#Syntax error!");
    EXPECT_STREQ(parser.Evaluate(result), "#Invalid formula");
    EXPECT_EQ(result, 1.5);
}

TEST(FormulaParser, ForgetsAFormulaWhenAnotherFailsToCompile) {
    Int64MathParser parser;
    int64_t result = 0;
    ASSERT_EQ(parser.Compile("1+1", false), nullptr);
    ASSERT_EQ(parser.Evaluate(result), nullptr);
    EXPECT_EQ(result, 2);
    EXPECT_STREQ(parser.Compile("(", false), "#Brackets do not match!");
    EXPECT_STREQ(parser.Evaluate(result), "#Invalid formula");
    ASSERT_EQ(parser.Compile("2+2", false), nullptr);
    ASSERT_EQ(parser.Evaluate(result), nullptr);
    EXPECT_EQ(result, 4);
}

TEST(FormulaParser, ReadsVariablesAnewEachTime) {
    Int64MathParser parser;
    parser.AddVariable("X");
    ASSERT_EQ(parser.Compile("X*X", false), nullptr);
    for (const int64_t value : {3, -4, 0}) {
        parser.GetVariableSlot(0) = value;
        int64_t result = -1;
        ASSERT_EQ(parser.Evaluate(result), nullptr);
        EXPECT_EQ(result, value * value);
    }
}

TEST(FormulaParser, EvaluatesAgainAfterAFailure) {
    MathParser parser;
    parser.AddVariable("X");
    ASSERT_EQ(parser.Compile("1+2/X", false), nullptr);
    double result = 9;
    parser.GetVariableSlot(0) = 0;
    EXPECT_STREQ(parser.Evaluate(result), "#Infinity somewhere!");
    EXPECT_EQ(result, 9);
    parser.GetVariableSlot(0) = 4;
    EXPECT_EQ(parser.Evaluate(result), nullptr);
    EXPECT_EQ(result, 1.5);
}

TEST(FormulaParser, MarksVariablesThatWereNotSet) {
    MathParser parser;
    parser.AddVariable("X");
    EXPECT_EQ(parser.GetVariableSlot(0), -1.68736462823243e+308);
}

TEST(FormulaParser, StopsAtAZeroByte) {
    EXPECT_EQ(RunDouble(std::string("1+1\0+1", 6)), Outcome<double>(2.0));
    EXPECT_EQ(RunDouble(std::string("\0", 1)), Outcome<double>(kInvalid));
}

TEST(FormulaParser, RefusesEveryByteThatBeginsNothing) {
    const std::string known =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz_.0123456789 \t\n\r"
        "$%&()*+,-/:;<=>?^|~'";
    for (int byte = 1; byte < 256; ++byte) {
        const char character = static_cast<char>(byte);
        if (known.find(character) == std::string::npos) {
            const std::string formula = std::string("1") + character;
            EXPECT_EQ(RunInteger(formula), Outcome<int64_t>(kSyntax)) << byte;
        }
    }
}

TEST(FormulaLocale, ReadsAPointWhereTheUserWritesACommaInNumbers) {
    const CommaLocale locale;
    EXPECT_EQ(RunDouble("1.5+1.5"), Outcome<double>(3.0));
    EXPECT_EQ(RunDouble("1.5e999"), Outcome<double>(std::numeric_limits<double>::infinity()));
    EXPECT_EQ(RunDouble("1,5"), Outcome<double>(kInvalid));
}

TEST(HostileFormula, MayBeVeryLong) {
    constexpr size_t kTerms = 200000;
    const std::string sum = "0" + Repeat("+1", kTerms);
    EXPECT_EQ(RunInteger(sum), Outcome<int64_t>(int64_t{kTerms}));
    EXPECT_EQ(RunDouble(sum), Outcome<double>(double{kTerms}));
    // Numbers out of range are read in a way of their own.
    EXPECT_EQ(RunDouble("0" + Repeat("+1e-999", kTerms)), Outcome<double>(0.0));
    EXPECT_EQ(RunInteger(std::string(kTerms, '9')),
              Outcome<int64_t>(std::numeric_limits<int64_t>::max()));
}

TEST(HostileFormula, MayNestDeeply) {
    constexpr size_t kDepth = 100000;
    const std::string nested = Repeat("(1+", kDepth) + "1" + std::string(kDepth, ')');
    EXPECT_EQ(RunInteger(nested), Outcome<int64_t>(int64_t{kDepth + 1}));
    EXPECT_EQ(RunDouble(nested), Outcome<double>(double{kDepth + 1}));
    EXPECT_EQ(RunInteger(std::string(kDepth, '-') + "1"), Outcome<int64_t>(1));
    EXPECT_EQ(RunDouble(Repeat("SIN(", kDepth) + "0" + std::string(kDepth, ')')),
              Outcome<double>(0.0));
    EXPECT_EQ(RunInteger(std::string(kDepth, '(')), Outcome<int64_t>(kBrackets));
}

TEST(HostileFormula, MayCallWithMoreArgumentsThanAnyoneCounts) {
    for (const size_t count : {65535U, 65536U, 65537U, 131073U}) {
        const std::string call = "ROUND(1" + Repeat(",1", count) + ")" + Repeat("+(1,1)", 100);
        EXPECT_EQ(RunDouble(call), Outcome<double>(kInvalidCount));
        EXPECT_EQ(RunDouble("SIN(1" + Repeat(",1", count) + ")"), Outcome<double>(kInvalid));
    }
}

TEST(HostileFormula, MayNameVeryManyVariables) {
    constexpr int kCount = 100000;
    Int64MathParser parser;
    std::string formula = "0";
    for (int i = 0; i < kCount; ++i) {
        const std::string name = "V" + std::to_string(i);
        parser.AddVariable(name);
        formula += "+" + name;
    }
    ASSERT_EQ(parser.Compile(formula, false), nullptr);
    for (size_t i = 0; i < kCount; ++i) {
        parser.GetVariableSlot(i) = 2;
    }
    int64_t result = 0;
    ASSERT_EQ(parser.Evaluate(result), nullptr);
    EXPECT_EQ(result, 2 * kCount);
}

TEST(HostileFormula, FindsTheFirstOfManyVariablesOfOneName) {
    for (const bool upperCase : {false, true}) {
        Int64MathParser parser;
        for (int i = 0; i < 100; ++i) {
            parser.AddVariable(i < 50 ? "Other" : "Name");
        }
        ASSERT_EQ(parser.Compile(upperCase ? "nAME" : "Name", upperCase), nullptr);
        for (size_t i = 0; i < 100; ++i) {
            parser.GetVariableSlot(i) = static_cast<int64_t>(i);
        }
        int64_t result = 0;
        ASSERT_EQ(parser.Evaluate(result), nullptr);
        EXPECT_EQ(result, 50);
        EXPECT_STREQ(parser.Compile("Missing", upperCase),
                     upperCase ? "# MISSING - Unknown function/variable!"
                               : "# Missing - Unknown function/variable!");
    }
}

TEST(HostileFormula, MayNameWhatDoesNotExist) {
    const std::string name(100000, 'N');
    EXPECT_EQ(RunDouble(name),
              Outcome<double>("compile: # " + name + " - Unknown function/variable!"));
}

}  // namespace FormulaTest
