// What the engine says of a description, and what would become of it.

#include "tests/inspect/lint_fixture.h"

#include <gmock/gmock.h>

namespace inspect_test {
namespace {

using testing::HasSubstr;

class LintEngine : public LintTest {};

TEST_F(LintEngine, LoadMessages) {
    Finds("load-message", "warning", R"(<Integer Name="I"><pValue>V</pValue>
  @<Min>low</Min></Integer>
<Integer Name="V"><Value>1</Value></Integer>)",
          {"GenICam::resolve_link_or_value_, Integer \"I\". Failed to parse content of \"Min\" node."});
    FindsNothing("load-message", R"(<Integer Name="I"><pValue>V</pValue><Min>-1</Min></Integer>
<Integer Name="V"><Value>1</Value></Integer>)");
}

TEST_F(LintEngine, LoadMessagesOfTheSecondLevel) {
    Finds("load-message", "warning",
          R"(<Category Name="Root"><pFeature>I</pFeature>@<pFeature>Gone</pFeature></Category>
<Integer Name="I"><Value>1</Value></Integer>)",
          {"GenICam::category_type::_resolve_references, Category (\"Root\"). Failed to resolve \"pFeature\" "
           "for feature=Gone."});
}

TEST_F(LintEngine, AskMessages) {
    Finds("ask-message", "warning",
          R"(<Integer Name="I"><Value>1</Value>@<Visibility>beginner</Visibility></Integer>
<Float Name="F"><Value>1</Value><Min>0</Min>@<Representation>linear</Representation></Float>)",
          {"GenICam::node_base_data::getVisibility, Integer (\"I\"). Failed to parse \"Visibility\" xml node "
           "contents (\"beginner\").",
           "Invalid contents (\"linear\") of Float \"Representation\" xml node."});
    FindsNothing("ask-message", R"(<Integer Name="I"><Value>1</Value><Visibility>Guru</Visibility></Integer>
<Float Name="F"><Value>1</Value><Min>0</Min><Representation>Linear</Representation></Float>)");
}

TEST_F(LintEngine, WhatItSaysAtTheLoadIsNotToldTwice) {
    const std::string elements =
        R"(<Integer Name="I"><Value>1</Value><Streamable>Maybe</Streamable></Integer>)";
    EXPECT_EQ(Lint("load-message", elements).size(), 1U);
    FindsNothing("ask-message", elements);
}

TEST_F(LintEngine, ReadMessages) {
    constexpr const char* enumeration = R"(@<Enumeration Name="E"><pValue>R</pValue>
<EnumEntry Name="On"><Value>1</Value></EnumEntry></Enumeration>
<IntReg Name="R"><Address>0x10</Address><Length>1</Length></IntReg>)";
    Finds("read-message", "note", enumeration,
          {"GenICam::enumeration_pValue_type::get_selected_entry, Enumeration (\"E\"). Failed to find "
           "EnumEntry corresponding to current value=0."});
    FindsNothing("read-message", std::string_view(enumeration).substr(1), {"--register", "0x10=01"});
}

TEST_F(LintEngine, ReadMessagesOfLimitsAndStates) {
    Finds("read-message", "note", R"(<Integer Name="I"><Value>1</Value><pMin>Short</pMin></Integer>
<IntReg Name="Short"><Address>0</Address>@<Length>9</Length></IntReg>
<Boolean Name="B"><Value>true</Value><pIsLocked>Odd</pIsLocked></Boolean>
@<Boolean Name="Odd"><pValue>R</pValue><OnValue>7</OnValue><OffValue>8</OffValue></Boolean>
<IntReg Name="R"><Address>0</Address><Length>4</Length></IntReg>)",
          {"GenICam::int_reg_type_base::get_val, IntReg (\"Short\"). Invalid Length value=9 out of range "
           "[1;8].",
           "GenICam::boolean_pValue_type::get_val, Boolean (\"Odd\"). Invalid floating_value contents=0."});
}

