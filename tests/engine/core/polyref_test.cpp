// References to a value that a constant or some other node holds: what each
// kind of node makes of each operation.

#include <functional>
#include <limits>

#include "GenApi/IEnumeration.h"
#include "GenApi/IFloat.h"
#include "NodeGraph.h"
#include "core/PolyReference.h"

namespace EngineTest {

namespace {

// Nothing to refer to.

struct UnsetOperation {
    const char* name;
    std::function<void()> run;
};

void PrintTo(const UnsetOperation& operation, std::ostream* out) {
    *out << operation.name;
}

/// An operation of a reference of its own, which refers to nothing.
template <class Reference, class Run>
UnsetOperation Unset(const char* name, const Run& run) {
    return {name, [run] {
                Reference reference;
                EXPECT_FALSE(reference.IsInitialized());
                run(reference);
            }};
}

const UnsetOperation kUnset[] = {
    Unset<CIntegerPolyRef>("CIntegerPolyRef::GetValue()", [](auto& r) { r.GetValue(); }),
    Unset<CIntegerPolyRef>("CIntegerPolyRef::SetValue()", [](auto& r) { r.SetValue(1); }),
    Unset<CIntegerPolyRef>("CIntegerPolyRef::GetMin()", [](auto& r) { r.GetMin(); }),
    Unset<CIntegerPolyRef>("CIntegerPolyRef::GetMax()", [](auto& r) { r.GetMax(); }),
    Unset<CIntegerPolyRef>("CIntegerPolyRef::GetInc()", [](auto& r) { r.GetInc(); }),
    Unset<CIntegerPolyRef>("CIntegerPolyRef::GetIncMode()", [](auto& r) { r.GetIncMode(); }),
    Unset<CIntegerPolyRef>("CIntegerPolyRef::GetListOfValidValues()",
                           [](auto& r) { r.GetListOfValidValues(true); }),
    Unset<CIntegerPolyRef>("CIntegerPolyRef::GetRepresentation()",
                           [](auto& r) { r.GetRepresentation(); }),
    Unset<CIntegerPolyRef>("CIntegerPolyRef::GetUnit()", [](auto& r) { r.GetUnit(); }),
    Unset<CIntegerPolyRef>("CIntegerPolyRef::IsValueCacheValid()",
                           [](auto& r) { r.IsValueCacheValid(); }),
    Unset<CIntegerPolyRef>("CIntegerPolyRef::GetCachingMode()",
                           [](auto& r) { r.GetCachingMode(); }),
    Unset<CFloatPolyRef>("CFloatPolyRef::GetValue()", [](auto& r) { r.GetValue(); }),
    Unset<CFloatPolyRef>("CFloatPolyRef::SetValue()", [](auto& r) { r.SetValue(1); }),
    Unset<CFloatPolyRef>("CFloatPolyRef::GetMin()", [](auto& r) { r.GetMin(); }),
    Unset<CFloatPolyRef>("CFloatPolyRef::GetMax()", [](auto& r) { r.GetMax(); }),
    Unset<CFloatPolyRef>("CFloatPolyRef::HasInc()", [](auto& r) { r.HasInc(); }),
    Unset<CFloatPolyRef>("CFloatPolyRef::GetInc()", [](auto& r) { r.GetInc(); }),
    Unset<CFloatPolyRef>("CFloatPolyRef::GetIncMode()", [](auto& r) { r.GetIncMode(); }),
    Unset<CFloatPolyRef>("CFloatPolyRef::GetListOfValidValues()",
                         [](auto& r) { r.GetListOfValidValues(true); }),
    Unset<CFloatPolyRef>("CFloatPolyRef::GetRepresentation()",
                         [](auto& r) { r.GetRepresentation(); }),
    Unset<CFloatPolyRef>("CFloatPolyRef::GetUnit()", [](auto& r) { r.GetUnit(); }),
    Unset<CFloatPolyRef>("CFloatPolyRef::IsValueCacheValid()",
                         [](auto& r) { r.IsValueCacheValid(); }),
    Unset<CFloatPolyRef>("CFloatPolyRef::GetCachingMode()", [](auto& r) { r.GetCachingMode(); }),
    Unset<CBooleanPolyRef>("CBooleanPolyRef::GetValue()", [](auto& r) { r.GetValue(); }),
    Unset<CBooleanPolyRef>("CBooleanPolyRef::GetCachingMode()",
                           [](auto& r) { r.GetCachingMode(); }),
    Unset<CStringPolyRef>("CStringPolyRef::GetValue()", [](auto& r) { r.GetValue(); }),
    Unset<CStringPolyRef>("CStringPolyRef::SetValue()", [](auto& r) { r.SetValue("1"); }),
    Unset<CStringPolyRef>("CStringPolyRef::GetMaxLength()", [](auto& r) { r.GetMaxLength(); }),
    Unset<CStringPolyRef>("CStringPolyRef::IsValueCacheValid()",
                          [](auto& r) { r.IsValueCacheValid(); }),
    Unset<CStringPolyRef>("CStringPolyRef::GetCachingMode()", [](auto& r) { r.GetCachingMode(); }),
};

class UnsetReference : public testing::TestWithParam<UnsetOperation> {};

TEST_P(UnsetReference, RefusesEveryOperation) {
    EXPECT_EQ(DescriptionOf<RuntimeException>(GetParam().run),
              std::string(GetParam().name) + ": uninitialized pointer");
}

INSTANTIATE_TEST_SUITE_P(All, UnsetReference, testing::ValuesIn(kUnset));

// Constants.

TEST(ConstantReferenceValue, IsReadAndHasNoLimits) {
    CIntegerPolyRef integer;
    integer = int64_t{7};
    EXPECT_TRUE(integer.IsConstant());
    EXPECT_EQ(integer.GetValue(), 7);
    EXPECT_EQ(integer.GetMin(), kLowest);
    EXPECT_EQ(integer.GetMax(), kHighest);
    EXPECT_EQ(integer.GetInc(), 1);
    EXPECT_EQ(integer.GetUnit(), "");
    EXPECT_TRUE(integer.IsValueCacheValid());
    EXPECT_EQ(integer.GetCachingMode(), WriteThrough);
    EXPECT_FALSE(integer.IsReadable());
    CFloatPolyRef real;
    real = 0.5;
    EXPECT_EQ(real.GetValue(), 0.5);
    EXPECT_EQ(real.GetMin(), std::numeric_limits<double>::lowest());
    EXPECT_EQ(real.GetMax(), std::numeric_limits<double>::max());
    EXPECT_EQ(real.GetUnit(), "");
    CBooleanPolyRef flag;
    flag = true;
    EXPECT_TRUE(flag.GetValue());
    CStringPolyRef text;
    text = gcstring("text");
    EXPECT_EQ(text.GetValue(), "text");
    EXPECT_EQ(text.GetMaxLength(), 4);
}

TEST(ConstantReferenceValue, CannotBeWrittenWhereItIsANumber) {
    CIntegerPolyRef integer;
    integer = int64_t{7};
    EXPECT_EQ(DescriptionOf<RuntimeException>([&] { integer.SetValue(8); }),
              "CIntegerPolyRef::SetValue(): uninitialized pointer");
    CFloatPolyRef real;
    real = 0.5;
    EXPECT_EQ(DescriptionOf<RuntimeException>([&] { real.SetValue(8); }),
              "CFloatPolyRef::SetValue(): uninitialized pointer");
}

// Nodes.

TEST(ReferenceToANode, NeedsAnInterfaceThatFits) {
    XmlNodeMap nodes("<Float Name=\"F\"><Value>1</Value></Float>");
    INodePrivate* const port = &nodes.Get<INodePrivate>("Device");
    CIntegerPolyRef integer;
    EXPECT_EQ(DescriptionOf<RuntimeException>([&] { integer = port; }),
              "CIntegerPolyRef::operator(IBase*) : pointer is neither IInteger*, nor "
              "IEnumeration*, nor IBoolean*, nor IFloat*");
    CFloatPolyRef real;
    EXPECT_EQ(DescriptionOf<RuntimeException>([&] { real = port; }),
              "CFloatPolyRef::operator(IBase*) : pointer is neither IFloat*, IInteger*, nor "
              "IEnumeration*");
    CBooleanPolyRef flag;
    EXPECT_EQ(DescriptionOf<RuntimeException>([&] { flag = &nodes.Get<INodePrivate>("F"); }),
              "CIntegerPolyRef::operator(IBase*) : pointer is neither IInteger*, IEnumeration*, "
              "nor IBoolean*");
    CStringPolyRef text;
    EXPECT_EQ(DescriptionOf<RuntimeException>([&] { text = &nodes.Get<INodePrivate>("F"); }),
              "CStringPolyRef::operator(IBase*) : pointer is not IString*");
}

/// One node of each kind over registers.
class ReferenceToKind : public testing::Test {
protected:
    ReferenceToKind() {
        integer = &m_Nodes.Get<INodePrivate>("E");
        real = &m_Nodes.Get<INodePrivate>("E");
        boolean = &m_Nodes.Get<INodePrivate>("B");
    }

