// What formulas come to in integers.

#include <limits>

#include "FormulaParser.h"

namespace FormulaTest {

namespace {

constexpr int64_t kLowest = std::numeric_limits<int64_t>::min();
constexpr int64_t kHighest = std::numeric_limits<int64_t>::max();

class IntegerFormula : public testing::TestWithParam<IntegerRow> {};

}  // namespace

TEST_P(IntegerFormula, ComesToItsValueOrFailure) {
    const Outcome<int64_t> actual = RunInteger(GetParam().formula);
    EXPECT_TRUE(IsSame(actual, GetParam().expected)) << TextOf<int64_t>(actual);
}

const IntegerRow kIntegerNumbers[] = {
    {"7", 7},
    {"007", 7},
    {"0x1F", 31},
    {"0xFFFFFFFFFFFFFFFF", -1},
    {"0x8000000000000000", kLowest},
    {"0x1FFFFFFFFFFFFFFFF", -1},
    {"0X1F", kSyntax},
    {"0x", kSyntax},
    {"9223372036854775807", kHighest},
    {"9223372036854775808", kHighest},
    {"-9223372036854775808", -kHighest},
    {"99999999999999999999999", kHighest},
    {"7.5", kSyntax},
    {"7.05", kSyntax},
    {"4.0", 4},
    {"4.", 4},
    {"4.000*2", 8},
    {"4.0.0", kSyntax},
    {"1e3", kSyntax},
    {".5", "compile: # .5 - Unknown function/variable!"},
    {"1 2", kSyntax},
};
INSTANTIATE_TEST_SUITE_P(Numbers, IntegerFormula, testing::ValuesIn(kIntegerNumbers));

const IntegerRow kIntegerOperators[] = {
    {"1+2*3", 7},
    {"1<<2+1", 5},
    {"1<<4", 16},
    {"1<<32", 4294967296},
    {"1<<62", 4611686018427387904},
    {"1<<63", kLowest},
    {"1<<64", 1},
    {"1<<65", 2},
    {"1<<-1", kLowest},
    {"-8>>1", -4},
    {"-1>>63", -1},
    {"256>>68", 16},
    {"2**10", 1024},
    {"3**30", 205891132094649},
    {"2**62", 4611686018427387904},
    {"2**63", kLowest},
    {"(-2)**63", kLowest},
    {"2**-1", 0},
    {"0**0", 1},
    {"0**-1", kLowest},
    {"2**3**2", 64},
    {"-2**2", 4},
    {"1<>2", 1},
    {"2<>2", 0},
    {"2>=2", 1},
    {"1>=2", 0},
    {"2<=2", 1},
    {"3<=2", 0},
    {"2&&3", 1},
    {"2&&0", 0},
    {"0||0", 0},
    {"0||2", 1},
    {"9223372036854775807+1", kLowest},
    {"1-2-3", -4},
    {"-9223372036854775807-2", kHighest},
    {"4611686018427387904*2", kLowest},
    {"7/2", 3},
    {"-7/2", -3},
    {"7/-2", -3},
    {"8/4/2", 1},
    {"(-9223372036854775807-1)/-1", kLowest},
    {"4294967295/2", 2147483647},
    {"4294967295/4294967295", 1},
    {"4294967295/4294967296", 0},
    {"4294967296/4294967295", 1},
    {"9223372036854775807/4294967296", 2147483647},
    {"-4294967296/4294967295", -1},
    {"4294967295/-1", -4294967295},
    {"1/-4294967295", 0},
    {"7%4", 3},
    {"-7%4", -3},
    {"7%-4", 3},
    {"(-9223372036854775807-1)%-1", 0},
    {"1/0", kInfinity},
    {"1%0", kInfinity},
    {"6^3", 5},
    {"~0", -1},
    {"~5", -6},
    {"-~1", 2},
    {"~1<<2", -8},
    {"6&3", 2},
    {"6|3", 7},
    {"2147483648&1", 0},
    {"2147483648|1", 2147483649},
    {"0xFFFFFFFF00000000&0xFF00000000", 0xFF00000000},
    {"2=2", 1},
    {"2=3", 0},
    {"3>2", 1},
    {"2>2", 0},
    {"2<3", 1},
    {"2<2", 0},
    {"1$2", "#Syntax error!"},
    {"1/*2", "#Internal error!"},
    {"X:=2", "#Internal error!"},
    {"1;2", kSyntax},
    {"1~2", kSyntax},
};
INSTANTIATE_TEST_SUITE_P(Operators, IntegerFormula, testing::ValuesIn(kIntegerOperators));

const IntegerRow kIntegerStructure[] = {
    {"SGN(7)", 1},
    {"SGN(0)", 0},
    {"SGN(-7)", -1},
    {"sgn(7)", 1},
    {"NEG(7)", -7},
    {"NEG(-9223372036854775807-1)", kLowest},
    {"SGN(1,2)", kInvalid},
    {"ABS(1)", "compile: # ABS - Unknown function/variable!"},
    {"ROUND(1)", "compile: # ROUND - Unknown function/variable!"},
    {"ROUND('text')", "compile: # ROUND - Unknown function/variable!"},
    {"PI", "compile: # PI - Unknown function/variable!"},
    {"E", "compile: # E - Unknown function/variable!"},
    {"SGN('text')", kSyntax},
    {"'text'", kSyntax},
    {"X", 5},
    {"-X", -5},
    {"--X", 5},
    {"2--X", 7},
    {"-X%3", -2},
    {"Gain.Max>>1", 320},
    {"x", "compile: # x - Unknown function/variable!"},
    {"(X>0)?1:2", 1},
    {"(Y>0)?1:2", 2},
    {"(X=1)?10:((X=5)?20:30)", 20},
    {"Zero?1:X?2:3", 2},
    {"1?0:1/0", kInfinity},
    {"1:2", kLogical},
    {"1?2", kLogical},
    {"1+", kExtra},
    {"", kInvalid},
    {"1,2", kInvalid},
    {"(1", kBrackets},
    {"1)", kBrackets},
    {"()", kSyntax},
    {"1#", kSyntax},
};
INSTANTIATE_TEST_SUITE_P(Structure, IntegerFormula, testing::ValuesIn(kIntegerStructure));

}  // namespace FormulaTest
