// What the formula room tells whoever explains formulas, and formulas run without danger.

#include "apps/inspect/formula_text.h"
#include "formula/formula_operation.h"
#include "formula/formula_parser.h"
#include "inspection/guarded_run.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace GenICam;
using selvane_inspect::guarded_result;
using selvane_inspect::run_guarded;
using testing::ElementsAre;

formula_tree ReadWithVariables(std::string_view formula) {
    return read_formula(formula, [](std::string_view) -> resolved_name { return identifier_id{1}; });
}

formula_program Parse(std::string_view formula) { return ReadWithVariables(formula).program(); }

guarded_result Guarded(std::string_view formula, const eval_value& variable = {}) {
    return run_guarded(Parse(formula), [&](identifier_id) { return std::optional<eval_value>(variable); });
}

TEST(ParseEnd, TellsHowAParseEnded) {
    EXPECT_EQ(ReadWithVariables("1+2").end.status, parse_status::end_of_text);
    EXPECT_EQ(ReadWithVariables("1+2").end.rest, "");
    EXPECT_EQ(ReadWithVariables("1 2").end.status, parse_status::none);
    EXPECT_EQ(ReadWithVariables("1 2").end.rest, " 2");
    EXPECT_EQ(ReadWithVariables("(1 $").end.status, parse_status::invalid_token);
    EXPECT_EQ(ReadWithVariables("(1 $").end.rest, "$");
}

TEST(TextOf, NamesOperatorsAndFunctions) {
    EXPECT_EQ(text_of(*operation_of(token_kind::power)->binary), "**");
    EXPECT_EQ(text_of(*operation_of(token_kind::minus)->binary), "-");
    EXPECT_EQ(text_of(*operation_of(token_kind::minus)->unary), "-");
    EXPECT_EQ(text_of(*find_function("sin", 1)), "SIN");
    EXPECT_EQ(text_of(*find_function("ROUND", 2)), "ROUND");
    formula_function foreign = *find_function("SIN", 1);
    EXPECT_EQ(text_of(foreign), "");
}

TEST(WatchedRun, ShowsTheStackBeforeEachInstructionAndAtTheEnd) {
    const formula_program program = Parse("1+2*3");
    std::vector<std::size_t> depths;
    std::vector<bool> ends;
    eval_value value;
    const auto watch = [&](const formula_instruction* next, gsl::span<const eval_value> stack) {
        depths.push_back(stack.size());
        ends.push_back(next == nullptr);
        return true;
    };
    const auto none = [](identifier_id) { return std::optional<eval_value>(); };
    EXPECT_EQ(run_instructions(program, none, value, watch), "");
    EXPECT_THAT(depths, ElementsAre(0, 1, 2, 3, 2, 1));
    EXPECT_THAT(ends, ElementsAre(false, false, false, false, false, true));
    EXPECT_EQ(value.value.integer, 7);
}

TEST(WatchedRun, EndsWhenTheWatcherSaysSo) {
    const formula_program program = Parse("1+2");
    eval_value value;
    int left = 2;
    const auto watch = [&](const formula_instruction*, gsl::span<const eval_value>) { return left-- > 0; };
    const auto none = [](identifier_id) { return std::optional<eval_value>(); };
    EXPECT_NE(run_instructions(program, none, value, watch), "");
    EXPECT_EQ(left, -1);
}

TEST(GuardedRun, ComputesAsTheEngine) {
    EXPECT_EQ(Guarded("7/2").value.value.integer, 3);
    EXPECT_TRUE(Guarded("7/2").failure.empty());
    EXPECT_DOUBLE_EQ(Guarded("7/2.0").value.value.real, 3.5);
    EXPECT_EQ(Guarded("A*2", eval_value::of(std::int64_t{4})).value.value.integer, 8);
}

TEST(GuardedRun, StopsBeforeDivisionsThatEndTheProcess) {
    for (const char* deadly : {"1/0", "1%0", "1/A", "1 % 0.4", "(1<<63)/(0-1)", "(1<<63)%-1", "1.5 % A"}) {
        EXPECT_TRUE(Guarded(deadly).ends_process) << deadly;
    }
    for (const char* harmless : {"1/0.0", "1.0/0", "0/1", "(1<<63)/1", "1/-1", "1 % 0.6", "0 && 1"}) {
        EXPECT_FALSE(Guarded(harmless).ends_process) << harmless;
    }
}

TEST(GuardedRun, HandsOnTheEvaluatorsWords) {
    EXPECT_EQ(Guarded("1 ? 2 :").failure, "Failed to get 3 parameters for condition operator.");
    EXPECT_EQ(Guarded("").failure, "Unbalanced calc stack.");
}

TEST(FormulaText, WritesInstructions) {
    std::vector<std::string> texts;
    const formula_program program = Parse("A>1 ? -2.0 ** 3 : ROUND(SIN(4), NEG(5))");
    for (const formula_instruction& one : program.instructions) {
        texts.push_back(
            selvane_inspect::instruction_text(one, [](identifier_id) { return std::string("A"); }));
    }
    EXPECT_THAT(texts,
                ElementsAre("variable A", "push 1", "binary >", "push 2.0", "unary -", "push 3", "binary **",
                            "push 4", "call SIN", "push 5", "unary -", "call ROUND", "select"));
}

TEST(FormulaText, WritesNumbersWithTheirKind) {
    EXPECT_EQ(selvane_inspect::number_with_kind(eval_value::of(std::int64_t{3})), "3 (integer)");
    EXPECT_EQ(selvane_inspect::number_with_kind(eval_value::of(3.0)), "3.0 (float)");
    EXPECT_EQ(selvane_inspect::number_with_kind(eval_value::of(-0.5)), "-0.5 (float)");
    EXPECT_EQ(selvane_inspect::number_alone(eval_value::of(1e300)), "1e+300");
}

}  // namespace
