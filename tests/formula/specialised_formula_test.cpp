#include "formula/specialised_formula.h"

#include "tests/formula/formula_test_support.h"

#include <gtest/gtest.h>

using namespace GenICam;
using namespace formula_test;

namespace {

formula_names xyz() {
    formula_names names;
    names.add_variable("x", eval_value::of(std::int64_t{6}));
    names.add_variable("y", eval_value::of(std::int64_t{4}));
    names.add_variable("z", eval_value::of(0.25));
    return names;
}

formula_program specialised(std::string_view text, const formula_names& names) {
    formula_program program = std::move(parse_formula(text, names).value());
    specialise_formula(program, names);
    return program;
}

std::string run(const formula_program& program, const formula_names& names) {
    const auto value = evaluate_formula(program, names);
    return value ? show(value.value()) : value.error().message();
}

TEST(SpecialisedFormula, OrdinaryFormulasAreSpecialised) {
    const formula_names names = xyz();
    for (const char* text : {"1", "x", "x+1", "x/y*z", "-x%y", "x>y?x:y", "ROUND(z,x)", "(x&1)=0",
                             "SGN(x)+SGN(z)", "x?2", "x + y ? z"}) {
        EXPECT_NE(specialised(text, names).specialised, nullptr) << text;
    }
}

TEST(SpecialisedFormula, WhatHasNoFixedKindStaysAsItIs) {
    const formula_names names = xyz();
    const formula_program program = specialised("x ? 1 : 2.5", names);
    EXPECT_EQ(program.specialised, nullptr);
    EXPECT_EQ(run(program, names), "1");
}

TEST(SpecialisedFormula, WhatFailsStaysAsItIs) {
    formula_names names = xyz();
    names.add_lost_variable("LOST");
    for (const char* text : {"", "LOST", "x?y:", "-SIN(", "x+LOST"}) {
        EXPECT_EQ(specialised(text, names).specialised, nullptr) << text;
    }
}

TEST(SpecialisedFormula, VariablesOfAnotherKindGiveTheRightResultAllTheSame) {
    formula_names names = xyz();
    const formula_program program = specialised("x/y", names);
    ASSERT_NE(program.specialised, nullptr);
    EXPECT_EQ(run(program, names), "1");
    names.set("x", eval_value::of(6.0));
    EXPECT_EQ(run(program, names), "1.5f");
    names.set("y", eval_value::of(5.0));
    EXPECT_EQ(run(program, names), "1.2f");
    names.set("x", eval_value::of(std::int64_t{6}));
    names.set("y", eval_value::of(std::int64_t{5}));
    EXPECT_EQ(run(program, names), "1");
}

TEST(SpecialisedFormula, ConversionsHappenOnceForAVariable) {
    const formula_names names = xyz();
    EXPECT_EQ(run(specialised("x*z + x*z + x/y*z", names), names), "3.25f");
    EXPECT_EQ(run(specialised("(z|0) + (z|1) + ~z", names), names), "0");
}

TEST(SpecialisedFormula, ConstantsOfBothKindsWithTheSameBitsAreKeptApart) {
    const formula_names names = xyz();
    // The bits of 1.0 as an integer.
    EXPECT_EQ(run(specialised("x*1.0 + y*4607182418800017408", names), names),
              run(
                  *[&names] {
                      static formula_program plain;
                      plain = std::move(parse_formula("x*1.0 + y*4607182418800017408", names).value());
                      return &plain;
                  }(),
                  names));
}

TEST(SpecialisedFormula, ADivisionOfConstantsIsLeftToTheEvaluation) {
    const formula_names names = xyz();
    const formula_program program = specialised("1/0", names);
    EXPECT_NE(program.specialised, nullptr);
    EXPECT_EQ(run(specialised("7/2", names), names), "3");
    EXPECT_EQ(run(specialised("(7/2)*x", names), names), "18");
}

TEST(SpecialisedFormula, LongFormulasWork) {
    const formula_names names = xyz();
    for (const int terms : {100, 255, 256, 257, 1999, 2001, 10000}) {
        std::string text = "x";
        for (int at = 1; at < terms; ++at) text += "+x";
        const formula_program program = specialised(text, names);
        EXPECT_EQ(run(program, names), std::to_string(6 * terms));
    }
}

TEST(SpecialisedFormula, TravelsWithItsProgram) {
    const formula_names names = xyz();
    formula_program program = specialised("x+y", names);
    const formula_program moved = std::move(program);
    EXPECT_NE(moved.specialised, nullptr);
    EXPECT_EQ(run(moved, names), "10");
}

}  // namespace
