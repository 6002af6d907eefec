// No text, whatever its length and nesting, may exhaust a stack of 1 MB, and real formulas are far from any
// limit.

#include "formula/formula_evaluator.h"
#include "formula/formula_parser.h"

#include "tests/formula/formula_test_support.h"
#include "tests/support/small_stack.h"

#include <random>

#include <gtest/gtest.h>

using namespace GenICam;
using namespace formula_test;

namespace {

struct nesting {
    const char* opening;
    const char* innermost;
    const char* closing;
    const char* value;  // at any even depth
};

constexpr nesting nestings[] = {
    {"(", "1", ")", "1"},         {"-", "1", "", "1"},          {"+", "1", "", "1"},
    {"~", "1", "", "1"},          {"~-", "1", "", "1"},         {"NEG(", "1", ")", "1"},
    {"1?", "1", ":2", "1"},       {"0?2:", "1", "", "1"},       {"(0?2:", "1", ")", "1"},
    {"ROUND(", "1", ",0)", "1f"}, {"ROUND(1,", "0", ")", "1f"}, {"0+(", "1", ")", "1"},
    {"0|1*(", "1", ")", "1"},
};

// A depth that every kind of nesting reaches.
void expect_all_nestings_work() {
    constexpr std::size_t depth = 1200;
    for (const nesting& kind : nestings) {
        const bool two_levels_each =
            std::string_view(kind.opening) == "(0?2:" || std::string_view(kind.opening) == "~-";
        const std::size_t count = two_levels_each ? depth / 2 : depth;
        const std::string text = repeat(kind.opening, count) + kind.innermost + repeat(kind.closing, count);
        const std::string expected = std::string_view(kind.opening) == "~-" ? "-599" : kind.value;
        EXPECT_EQ(outcome(text), expected) << kind.opening;
    }
}

TEST(FormulaRobustness, MoreThanAThousandLevelsOfEveryNesting) {
    test_support::RunOnSmallStack(expect_all_nestings_work);
}

void expect_deepest_nestings_fail() {
    for (const nesting& kind : nestings) {
        for (const std::size_t count : {std::size_t{5000}, std::size_t{100000}, std::size_t{200000}}) {
            const std::string text =
                repeat(kind.opening, count) + kind.innermost + repeat(kind.closing, count);
            const auto program = parse_formula(text, formula_names());
            ASSERT_FALSE(program) << kind.opening << count;
            EXPECT_EQ(program.error(), make_error_code(formula_parse_failed));
        }
    }
}

TEST(FormulaRobustness, DeepestNestingsFailToParse) {
    test_support::RunOnSmallStack(expect_deepest_nestings_fail);
}

void expect_unfinished_nestings_fail() {
    for (const char* opening :
         {"(", "-", "SIN(", "1?", "1?2:", "((-", "a.b(", "1+(", "1,", "*", ")", "?", ":", "ROUND(1,"}) {
        const auto program = parse_formula(repeat(opening, 300000), formula_names());
        if (program) {
            EXPECT_LE(program.value().instructions.size(), 1U) << opening;
        }
    }
}

TEST(FormulaRobustness, UnfinishedNestings) {
    test_support::RunOnSmallStack(expect_unfinished_nestings_fail);
}

void expect_long_formulas_work() {
    formula_names names;
    names.add_variable("a", eval_value::of(std::int64_t{1}));
    EXPECT_EQ(outcome("0" + repeat("+1", 500000)), "500000");
    EXPECT_EQ(outcome("0" + repeat(" + a", 250000), names), "250000");
    EXPECT_EQ(outcome("0" + repeat("+(a)", 250000), names), "250000");
    EXPECT_EQ(outcome("0" + repeat("+0.5", 250000)), "125000f");
    EXPECT_EQ(outcome("0" + repeat("+NEG(1)", 150000)), "-150000");
    EXPECT_EQ(outcome(repeat(" ", 1000000) + "7"), "7");
    std::uint64_t sevens = 0;
    for (int at = 0; at < 1000000; ++at) sevens = sevens * 10 + 7;
    EXPECT_EQ(outcome(repeat("7", 1000000)), std::to_string(static_cast<std::int64_t>(sevens)));
    EXPECT_EQ(outcome("1." + repeat("0", 1000000)), "1f");
    EXPECT_EQ(outcome(repeat("a", 1000000)), "parse: Failed to map a variable name to a identifier_id");
}

TEST(FormulaRobustness, FormulasOfAMegabyte) { test_support::RunOnSmallStack(expect_long_formulas_work); }

TEST(FormulaRobustness, ExpressionsThatDoubleStopGrowing) {
    formula_names names;
    names.add_variable("E0", eval_value::of(std::int64_t{1}));
    int level = 1;
    for (; level < 60; ++level) {
        const std::string inner = "E" + std::to_string(level - 1);
        const auto program = parse_formula(inner + "+" + inner, names);
        if (!program) break;
        names.add_expression("E" + std::to_string(level), inner + "+" + inner);
    }
    EXPECT_GE(level, 14);
    EXPECT_LT(level, 20);
    EXPECT_EQ(outcome("E10", names), "1024");
}

void parse_and_run(const std::string& text, const formula_names& names) {
    const auto program = parse_formula(text, names);
    if (!program) return;
    const auto first = evaluate_formula(program.value(), names);
    const auto second = evaluate_formula(specialised(text, names), names);
    ASSERT_EQ(first.has_value(), second.has_value()) << text;
    if (first) {
        EXPECT_EQ(show(first.value()), show(second.value())) << text;
    }
}

void feed_garbage() {
    // No division: its fault is told elsewhere.
    constexpr std::string_view alphabet = "()+-*<>=&|^~?:,. \n0123456789xXeEaAPISNROUD_$!%{}\\\"\x80\xFF";
    constexpr std::string_view fragments[] = {"SIN(", "ROUND(", "**", ">>", "<<", "<>", "&&",
                                              "||",   "0x",     "1e", "PI", "a",  "(",  ")"};
    formula_names names;
    names.add_variable("a", eval_value::of(std::int64_t{5}));
    std::mt19937 random(20240607);
    for (int round = 0; round < 20000; ++round) {
        std::string text;
        const std::size_t parts = random() % 24;
        for (std::size_t at = 0; at < parts; ++at) {
            const bool is_fragment = random() % 2 == 0;
            const char c = alphabet[random() % alphabet.size()];
            if (is_fragment) {
                text += fragments[random() % std::size(fragments)];
            } else if (c != '%') {
                text += c;
            }
        }
        parse_and_run(text, names);
    }
}

TEST(FormulaRobustness, Garbage) { test_support::RunOnSmallStack(feed_garbage); }

}  // namespace
