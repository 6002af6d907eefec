// How the names in a node's formulas find their values.

#include "formula/expansion_budget.h"
#include "formula/variable_table.h"
#include "tests/formula/formula_node_test.h"

#include <stdexcept>

using namespace formula_test;
using GenICam::eval_value;
using GenICam::expansion_budget;
using GenICam::variable_table;

namespace {

constexpr const char* swissknife_refused =
    "GenICam::converter::swissknife_impl::resolve_converter_references, SwissKnife (\"k\"). failed to "
    "evaluate ";

std::string int_swissknife(const std::string& bindings, const std::string& text) {
    return node("IntSwissKnife", bindings + formula(text));
}
std::string float_swissknife(const std::string& bindings, const std::string& text) {
    return node("SwissKnife", bindings + formula(text));
}

std::int64_t int_value(const std::string& nodes, const std::string& bindings, const std::string& text) {
    TestDocument doc(nodes + int_swissknife(bindings, text));
    EXPECT_THAT(doc.load_messages, IsEmpty()) << text;
    return doc.Integer("k").get_val(0).value();
}
double float_value(const std::string& nodes, const std::string& bindings, const std::string& text) {
    TestDocument doc(nodes + float_swissknife(bindings, text));
    EXPECT_THAT(doc.load_messages, IsEmpty()) << text;
    return doc.Float("k").get_val(0).value();
}

TEST(FormulaConstants, AreReadByTheClass) {
    EXPECT_EQ(int_value("", constant("C", "0x10"), "C+1"), 17);
    EXPECT_EQ(int_value("", constant("C", "1.5"), "C*10"), 10);  // up to the first character that is no digit
    EXPECT_EQ(int_value("", constant("C", "-3"), "C"), -3);
    EXPECT_EQ(float_value("", constant("C", "1.5"), "C*10"), 15.0);
    EXPECT_EQ(float_value("", constant("C", "-1e-3"), "C"), -0.001);
    EXPECT_EQ(float_value("", constant("C", "7"), "C/2"), 3.5);
    EXPECT_EQ(int_value("", constant("C", "7"), "C/2"), 3);
}

TEST(FormulaConstants, BadTextIsLoggedAndLeavesTheNameUnknown) {
    TestDocument doc(int_swissknife(constant("C", ".5") + constant("D", "2"), "C+D"));
    EXPECT_THAT(
        doc.load_messages,
        ElementsAre("GenICam::converter::build_formula_name_lookup, failed to parse Constant named=\"C\" "
                    "content=\".5\".\n",
                    unknown_name("C"), name_not_mapped("+D"), std::string(swissknife_refused) + "\"C+D\"\n"));
    EXPECT_EQ(doc.Integer("k").get_val(0).error(), code(not_implemented));
}

TEST(FormulaConstants, TheFirstOfTwoCounts) {
    EXPECT_EQ(int_value("", constant("C", "1") + constant("C", "2"), "C"), 1);
}

TEST(FormulaConstants, OutrankVariables) {
    TestDocument doc(integer("n", "5") + int_swissknife(variable("A", "n") + constant("A", "7"), "A"));
    EXPECT_EQ(doc.Integer("k").get_val(0).value(), 7);
    // The node is neither read nor watched.
    ChangeCounter changes(doc.Node("k"));
    EXPECT_FALSE(doc.Integer("n").set_val(6, 0));
    EXPECT_EQ(changes.Count(), 0);
}

TEST(FormulaVariables, ReadTheirNodes) {
    const std::string nodes = integer("i", "7") + real("f", "2.5") + truth_value("b", "true");
    const std::string bindings = variable("I", "i") + variable("F", "f") + variable("B", "b");
    EXPECT_EQ(int_value(nodes, bindings, "I*100+F*10+B"), 731);  // 2.5 is 3 in an integer formula
    EXPECT_EQ(float_value(nodes, bindings, "I*100+F*10+B"), 726.0);
    EXPECT_EQ(int_value(nodes, bindings, "I/2"), 3);
    EXPECT_EQ(float_value(nodes, bindings, "I/2"), 3.5);
    EXPECT_EQ(float_value(nodes, bindings, "7/2"), 3.0);
}

TEST(FormulaVariables, KeepAllDigitsOfIntegers) {
    EXPECT_EQ(int_value(integer("i", "9007199254740993"), variable("I", "i"), "I*1"), 9007199254740993);
    EXPECT_EQ(float_value(integer("i", "9007199254740993"), variable("I", "i"), "I*1"), 9007199254740992.0);
}

// As many as no description has whose author wrote it by hand.
TEST(FormulaVariables, OfALargeTableStandForTheSame) {
    std::string nodes;
    std::string bindings = constant("V3", "1000");
    std::string sum = "X";
    for (int at = 0; at < 200; ++at) {
        const std::string number = std::to_string(at);
        nodes += integer("n" + number, number);
        bindings += variable("V" + number, "n" + number);
        sum += "+V" + number;
    }
    bindings += variable("V7", "n0") + expression("X", "V5*2") + expression("V9", "1");
    EXPECT_EQ(int_value(nodes, bindings, sum), 10 + 199 * 200 / 2 - 3 + 1000);
    TestDocument doc(nodes + int_swissknife(bindings, "V200"));
    EXPECT_EQ(doc.Integer("k").get_val(0).error(), code(not_implemented));
}

TEST(FormulaVariables, OfALargeTableAreNotSearchedOneByOne) {
    expansion_budget budget;
    variable_table small(true, budget);
    small.reserve(10, 0);
    small.add_constant("A", eval_value::of(std::int64_t{1}));
    EXPECT_EQ(small.names().positions, nullptr);
    variable_table large(true, budget);
    large.reserve(100, 0);
    large.add_constant("A", eval_value::of(std::int64_t{1}));
    large.add_constant("A", eval_value::of(std::int64_t{2}));
    ASSERT_NE(large.names().positions, nullptr);
    EXPECT_EQ(large.names().find("A"), large.names().rows.data());
    EXPECT_EQ(large.names().find("B"), nullptr);
}

TEST(FormulaVariables, FollowTheirNodes) {
    TestDocument doc(integer("n", "5") + int_swissknife(variable("A", "n"), "A+1"));
    IInteger& swissknife = doc.Integer("k");
    EXPECT_EQ(swissknife.get_val(0).value(), 6);
    EXPECT_FALSE(doc.Integer("n").set_val(41, 0));
    EXPECT_EQ(swissknife.get_val(0).value(), 42);
}

TEST(FormulaVariables, ReportChangesOfTheirNodes) {
    TestDocument doc(integer("n", "5") + integer("m", "5") +
                     int_swissknife(variable("A", "n") + variable("B", "m"), "A"));
    ChangeCounter changes(doc.Node("k"));
    EXPECT_FALSE(doc.Integer("n").set_val(6, 0));
    EXPECT_EQ(changes.Count(), 1);
    EXPECT_FALSE(doc.Integer("m").set_val(6, 0));
    EXPECT_EQ(changes.Count(), 2) << "a variable counts even where the formula does not use it";
}

TEST(FormulaVariables, MoreThanThree) {
    std::string nodes;
    std::string bindings;
    std::string text = "0";
    for (int at = 0; at < 20; ++at) {
        const std::string name = "n" + std::to_string(at);
        nodes += integer(name, std::to_string(at));
        bindings += variable("V" + std::to_string(at), name);
        text += "+V" + std::to_string(at);
    }
    EXPECT_EQ(int_value(nodes, bindings, text), 190);
}

TEST(FormulaVariables, OfUnknownNodesAreSkippedInSilence) {
    TestDocument doc(integer("n", "5") + int_swissknife(variable("A", "nobody") + variable("A", "n"), "A"));
    EXPECT_THAT(doc.load_messages, IsEmpty());
    EXPECT_EQ(doc.Integer("k").get_val(0).value(), 5) << "the name was still free";
    TestDocument other(int_swissknife(variable("A", "nobody"), "A"));
    EXPECT_THAT(other.load_messages, ElementsAre(unknown_name("A"), name_not_mapped(""),
                                                 std::string(swissknife_refused) + "\"A\"\n"));
}

TEST(FormulaVariables, TheFirstOfTwoCounts) {
    EXPECT_EQ(int_value(integer("n", "5") + integer("m", "6"), variable("A", "n") + variable("A", "m"), "A"),
              5);
}

TEST(FormulaVariables, WithoutANameAreNobodys) {
    TestDocument doc(integer("n", "5") +
                     int_swissknife("<pVariable>n</pVariable>" + constant("C", "1"), "C"));
    EXPECT_EQ(doc.Integer("k").get_val(0).value(), 1);
}

TEST(FormulaVariables, OfAnEnumerationHaveItsNumber) {
    const std::string plain =
        "<Enumeration Name='e'><Value>3</Value><EnumEntry "
        "Name='Fast'><Value>3</Value></EnumEntry></Enumeration>";
    EXPECT_EQ(int_value(plain, variable("M", "e"), "M"), 3);
    EXPECT_EQ(float_value(plain, variable("M", "e"), "M/2"), 1.5);
    const std::string numeric =
        "<Enumeration Name='e'><Value>3</Value><EnumEntry Name='Fast'><Value>3</Value>"
        "<NumericValue>2.5</NumericValue></EnumEntry></Enumeration>";
    EXPECT_EQ(int_value(numeric, variable("M", "e"), "M"), 3);
    EXPECT_EQ(float_value(numeric, variable("M", "e"), "M"), 2.5);
}

TEST(FormulaVariables, ThatCannotBeReadKeepTheirLastValue) {
    const std::string reg =
        "<IntReg Name='r'><Address>16</Address><Length>4</Length><pPort>Device</pPort>"
        "<Endianess>LittleEndian</Endianess></IntReg>";
    for (const bool is_integer : {true, false}) {
        TestDocument doc(reg + (is_integer ? int_swissknife(variable("R", "r"), "R+0.25")
                                           : float_swissknife(variable("R", "r"), "R+0.25")));
        const auto value = [&doc, is_integer] {
            return is_integer ? static_cast<double>(doc.Integer("k").get_val(0).value())
                              : doc.Float("k").get_val(0).value();
        };
        doc.device.Put(16, {7, 0, 0, 0});
        doc.device.FailAccess(1, code(device_lost));
        EXPECT_EQ(value(), is_integer ? 0.0 : 0.25) << "0 before the first success";
        EXPECT_EQ(value(), is_integer ? 7.0 : 7.25);
        doc.device.Put(16, {9, 0, 0, 0});
        doc.device.FailAccess(1, code(device_lost));
        EXPECT_EQ(value(), is_integer ? 7.0 : 7.25);
        EXPECT_EQ(value(), is_integer ? 9.0 : 9.25);
    }
}

TEST(FormulaVariables, BeforeTheFirstSuccessAreTheIntegerZero) {
    const std::string reg =
        "<FloatReg Name='r'><Address>16</Address><Length>8</Length><pPort>Device</pPort></FloatReg>";
    TestDocument doc(reg + float_swissknife(variable("R", "r"), "(R+7)/2"));
    doc.device.FailAccess(1, code(device_lost));
    EXPECT_EQ(doc.Float("k").get_val(0).value(), 3.0) << "of two integers";
    EXPECT_EQ(doc.Float("k").get_val(0).value(), 3.5);
}

TEST(FormulaVariables, GetTheFlagsOfTheRead) {
    const std::string reg =
        "<IntReg Name='r'><Address>16</Address><Length>4</Length><pPort>Device</pPort></IntReg>";
    TestDocument doc(reg + int_swissknife(variable("R", "r"), "R"));
    EXPECT_TRUE(doc.Integer("k").get_val(access_flags::bypass_cache));
    EXPECT_THAT(doc.device.TakeAccesses(),
                ElementsAre(test_support::ReadOf(16, 4, access_flags::bypass_cache)));
    EXPECT_TRUE(doc.Integer("k").get_val(access_flags::cache_only));
    EXPECT_THAT(doc.device.TakeAccesses(), IsEmpty());
}

const std::string limited =
    "<Integer Name='i'><Value>5</Value><Min>2</Min><Max>90</Max><Inc>3</Inc></Integer>"
    "<Float Name='f'><Value>5.5</Value><Min>2.5</Min><Max>90.5</Max><Inc>0.5</Inc></Float>";

TEST(FormulaLimits, OfIntegersAndFloats) {
    const std::string bindings = variable("I.Min", "i") + variable("I.Max", "i") + variable("I.Inc", "i") +
                                 variable("F.Min", "f") + variable("F.Max", "f") + variable("F.Inc", "f");
    EXPECT_EQ(int_value(limited, bindings, "I.Min*10000+I.Max*100+I.Inc"), 29003);
    EXPECT_EQ(float_value(limited, bindings, "F.Min*10000+F.Max*100+F.Inc"), 34050.5);
    EXPECT_EQ(int_value(limited, bindings, "F.Min"), 3);
    EXPECT_EQ(float_value(limited, bindings, "I.Max/4"), 22.5);
}

TEST(FormulaLimits, ThatCannotBeReadKeepTheirLastValue) {
    TestDocument doc("<Integer Name='i'><Value>5</Value><pMin>m</pMin></Integer>" + real("f", "1") +
                     int_swissknife(variable("I.Min", "i") + variable("F.Inc", "f"), "I.Min*100+F.Inc") +
                     "<IntReg Name='m'><Address>0</Address><Length>4</Length><pPort>Device</pPort></IntReg>");
    doc.device.Put(0, {0, 0, 0, 4});
    EXPECT_EQ(doc.Integer("k").get_val(0).value(), 400) << "a float without an increment leaves the zero";
    doc.device.Put(0, {0, 0, 0, 9});
    doc.device.FailAccess(1, code(device_lost));
    EXPECT_EQ(doc.Integer("k").get_val(0).value(), 400);
    EXPECT_EQ(doc.Integer("k").get_val(0).value(), 900);
}

TEST(FormulaLimits, AreReadEachTime) {
    TestDocument doc("<Integer Name='i'><Value>5</Value><pMin>m</pMin></Integer>" + integer("m", "1") +
                     int_swissknife(variable("X.Min", "i"), "X.Min"));
    EXPECT_EQ(doc.Integer("k").get_val(0).value(), 1);
    EXPECT_FALSE(doc.Integer("m").set_val(4, 0));
    EXPECT_EQ(doc.Integer("k").get_val(0).value(), 4);
}

TEST(FormulaLimits, TheSpecifierMustEndTheNameAtItsFirstOccurrence) {
    EXPECT_EQ(int_value(limited, variable("X.Min.Y", "i"), "X.Min.Y"), 5);
    EXPECT_EQ(int_value(limited, variable("X.Min.Min", "i"), "X.Min.Min"), 5);
    EXPECT_EQ(int_value(limited, variable("X.Minimum", "i"), "X.Minimum"), 5);
    EXPECT_EQ(int_value(limited, variable("X.Min.Max", "i"), "X.Min.Max"), 90);
    EXPECT_EQ(int_value(limited, variable("X.Max.Inc", "i"), "X.Max.Inc"), 3);
    EXPECT_EQ(int_value(limited, variable(".Min", "i"), ".Min"), 2);
    EXPECT_EQ(int_value(limited, variable("X.min", "i"), "X.min"), 5);
}

TEST(FormulaLimits, OfOtherNodesAreLoggedAndLeaveTheNameUnknown) {
    constexpr const char* min_message =
        "create_resulting_entry, invalid node type for pVariable with \".Min\" specifier.\n";
    constexpr const char* inc_message =
        "create_resulting_entry, invalid node type for pVariable with \".Inc\" specifier.\n";
    const struct {
        const char* name;
        const char* message;
    } rows[] = {{"X.Min", min_message}, {"X.Max", min_message}, {"X.Inc", inc_message}};
    for (const auto& row : rows) {
        TestDocument doc(truth_value("b", "true") + int_swissknife(variable(row.name, "b"), row.name));
        EXPECT_THAT(doc.load_messages,
                    ElementsAre(row.message, unknown_name(row.name), name_not_mapped(""),
                                swissknife_refused + std::string("\"") + row.name + "\"\n"));
        EXPECT_EQ(doc.Integer("k").get_val(0).error(), code(not_implemented));
    }
}

const std::string modes =
    "<Enumeration Name='m'><Value>1</Value>"
    "<EnumEntry Name='Slow'><Value>1</Value></EnumEntry>"
    "<EnumEntry Name='Fast'><Value>3</Value></EnumEntry>"
    "<EnumEntry Name='Odd'><Value>4</Value><NumericValue>2.5</NumericValue></EnumEntry></Enumeration>";

TEST(FormulaEntries, BecomeNumbersAtLoad) {
    const std::string bindings = variable("Mode.Entry.Fast", "m") + variable("Mode.Entry.Odd", "m");
    EXPECT_EQ(int_value(modes, bindings, "Mode.Entry.Fast*10+Mode.Entry.Odd"), 33);
    EXPECT_EQ(float_value(modes, bindings, "Mode.Entry.Odd"), 2.5);
    EXPECT_EQ(float_value(modes, bindings, "Mode.Entry.Fast/2"), 1.5);
}

TEST(FormulaEntries, AreNoVariables) {
    TestDocument doc(modes + int_swissknife(variable("Mode.Entry.Fast", "m"), "Mode.Entry.Fast"));
    ChangeCounter changes(doc.Node("k"));
    EXPECT_FALSE(doc.Enumeration("m").set_selected_entry(doc.Enumeration("m").find_entry("Fast"), 0));
    EXPECT_EQ(changes.Count(), 0);
    EXPECT_EQ(doc.Integer("k").get_val(0).value(), 3);
}

TEST(FormulaEntries, NamesMayHavePoints) {
    const std::string enumeration =
        "<Enumeration Name='m'><Value>1</Value><EnumEntry "
        "Name='A.Entry.B'><Value>8</Value></EnumEntry></Enumeration>";
    EXPECT_EQ(int_value(enumeration, variable("X.Entry.A.Entry.B", "m"), "X.Entry.A.Entry.B"), 8);
}

TEST(FormulaEntries, OfWhatIsNoEnumerationAreLogged) {
    for (const char* node : {"n", "nobody"}) {
        TestDocument doc(integer("n", "1") + int_swissknife(variable("X.Entry.Fast", node), "X.Entry.Fast"));
        EXPECT_THAT(doc.load_messages,
                    ElementsAre("GenICam::converter::build_formula_name_lookup, did not find enumeration for "
                                "pVariable with \".Entry\" specifier.\n",
                                unknown_name("X.Entry.Fast"), name_not_mapped(""),
                                std::string(swissknife_refused) + "\"X.Entry.Fast\"\n"));
    }
}

TEST(FormulaEntries, ThatAreUnknownAreLogged) {
    TestDocument doc(modes + int_swissknife(variable("X.Entry.Fastest", "m"), "X.Entry.Fastest"));
    EXPECT_THAT(
        doc.load_messages,
        ElementsAre("GenICam::converter::build_formula_name_lookup, did not find entry in enumeration for "
                    "pVariable with \".Entry\" specifier.\n",
                    unknown_name("X.Entry.Fastest"), name_not_mapped(""),
                    std::string(swissknife_refused) + "\"X.Entry.Fastest\"\n"));
}

TEST(FormulaEntries, WithoutAnEntryNameEndTheLoad) {
    EXPECT_THROW(TestDocument doc(modes + int_swissknife(variable("X.Entry", "m"), "1")), std::out_of_range);
    // Without the enumeration nobody looks at the name.
    TestDocument doc(int_swissknife(variable("X.Entry", "m"), "1"));
    EXPECT_EQ(doc.load_messages.size(), 1U);
    // With a point behind it there is an entry name, an empty one.
    TestDocument other(modes + int_swissknife(variable("X.Entry.", "m"), "1"));
    EXPECT_EQ(other.load_messages.size(), 1U);
}

TEST(FormulaExpressions, SeeConstantsVariablesAndWhatStandsBefore) {
    EXPECT_EQ(
        int_value(integer("n", "5"),
                  variable("A", "n") + constant("C", "2") + expression("X", "A*C") + expression("Y", "X+1"),
                  "X*Y-A"),
        105);
    EXPECT_EQ(int_value("", expression("X", "3") + constant("C", "2"), "X+C"), 5)
        << "wherever constants stand";
}

TEST(FormulaExpressions, AreWholeOperands) { EXPECT_EQ(int_value("", expression("X", "1+2"), "X*X"), 9); }

TEST(FormulaExpressions, BeforeTheirTurnAreUnknown) {
    TestDocument doc(int_swissknife(expression("X", "Y+1") + expression("Y", "2"), "X+Y"));
    EXPECT_THAT(
        doc.load_messages,
        ElementsAre(unknown_name("Y"), name_not_mapped("+1"),
                    "GenICam::converter::variable_map_impl::resolve_converter_references, failed to parse "
                    "Constant named=\"X\" content=\"Y+1\".\n",
                    unknown_name("X"), name_not_mapped("+Y"), std::string(swissknife_refused) + "\"X+Y\"\n"));
    EXPECT_EQ(doc.Integer("k").get_val(0).error(), code(not_implemented));
}

TEST(FormulaExpressions, DoNotReplaceOtherNames) {
    const std::string bindings = constant("C", "1") + variable("A", "n") + expression("C", "$") +
                                 expression("A", "$") + expression("X", "7") + expression("X", "$");
    EXPECT_EQ(int_value(integer("n", "5"), bindings, "C*100+A*10+X"), 157);
}

TEST(FormulaExpressions, MoreThanThree) {
    std::string bindings = expression("E0", "1");
    for (int at = 1; at < 10; ++at) {
        const std::string before = "E" + std::to_string(at - 1);
        bindings += expression("E" + std::to_string(at), before + "+" + before);
    }
    EXPECT_EQ(int_value("", bindings, "E9"), 512);
}

TEST(FormulaExpressions, ThatGrowWithoutEndAreRefused) {
    std::string bindings = expression("E0", "1");
    for (int at = 1; at < 64; ++at) {
        const std::string before = "E" + std::to_string(at - 1);
        bindings += expression("E" + std::to_string(at), before + "+" + before);
    }
    TestDocument doc(int_swissknife(bindings, "E63"));
    EXPECT_EQ(doc.Integer("k").get_val(0).error(), code(not_implemented));
}

TEST(FormulaNames, OfAConstantMayLookLikeFunctions) {
    EXPECT_EQ(int_value("", constant("SIN", "5"), "SIN+1"), 6);
    EXPECT_EQ(int_value("", constant("PI", "5"), "PI"), 3) << "but PI and E are what they are";
}

TEST(FormulaNames, FromAndToMeanNothingInASwissknifeUnlessBound) {
    TestDocument doc(int_swissknife("", "FROM"));
    EXPECT_THAT(doc.load_messages, ElementsAre(unknown_name("FROM"), name_not_mapped(""),
                                               std::string(swissknife_refused) + "\"FROM\"\n"));
    EXPECT_EQ(int_value(integer("n", "5"), variable("FROM", "n") + constant("TO", "2"), "FROM*TO"), 10);
}

TEST(FormulaNames, PercentSignsAreNoConversions) {
    TestDocument doc(int_swissknife(constant("%s%n", "%s"), "1 % %n"));
    EXPECT_THAT(
        doc.load_messages,
        ElementsAre("GenICam::converter::build_formula_name_lookup, failed to parse Constant named=\"%s%n\" "
                    "content=\"%s\".\n",
                    parse_failed("Failed to find terminal symbol for factor.", "n"),
                    std::string(swissknife_refused) + "\"1 % %n\"\n"));
}

}  // namespace