TEST_F(LintEngine, ReadMessagesOfOtherPorts) {
    const auto findings =
        Lint("read-message",
             R"(<IntReg Name="A"><Address>0</Address><Length>4</Length><pPort>Other</pPort></IntReg>
<IntReg Name="B"><Address>4</Address><Length>4</Length><pPort>Other</pPort></IntReg>
<Port Name="Other"/>)");
    ASSERT_EQ(findings.size(), 1U);
    EXPECT_EQ(findings[0]["message"],
              "GenICam::port_device_type::read, IPort (\"Other\"). Failed due to no bind called.");
    EXPECT_EQ(findings[0]["line"], 4);
    EXPECT_GE(findings[0]["count"], 2);
    EXPECT_EQ(findings[0]["places"].size(), 1U);
}

TEST_F(LintEngine, AnExceptionThatLeavesTheLoad) {
    const auto findings = Lint("load-exception", R"(<IntSwissKnife Name="K">
<pVariable Name="I.Entry">I</pVariable><pVariable Name="E.Entry">E</pVariable><Formula>1</Formula></IntSwissKnife>
<Integer Name="I"><Value>1</Value></Integer>
<Enumeration Name="E"><Value>0</Value><EnumEntry Name="On"><Value>0</Value></EnumEntry></Enumeration>)");
    ASSERT_EQ(findings.size(), 1U);
    EXPECT_EQ(findings[0]["severity"], "error");
    EXPECT_EQ(findings[0]["line"], 3);
    EXPECT_EQ(findings[0]["column"], 40);
    EXPECT_THAT(findings[0]["message"].get<std::string>(), HasSubstr("an exception leaves the load: "));
    FindsNothing("load-exception", R"(<IntSwissKnife Name="K">
<pVariable Name="E.Entry.On">E</pVariable><Formula>1</Formula></IntSwissKnife>
<Enumeration Name="E"><Value>0</Value><EnumEntry Name="On"><Value>0</Value></EnumEntry></Enumeration>)");
}

TEST_F(LintEngine, WhatNeedsNoNodesIsFoundWithoutThem) {
    const Outcome outcome = LintAll(
        R"(<IntSwissKnife Name="K"><pVariable Name="E.Entry">E</pVariable><Formula>1</Formula></IntSwissKnife>
<Enumeration Name="E"><Value>0</Value><EnumEntry Name="On"><Value>0</Value></EnumEntry></Enumeration>
<Interger Name="I"/>)");
    EXPECT_EQ(outcome.code, 1);
    EXPECT_THAT(outcome.out, HasSubstr("[load-exception]"));
    EXPECT_THAT(outcome.out, HasSubstr("[unknown-element]"));
}

TEST_F(LintEngine, WhatTheEngineRefusesIsExaminedAllTheSame) {
#ifdef SELVANE_SANITIZED
    GTEST_SKIP() << "sixteen million steps take too long here";
#endif
    const Outcome outcome = Call({"lint", WriteElements(test_support::RefusedElements())});
    EXPECT_EQ(outcome.code, 1);
    EXPECT_THAT(outcome.out, HasSubstr("have more than 16777216 entries"));
}

TEST_F(LintEngine, DefaultsAreNotWrittenWithoutNodes) {
    const Outcome outcome = LintAll(
        R"(<IntSwissKnife Name="K"><pVariable Name="E.Entry">E</pVariable><Formula>1</Formula></IntSwissKnife>
<Enumeration Name="E"><Value>0</Value></Enumeration>
<Integer Name="I"><Value>0</Value><Extension><Default>1</Default></Extension></Integer>)",
        {"--defaults"});
    EXPECT_EQ(outcome.code, 1);
    EXPECT_THAT(outcome.out, HasSubstr("an exception leaves the load"));
}

