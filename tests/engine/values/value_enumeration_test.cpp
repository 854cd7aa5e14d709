// Enumerations and their entries.

#include "ValueGraph.h"

namespace ValueTest {

namespace {

/// "Mode" over a register with "Off" 0, "Slow" 3 and "Fast" 7. "Fast" is only
/// there while the register "HasFast" is not 0, "Slow" while "HasSlow" is not.
class EnumerationValue : public ValueGraph {
protected:
    EnumerationValue() {
        AddReg("Reg", 0);
        AddReg("HasFast", 4);
        AddReg("HasSlow", 8);
        m_Port.Put(4, 1);
        m_Port.Put(8, 1);
        AddEntry("Off", 0);
        AddEntry("Slow", 3, {{ID::pIsImplemented_ID, "HasSlow"}});
        AddEntry("Fast", 7, {{ID::pIsAvailable_ID, "HasFast"}});
        Add(CNodeData::Enumeration_ID, "Mode",
            {{ID::pEnumEntry_ID, "Off"},
             {ID::pEnumEntry_ID, "Slow"},
             {ID::pEnumEntry_ID, "Fast"},
             {ID::pValue_ID, "Reg"}});
    }
    IEnumeration& Mode() { return Get<IEnumeration>("Mode"); }
    std::vector<std::string> Symbolics() {
        gcstring_vector symbolics;
        Mode().GetSymbolics(symbolics);
        return {symbolics.begin().operator->(), symbolics.end().operator->()};
    }
};

/// "Mode" with "Idle" 0 and the self-clearing "Reset" 1.
class SelfClearingEntry : public ValueGraph {
protected:
    SelfClearingEntry() {
        AddReg("Reg", 0);
        AddEntry("Idle", 0);
        AddEntry("Reset", 1).AddProperty(ID::IsSelfClearing_ID, CProperty::EYesNo_ID, Yes);
        Add(CNodeData::Enumeration_ID, "Mode",
            {{ID::pEnumEntry_ID, "Idle"}, {ID::pEnumEntry_ID, "Reset"}, {ID::pValue_ID, "Reg"}});
        Build();
    }
    IEnumeration& Mode() { return Get<IEnumeration>("Mode"); }
};

}  // namespace

TEST_F(EnumerationValue, WritesTheNumberOfAnEntry) {
    Build();
    Mode() = "Fast";
    EXPECT_EQ(m_Port.Peek(0), 7);
    EXPECT_EQ(Mode().GetIntValue(), 7);
    EXPECT_EQ(*Mode(), "Fast");
}

TEST_F(EnumerationValue, ListsTheSymbolicsThatCanBeChosenInOrder) {
    Build();
    EXPECT_THAT(Symbolics(), testing::ElementsAre("Off", "Slow", "Fast"));
    Get<IInteger>("HasFast").SetValue(0);
    Get<IInteger>("HasSlow").SetValue(0);
    EXPECT_THAT(Symbolics(), testing::ElementsAre("Off"));
}

TEST_F(EnumerationValue, ListsAllEntries) {
    m_Port.Put(4, 0);
    Build();
    node_vector entries;
    Mode().GetEntries(entries);
    EXPECT_EQ(entries.size(), 3U);
}

TEST_F(EnumerationValue, FindsEntriesBySymbolicAndByNumber) {
    Build();
    EXPECT_EQ(Mode().GetEntryByName("Slow")->GetValue(), 3);
    EXPECT_EQ(Mode().GetEntry(7)->GetSymbolic(), "Fast");
    EXPECT_EQ(Mode().GetEntryByName("None"), nullptr);
    EXPECT_EQ(Mode().GetEntry(1), nullptr);
    Mode().SetIntValue(3);
    EXPECT_EQ(Mode().GetCurrentEntry(), Mode().GetEntry(3));
}

TEST_F(EnumerationValue, RefusesANumberWithoutAnEntry) {
    Build();
    EXPECT_EQ(FailureText<InvalidArgumentException>([&] { Mode().SetIntValue(5, false); }),
              "Feature 'Mode' : cannot convert value '5', the value is invalid.");
    EXPECT_EQ(m_Port.writes, 0);
}

TEST_F(EnumerationValue, RefusesASymbolicWithoutAnEntry) {
    Build();
    EXPECT_EQ(FailureText<InvalidArgumentException>([&] { Mode().FromString("Warp", false); }),
              "Feature 'Mode' : cannot convert value 'Warp', the value is invalid.");
}

TEST_F(EnumerationValue, RefusesToVerifyAnEntryThatIsNotAvailable) {
    m_Port.Put(4, 0);
    Build();
    EXPECT_EQ(FailureText<AccessException>([&] { Mode().SetIntValue(7); }),
              "Failed to write enumeration value. Enum entry is not writable");
    EXPECT_EQ(FailureText<AccessException>([&] { Mode().FromString("Fast"); }),
              "Failed to write enumeration value. Enum entry is not writable");
    Mode().SetIntValue(7, false);
    EXPECT_EQ(m_Port.Peek(0), 7);
}

TEST_F(EnumerationValue, RefusesToVerifyAnEntryThatIsNotReadable) {
    m_Port.Put(0, 7);
    m_Port.Put(4, 0);
    Build();
    EXPECT_EQ(FailureText<AccessException>([&] { Mode().GetIntValue(true); }),
              "Failed to write enumeration value. Enum entry is not readable");
    EXPECT_EQ(Mode().GetIntValue(), 7);
}

TEST_F(EnumerationValue, HasNoTextForAnEntryThatIsNotAvailable) {
    m_Port.Put(0, 7);
    m_Port.Put(4, 0);
    Build();
    EXPECT_EQ(FailureText<AccessException>([&] { Mode().ToString(); }),
              "Enumeration value 'Fast' is not available.");
}

TEST_F(EnumerationValue, ReadsANumberWithoutAnEntryButHasNoTextForIt) {
    m_Port.Put(0, 5);
    Build();
    EXPECT_EQ(Mode().GetIntValue(), 5);
    EXPECT_EQ(Mode().GetCurrentEntry(), nullptr);
    const std::string message = "Feature 'Mode' : cannot convert value '5', the value is invalid.";
    EXPECT_EQ(FailureText<InvalidArgumentException>([&] { Mode().ToString(); }), message);
    EXPECT_EQ(FailureText<InvalidArgumentException>([&] { Mode().GetIntValue(true); }), message);
}

TEST_F(EnumerationValue, KeepsWhatWasWritten) {
    Build();
    Mode().SetIntValue(3);
    EXPECT_TRUE(Mode().IsValueCacheValid());
    EXPECT_EQ(Mode().ToString(), "Slow");
    EXPECT_EQ(m_Port.reads, 1) << "whether the entry is there, and nothing more";
}

TEST_F(EnumerationValue, NamesTheCallInAFailure) {
    Build();
    try {
        Mode().SetIntValue(5);
        FAIL();
    } catch (const InvalidArgumentException& failure) {
        EXPECT_THAT(failure.what(), testing::HasSubstr("while calling 'Mode.SetIntValue()'"));
    }
}

TEST_F(EnumerationValue, TakesTheFirstOfTwoEntriesWithOneNumber) {
    AddEntry("Zero", 0);
    m_Data.GetNodeData(m_Data.FindNodeID("Mode"))
        ->AddProperty(ID::pEnumEntry_ID, m_Data.FindNodeID("Zero"));
    Build();
    EXPECT_EQ(Mode().ToString(), "Off");
    Mode().FromString("Zero");
    EXPECT_EQ(Mode().GetIntValue(), 0);
}

TEST_F(EnumerationValue, IsSpokenForByTheEnumerationInterface) {
    Build();
    EXPECT_EQ(Get<INode>("Mode").GetPrincipalInterfaceType(), intfIEnumeration);
    EXPECT_EQ(Get<INode>("Off").GetPrincipalInterfaceType(), intfIEnumEntry);
}

TEST_F(SelfClearingEntry, MakesReadsGoToTheDeviceUntilItsValueChanges) {
    Mode().FromString("Reset");
    EXPECT_FALSE(Mode().IsValueCacheValid());
    EXPECT_EQ(Mode().GetIntValue(), 1);
    EXPECT_EQ(Mode().GetIntValue(), 1);
    EXPECT_EQ(m_Port.reads, 2);
    m_Port.Put(0, 0);
    EXPECT_EQ(Mode().ToString(), "Idle");
    EXPECT_EQ(m_Port.reads, 3);
    EXPECT_EQ(Mode().GetIntValue(), 0);
    EXPECT_EQ(m_Port.reads, 3);
}

TEST_F(SelfClearingEntry, IsForgottenWhenAnotherIsWritten) {
    Mode().FromString("Reset");
    Mode().FromString("Idle");
    EXPECT_TRUE(Mode().IsValueCacheValid());
    EXPECT_EQ(Mode().GetIntValue(), 0);
    EXPECT_EQ(m_Port.reads, 0);
}

using EnumEntryValue = ValueGraph;

TEST_F(EnumEntryValue, TellsWhatItsDescriptionSays) {
    CNodeData& plain = AddEntry("Plain", 3);
    plain.AddProperty(ID::IsSelfClearing_ID, CProperty::EYesNo_ID, Yes);
    Build();
    auto& entry = Get<IEnumEntry>("Plain");
    EXPECT_EQ(entry.GetValue(), 3);
    EXPECT_EQ(entry.GetNumericValue(), 3.0);
    EXPECT_EQ(entry.GetSymbolic(), "Plain");
    EXPECT_TRUE(entry.IsSelfClearing());
    EXPECT_EQ(entry.ToString(), "Plain");
}

TEST_F(EnumEntryValue, PrefersItsNumericValueInAnyOrder) {
    CNodeData& first = Add(CNodeData::EnumEntry_ID, "First");
    first.AddProperty(ID::NumericValue_ID, 2.5);
    first.AddProperty(ID::Value_ID, 3);
    AddEntry("Last", 3).AddProperty(ID::NumericValue_ID, 2.5);
    Build();
    EXPECT_EQ(Get<IEnumEntry>("First").GetNumericValue(), 2.5);
    EXPECT_EQ(Get<IEnumEntry>("Last").GetNumericValue(), 2.5);
}

TEST_F(EnumEntryValue, CannotBeWritten) {
    AddEntry("Plain", 3);
    Build();
    EXPECT_EQ(FailureText<LogicalErrorException>([&] { Get<IEnumEntry>("Plain").FromString("4"); }),
              "EnumEntry Plain can't set value from string  : 4. Use derived class!");
}

}  // namespace ValueTest
