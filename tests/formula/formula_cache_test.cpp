// Equal formulas are made ready once, where nobody can tell.

#include "formula/formula_cache.h"

#include "tests/formula/formula_test_support.h"
#include "tests/support/test_document.h"

#include <deque>

#include <gtest/gtest.h>

using namespace GenICam;
using namespace formula_test;

namespace {

struct parsed_text {
    std::error_code failure;
    formula_program program;
};

/// Formulas over the names that a test knows, all in one cache.
class CachedFormulas : public testing::Test {
protected:
    // The programs stay where they are, as the cache wants it.
    parsed_text& Parse(std::string_view text, const formula_names& names) {
        parsed_text& made = programs_.emplace_back();
        made.failure = cache_.parse(
            text, names, [&names](identifier_id id) { return names.kind_of(id); }, made.program);
        return made;
    }
    // What was made of a text before is taken again: the prepared form is the same object.
    bool AreShared(std::string_view text, const formula_names& first, const formula_names& second) {
        const auto one = Parse(text, first).program.specialised;
        const auto other = Parse(text, second).program.specialised;
        EXPECT_NE(one, nullptr);
        EXPECT_NE(other, nullptr);
        return one == other;
    }

private:
    std::deque<parsed_text> programs_;
    formula_cache cache_;
};

formula_names With(const std::string& name, eval_value value) {
    formula_names names;
    names.add_variable(name, value);
    return names;
}

const eval_value seven = eval_value::of(std::int64_t{7});

TEST_F(CachedFormulas, EqualOnesShareTheirWork) {
    EXPECT_TRUE(AreShared("a*2+1", With("a", seven), With("a", eval_value::of(std::int64_t{9}))));
    EXPECT_TRUE(AreShared("1+1", {}, {}));
}

TEST_F(CachedFormulas, OfOtherKindsDoNot) {
    EXPECT_FALSE(AreShared("a*2+1", With("a", seven), With("a", eval_value::of(7.0))));
}

TEST_F(CachedFormulas, OfOtherVariablesDoNot) {
    formula_names second;
    second.add_variable("b", seven);
    second.add_variable("a", eval_value::of(std::int64_t{9}));
    EXPECT_FALSE(AreShared("a*2+1", With("a", seven), second));
    const parsed_text& parsed = Parse("a*2+1", second);
    EXPECT_EQ(show(evaluate_formula(parsed.program, second).value()), "19");
}

TEST_F(CachedFormulas, OfOtherConstantsDoNot) {
    formula_names one;
    one.add_constant("K", eval_value::of(std::int64_t{3}));
    formula_names other;
    other.add_constant("K", eval_value::of(std::int64_t{4}));
    formula_names real;
    real.add_constant("K", eval_value::of(3.0));
    EXPECT_TRUE(AreShared("K+1", one, one));
    EXPECT_FALSE(AreShared("K+1", one, other));
    EXPECT_FALSE(AreShared("K+1", one, real));
    EXPECT_EQ(show(evaluate_formula(Parse("K+1", real).program, real).value()), "4f");
}

TEST_F(CachedFormulas, WithExpressionsDoNot) {
    formula_names one = With("a", seven);
    one.add_expression("X", "a+1");
    formula_names other = With("a", seven);
    other.add_expression("X", "a+2");
    EXPECT_FALSE(AreShared("X*2", one, one)) << "the next node may have another one at the same place";
    EXPECT_EQ(show(evaluate_formula(Parse("X*2", other).program, other).value()), "18");
}

TEST_F(CachedFormulas, ThatAreRefusedSaySoEachTime) {
    test_support::LogCapture log;
    EXPECT_EQ(Parse("1 + nothing", {}).failure, make_error_code(formula_parse_failed));
    const std::size_t messages = log.Take().size();
    EXPECT_EQ(messages, 2U);
    EXPECT_EQ(Parse("1 + nothing", {}).failure, make_error_code(formula_parse_failed));
    EXPECT_EQ(log.Take().size(), messages);
    EXPECT_FALSE(Parse("1 + nothing", With("nothing", seven)).failure);
}

}  // namespace
