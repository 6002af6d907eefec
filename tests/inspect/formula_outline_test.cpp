// What the tokens of a formula tell about it.

#include "apps/inspect/lint/formula_outline.h"

#include "formula/formula_parser.h"

#include <algorithm>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace selvane_inspect;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

GenICam::formula_tree Read(std::string_view formula) {
    const auto anything = [](std::string_view) -> GenICam::resolved_name { return GenICam::eval_value(); };
    return GenICam::read_formula(formula, anything);
}

std::vector<std::string> Texts(const std::vector<formula_remark>& remarks) {
    std::vector<std::string> texts;
    for (const formula_remark& remark : remarks) texts.push_back(remark.text);
    return texts;
}

formula_outline Outline(std::string_view formula) { return outline_formula(Read(formula)); }

std::vector<std::string> Notes(std::string_view formula) { return formula_notes(Read(formula)); }

std::vector<std::string> Surprises(std::string_view formula) { return Texts(Outline(formula).surprises); }
std::vector<std::string> Breaks(std::string_view formula) { return Texts(Outline(formula).breaks); }
std::vector<std::string> Rounds(std::string_view formula) { return Texts(Outline(formula).short_rounds); }

TEST(FormulaOutline, PowersBindLikeProducts) {
    EXPECT_THAT(Surprises("2*3**2"), ElementsAre("computed as (2 * 3) ** 2"));
    EXPECT_THAT(Surprises("A/B**2"), ElementsAre("computed as (A / B) ** 2"));
    EXPECT_THAT(Surprises("2**3**2"), ElementsAre("computed as (2 ** 3) ** 2"));
    EXPECT_THAT(Surprises("2**3*2"), IsEmpty());
    EXPECT_THAT(Surprises("2*(3**2)"), IsEmpty());
    EXPECT_THAT(Surprises("2+3**2"), IsEmpty());
}

TEST(FormulaOutline, AMinusBindsTighterThanAPower) {
    EXPECT_THAT(Surprises("-A**2"), ElementsAre("-A ** is computed as (-A) **"));
    EXPECT_THAT(Surprises("-(A+1)**2"), ElementsAre("-(A+1) ** is computed as (-(A+1)) **"));
    EXPECT_THAT(Surprises("-SIN(A)**2"), ElementsAre("-SIN(A) ** is computed as (-SIN(A)) **"));
    EXPECT_THAT(Surprises("(-A)**2"), IsEmpty());
    EXPECT_THAT(Surprises("-(A**2)"), IsEmpty());
    EXPECT_THAT(Surprises("A-B**2"), IsEmpty());
    EXPECT_THAT(Surprises("A**-B"), IsEmpty());
}

TEST(FormulaOutline, ComparisonsAndLogicShareALevel) {
    EXPECT_THAT(Surprises("a&&b>c"), ElementsAre("computed as (a && b) > c"));
    EXPECT_THAT(Surprises("a=1&&b=2"), ElementsAre("computed as (a=1 && b) = 2"));
    EXPECT_THAT(Surprises("a||b&&c"), ElementsAre("computed as (a || b) && c"));
    EXPECT_THAT(Surprises("a>b&&c"), IsEmpty());
    EXPECT_THAT(Surprises("(a=1)&&(b=2)"), IsEmpty());
    EXPECT_THAT(Surprises("a&&b||c"), IsEmpty());
}

// From tight to loose, as people expect it, and how the formulas of descriptions have it.
const std::vector<std::vector<std::string>> expected_levels = {
    {"**"}, {"*", "/", "%"}, {"+", "-"}, {"<<", ">>"}, {"&"}, {"^"}, {"|"}, {"<", "<=", ">", ">=", "=", "<>"},
    {"&&"}, {"||"}};
const std::vector<std::vector<std::string>> actual_levels = {{"**", "*", "/", "%"},
                                                             {"+", "-"},
                                                             {"<<", ">>", "&", "^", "|"},
                                                             {"<", "<=", ">", ">=", "=", "<>", "&&", "||"}};

std::size_t LevelOf(const std::string& sign, const std::vector<std::vector<std::string>>& levels) {
    const auto found = std::find_if(levels.begin(), levels.end(), [&](const std::vector<std::string>& level) {
        return std::find(level.begin(), level.end(), sign) != level.end();
    });
    return static_cast<std::size_t>(found - levels.begin());
}

