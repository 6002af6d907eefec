#include "formula/formula_parser.h"

#include "genicam/core/log.h"
#include "tests/formula/formula_test_support.h"
#include "tests/support/test_document.h"

#include <gtest/gtest.h>

using namespace GenICam;
using namespace formula_test;

namespace {

constexpr const char* invalid_token = "parse: Invalid token found.";
constexpr const char* unknown_name = "parse: Failed to map a variable name to a identifier_id";
constexpr const char* unknown_function = "parse: Failed to map a function identifier to a actual function.";
constexpr const char* no_end_of_arguments = "parse: Failed to find closing ')' or ','";
constexpr const char* no_colon = "parse: expected colon for tri-nary operator.";
constexpr const char* no_parenthesis = "parse: Failed to find a ')'.";
constexpr const char* nothing_after_unary = "parse: Failed to find token after unary operator.";
constexpr const char* no_factor = "parse: Failed to find terminal symbol for factor.";

formula_names abc() {
    formula_names names;
    names.add_variable("a", eval_value::of(std::int64_t{1}));
    names.add_variable("b", eval_value::of(std::int64_t{2}));
    names.add_variable("c", eval_value::of(std::int64_t{3}));
    return names;
}

struct text_case {
    const char* text;
    const char* expected;
};

void expect_outcomes(std::initializer_list<text_case> cases, const formula_names& names = {}) {
    for (const text_case& row : cases) EXPECT_EQ(outcome(row.text, names), row.expected) << row.text;
}

void expect_instructions(std::initializer_list<text_case> cases, const formula_names& names = {}) {
    for (const text_case& row : cases) EXPECT_EQ(instructions(row.text, names), row.expected) << row.text;
}

TEST(FormulaParser, OperationCodesStay) {
    static_assert(static_cast<int>(op_code::op_push_int) == 0);
    static_assert(static_cast<int>(op_code::op_push_float) == 1);
    static_assert(static_cast<int>(op_code::op_unary) == 2);
    static_assert(static_cast<int>(op_code::op_binary) == 3);
    static_assert(static_cast<int>(op_code::op_select) == 4);
    static_assert(static_cast<int>(op_code::op_variable) == 5);
    expect_instructions({{"1", "1"},
                         {"1.5", "1.5f"},
                         {"-a", "$1000 unary"},
                         {"a+b", "$1000 $1001 binary"},
                         {"a?b:c", "$1000 $1001 $1002 select"},
                         {"SIN(a)", "$1000 unary"},
                         {"ROUND(a,1)", "$1000 1 binary"}},
                        abc());
}

TEST(FormulaParser, AllBinaryOperatorsAssociateToTheLeft) {
    expect_outcomes({{"2*3**2", "36"},
                     {"2**3**2", "64"},
                     {"100/10/5", "2"},
                     {"100-10-5", "85"},
                     {"100%30%4", "2"},
                     {"1<<2<<3", "32"},
                     {"64>>2>>1", "8"},
                     {"3>2>1", "0"},
                     {"1=1=1", "1"},
                     {"5=5=5", "0"},
                     {"2*7%4", "2"},
                     {"7%4*2", "6"}});
}

TEST(FormulaParser, FiveLevelsOnly) {
    expect_outcomes({{"1<<2+1", "8"},  {"2+3*4", "14"}, {"2*3+4", "10"}, {"6&3+1", "4"},
                     {"1|2=3", "1"},   {"1|2&2", "2"},                    // one level: (1|2)&2
                     {"4^1<<1", "10"},                                    // (4^1)<<1
                     {"0&&1>0", "0"},                                     // (0&&1)>0
                     {"1>0&&0", "0"},  {"2>1||0", "1"}, {"0||2>1", "0"},  // (0||2)>1
                     {"1&&2>1", "0"},                                     // (1&&2)>1
                     {"3=1+2", "1"},   {"-2**2", "4"},  {"2**-1", "0"},  {"-2*-3", "6"},
                     {"~0&5", "5"},    {"1-~0", "2"},   {"--2", "2"},    {"- + - 2", "2"},
                     {"+2", "2"},      {"~~7", "7"},    {"-~-1", "0"}});
}

TEST(FormulaParser, TheTernaryAssociatesToTheRight) {
    expect_outcomes({{"1?2:3", "2"},
                     {"0?2:3", "3"},
                     {"0?1:0?2:3", "3"},
                     {"0?1:1?2:3", "2"},
                     {"1?1?4:5:6", "4"},
                     {"1?0?4:5:6", "5"},
                     {"1=1?10:20", "10"},
                     {"1?2:3+4", "2"},
                     {"0?2:3+4", "7"},
                     {"(1?2:3)+4", "6"},
                     {"1+0?2:3", "2"}});
}

TEST(FormulaParser, PostfixOrder) {
    expect_instructions({{"a+b*c", "$1000 $1001 $1002 binary binary"},
                         {"a*b+c", "$1000 $1001 binary $1002 binary"},
                         {"a?b:c?a:b", "$1000 $1001 $1002 $1000 $1001 select select"},
                         {"-a**b", "$1000 unary $1001 binary"},
                         {"ROUND(a+b,c)", "$1000 $1001 binary $1002 binary"},
                         {"+a", "$1000"},
                         {"(((a)))", "$1000"}},
                        abc());
}

TEST(FormulaParser, EmptyTextIsAnEmptyProgram) {
    expect_instructions({{"", ""}, {" ", ""}, {" \t\r\n\v\f", ""}});
    expect_outcomes({{"", "run: Unbalanced calc stack."}, {"  ", "run: Unbalanced calc stack."}});
}

TEST(FormulaParser, TheEndOfTheTextIsASuccessAtEveryLevel) {
    expect_instructions({{"1+", "1"},
                         {"1*", "1"},
                         {"1&", "1"},
                         {"1&&", "1"},
                         {"1 ", "1"},
                         {"a", "$1000"},
                         {"1+2*", "1 2 binary"},
                         {"1=2|3+4*", "1 2 3 4 binary binary binary"},
                         {"1=2|3+4*5", "1 2 3 4 5 binary binary binary binary"},
                         {"SIN(1", "1"},
                         {"SIN(1+2", "1 2 binary"},
                         {"2*SIN(1", "2 1 binary"},
                         {"COS(SIN(1", "1"},
                         {"ROUND(1", "1"},
                         {"ROUND(1,", "1"},
                         {"ROUND(1,2", "1 2"},
                         {"SIN(", ""},
                         {"-SIN(1", "1 unary"},
                         {"-SIN(", "unary"},
                         {"+SIN(1", "1"},
                         {"SIN(1+", "1"},
                         {"a?", "$1000"},
                         {"a?b", "$1000 $1001"},
                         {"a?b+", "$1000 $1001"},
                         {"a?b:", "$1000 $1001 select"},
                         {"a?b:c", "$1000 $1001 $1002 select"},
                         {"a?b:c+", "$1000 $1001 $1002 select"},
                         {"a?b:c?a", "$1000 $1001 $1002 $1000 select"},
                         {"a?SIN(b", "$1000 $1001"}},
                        abc());
}

TEST(FormulaParser, WhatABrokenOffTextComesTo) {
    expect_outcomes({{"1+", "1"},
                     {"SIN(1", "1"},
                     {"ROUND(1,2", "2"},
                     {"-SIN(3", "-3"},
                     {"SIN(", "run: Unbalanced calc stack."},
                     {"-SIN(", "run: Failed to get 1 parameter for unary function."},
                     {"2*SIN(", "run: Failed to get 2 parameters for binary function."},
                     {"SIN(", "run: Unbalanced calc stack."},
                     {"a?b", "2"},
                     {"a?b:", "run: Failed to get 3 parameters for condition operator."}},
                    abc());
}

TEST(FormulaParser, TextBehindACompleteExpressionIsDropped) {
    expect_instructions({{"1 2", "1"},
                         {"1)", "1"},
                         {"1) + $", "1"},
                         {"1 a", "1"},
                         {"1,2", "1"},
                         {"1:2", "1"},
                         {"12abc", "12"},
                         {"(1)(2)", "1"},
                         {"1 ~ 2", "1"},
                         {"a?b:c)+1", "$1000 $1001 $1002 select"},
                         {"0x", "0"},
                         {"1 (", "1"}},
                        abc());
}

TEST(FormulaParser, InvalidTokens) {
    expect_outcomes({{"$", invalid_token},
                     {"!1", invalid_token},
                     {"1$", invalid_token},
                     {"1!", invalid_token},
                     {"1 != 2", invalid_token},
                     {"1+$", invalid_token},
                     {"1*2+3&4=5$", invalid_token},
                     {"(1$)", invalid_token},
                     {"(1+$)", invalid_token},
                     {"SIN(1$)", invalid_token},
                     {"SIN($)", invalid_token},
                     {"ROUND(1,$)", invalid_token},
                     {"a?$:c", invalid_token},
                     {"a?b$:c", invalid_token},
                     {"a?b:$", invalid_token},
                     {"a?b:c$", invalid_token},
                     {"0xG", invalid_token},
                     {"1+0xG", invalid_token},
                     {"0x)", invalid_token}},
                    abc());
}

TEST(FormulaParser, UnaryOperatorsAndMissingFactors) {
    expect_outcomes({{"-", nothing_after_unary},
                     {"+", nothing_after_unary},
                     {"~ ", nothing_after_unary},
                     {"- -", nothing_after_unary},
                     {"-$", nothing_after_unary},
                     {"*", nothing_after_unary},
                     {")", nothing_after_unary},
                     {"()", nothing_after_unary},
                     {":", nothing_after_unary},
                     {"1+*", nothing_after_unary},
                     {"1+)", nothing_after_unary},
                     {"PI()", nothing_after_unary},
                     {"SIN()", nothing_after_unary},
                     {"*$", nothing_after_unary},
                     {"() 1", no_factor},
                     {"()+", no_factor},
                     {"*1", no_factor},
                     {"1 + * 2", no_factor},
                     {"1==2", no_factor},
                     {"-*2", no_factor},
                     {"- * -", no_factor},
                     {"SIN()+1", no_factor},
                     {"a?:c", no_factor},
                     {"a?b::c", no_factor},
                     {"ROUND(1,,2)", no_factor},
                     {"ROUND(,1)", no_factor},
                     {"1<==2", no_factor}},
                    abc());
}

TEST(FormulaParser, Parentheses) {
    expect_outcomes({{"(1+2", no_parenthesis},
                     {"(1", no_parenthesis},
                     {"(", no_parenthesis},
                     {"((1)", no_parenthesis},
                     {"(1 2)", no_parenthesis},
                     {"(1,2)", no_parenthesis},
                     {"(1:2)", no_parenthesis},
                     {"(a?b", no_parenthesis},
                     {"(SIN(1", no_parenthesis},
                     {"(1+", no_parenthesis},
                     {"(1)", "1"},
                     {"(1)+(2)", "3"},
                     {"2*(3+4)", "14"}},
                    abc());
}

TEST(FormulaParser, TernaryWithoutColon) {
    expect_outcomes({{"a ? b c", no_colon},
                     {"a ? b ) c", no_colon},
                     {"a ? b , c", no_colon},
                     {"a?b?c)", no_colon},
                     {"1+(a?b c)", no_colon},
                     {"SIN(a?b c)", no_colon}},
                    abc());
}

TEST(FormulaParser, Functions) {
    expect_outcomes({{"Sin(1)", unknown_function},
                     {"SIN(1,2)", unknown_function},
                     {"SIN(1,2,3)", unknown_function},
                     {"ROUND(1)", unknown_function},
                     {"ROUND(1,2,3)", unknown_function},
                     {"round(1,2)", unknown_function},
                     {"Round(1,2)", unknown_function},
                     {"NOSUCH(1)", unknown_function},
                     {"a(1)", unknown_function},
                     {"SIN(1;", invalid_token},
                     {"SIN(1 2)", no_end_of_arguments},
                     {"SIN(1:2)", no_end_of_arguments},
                     {"ROUND(1,2 3)", no_end_of_arguments},
                     {"SIN (0)", "0f"},
                     {"sin\n(0)", "0f"},
                     {"ROUND( 2.5 , 0 )", "3f"},
                     {"ROUND((1,2),3)", no_parenthesis},
                     {"ABS(1?2:3)", "2f"}},
                    abc());
}

TEST(FormulaParser, EveryUnaryFunctionInBothCases) {
    for (const char* name : {"ATAN", "COS", "SIN", "TAN", "ABS", "EXP", "LN", "LG", "SQRT", "TRUNC", "FLOOR",
                             "CEIL", "ASIN", "ACOS", "SGN", "NEG"}) {
        std::string lower(name);
        for (char& c : lower) c = static_cast<char>(c - 'A' + 'a');
        EXPECT_EQ(instructions(name + std::string("(1)")), "1 unary");
        EXPECT_EQ(instructions(lower + "(1)"), "1 unary");
        EXPECT_EQ(outcome(name + std::string("(0.5)")), outcome(lower + "(0.5)"));
        EXPECT_EQ(outcome(name + std::string("(1,1)")), unknown_function);
        const std::string mixed = name[0] + lower.substr(1) + "(1)";
        EXPECT_EQ(outcome(mixed), unknown_function) << mixed;
    }
}

TEST(FormulaParser, NamedConstants) {
    formula_names names;
    names.add_variable("PI", eval_value::of(std::int64_t{3}));
    names.add_constant("E", eval_value::of(std::int64_t{2}));
    names.add_variable("pi", eval_value::of(std::int64_t{4}));
    names.add_constant("e", eval_value::of(std::int64_t{5}));
    expect_instructions({{"PI", "3.141592653589793f"},
                         {"E", "2.718281828459045f"},
                         {"pi", "$1001"},
                         {"e", "5"},
                         {"2*PI", "2 3.141592653589793f binary"}},
                        names);
    expect_outcomes({{"pi", unknown_name}, {"e", unknown_name}, {"Pi", unknown_name}, {"PI.", unknown_name}});

    const auto program = parse_formula("PI", names);
    ASSERT_TRUE(program);
    EXPECT_EQ(program.value().instructions[0].number.integer, 0x400921FB54442D18);
    const auto second = parse_formula("E", names);
    ASSERT_TRUE(second);
    EXPECT_EQ(second.value().instructions[0].number.integer, 0x4005BF0A8B145769);
}

TEST(FormulaParser, WhatNamesResolveTo) {
    formula_names names = abc();
    names.add_constant("K", eval_value::of(std::int64_t{7}));
    names.add_constant("F", eval_value::of(0.5));
    names.add_expression("SUM", "a+b");
    names.add_expression("NONE", "");
    names.add_expression("TWO", "a?b");
    names.add_variable("Exposure.Max", eval_value::of(std::int64_t{9}));
    names.add_variable(".5", eval_value::of(std::int64_t{11}));
    expect_instructions({{"K", "7"},
                         {"F", "0.5f"},
                         {"SUM*c", "$1000 $1001 binary $1002 binary"},
                         {"-SUM", "$1000 $1001 binary unary"},
                         {"NONE", ""},
                         {"a+NONE", "$1000 binary"},
                         {"TWO", "$1000 $1001"},
                         {"Exposure.Max", "$1003"},
                         {".5", "$1004"},
                         {"a+nothing", unknown_name},
                         {"nothing", unknown_name},
                         {"A", unknown_name},
                         {"-nothing", unknown_name},
                         {"(nothing)", unknown_name},
                         {"SIN(nothing)", unknown_name},
                         {"a?nothing:c", unknown_name}},
                        names);
    expect_outcomes({{"SUM*c", "9"}, {"a+NONE", "run: Failed to get 2 parameters for binary function."}},
                    names);
}

TEST(FormulaParser, UnknownNamesAreLogged) {
    test_support::LogCapture log;
    EXPECT_FALSE(parse_formula("1 + (Gain.Min) * 2", formula_names()));
    const std::vector<std::string> messages = log.Take();
    ASSERT_EQ(messages.size(), 2U);
    EXPECT_EQ(
        messages[0],
        "math_parser::add_identifier_token, failed to map variable \"Gain.Min\" to either a constant or a "
        "pValue.\n");
    EXPECT_EQ(messages[1],
              "km_parse_tree failed with result=Failed to map a variable name to a identifier_id. Last token "
              "view:\n"
              ") * 2.\n");
}

TEST(FormulaParser, FailuresAreLoggedWithTheRestOfTheText) {
    test_support::LogCapture log;
    EXPECT_FALSE(parse_formula("1 + $ * 2", formula_names()));
    EXPECT_FALSE(parse_formula("(1 + 2", formula_names()));
    const std::vector<std::string> messages = log.Take();
    ASSERT_EQ(messages.size(), 2U);
    EXPECT_EQ(messages[0],
              "km_parse_tree failed with result=Invalid token found.. Last token view:\n$ * 2.\n");
    EXPECT_EQ(messages[1], "km_parse_tree failed with result=Failed to find a ')'.. Last token view:\n.\n");
}

TEST(FormulaParser, NoTextOfAFormulaActsAsAConversion) {
    test_support::LogCapture log;
    EXPECT_FALSE(parse_formula("1 + $ %n %s %100000d %% %I64d {} {0}", formula_names()));
    const std::vector<std::string> messages = log.Take();
    ASSERT_EQ(messages.size(), 1U);
    EXPECT_EQ(messages[0],
              "km_parse_tree failed with result=Invalid token found.. Last token view:\n"
              "$ %n %s %100000d %% %I64d {} {0}.\n");
}

TEST(FormulaParser, LongMessagesAreCut) {
    test_support::LogCapture log;
    EXPECT_FALSE(parse_formula("$" + std::string(100000, '%'), formula_names()));
    const std::vector<std::string> messages = log.Take();
    ASSERT_EQ(messages.size(), 1U);
    EXPECT_EQ(messages[0].size(), 511U);
}

TEST(FormulaParser, ASilentLogGetsNoMessage) {
    test_support::LogCapture log;
    log_threshold = 0;
    EXPECT_FALSE(parse_formula("nothing", formula_names()));
    EXPECT_TRUE(log.Take().empty());
}

TEST(FormulaParser, TenInstructionsStayInPlace) {
    const auto ten = parse_formula("1+2+3+4+5*-6", formula_names());
    ASSERT_TRUE(ten);
    ASSERT_EQ(ten.value().instructions.size(), 12U);
    const auto small = parse_formula("1+2+3+4+5", formula_names());
    ASSERT_TRUE(small);
    EXPECT_EQ(small.value().instructions.capacity(), 10U);
    EXPECT_EQ(ten.value().instructions.capacity(), 12U);
}

}  // namespace
