// Ordinary formulas are computed without the heap, from the first read on.

#include "tests/adapter/allocation_watch.h"
#include "tests/formula/formula_node_test.h"
#include "tests/formula/formula_test_support.h"

using namespace formula_test;

namespace {

template <class Call>
std::uint64_t allocations_of(Call call) {
    const std::uint64_t before = adapter_test::AllocationCount();
    for (int time = 0; time < 3; ++time) call();
    return adapter_test::AllocationCount() - before;
}

TEST(FormulaAllocation, EvaluationTakesNothing) {
    formula_names names;
    names.add_variable("x", eval_value::of(std::int64_t{6}));
    names.add_variable("z", eval_value::of(0.25));
    for (const char* text :
         {"1", "x", "x*2+1", "(x>3)?1:0", "SQRT(z*z+x)", "(x?1:2.5)/2", "ROUND(z,1)+x%4"}) {
        const auto plain = parse_instructions(text, names);
        ASSERT_TRUE(plain);
        const auto untyped = parse_formula(text, names);
        ASSERT_TRUE(untyped);
        const formula_program typed = specialised(text, names);
        for (const formula_program* program : {&plain.value(), &untyped.value(), &typed}) {
            EXPECT_EQ(allocations_of([&] { EXPECT_TRUE(evaluate_formula(*program, names)); }), 0U) << text;
        }
    }
}

TEST(FormulaAllocation, ADeepStackTakesSome) {
    std::string text;
    for (int at = 0; at < 20; ++at) text += "1+(";
    text += "1" + std::string(20, ')');
    const auto program = parse_instructions(text, formula_names());
    ASSERT_TRUE(program);
    EXPECT_GE(allocations_of([&] { EXPECT_TRUE(evaluate_formula(program.value(), formula_names())); }), 3U)
        << "or nothing is counted";
}

TEST(FormulaAllocation, ReadsAndWritesOfNodesTakeNothing) {
    TestDocument doc(integer("i", "7") + real("f", "2.5") + "<IntSwissKnife Name='a'>" + variable("I", "i") +
                     formula("(I>3)?I*2:0") + "</IntSwissKnife><SwissKnife Name='b'>" + variable("A", "a") +
                     variable("F", "f") + formula("A/F+1") + "</SwissKnife><IntConverter Name='c'>" +
                     formulas("FROM+1", "TO-1") + target("i") + "</IntConverter><Converter Name='d'>" +
                     variable("I", "i") + formulas("FROM*2", "TO/2*I") + target("f") + "</Converter>");
    IInteger& a = doc.Integer("a");
    IFloat& b = doc.Float("b");
    IInteger& c = doc.Integer("c");
    IFloat& d = doc.Float("d");
    EXPECT_EQ(allocations_of([&] { EXPECT_TRUE(a.get_val(0)); }), 0U);
    EXPECT_EQ(allocations_of([&] { EXPECT_TRUE(b.get_val(0)); }), 0U);
    EXPECT_EQ(allocations_of([&] { EXPECT_TRUE(c.get_val(0)); }), 0U);
    EXPECT_EQ(allocations_of([&] { EXPECT_TRUE(d.get_val(0)); }), 0U);
    EXPECT_EQ(allocations_of([&] { EXPECT_FALSE(c.set_val(3, 0)); }), 0U);
    EXPECT_EQ(allocations_of([&] { EXPECT_FALSE(d.set_val(3.5, 0)); }), 0U);
}

}  // namespace