    XmlNodeMap m_Nodes{RegXml{.name = "EReg", .address = 0}() +
                       RegXml{.name = "BReg", .address = 4}() +
                       R"(<Enumeration Name="E">
                          <EnumEntry Name="Two"><Value>0</Value><NumericValue>2</NumericValue>
                          </EnumEntry>
                          <EnumEntry Name="Four"><Value>1</Value><NumericValue>4.5</NumericValue>
                          </EnumEntry>
                          <EnumEntry Name="Gone"><pIsAvailable>BReg</pIsAvailable><Value>2</Value>
                          <NumericValue>9</NumericValue></EnumEntry>
                          <pValue>EReg</pValue></Enumeration>
                          <Boolean Name="B"><pValue>BReg</pValue></Boolean>)"};
    CIntegerPolyRef integer;
    CFloatPolyRef real;
    CIntegerPolyRef boolean;
};

TEST_F(ReferenceToKind, ReadsTheNumberOfTheCurrentEntry) {
    EXPECT_EQ(integer.GetValue(), 2);
    m_Nodes.Get<IEnumeration>("E").SetIntValue(1);
    EXPECT_EQ(integer.GetValue(), 5);
    EXPECT_EQ(real.GetValue(), 4.5);
    EXPECT_EQ(integer.GetMin(), kLowest);
    EXPECT_EQ(integer.GetMax(), kHighest);
    EXPECT_EQ(integer.GetInc(), 1);
}

TEST_F(ReferenceToKind, HasNoNumberWithoutACurrentEntry) {
    m_Nodes.Port().Put(0, 77);
    EXPECT_EQ(DescriptionOf<LogicalErrorException>([&] { integer.GetValue(); }),
              "NULL pointer dereferenced");
    EXPECT_EQ(DescriptionOf<LogicalErrorException>([&] { real.GetValue(); }),
              "NULL pointer dereferenced");
}

TEST_F(ReferenceToKind, ChoosesTheNearestEntryThatIsThere) {
    integer.SetValue(4);
    EXPECT_EQ(m_Nodes.Port().Peek<int32_t>(0), 1);
    // Nearer to the third one, were it available.
    integer.SetValue(9);
    EXPECT_EQ(m_Nodes.Port().Peek<int32_t>(0), 1);
    boolean.SetValue(1);
    integer.SetValue(9);
    EXPECT_EQ(m_Nodes.Port().Peek<int32_t>(0), 2);
    // Between two the earlier one stays.
    real.SetValue(3.25);
    EXPECT_EQ(m_Nodes.Port().Peek<int32_t>(0), 0);
}

TEST_F(ReferenceToKind, WritesAnyNumberButZeroAsTrue) {
    boolean.SetValue(-3);
    EXPECT_EQ(m_Nodes.Port().Peek<int32_t>(4), 1);
    EXPECT_EQ(boolean.GetValue(), 1);
    boolean.SetValue(0);
    EXPECT_EQ(boolean.GetValue(), 0);
    EXPECT_EQ(boolean.GetMin(), kLowest);
    EXPECT_EQ(boolean.GetUnit(), "");
}

TEST(ReferenceToEntries, NeedsOneThatIsThere) {
    XmlNodeMap nodes(
        IntegerXml("Switch", "", "<Value>0</Value>") +
        R"(<Enumeration Name="E"><EnumEntry Name="A"><pIsAvailable>Switch</pIsAvailable>
           <Value>0</Value></EnumEntry><Value>0</Value></Enumeration>)");
    CIntegerPolyRef integer;
    integer = &nodes.Get<INodePrivate>("E");
    EXPECT_EQ(DescriptionOf<AccessException>([&] { integer.SetValue(0); }),
              "Failed to write enumeration. None of the entries is writable");
}

}  // namespace

}  // namespace EngineTest
