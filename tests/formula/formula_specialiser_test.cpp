#include "tests/formula/formula_test_support.h"

#include <limits>
#include <optional>

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

std::string run(const formula_program& program, const formula_names& names) {
    const auto value = evaluate_formula(program, names);
    return value ? show(value.value()) : value.error().message();
}

TEST(FormulaSpecialiser, OrdinaryFormulasAreSpecialised) {
    const formula_names names = xyz();
    for (const char* text :
         {"1", "x", "x+1", "x/y*z", "-x%y", "x>y?x:y", "ROUND(z,x)", "(x&1)=0", "SGN(x)+SGN(z)", "x?1:2.5",
          "(x?1:2.5)*z", "SIN(x?1:2.5)", "(x?1:2.5)&3", "z?1:0", "x?1/y:2", "1/0"}) {
        EXPECT_NE(specialised(text, names).specialised, nullptr) << text;
    }
}

TEST(FormulaSpecialiser, WhatHasNoFixedKindInTimeStaysAsItIs) {
    const formula_names names = xyz();
    for (const char* text : {"(x?1:2.5)/4", "-(x?1:2.5)", "(x?1:2.5)=1", "x?1/y:2.5"}) {
        EXPECT_EQ(specialised(text, names).specialised, nullptr) << text;
    }
    EXPECT_EQ(outcome("(x?1:2.5)/4", names), "0");
    EXPECT_EQ(outcome("(x=0?1:2.5)/4", names), "0.625f");
    EXPECT_EQ(outcome("x?1/y:2.5", names), "0");
}

TEST(FormulaSpecialiser, WhatFailsStaysAsItIs) {
    formula_names names = xyz();
    names.add_lost_variable("LOST");
    for (const char* text : {"", "LOST", "x?y:", "-SIN(", "x+LOST", "x?y", "ROUND(1,2"}) {
        EXPECT_EQ(specialised(text, names).specialised, nullptr) << text;
    }
}

TEST(FormulaSpecialiser, BranchesOfBothKinds) {
    formula_names names = xyz();
    EXPECT_EQ(outcome("x?1:2.5", names), "1");
    EXPECT_EQ(outcome("x=0?1:2.5", names), "2.5f");
    EXPECT_EQ(outcome("x=1?0.5:(x=6?y:z)", names), "4");
    EXPECT_EQ(outcome("(x?1:2.5)*z", names), "0.25f");
    EXPECT_EQ(outcome("(x?9007199254740993:2.5)*z", names), "2251799813685248f");
    EXPECT_EQ(outcome("(x?y:z)&3", names), "0");
    EXPECT_EQ(outcome("(z>1?y:z)|8", names), "8");
    EXPECT_EQ(outcome("(x?(y?z:x):y)+0.5", names), "0.75f");
}

TEST(FormulaSpecialiser, Conditions) {
    formula_names names = xyz();
    names.add_variable("NAN", eval_value::of(std::numeric_limits<double>::quiet_NaN()));
    names.add_variable("NZERO", eval_value::of(-0.0));
    names.add_variable("LITTLE", eval_value::of(0.25));
    EXPECT_EQ(outcome("NAN?1:0", names), "1");
    EXPECT_EQ(outcome("NAN?0:1", names), "0");
    EXPECT_EQ(outcome("NZERO?1:0", names), "0");
    EXPECT_EQ(outcome("NZERO?0:1", names), "1");
    EXPECT_EQ(outcome("LITTLE?1:0", names), "1");
    EXPECT_EQ(outcome("LITTLE?0:1", names), "0");
    EXPECT_EQ(outcome("x?0:1", names), "0");
    EXPECT_EQ(outcome("NAN?x+1:y+1", names), "7");
    EXPECT_EQ(outcome("NZERO?x+1:y+1", names), "5");
    EXPECT_EQ(outcome("(x?NAN:1)?x:y", names), "6");
    EXPECT_EQ(outcome("1?x:y", names), "6");
    EXPECT_EQ(outcome("(x>y?x:y)*10+(x<y?x+1:y+1)", names), "65");
    EXPECT_EQ(outcome("x>y?(y>x?1:2):(z>1?3:4)", names), "2");
    EXPECT_EQ(outcome("((x>y?x+1:y)>6?x*2:y*2)+1", names), "13");
}

