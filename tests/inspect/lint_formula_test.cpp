// What an author would regret in formulas.

#include "tests/inspect/lint_fixture.h"

#include <gmock/gmock.h>

namespace inspect_test {
namespace {

class LintFormulas : public LintTest {
protected:
    /// A float converter over an integer register with these formulas.
    static std::string Converter(const std::string& to, const std::string& from) {
        return "<Converter Name=\"C\"><FormulaTo>" + to + "</FormulaTo><FormulaFrom>" + from +
               "</FormulaFrom><pValue>R</pValue></Converter>\n"
               "<IntReg Name=\"R\"><Address>0</Address><Length>4</Length></IntReg>";
    }
    /// A formula over two variables that are one and the same register.
    static std::string SwissKnife(const std::string& formula, const std::string& element = "IntSwissKnife") {
        return "<" + element +
               " Name=\"K\"><pVariable Name=\"A\">R</pVariable><pVariable Name=\"B\">R</pVariable>" +
               "<Formula>" + formula + "</Formula></" + element + ">\n" +
               "<IntReg Name=\"R\"><Address>0x10</Address><Length>4</Length></IntReg>";
    }
    static std::vector<std::string> NotZero() { return {"--register", "0x10=00000001"}; }
};

TEST_F(LintFormulas, Refused) {
    Finds("formula-refused", "error", SwissKnife("A + @$"),
          {"Formula of K is refused at character 5, behind \"A +\": Invalid token found."});
    Finds("formula-refused", "error", SwissKnife("A @!= B"),
          {"Formula of K is refused at character 3, behind \"A\": Invalid token found."});
    Finds("formula-refused", "error", SwissKnife("FROM @* 2"),
          {"Formula of K is refused at character 6, behind \"FROM\": Failed to map a variable name to a "
           "identifier_id"});
    Finds("formula-refused", "error", SwissKnife("Sin(A)@"),
          {"Formula of K is refused at character 7, behind \"Sin(A)\": Failed to map a function identifier "
           "to a actual function."});
    FindsNothing("formula-refused", SwissKnife("A + 0x10 &lt;&gt; SIN(B)"));
    FindsNothing("formula-refused", Converter("FROM*10", "TO/10.0"));
}

TEST_F(LintFormulas, RefusedAtEachPosition) {
    Finds("formula-refused", "error", Converter("FROM @# 2", "1 @$"),
          {"FormulaTo of C is refused at character 6, behind \"FROM\": Invalid token found.",
           "FormulaFrom of C is refused at character 3, behind \"1\": Invalid token found."});
}

TEST_F(LintFormulas, RoundWithOneArgument) {
    Finds("round-one-argument", "error", SwissKnife("1 + @ROUND(A * 2)"),
          {"Formula of K: ROUND(A * 2) has one argument"});
    Finds("round-one-argument", "error", SwissKnife("@round(A)"),
          {"Formula of K: round(A) has one argument"});
    FindsNothing("round-one-argument", SwissKnife("ROUND(A * 2, 0) + ROUND(ABS(B), 1)"));
    FindsNothing("formula-refused", SwissKnife("ROUND(A)"));
}

TEST_F(LintFormulas, BreaksOff) {
    Finds("formula-breaks-off", "warning", SwissKnife("A @+"),
          {"Formula of K: ends behind \"+\", which is dropped"});
    Finds("formula-breaks-off", "warning", SwissKnife("@A ? B"), {"Formula of K: a ? has no :"});
    Finds("formula-breaks-off", "warning", SwissKnife("1 + @SIN(A"), {"Formula of K: SIN(A is not closed"});
    FindsNothing("formula-breaks-off", SwissKnife("(A + B) ? SIN(A) : -1"));
}

TEST_F(LintFormulas, TextThatIsIgnored) {
    Finds("formula-text-ignored", "warning", SwissKnife("A @B"), {"Formula of K ends before \"B\""});
    Finds("formula-text-ignored", "warning", SwissKnife("(A + 1)@) * 2"),
          {"Formula of K ends before \") * 2\""});
    FindsNothing("formula-text-ignored", SwissKnife("(A + 1) * 2  \n"));
}

TEST_F(LintFormulas, OperatorOrder) {
    Finds("operator-order", "warning", SwissKnife("2@*A**2"), {"Formula of K: computed as (2 * A) ** 2"});
    FindsNothing("operator-order", SwissKnife("2*(A**2)"));
    FindsNothing("operator-order", SwissKnife("A&lt;&lt;2+1"));
    FindsNothing("operator-order", SwissKnife("A+B*2-1/(A+1)"));
}

TEST_F(LintFormulas, PositionsAreThoseOfTheFileNotOfTheMeaning) {
    Finds("operator-order", "warning", SwissKnife("A &gt; 1 @&amp;&amp; B &gt; 2"),
          {"Formula of K: computed as (A > 1 && B) > 2"});
    Finds("operator-order", "warning", SwissKnife("<![CDATA[\n A > 1 @&& B > 2]]>"),
          {"Formula of K: computed as (A > 1 && B) > 2"});
    Finds("operator-order", "warning", SwissKnife("<b/>1 +\r\n 2@*A**2"),
          {"Formula of K: computed as (2 * A) ** 2"});
}

TEST_F(LintFormulas, IntegerDivisionOfAnIntegerTarget) {
    const std::vector<std::string> message = {
        "FormulaFrom of C: FROM / 10 divides integers and drops the fraction"};
    Finds("integer-division", "warning",
          "<Converter "
          "Name=\"C\"><FormulaTo>FROM*10</FormulaTo>@<FormulaFrom>FROM/10</FormulaFrom><pValue>R</pValue></"
          "Converter>"
          "<IntReg Name=\"R\"><Address>0</Address><Length>4</Length></IntReg>",
          message);
    FindsNothing("integer-division", Converter("FROM*10", "FROM/10.0"));
    FindsNothing("integer-division", Converter("FROM/10", "FROM * 0.1"));
    FindsNothing("integer-division", Converter("FROM", "FROM + 100/10"));
}

TEST_F(LintFormulas, TheValueOnItsWayBearsTheNameThatTheFormulaUses) {
    EXPECT_EQ(Lint("integer-division", Converter("1000/FROM", "1000/TO")).at(0)["message"],
              "FormulaFrom of C: 1000 / TO divides integers and drops the fraction");
    EXPECT_EQ(Lint("integer-division", Converter("1000/FROM", "1000/FROM")).at(0)["message"],
              "FormulaFrom of C: 1000 / FROM divides integers and drops the fraction");
}

TEST_F(LintFormulas, IntegerDivisionDependsOnTheKindOfTheTarget) {
    const auto over = [](const std::string& target) {
        return "<Converter "
               "Name=\"C\"><FormulaTo>FROM</FormulaTo><FormulaFrom>FROM/10</FormulaFrom><pValue>R</pValue></"
               "Converter>" +
               target;
    };
    const auto finds = [&](const std::string& target) {
        return !Lint("integer-division", over(target)).empty();
    };
    EXPECT_TRUE(finds("<Boolean Name=\"R\"><Value>true</Value></Boolean>"));
    EXPECT_TRUE(
        finds("<Enumeration Name=\"R\"><Value>0</Value><EnumEntry "
              "Name=\"A\"><Value>0</Value></EnumEntry></Enumeration>"));
    EXPECT_FALSE(
        finds("<Enumeration Name=\"R\"><Value>0</Value><EnumEntry "
              "Name=\"A\"><Value>0</Value><NumericValue>0.5</NumericValue></EnumEntry></Enumeration>"));
    EXPECT_FALSE(finds("<Float Name=\"R\"><Value>1</Value></Float>"));
    EXPECT_FALSE(finds("<String Name=\"R\"><Value>1</Value></String>")) << "nothing is known of it";
    EXPECT_FALSE(finds("")) << "without a target nothing is computed";
    EXPECT_FALSE(finds("<FloatReg Name=\"R\"><Address>0</Address><Length>4</Length></FloatReg>"));
}

TEST_F(LintFormulas, IntegerDivisionOfLiteralsInAFloatFormula) {
    Finds("integer-division", "warning",
          R"(<SwissKnife Name="K"><pVariable Name="A">I</pVariable>@<Formula>A * (1/3)</Formula></SwissKnife>
<Integer Name="I"><Value>1</Value></Integer>)",
          {"Formula of K: 1 / 3 divides integers and drops the fraction"});
    FindsNothing("integer-division", SwissKnife("A/3", "SwissKnife"));
    FindsNothing("integer-division", SwissKnife("A/3", "IntSwissKnife"), NotZero());
}

TEST_F(LintFormulas, GuardedDivision) {
    Finds("guarded-division", "warning",
          R"(<IntSwissKnife Name="K"><pVariable Name="A">R</pVariable>
@<Formula>A = 0 ? 0 : 100 / A</Formula></IntSwissKnife>
<IntReg Name="R"><Address>0</Address><Length>4</Length></IntReg>)",
          {"Formula of K: 100 / A is computed whatever the condition says"});
}

