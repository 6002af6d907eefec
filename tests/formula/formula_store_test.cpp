// Formulas of a document are read when they are first asked for, and equal ones once, where nobody can tell.

#include "formula/formula_store.h"

#include "tests/adapter/allocation_watch.h"
#include "tests/formula/formula_node_test.h"
#include "tests/formula/formula_test_support.h"

#include <initializer_list>
#include <utility>

using namespace formula_test;

namespace {

constexpr source_kinds of_integers = {number_kind::integer, number_kind::integer, true};
constexpr source_kinds of_floats = {number_kind::floating, number_kind::floating, true};
// As in a converter over an enumeration.
constexpr source_kinds of_either = {number_kind::integer, number_kind::integer, false};

const eval_value seven = eval_value::of(std::int64_t{7});

/// The names of a node: variables by their indices, then constants.
class NodeNames {
public:
    NodeNames(std::initializer_list<const char*> variables,
              std::initializer_list<std::pair<const char*, eval_value>> constants = {},
              bool no_from_to = true)
        : table_(no_from_to, budget_) {
        identifier_id id = first_source_id;
        for (const char* name : variables) table_.add_variable(name, id++);
        for (const auto& [name, constant] : constants) table_.add_constant(name, constant);
    }
    [[nodiscard]] variable_table& table() { return table_; }

private:
    expansion_budget budget_;
    variable_table table_;
};

class KeptFormulas : public testing::Test {
protected:
    kept_formula& Keep(std::string_view text, NodeNames& names, const source_kinds& kinds = of_integers) {
        return store_.keep(text, names.table(), kinds);
    }
    // Computes a formula whose variables have the values 10, 20 and so on, and `FROM` is 5.
    static std::string Compute(kept_formula& formula, bool is_integer = true) {
        const auto number = [&](std::int64_t value) {
            return is_integer ? eval_value::of(value) : eval_value::of(static_cast<double>(value));
        };
        eval_value value;
        const auto find = [&](identifier_id id) -> const eval_value* {
            const auto index = static_cast<std::int64_t>(id - first_source_id);
            value = id == current_value_id ? number(5) : number(10 * (index + 1));
            return &value;
        };
        const auto computed = evaluate_formula(formula.program(), find);
        return computed ? show(computed.value()) : "failed";
    }