TEST(FormulaSpecialiser, ConstantsOfIntegerSumsAndProductsAreDrawnTogether) {
    formula_names names = xyz();
    names.add_variable("MIN", eval_value::of(std::numeric_limits<std::int64_t>::min()));
    EXPECT_EQ(outcome("0x1000 + (2*x+1)*4", names), "4148");
    EXPECT_EQ(outcome("(x*1)+0", names), "6");
    EXPECT_EQ(outcome("1*x", names), "6");
    EXPECT_EQ(outcome("0+x", names), "6");
    EXPECT_EQ(outcome("3+(x+4)", names), "13");
    EXPECT_EQ(outcome("3*(x*4)", names), "72");
    EXPECT_EQ(outcome("(x+4)+(-4)", names), "6");
    EXPECT_EQ(outcome("(x*3)*0xAAAAAAAAAAAAAAAB", names), "6");  // the inverse of 3
    EXPECT_EQ(outcome("MIN+0x7FFFFFFFFFFFFFFF+1", names), "0");
    EXPECT_EQ(outcome("0*y", names), "0");
    EXPECT_EQ(outcome("0*(9/y)", names), "0");
    // Floats are not drawn together: their sums depend on the order.
    EXPECT_EQ(outcome("(z+1e16)+(-1e16)", names), "0f");
    EXPECT_EQ(outcome("z+0", names), "0.25f");
    names.set("z", eval_value::of(-0.0));
    EXPECT_EQ(outcome("z+0.0", names), "0f");
    EXPECT_EQ(outcome("z*1", names), "-0f");
}

TEST(FormulaSpecialiser, VariablesOfAnotherKindGiveTheRightResultAllTheSame) {
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

TEST(FormulaSpecialiser, WithoutKnownKindsThereIsAFormForIntegersAndOneForFloats) {
    formula_names names = xyz();
    const auto program = parse_formula("x/y", names);
    ASSERT_TRUE(program);
    ASSERT_NE(program.value().specialised, nullptr);
    EXPECT_NE(program.value().specialised->alternative, nullptr);
    EXPECT_EQ(run(program.value(), names), "1");
    names.set("x", eval_value::of(6.0));
    EXPECT_EQ(run(program.value(), names), "1.5f");
    names.set("y", eval_value::of(5.0));
    EXPECT_EQ(run(program.value(), names), "1.2f");
    const auto constant = parse_formula("2*3", names);
    ASSERT_TRUE(constant);
    EXPECT_EQ(constant.value().specialised->alternative, nullptr);
}

TEST(FormulaSpecialiser, ConversionsOfVariables) {
    const formula_names names = xyz();
    EXPECT_EQ(outcome("x*z + x*z + x/y*z", names), "3.25f");
    EXPECT_EQ(outcome("(z|0) + (z|1) + ~z", names), "0");
    EXPECT_EQ(outcome("(x+y)*z", names), "2.5f");
    EXPECT_EQ(outcome("(z*10)&7", names), "3");
    EXPECT_EQ(outcome("SQRT(x+3)", names), "3f");
}

TEST(FormulaSpecialiser, ConstantsOfBothKindsWithTheSameBitsAreKeptApart) {
    // The bits of 1.0 as an integer.
    EXPECT_EQ(outcome("x*1.0 + y*4607182418800017408", xyz()), "-1.8014398509481978e+16f");
    EXPECT_EQ(outcome("x + y*4607182418800017408", xyz()), "-18014398509481978");
}

TEST(FormulaSpecialiser, LongFormulasWork) {
    const formula_names names = xyz();
    for (const int terms : {62, 63, 64, 65, 66, 100, 500, 501, 10000}) {
        std::string text = "x";
        for (int at = 1; at < terms; ++at) text += "+x";
        EXPECT_EQ(outcome(text, names), std::to_string(6 * terms));
    }
}

TEST(FormulaSpecialiser, ManyVariablesAndManyIntermediateResultsGoToTheHeap) {
    formula_names names;
    std::string sum = "0";
    std::string nested = "v0";
    for (int at = 0; at < 150; ++at) {
        const std::string name = "v" + std::to_string(at);
        names.add_variable(name, eval_value::of(std::int64_t{at}));
        sum += "+" + name;
        nested = at == 0 ? nested : "(" + name + "*1.5)-(" + nested + ")";
    }
    const formula_program program = specialised(sum, names);
    ASSERT_NE(program.specialised, nullptr);
    EXPECT_GT(program.specialised->frame_size(), formula_slots_in_place);
    EXPECT_EQ(outcome(sum, names), "11175");
    EXPECT_NE(specialised(nested, names).specialised, nullptr);
    EXPECT_EQ(outcome(nested, names), "112.5f");
}

// Prepared for integers alone; the program goes on with the answer that it has.
TEST(FormulaSpecialiser, AVariableOfAnotherKindIsComputedAllTheSame) {
    formula_names names = xyz();
    const formula_program program = specialised("x/2", names);
    ASSERT_NE(program.specialised, nullptr);
    names.set("x", eval_value::of(7.0));
    int questions = 0;
    const auto ask = [&](identifier_id id) -> std::optional<eval_value> {
        ++questions;
        return *names(id);
    };
    EXPECT_EQ(show(evaluate_formula(program, ask).value()), "3.5f");
    EXPECT_EQ(questions, 1);
    EXPECT_EQ(run(program, names), "3.5f");
}

TEST(FormulaSpecialiser, TravelsWithItsProgram) {
    const formula_names names = xyz();
    formula_program program = specialised("x+y", names);
    const formula_program moved = std::move(program);
    EXPECT_NE(moved.specialised, nullptr);
    EXPECT_EQ(run(moved, names), "10");
}

}  // namespace