TEST_F(LintFormulas, GuardedDivisionSeesThroughExpressionsAndRemainders) {
    Finds("guarded-division", "warning",
          R"(<SwissKnife Name="K"><pVariable Name="A">R</pVariable>
<Expression Name="ODD">A % 2</Expression>
@<Formula>ODD > 0 ? 7 % ODD : 0</Formula></SwissKnife>
<IntReg Name="R"><Address>0</Address><Length>4</Length></IntReg>)",
          {"Formula of K: 7 % (A % 2) is computed whatever the condition says"});
}

TEST_F(LintFormulas, WhatCannotBeZeroNeedsNoGuard) {
    FindsNothing("guarded-division", SwissKnife("A = 0 ? 0 : 100 / (A + (A = 0))"));
    FindsNothing("guarded-division", SwissKnife("A &gt; 5 ? 100 / (A | 1) : 0"));
    FindsNothing("guarded-division", SwissKnife("A &gt; 5 ? A / 10 : A / 20"));
    FindsNothing("guarded-division", SwissKnife("A = 0 ? 0 : 100 / A", "SwissKnife"));
    FindsNothing("guarded-division", SwissKnife("100 / (A + 1)"));
}

TEST_F(LintFormulas, AGuardAgainstAnotherNumberIsSeen) {
    const auto finds = [&](const std::string& formula) {
        return !Lint("guarded-division", SwissKnife(formula)).empty();
    };
    EXPECT_TRUE(finds("A = 77 ? 0 : 100 / (A - 77)"));
    EXPECT_TRUE(finds("A &gt; B ? 100 / (A - B) : 0"));
    EXPECT_TRUE(finds("(A &amp; 0xF00) ? 100 / ((A &amp; 0xF00) >> 8) : 1"));
}

}  // namespace
}  // namespace inspect_test