    formula_store store_;
};

TEST_F(KeptFormulas, EqualOnesShareTheirWork) {
    NodeNames one({"a"});
    NodeNames other({"a"});
    EXPECT_EQ(&Keep("a*2+1", one), &Keep("a*2+1", other));
    EXPECT_EQ(Compute(Keep("a*2+1", one)), "21");
    NodeNames none({});
    EXPECT_EQ(&Keep("1+1", none), &Keep("1+1", none));
}

TEST_F(KeptFormulas, OfOtherKindsDoNot) {
    NodeNames names({"a"});
    EXPECT_NE(&Keep("a*2+1", names), &Keep("a*2+1", names, of_floats));
    EXPECT_NE(&Keep("a*2+1", names), &Keep("a*2+1", names, of_either));
    EXPECT_EQ(Compute(Keep("a/4", names, of_floats), false), "2.5f");
    EXPECT_EQ(Compute(Keep("a/4", names)), "2");
}

TEST_F(KeptFormulas, OfOtherVariablesDoNot) {
    NodeNames one({"a", "b"});
    NodeNames other({"b", "a"});
    EXPECT_NE(&Keep("a*2+1", one), &Keep("a*2+1", other));
    EXPECT_EQ(Compute(Keep("a*2+1", one)), "21");
    EXPECT_EQ(Compute(Keep("a*2+1", other)), "41");
}

TEST_F(KeptFormulas, OfOtherConstantsDoNot) {
    NodeNames one({}, {{"K", eval_value::of(std::int64_t{3})}});
    NodeNames other({}, {{"K", eval_value::of(std::int64_t{4})}});
    NodeNames real({}, {{"K", eval_value::of(3.0)}});
    EXPECT_EQ(&Keep("K+1", one), &Keep("K+1", one));
    EXPECT_EQ(Compute(Keep("K+1", one)), "4");
    EXPECT_EQ(Compute(Keep("K+1", other)), "5");
    EXPECT_EQ(Compute(Keep("K+1", real)), "4f");
}

TEST_F(KeptFormulas, OfConvertersKnowTheCurrentValue) {
    NodeNames swissknife({"a"});
    NodeNames converter({"a"}, {}, false);
    EXPECT_TRUE(Keep("FROM+a", swissknife).is_refused());
    EXPECT_EQ(Compute(Keep("FROM+a", converter)), "15");
}

TEST_F(KeptFormulas, ThatUseExpressionsAreReadAtOnceAndEachForItself) {
    NodeNames names({"a"});
    names.table().add_expression("X", std::move(parse_instructions("a+1", names.table()).value()));
    kept_formula& formula = Keep("X*2", names);
    EXPECT_NE(&formula, &Keep("X*2", names)) << "the next node may have another one at the same address";
    EXPECT_EQ(Compute(formula), "22");
    EXPECT_TRUE(Keep("X*nothing", names).was_refused());
}

TEST_F(KeptFormulas, ThatAreRefusedSaySoEachTimeWhereItIsAskedFor) {
    NodeNames names({});
    test_support::LogCapture log;
    for (int time = 0; time < 2; ++time) {
        EXPECT_TRUE(Keep("1 + nothing", names).was_refused());
        EXPECT_EQ(log.Take().size(), 2U);
    }
}

TEST_F(KeptFormulas, ThatAreReadLateSayNothing) {
    NodeNames names({});
    kept_formula& formula = Keep("1 + nothing", names);
    test_support::LogCapture log;
    EXPECT_FALSE(formula.was_refused()) << "nobody has read it yet";
    EXPECT_TRUE(formula.is_refused());
    EXPECT_TRUE(formula.program().empty());
    EXPECT_THAT(log.Take(), IsEmpty());
}

TEST_F(KeptFormulas, WithoutATextAreEmptyAndNotRefused) {
    NodeNames names({});
    kept_formula& formula = Keep(" ", names);
    EXPECT_TRUE(formula.program().empty());
    EXPECT_FALSE(formula.is_refused());
}

TEST_F(KeptFormulas, AreReadWithoutTheHeap) {
    const std::string texts[] = {
        "a",
        "1+2*3",
        "a?b:FROM",
        "(a>3)?1.5:b",
        "SQRT(a*a+b*b)",
        "ROUND(a,1)",
        // As dense as can be, deep, broken off, refused.
        repeat("-", 500) + "1",
        repeat("~LN(", 300) + "a" + repeat(")", 300),
        repeat("(", 900) + "1",
        repeat("a?", 200) + "1",
        repeat("ROUND(", 200) + "1",
        repeat("a+", 2000) + "b",
        repeat("a+b+", 200) + "nothing",
        repeat("(a=1)?b:(", 150) + "0" + repeat(")", 150),
        "12abc",
        "1 $",
        repeat("a/b&&", 300) + "1",
    };
    NodeNames names({"a", "b"}, {}, false);
    std::vector<kept_formula*> kept;
    for (const std::string& text : texts) {
        for (const source_kinds& kinds : {of_integers, of_floats, of_either}) {
            kept.push_back(&Keep(text, names, kinds));
        }
    }
    store_.close();
    const std::uint64_t before = adapter_test::AllocationCount();
    for (kept_formula* formula : kept) static_cast<void>(formula->program());
    EXPECT_EQ(adapter_test::AllocationCount() - before, 0U);
    EXPECT_EQ(Compute(*kept[0]), "10");
}

// More than there is room for at a time: the first are read again when they are asked for again.
TEST_F(KeptFormulas, WhoseRoomOthersTookAreReadAgainWithoutTheHeap) {
    std::vector<std::string> texts;
    for (int at = 0; at < 400; ++at) texts.push_back(repeat("a+", 20) + std::to_string(at));
    NodeNames names({"a"});
    std::vector<kept_formula*> kept;
    for (const std::string& text : texts) kept.push_back(&Keep(text, names));
    store_.close();
    const std::uint64_t rounds_before = store_.round();
    const std::uint64_t before = adapter_test::AllocationCount();
    for (int time = 0; time < 2; ++time) {
        for (kept_formula* formula : kept) EXPECT_FALSE(formula->program().empty());
    }
    EXPECT_EQ(adapter_test::AllocationCount() - before, 0U);
    EXPECT_GT(store_.round(), rounds_before + 1) << "all had room: this tests nothing";
    for (int at = 0; at < 400; ++at)
        EXPECT_EQ(Compute(*kept[static_cast<std::size_t>(at)]), std::to_string(200 + at));
}

TEST_F(KeptFormulas, AreReadOnceAsLongAsTheyHaveRoom) {
    NodeNames names({"a"});
    kept_formula& one = Keep("a+1", names);
    kept_formula& other = Keep("a+2", names);
    store_.close();
    const auto* program = one.program().specialised;
    static_cast<void>(other.program());
    EXPECT_EQ(one.program().specialised, program);
    EXPECT_NE(program, nullptr);
}

TEST_F(KeptFormulas, ThatWereRefusedAreNotReadAgain) {
    NodeNames names({"a"});
    kept_formula& refused = Keep("1 + nothing", names);
    kept_formula& blank = Keep(" ", names);
    store_.close();
    for (int time = 0; time < 2; ++time) {
        EXPECT_TRUE(refused.is_empty());
        EXPECT_TRUE(refused.is_refused());
        EXPECT_TRUE(blank.is_empty());
        EXPECT_FALSE(blank.is_refused());
        EXPECT_TRUE(blank.program().empty());
    }
}

TEST_F(KeptFormulas, OfGreatLengthAreReadAtOnce) {
    NodeNames names({"a"});
    const std::string text = repeat("a+", 5000) + "1";
    kept_formula& formula = Keep(text, names);
    store_.close();
    const std::uint64_t before = adapter_test::AllocationCount();
    EXPECT_EQ(formula.program().instructions.size(), 10001U);
    EXPECT_EQ(adapter_test::AllocationCount() - before, 0U);
    EXPECT_EQ(Compute(formula), "50001");
}

// Where kinds change with each operation there are more steps than instructions. Alone in its document such a
// formula has no room but its own.
TEST_F(KeptFormulas, WhoseFormIsLargerThanTheRoomKeepTheirInstructions) {
    NodeNames names({"a"});
    kept_formula& formula = Keep("~-SQRT(~-SQRT(~-SQRT(a)))", names);
    store_.close();
    EXPECT_EQ(formula.program().specialised, nullptr);
    EXPECT_EQ(formula.program().instructions.size(), 10U);
    EXPECT_EQ(Compute(formula), "-1");
}

TEST(MeasuredFormula, IsNeverSmallerThanTheTree) {
    for (const char* text : {"", " ", "a", "1+2", "-(-a)", "a?b:c", "ROUND(a,2)", "a>=b<>c**d", "1e-5+2",
                             "a.b.c + _d", "f(1)+2", "a && b", "~~~~1", "12abc", ".5"}) {
        const formula_tree tree =
            read_formula(text, [](std::string_view) -> resolved_name { return identifier_id{1000}; });
        EXPECT_GE(measure_formula(text).nodes, tree.size()) << text;
    }
    EXPECT_EQ(measure_formula("(a + 12.5) * SIN(b) ? c : d").nodes, 9U);
}

}  // namespace
