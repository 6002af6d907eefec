// What is known of the numbers in a formula, and of its divisions.

#include "apps/inspect/lint/integer_divisions.h"

#include "apps/inspect/formula_text.h"
#include "formula/formula_parser.h"

#include <optional>
#include <string>

#include <gtest/gtest.h>

namespace {

using namespace selvane_inspect;
using GenICam::identifier_id;
using GenICam::known_kind;
using node_index = GenICam::formula_tree::index;

constexpr identifier_id integer_id = 1;
constexpr identifier_id float_id = 2;
constexpr identifier_id either_id = 3;

/// The tree of a formula over I, F and X: an integer, a float and one that may be either. Each V is another
/// variable of either kind.
class Tree {
public:
    explicit Tree(const std::string& formula)
        : text_(formula),
          tree_(Read(text_)),
          formula_(analyse(tree_, [](identifier_id id) { return KindOf(id); })) {}

    [[nodiscard]] bool IsKnown() const { return formula_.has_value(); }
    [[nodiscard]] const analysed_formula& operator*() const { return *formula_; }
    [[nodiscard]] node_index TopNode() const { return tree_.root(); }
    [[nodiscard]] const GenICam::known_number& Top() const { return formula_->numbers[TopNode()]; }
    [[nodiscard]] std::string Text() const { return part_text(tree_, TopNode(), NameOf); }

private:
    static GenICam::formula_tree Read(const std::string& formula) {
        identifier_id next = 1000;
        return GenICam::read_formula(formula, [&next](std::string_view name) -> GenICam::resolved_name {
            if (name == "V") return next++;
            return name == "I" ? integer_id : name == "F" ? float_id : either_id;
        });
    }
    static known_kind KindOf(identifier_id id) {
        return id == integer_id ? known_kind::integer
               : id == float_id ? known_kind::floating
                                : known_kind::either;
    }
    static std::string NameOf(identifier_id id) {
        return id == integer_id ? "I" : id == float_id ? "F" : "X";
    }

    std::string text_;
    GenICam::formula_tree tree_;
    std::optional<analysed_formula> formula_;
};

TEST(IntegerDivisions, InfersKinds) {
    EXPECT_EQ(Tree("I+1").Top().kind, known_kind::integer);
    EXPECT_EQ(Tree("I+1.0").Top().kind, known_kind::floating);
    EXPECT_EQ(Tree("F/I").Top().kind, known_kind::floating);
    EXPECT_EQ(Tree("X*2").Top().kind, known_kind::either);
    EXPECT_EQ(Tree("X*2.0").Top().kind, known_kind::floating);
    EXPECT_EQ(Tree("F>X").Top().kind, known_kind::integer);
    EXPECT_EQ(Tree("F%2").Top().kind, known_kind::integer);
    EXPECT_EQ(Tree("SIN(I)").Top().kind, known_kind::floating);
    EXPECT_EQ(Tree("SGN(X)").Top().kind, known_kind::either);
    EXPECT_EQ(Tree("-I").Top().kind, known_kind::integer);
    EXPECT_EQ(Tree("I?I:1").Top().kind, known_kind::integer);
    EXPECT_EQ(Tree("I?I:1.0").Top().kind, known_kind::either);
}

TEST(IntegerDivisions, ComputesWhatIsConstant) {
    ASSERT_TRUE(Tree("2*3+1").Top().is_constant);
    EXPECT_EQ(Tree("2*3+1").Top().constant.integer, 7);
    EXPECT_EQ(Tree("7/-1").Top().constant.integer, -7);
    EXPECT_DOUBLE_EQ(Tree("7/2.0").Top().constant.real, 3.5);
    EXPECT_FALSE(Tree("I*2").Top().is_constant);
    EXPECT_FALSE(Tree("1/0").Top().is_constant);
    EXPECT_FALSE(Tree("1?2:3").Top().is_constant);
}

TEST(IntegerDivisions, TellsDivisionsOfIntegers) {
    const auto divides = [](const std::string& formula) {
        const Tree tree(formula);
        return divides_integers(*tree, tree.TopNode());
    };
    EXPECT_TRUE(divides("I/10"));
    EXPECT_TRUE(divides("7/2"));
    EXPECT_FALSE(divides("I/10.0"));
    EXPECT_FALSE(divides("X/10"));
    EXPECT_FALSE(divides("I%10"));
    EXPECT_FALSE(divides("I*10"));
}

TEST(IntegerDivisions, TellsWhatMayFault) {
    const auto may = [](const std::string& formula) {
        const Tree tree(formula);
        return may_divide_integers(*tree, tree.TopNode());
    };
    EXPECT_TRUE(may("I/I"));
    EXPECT_TRUE(may("X/I"));
    EXPECT_FALSE(may("F/I"));
    EXPECT_TRUE(may("F%F"));
    EXPECT_FALSE(may("I+I"));
    EXPECT_FALSE(may("-I"));
}

// Of many variables each tries fewer numbers; of very many, none but 0.
TEST(IntegerDivisions, TriesWhatMakesADivisorZero) {
    const auto can = [](const std::string& formula) {
        const Tree tree(formula);
        return can_be_zero(*tree, tree.TopNode());
    };
    EXPECT_TRUE(can("I-1"));
    EXPECT_FALSE(can("I*0+1"));
    EXPECT_TRUE(can("V+V+V+V+V+V+V+V"));
    std::string sum = "V";
    for (int at = 0; at < 40; ++at) sum += "+V";
    EXPECT_TRUE(can(sum));
    EXPECT_FALSE(can("I*I+1"));
    EXPECT_TRUE(can("~I"));
    // Numbers that stand in the formula, and those beside them.
    EXPECT_TRUE(can("I-1000"));
    EXPECT_TRUE(can("I+1000"));
    EXPECT_TRUE(can("I+1-1000"));
    EXPECT_TRUE(can("I-1-1000"));
}

TEST(IntegerDivisions, WritesItselfWithParentheses) {
    EXPECT_EQ(Tree("1000/(I+1)").Text(), "1000 / (I + 1)");
    EXPECT_EQ(Tree("I>0?F:-I").Text(), "(I > 0) ? F : - I");
    EXPECT_EQ(Tree("ROUND(F,2)").Text(), "F ROUND 2");
    EXPECT_EQ(Tree("SIN(1.0)").Text(), "SIN 1.0");
    EXPECT_EQ(Tree("1+(1+(1+(1+(1+(1+I)))))").Text(), "1 + (1 + (1 + (1 + (... + ...))))");
}

TEST(IntegerDivisions, GivesUpOnProgramsThatAreBrokenOrTooLong) {
    EXPECT_FALSE(Tree("I ? 1 :").IsKnown());
    std::string sum = "1";
    for (int at = 0; at < 2100; ++at) sum += "+1";
    EXPECT_FALSE(Tree(sum).IsKnown());
}

}  // namespace