TEST_F(LintEngine, Circles) {
    Finds("circle", "error", R"(@<Integer Name="A"><pValue>B</pValue></Integer>
<Integer Name="B"><pValue>A</pValue></Integer>
@<Integer Name="Own"><pValue>Own</pValue></Integer>
@<IntReg Name="R"><pAddress>K</pAddress><Length>4</Length></IntReg>
<IntSwissKnife Name="K"><pVariable Name="R">R</pVariable><Formula>R</Formula></IntSwissKnife>)",
          {"a circle: A needs B needs A", "a circle: Own needs Own", "a circle: R needs K needs R"});
}

TEST_F(LintEngine, WhatGoesRoundWithoutBeingAskedIsNoCircle) {
    FindsNothing(
        "circle",
        R"(<Integer Name="A"><Value>1</Value><pInvalidator>B</pInvalidator><pSelected>B</pSelected></Integer>
<Integer Name="B"><Value>1</Value><pInvalidator>A</pInvalidator><pSelected>A</pSelected><pMax>A</pMax></Integer>
<Integer Name="Own"><Value>1</Value><pMax>Own</pMax></Integer>
<Integer Name="C"><Value>1</Value><pIsLocked>D</pIsLocked></Integer>
<Integer Name="D"><pValue>C</pValue></Integer>)");
}

TEST_F(LintEngine, DeepChains) {
    const auto chain = [](int nodes) {
        std::string elements;
        for (int node = 0; node < nodes; ++node) {
            elements += "<Integer Name=\"N" + std::to_string(node) + "\"><pValue>N" +
                        std::to_string(node + 1) + "</pValue></Integer>\n";
        }
        return elements + "<Integer Name=\"N" + std::to_string(nodes) + "\"><Value>1</Value></Integer>";
    };
    const auto findings = Lint("deep-chain", chain(1500));
    ASSERT_FALSE(findings.empty());  // one for each question that goes all the way down
    EXPECT_EQ(findings[0]["severity"], "warning");
    EXPECT_EQ(findings[0]["message"], "more than 1000 nodes depend on one another below N499");
    EXPECT_EQ(findings[0]["line"], 501);
    EXPECT_EQ(findings[0]["column"], 1);
    FindsNothing("deep-chain", chain(400));
}

TEST_F(LintEngine, DivisionsByZero) {
    constexpr const char* elements =
        R"(@<IntSwissKnife Name="K"><pVariable Name="R">R</pVariable><Formula>100/R</Formula></IntSwissKnife>
<IntReg Name="R"><Address>0x10</Address><Length>4</Length><Endianess>LittleEndian</Endianess></IntReg>)";
    Finds("division-by-zero", "warning", elements,
          {"Formula of K divides integers without a result, such as by zero"});
    FindsNothing("division-by-zero", std::string_view(elements).substr(1), {"--register", "0x10=05"});
    FindsNothing(
        "division-by-zero",
        R"(<SwissKnife Name="K"><pVariable Name="R">R</pVariable><Formula>100/R</Formula></SwissKnife>
<IntReg Name="R"><Address>0</Address><Length>4</Length></IntReg>)");
}

TEST_F(LintEngine, AnExceptionThatLeavesTheLoadIsToldAtTheFirstNameThatBringsIt) {
    const auto findings = Lint("load-exception", R"(<IntSwissKnife Name="K">
<pVariable Name="E.Entry.On">E</pVariable><pVariable Name="N.Entry">Nowhere</pVariable>
<pVariable Name="E.Entry">E</pVariable><Formula>1</Formula></IntSwissKnife>
<IntSwissKnife Name="L"><pVariable Name="F.Entry">E</pVariable><Formula>1</Formula></IntSwissKnife>
<Enumeration Name="E"><Value>0</Value><EnumEntry Name="On"><Value>0</Value></EnumEntry></Enumeration>)");
    ASSERT_EQ(findings.size(), 1U);
    EXPECT_EQ(findings[0]["line"], 4);
    EXPECT_EQ(findings[0]["column"], 1);
}

}  // namespace
}  // namespace inspect_test