TEST(FormulaOutline, KnowsWhatIsExpectedOfEveryPair) {
    for (const auto& left_level : expected_levels) {
        for (const std::string& left : left_level) {
            for (const auto& right_level : expected_levels) {
                for (const std::string& right : right_level) {
                    const bool goes_left = LevelOf(left, actual_levels) <= LevelOf(right, actual_levels);
                    const bool expects_right =
                        LevelOf(left, expected_levels) > LevelOf(right, expected_levels) ||
                        (left == "**" && right == "**");
                    EXPECT_EQ(Surprises("a" + left + "b" + right + "c").size(),
                              goes_left && expects_right ? 1U : 0U)
                        << left << ' ' << right;
                }
            }
        }
    }
}

TEST(FormulaOutline, LooksPastWhatBindsTighter) {
    EXPECT_THAT(Surprises("a && b + c > d"), ElementsAre("computed as (a && b + c) > d"));
    EXPECT_THAT(Surprises("a = b * c + d"), IsEmpty());
}

TEST(FormulaOutline, BitsAndShiftsShareALevel) {
    EXPECT_THAT(Surprises("a&b<<8"), ElementsAre("computed as (a & b) << 8"));
    EXPECT_THAT(Surprises("a|b&c"), ElementsAre("computed as (a | b) & c"));
    EXPECT_THAT(Surprises("a|b^c"), ElementsAre("computed as (a | b) ^ c"));
    EXPECT_THAT(Surprises("a<<8|b"), IsEmpty());
    EXPECT_THAT(Surprises("1<<2+1"), IsEmpty());
    EXPECT_THAT(Surprises("a&3=2"), IsEmpty());
}

TEST(FormulaOutline, LooksIntoEveryPart) {
    EXPECT_THAT(Surprises("a ? 2*b**2 : SIN(1|2&3)"),
                ElementsAre("computed as (2 * b) ** 2", "computed as (1 | 2) & 3"));
    EXPECT_THAT(Surprises("ROUND(2*3**2, 1)"), ElementsAre("computed as (2 * 3) ** 2"));
    EXPECT_EQ(Outline("a ? 2*b**2 : 1").surprises.front().offset, 5U);
}

TEST(FormulaOutline, ShortensLongOperands) {
    const std::string name(60, 'N');
    const auto texts = Surprises("2*" + name + "**2");
    ASSERT_EQ(texts.size(), 1U);
    EXPECT_LT(texts.front().size(), 80U);
    EXPECT_THAT(texts.front(), HasSubstr("..."));
}

TEST(FormulaOutline, TellsWhatIsMissingAtTheEnd) {
    EXPECT_THAT(Breaks("1+"), ElementsAre("ends behind \"+\", which is dropped"));
    EXPECT_THAT(Breaks("a ? b"), ElementsAre("a ? has no :"));
    EXPECT_THAT(Breaks("a ? b :"), ElementsAre("ends behind \":\", which is dropped"));
    EXPECT_THAT(Breaks("SIN(1"), ElementsAre("SIN(1 is not closed"));
    EXPECT_THAT(Breaks("SIN(1,"), ElementsAre("ends behind \",\", which is dropped", "SIN(1, is not closed"));
}

TEST(FormulaOutline, ACompleteFormulaMissesNothing) {
    for (const char* complete : {"1", "a+b", "a?b:c", "a?b?1:2:c", "a?b:c?1:2", "SIN(1)", "ROUND(a, 2)",
                                 "(1)", " ", "-1", "~(a)", "A.Max * 2", "1e3", "a\n+ b "}) {
        EXPECT_THAT(Breaks(complete), IsEmpty()) << complete;
    }
}

TEST(FormulaOutline, FindsRoundsWithOneArgument) {
    EXPECT_THAT(Rounds("ROUND(A*10)"), ElementsAre("ROUND(A*10)"));
    EXPECT_THAT(Rounds("1 + ROUND( ROUND(A) )"), ElementsAre("ROUND(A)", "ROUND( ROUND(A) )"));
    EXPECT_THAT(Rounds("round(A)"), ElementsAre("round(A)"));
    EXPECT_THAT(Rounds("ROUND(A, 0) + TRUNC(A)"), IsEmpty());
    EXPECT_THAT(Rounds("ROUND(MAX(1,2), 0)"), IsEmpty());
    EXPECT_EQ(Outline("1 + ROUND(A)").short_rounds.front().offset, 4U);
}

