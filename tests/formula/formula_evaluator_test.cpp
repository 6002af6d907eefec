#include "formula/formula_evaluator.h"

#include "tests/formula/formula_test_support.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

using namespace GenICam;
using namespace formula_test;

namespace {

constexpr std::int64_t lowest = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t highest = std::numeric_limits<std::int64_t>::max();

formula_names extremes() {
    formula_names names;
    names.add_variable("MIN", eval_value::of(lowest));
    names.add_variable("MAX", eval_value::of(highest));
    names.add_variable("BIG",
                       eval_value::of(std::int64_t{9007199254740993}));  // 2^53 + 1: no double is equal
    names.add_variable("ONE", eval_value::of(std::int64_t{1}));
    names.add_variable("ZERO", eval_value::of(std::int64_t{0}));
    names.add_variable("NAN", eval_value::of(std::numeric_limits<double>::quiet_NaN()));
    names.add_variable("INF", eval_value::of(std::numeric_limits<double>::infinity()));
    names.add_variable("NZERO", eval_value::of(-0.0));
    names.add_variable("HALF", eval_value::of(0.5));
    names.add_variable("HUGE", eval_value::of(1e300));
    return names;
}

struct value_case {
    const char* text;
    const char* expected;
};

void expect_values(std::initializer_list<value_case> cases) {
    const formula_names names = extremes();
    for (const value_case& row : cases) EXPECT_EQ(outcome(row.text, names), row.expected) << row.text;
}

TEST(FormulaEvaluator, Addition) {
    expect_values({{"1+2", "3"},
                   {"1+2.0", "3f"},
                   {"1.0+2", "3f"},
                   {"1.5+2.25", "3.75f"},
                   {"MAX+1", "-9223372036854775808"},
                   {"MIN+MIN", "0"},
                   {"BIG+1", "9007199254740994"},
                   {"BIG+0.0", "9007199254740992f"},
                   {"NAN+1", "nan"},
                   {"INF+1", "inff"}});
}

TEST(FormulaEvaluator, Subtraction) {
    expect_values({{"1-2", "-1"},
                   {"1-2.0", "-1f"},
                   {"1.0-2", "-1f"},
                   {"2.5-1.0", "1.5f"},
                   {"MIN-1", "9223372036854775807"},
                   {"0-MIN", "-9223372036854775808"},
                   {"INF-INF", "nan"}});
}

TEST(FormulaEvaluator, Multiplication) {
    expect_values({{"3*4", "12"},
                   {"3*4.0", "12f"},
                   {"3.0*4", "12f"},
                   {"0.5*0.5", "0.25f"},
                   {"MAX*2", "-2"},
                   {"MIN*-1", "-9223372036854775808"},
                   {"BIG*1", "9007199254740993"},
                   {"BIG*1.0", "9007199254740992f"},
                   {"HUGE*HUGE", "inff"}});
}

TEST(FormulaEvaluator, Division) {
    expect_values({{"7/2", "3"},
                   {"-7/2", "-3"},
                   {"7/-2", "-3"},
                   {"7.0/2", "3.5f"},
                   {"7/2.0", "3.5f"},
                   {"7.5/2.5", "3f"},
                   {"BIG/1", "9007199254740993"},
                   {"MIN/1", "-9223372036854775808"},
                   {"1/0.0", "inff"},
                   {"-1/0.0", "-inff"},
                   {"0/0.0", "nan"},
                   {"1.0/0", "inff"},
                   {"1/NZERO", "-inff"},
                   {"MIN/-1.0", "9.223372036854776e+18f"}});
}

TEST(FormulaEvaluator, Remainder) {
    expect_values({{"7%2", "1"},
                   {"-7%2", "-1"},
                   {"7%-2", "1"},
                   {"7.0%2", "1"},
                   {"7%2.0", "1"},
                   {"7.6%3", "2"},    // 8 % 3
                   {"-7.5%5", "-3"},  // -8 % 5
                   {"7%2.5", "1"},    // 7 % 3
                   {"NAN%7", "-1"},
                   {"MIN%7", "-1"},
                   {"MAX%MIN", "9223372036854775807"}});
}

TEST(FormulaEvaluator, Power) {
    expect_values({{"2**3", "8"},
                   {"2**-1", "0"},
                   {"2.0**3", "8f"},
                   {"2**3.0", "8f"},
                   {"2**0.5", "1.4142135623730951f"},
                   {"-3**3", "-27"},
                   {"10**18", "1000000000000000000"},
                   {"2**63", "-9223372036854775808"},
                   {"2**64", "-9223372036854775808"},
                   {"0**0", "1"},
                   {"0**-1", "-9223372036854775808"},
                   {"7**-1", "0"},
                   {"BIG**1", "9007199254740992"},
                   {"10**-2.0", "0.01f"},
                   {"10.0**-3", "0.001f"},
                   {"10.0**-6", "1e-06f"},
                   {"10.0**-22", "1e-22f"},
                   {"-1.0**0.5", "nan"}});
}

TEST(FormulaEvaluator, Comparisons) {
    expect_values({{"2>1", "1"},
                   {"1>1", "0"},
                   {"2>=2", "1"},
                   {"1>=2", "0"},
                   {"1<2", "1"},
                   {"2<2", "0"},
                   {"2<=2", "1"},
                   {"3<=2", "0"},
                   {"1=1", "1"},
                   {"1=2", "0"},
                   {"1<>2", "1"},
                   {"1<>1", "0"},
                   {"3>2.5", "1"},
                   {"2.5>3", "0"},
                   {"2>=2.0", "1"},
                   {"2.5<3", "1"},
                   {"3<=2.5", "0"},
                   {"1=1.0", "1"},
                   {"1.0=1", "1"},
                   {"1.5=1", "0"},
                   {"1<>1.0", "0"},
                   {"1.5<>1", "1"},
                   {"0.0=NZERO", "1"},
                   {"MIN<MAX", "1"},
                   {"MAX>MIN", "1"},
                   {"MAX=MIN", "0"},
                   {"BIG=9007199254740992", "0"},
                   {"BIG=9007199254740992.0", "1"},  // only as doubles
                   {"BIG>9007199254740992", "1"},
                   {"BIG>9007199254740992.0", "0"}});
}

TEST(FormulaEvaluator, ComparisonsWithNanAreFalseButOne) {
    expect_values({{"NAN=NAN", "0"},
                   {"NAN<>NAN", "1"},
                   {"NAN>1", "0"},
                   {"NAN>=1", "0"},
                   {"NAN<1", "0"},
                   {"NAN<=1", "0"},
                   {"1=NAN", "0"},
                   {"1<>NAN", "1"},
                   {"1<NAN", "0"}});
}

TEST(FormulaEvaluator, Logic) {
    expect_values({{"1&&2", "1"},
                   {"1&&0", "0"},
                   {"0&&0", "0"},
                   {"0||0", "0"},
                   {"0||3", "1"},
                   {"3||0", "1"},
                   {"-1&&MIN", "1"},
                   {"0.0||0", "0"},
                   {"0.1||0", "1"},
                   {"0.1&&1", "1"},
                   {"1&&0.0", "0"},
                   {"NZERO||0.0", "0"},
                   {"NAN&&1", "1"},
                   {"NAN||0", "1"},
                   {"0||NAN", "1"},
                   {"0.0&&NAN", "0"},
                   {"0.4&&0.4", "1"}});
}

TEST(FormulaEvaluator, BitOperators) {
    expect_values({{"6&3", "2"},
                   {"6|3", "7"},
                   {"6^3", "5"},
                   {"1.5&3", "2"},
                   {"-1.5&3", "2"},
                   {"3&1.5", "2"},
                   {"2.5|0", "3"},
                   {"2.5^0.5", "2"},
                   {"MIN&-1", "-9223372036854775808"},
                   {"BIG&-1", "9007199254740993"},
                   {"0.49999999999999994|0", "0"},
                   {"-0.49999999999999994|0", "0"},
                   {"0.5|0", "1"},
                   {"-0.5|0", "-1"},
                   {"4503599627370497.0|0", "4503599627370497"},
                   {"INF|0", "-9223372036854775808"},
                   {"NAN|0", "-9223372036854775808"},
                   {"HUGE|0", "-9223372036854775808"},
                   {"-HUGE|0", "-9223372036854775808"},
                   {"INF|0", "-9223372036854775808"},
                   {"9223372036854775807.0|0", "-9223372036854775808"},
                   {"9223372036854774784.0|0", "9223372036854774784"}});
}

TEST(FormulaEvaluator, Shifts) {
    expect_values({{"1<<4", "16"},
                   {"1<<63", "-9223372036854775808"},
                   {"1<<64", "1"},
                   {"1<<65", "2"},
                   {"1<<-1", "-9223372036854775808"},
                   {"-1<<1", "-2"},
                   {"MAX<<1", "-2"},
                   {"256>>4", "16"},
                   {"-1>>63", "-1"},
                   {"MIN>>63", "-1"},
                   {"-8>>1", "-4"},
                   {"8>>64", "8"},
                   {"8>>-63", "4"},
                   {"1.5<<1", "4"},
                   {"1<<1.5", "4"},
                   {"7.5>>1.0", "4"}});
}

TEST(FormulaEvaluator, UnaryOperators) {
    expect_values({{"-ONE", "-1"},
                   {"-MIN", "-9223372036854775808"},
                   {"-0", "0"},
                   {"-0.0", "-0f"},
                   {"-NZERO", "0f"},
                   {"-HALF", "-0.5f"},
                   {"-INF", "-inff"},
                   {"~0", "-1"},
                   {"~MAX", "-9223372036854775808"},
                   {"~1.5", "-3"},
                   {"~-1.5", "1"},
                   {"~NAN", "9223372036854775807"},
                   {"+MIN", "-9223372036854775808"},
                   {"+HALF", "0.5f"}});
}

TEST(FormulaEvaluator, FunctionsThatGiveAFloat) {
    expect_values({{"ATAN(0)", "0f"},
                   {"COS(0)", "1f"},
                   {"SIN(0)", "0f"},
                   {"TAN(0)", "0f"},
                   {"ASIN(0)", "0f"},
                   {"ACOS(1)", "0f"},
                   {"EXP(0)", "1f"},
                   {"SQRT(9)", "3f"},
                   {"SQRT(2.25)", "1.5f"},
                   {"ABS(-3)", "3f"},
                   {"ABS(3)", "3f"},
                   {"ABS(-2.5)", "2.5f"},
                   {"ABS(MIN)", "9.223372036854776e+18f"},
                   {"LN(1)", "0f"},
                   {"LG(1000)", "3f"},
                   {"LG(0.01)", "-2f"},
                   {"LN(0)", "-inff"},
                   {"SQRT(-1)", "nan"},
                   {"ASIN(2)", "nan"},
                   {"FLOOR(2.9)", "2f"},
                   {"FLOOR(-2.1)", "-3f"},
                   {"FLOOR(5)", "5f"},
                   {"CEIL(2.1)", "3f"},
                   {"CEIL(-2.9)", "-2f"},
                   {"CEIL(5)", "5f"},
                   {"TRUNC(2.9)", "2f"},
                   {"TRUNC(-2.9)", "-2f"},
                   {"TRUNC(5)", "5f"},
                   {"TRUNC(HUGE)", "-9.223372036854776e+18f"},
                   {"TRUNC(NAN)", "-9.223372036854776e+18f"},
                   {"TRUNC(-0.5)", "0f"},
                   {"FLOOR(BIG)", "9007199254740992f"},
                   {"CEIL(NAN)", "nan"},
                   {"EXP(INF)", "inff"},
                   {"ATAN(1)*4=PI", "1"},
                   {"LN(E)", "1f"}});
}

TEST(FormulaEvaluator, FunctionsAreThoseOfTheCLibrary) {
    formula_names names;
    for (const double x : {0.3, 0.77, 1.0, -0.5}) {
        names = formula_names();
        names.add_variable("x", eval_value::of(x));
        EXPECT_EQ(outcome("ATAN(x)", names), show(eval_value::of(std::atan(x))));
        EXPECT_EQ(outcome("COS(x)", names), show(eval_value::of(std::cos(x))));
        EXPECT_EQ(outcome("SIN(x)", names), show(eval_value::of(std::sin(x))));
        EXPECT_EQ(outcome("TAN(x)", names), show(eval_value::of(std::tan(x))));
        EXPECT_EQ(outcome("EXP(x)", names), show(eval_value::of(std::exp(x))));
        EXPECT_EQ(outcome("LN(x)", names), show(eval_value::of(std::log(x))));
        EXPECT_EQ(outcome("LG(x)", names), show(eval_value::of(std::log10(x))));
        EXPECT_EQ(outcome("SQRT(x)", names), show(eval_value::of(std::sqrt(x))));
        EXPECT_EQ(outcome("ASIN(x)", names), show(eval_value::of(std::asin(x))));
        EXPECT_EQ(outcome("ACOS(x)", names), show(eval_value::of(std::acos(x))));
    }
}

TEST(FormulaEvaluator, FunctionsThatKeepTheKind) {
    expect_values({{"NEG(3)", "-3"},
                   {"NEG(MIN)", "-9223372036854775808"},
                   {"NEG(2.5)", "-2.5f"},
                   {"NEG(0.0)", "-0f"},
                   {"SGN(-3)", "-1"},
                   {"SGN(0)", "0"},
                   {"SGN(MAX)", "1"},
                   {"SGN(2.5)", "1f"},
                   {"SGN(-2.5)", "-1f"},
                   {"SGN(0.0)", "0f"},
                   {"SGN(NZERO)", "-0f"},
                   {"SGN(NAN)", "1f"},
                   {"SGN(-INF)", "-1f"}});
}

TEST(FormulaEvaluator, RoundRoundsInItsOwnWay) {
    expect_values({{"ROUND(1.25, 1)", "1.3f"},
                   {"ROUND(5, 0)", "5f"},
                   {"ROUND(-1.2, 0)", "-2f"},
                   {"ROUND(-2.3, 0)", "-3f"},
                   {"ROUND(-2.7, 0)", "-2f"},
                   {"ROUND(-2.5, 0)", "-3f"},
                   {"ROUND(2.5, 0)", "3f"},
                   {"ROUND(2.4, 0)", "2f"},
                   {"ROUND(2.6, 0)", "3f"},
                   {"ROUND(0.0, 0)", "0f"},
                   {"ROUND(-3, 0)", "-3f"},
                   // as less than half
                   {"ROUND(NAN, 0)", "nan"},
                   {"ROUND(INF, 0)", "inff"},
                   {"ROUND(1234.5, -2)", "1200f"},
                   {"ROUND(1250, -2)", "1300f"},
                   {"ROUND(1.25, 1.4)", "1.3f"},
                   {"ROUND(1.25, 0.5)", "1.3f"},
                   {"ROUND(1.25, 0.4)", "1f"},
                   {"ROUND(HUGE, 20)", "inff"},
                   {"ROUND(1.5, 400)", "nan"}});
}

TEST(FormulaEvaluator, TheTernaryKeepsTheKindOfWhatItChooses) {
    expect_values({{"1?2:3.5", "2"},
                   {"0?2:3.5", "3.5f"},
                   {"ONE?BIG:0", "9007199254740993"},
                   {"ZERO?0:MIN", "-9223372036854775808"},
                   {"NAN?1:2", "1"},
                   {"NZERO?1:2", "2"},
                   {"0.1?1:2", "1"},
                   {"HALF?1.5:2", "1.5f"},
                   {"ONE?MAX:0.5", "9223372036854775807"}});
}

TEST(FormulaEvaluator, BothBranchesAreComputed) {
    formula_names names = extremes();
    names.add_lost_variable("LOST");
    for (const char* text : {"1?2:LOST", "0?LOST:2", "0&&LOST", "1||LOST", "LOST", "-LOST", "LOST?1:2"}) {
        EXPECT_EQ(outcome(text, names), "run: Failed to look up variable name.") << text;
    }
}

TEST(FormulaEvaluator, FailuresOfPrograms) {
    formula_names names = extremes();
    names.add_expression("NONE", "");
    const value_case cases[] = {
        {"NONE", "run: Unbalanced calc stack."},
        {"-NONE", "run: Failed to get 1 parameter for unary function."},
        {"1+NONE", "run: Failed to get 2 parameters for binary function."},
        {"NONE+NONE", "run: Failed to get 2 parameters for binary function."},
        {"ROUND(1,NONE)", "run: Failed to get 2 parameters for binary function."},
        {"1?2:NONE", "run: Failed to get 3 parameters for condition operator."},
        {"NONE?NONE:NONE", "run: Failed to get 3 parameters for condition operator."},
    };
    for (const value_case& row : cases) EXPECT_EQ(outcome(row.text, names), row.expected) << row.text;
}

TEST(FormulaEvaluator, EveryFailureBecomesOneCode) {
    const auto empty = parse_formula("", formula_names());
    ASSERT_TRUE(empty);
    const auto value = evaluate_formula(empty.value(), formula_names());
    ASSERT_FALSE(value);
    EXPECT_EQ(value.error(), make_error_code(formula_parse_failed));
}

TEST(FormulaEvaluator, ValuesBelowTheTopAreIgnored) {
    formula_names names = extremes();
    EXPECT_EQ(outcome("ONE?HALF", names), "0.5f");
    EXPECT_EQ(outcome("ROUND(1,2", names), "2");
}

TEST(FormulaEvaluator, TheStackGoesToTheHeap) {
    for (const int operands : {19, 20, 21, 22, 100}) {
        std::string text;
        for (int at = 1; at < operands; ++at) text += "ONE+(";
        text += "ONE" + std::string(static_cast<std::size_t>(operands) - 1, ')');
        EXPECT_EQ(outcome(text, extremes()), std::to_string(operands));
    }
}

TEST(FormulaEvaluator, AProgramRunsAnyNumberOfTimes) {
    formula_names names;
    names.add_variable("x", eval_value::of(std::int64_t{1}));
    const auto program = parse_formula("x*x+1", names);
    ASSERT_TRUE(program);
    for (std::int64_t x = -3; x <= 3; ++x) {
        names.set("x", eval_value::of(x));
        EXPECT_EQ(evaluate_formula(program.value(), names).value().value.integer, x * x + 1);
    }
}

TEST(FormulaEvaluator, AVariableMayComeAsAnOptional) {
    formula_names names;
    names.add_variable("x", eval_value::of(std::int64_t{1}));
    const auto program = parse_formula("x+1", names);
    ASSERT_TRUE(program);
    const auto found = [](identifier_id) {
        return std::optional<eval_value>(eval_value::of(std::int64_t{41}));
    };
    EXPECT_EQ(evaluate_formula(program.value(), found).value().value.integer, 42);
    const auto lost = [](identifier_id) { return std::optional<eval_value>(); };
    EXPECT_FALSE(evaluate_formula(program.value(), lost));
}

}  // namespace
