// Integer divisions that no processor can do end the process; nothing may catch, guard or remove them.

#include "tests/formula/formula_test_support.h"

#include <csignal>
#include <cstdlib>
#include <limits>

#include <gtest/gtest.h>

using namespace GenICam;
using namespace formula_test;

namespace {

constexpr int survived = 37;
constexpr int failed = 38;
constexpr int faulted = 39;

void evaluate_and_exit(const char* text, bool specialise) {
    // Turns the fault into an exit code, and keeps debuggers and dialogs of the platform out.
    std::signal(SIGFPE, [](int) { std::_Exit(faulted); });
    formula_names names;
    names.add_variable("ZERO", eval_value::of(std::int64_t{0}));
    names.add_variable("ONE", eval_value::of(std::int64_t{1}));
    names.add_variable("SMALL", eval_value::of(0.4));
    names.add_variable("MINUS", eval_value::of(std::int64_t{-1}));
    names.add_variable("LOWEST", eval_value::of(std::numeric_limits<std::int64_t>::min()));
    const formula_program program =
        specialise ? specialised(text, names) : std::move(parse_instructions(text, names).value());
    const auto value = evaluate_formula(program, names);
    std::_Exit(value ? survived : failed);
}

void expect_fault(const char* text) {
    for (const bool specialise : {false, true}) {
        EXPECT_EXIT(evaluate_and_exit(text, specialise), testing::ExitedWithCode(faulted), "")
            << text << (specialise ? " specialised" : "");
    }
}

TEST(FormulaDivisionDeathTest, TheHelperTellsSurvivalApart) {
    EXPECT_EXIT(evaluate_and_exit("1/ONE", false), testing::ExitedWithCode(survived), "");
    EXPECT_EXIT(evaluate_and_exit("1%ONE", true), testing::ExitedWithCode(survived), "");
}

TEST(FormulaDivisionDeathTest, ZeroDivisor) {
    for (const char* text : {"0/0", "1/0", "1/ZERO", "ONE/ZERO", "LOWEST/ZERO"}) expect_fault(text);
    for (const char* text : {"1%0", "ONE%ZERO", "1%0.4", "ONE%SMALL", "SMALL%SMALL", "1.5%0.0"})
        expect_fault(text);
}

TEST(FormulaDivisionDeathTest, TheQuotientThatDoesNotFit) {
    for (const char* text : {"LOWEST/MINUS", "0x8000000000000000/-1"}) expect_fault(text);
    for (const char* text : {"LOWEST%MINUS", "0x8000000000000000%-1", "LOWEST%(0.0-1)"}) expect_fault(text);
}

TEST(FormulaDivisionDeathTest, NoOperatorGuardsItsOperands) {
    for (const char* text : {"ZERO ? 1/ZERO : 2", "ZERO && 1/ZERO", "1 || 1%ZERO", "0*(1/ZERO)"})
        expect_fault(text);
}

TEST(FormulaDivision, AFloatOperandMakesItHarmless) {
    EXPECT_EQ(outcome("1/0.0"), "inff");
    EXPECT_EQ(outcome("0.0/0"), "nan");
}

}  // namespace