// How many remarks there are, each with words and at a place of the text.
std::size_t RemarksWithin(const std::string& formula) {
    const formula_outline outline = Outline(formula);
    std::size_t count = 0;
    for (const auto* remarks : {&outline.breaks, &outline.surprises, &outline.short_rounds}) {
        for (const formula_remark& remark : *remarks) {
            EXPECT_LE(remark.offset, formula.size()) << formula << ": " << remark.text;
            EXPECT_FALSE(remark.text.empty()) << formula;
            ++count;
        }
    }
    return count;
}

TEST(FormulaOutline, FindsTheOffsetsOfItsRemarksInAnyText) {
    for (const char* odd : {"", ")", "))))", ",", "?:", ":?", "**", "a ? : b", "(1", "$", "1 2 3", "1 $ 2"}) {
        EXPECT_EQ(RemarksWithin(odd), 0U) << odd;
    }
    EXPECT_EQ(RemarksWithin("(((("), 1U);
    EXPECT_EQ(RemarksWithin("SIN("), 2U);
}

TEST(FormulaOutline, HasNothingToTellOfWhatNestsTooDeep) {
    EXPECT_EQ(RemarksWithin(std::string(100000, '(')), 0U);
    EXPECT_EQ(RemarksWithin(std::string(100000, '-') + "1"), 0U);
}

TEST(FormulaNotes, TellOfFormulasThatAreTaken) {
    EXPECT_THAT(Notes("a+b"), IsEmpty());
    EXPECT_THAT(Notes("1 2"), ElementsAre("ends before \"2\", which is ignored"));
    EXPECT_THAT(Notes("1)"), ElementsAre("ends before \")\", which is ignored"));
    EXPECT_THAT(Notes("12abc"), ElementsAre("ends before \"abc\", which is ignored"));
    EXPECT_THAT(Notes("1+"), ElementsAre("ends behind \"+\", which is dropped"));
    EXPECT_THAT(Notes("2*3**2"), ElementsAre("computed as (2 * 3) ** 2"));
}

std::string Refusal(std::string_view formula) {
    const auto nothing = [](std::string_view) -> GenICam::resolved_name { return {}; };
    const GenICam::formula_tree tree = GenICam::read_formula(formula, nothing);
    EXPECT_FALSE(tree.is_accepted());
    return refusal_text(formula, tree.end);
}

TEST(FormulaRefusal, SaysWhereAndWhy) {
    EXPECT_EQ(Refusal("1+GAIN*2"),
              "refused at character 7, behind \"1+GAIN\": Failed to map a variable name to a identifier_id");
    EXPECT_EQ(Refusal("(1+2"), "refused at character 5, behind \"(1+2\": Failed to find a ')'.");
    EXPECT_THAT(Refusal("Sin(1)"), HasSubstr("Failed to map a function identifier to a actual function."));
    EXPECT_THAT(Refusal(std::string(5000, '(')), HasSubstr("nested too deeply or too long"));
}

TEST(FormulaOutline, ShowsWhatEachSideOfASurpriseIsMadeOf) {
    EXPECT_THAT(Surprises("2+3*4**5"), ElementsAre("computed as (3 * 4) ** 5"));
    EXPECT_THAT(Surprises("2*3**4+5"), ElementsAre("computed as (2 * 3) ** 4"));
    EXPECT_THAT(Surprises("a&&b=c+d"), ElementsAre("computed as (a && b) = c+d"));
}

TEST(FormulaOutline, SeesASignBehindOthers) {
    EXPECT_THAT(Surprises("~-A**2"), ElementsAre("~-A ** is computed as (~-A) **"));
    EXPECT_THAT(Surprises("~A**2"), IsEmpty());
    EXPECT_THAT(Surprises("A+ -B**2"), ElementsAre("-B ** is computed as (-B) **"));
}

TEST(FormulaOutline, TellsAMissingColonOnce) {
    EXPECT_THAT(Breaks("A ? B ? C"), ElementsAre("a ? has no :"));
    EXPECT_THAT(Breaks("SIN(A ? B"), ElementsAre("a ? has no :", "SIN(A ? B is not closed"));
}

TEST(FormulaOutline, HasWordsForWhatPassesTheLimits) {
    const std::string deep = std::string(5000, '(') + "1";
    EXPECT_THAT(refusal_text(deep, Read(deep).end), HasSubstr(": Formula is nested too deeply or too long."));
}

}  // namespace
