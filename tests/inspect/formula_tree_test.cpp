// Programs as trees: kinds, constants and divisions.

#include "apps/inspect/lint/formula_tree.h"

#include "formula/formula_parser.h"

#include <optional>
#include <string>

#include <gtest/gtest.h>

namespace {

using namespace selvane_inspect;
using GenICam::identifier_id;

constexpr identifier_id integer_id = 1;
constexpr identifier_id float_id = 2;
constexpr identifier_id either_id = 3;

/// The tree of a formula over I, F and X: an integer, a float and one that may be either.
class Tree {
public:
    explicit Tree(const std::string& formula) : program_(Parse(formula)), tree_(program_, KindOf) {}

    [[nodiscard]] const program_tree& operator*() const { return tree_; }
    [[nodiscard]] const program_node& Top() const { return tree_.nodes().back(); }
    [[nodiscard]] std::string Text() const { return tree_.text(tree_.nodes().size() - 1, NameOf); }

private:
    static GenICam::formula_program Parse(const std::string& formula) {
        const auto resolve = [](std::string_view name) -> GenICam::resolved_name {
            return name == "I" ? integer_id : name == "F" ? float_id : either_id;
        };
        return std::move(GenICam::parse_formula(formula, resolve).value());
    }
    static known_kind KindOf(identifier_id id) {
        return id == integer_id ? known_kind::integer
               : id == float_id ? known_kind::floating
                                : known_kind::either;
    }
    static std::string NameOf(identifier_id id) {
        return id == integer_id ? "I" : id == float_id ? "F" : "X";
    }

    GenICam::formula_program program_;
    program_tree tree_;
};

TEST(ProgramTree, InfersKinds) {
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

TEST(ProgramTree, ComputesWhatIsConstant) {
    ASSERT_TRUE(Tree("2*3+1").Top().constant);
    EXPECT_EQ(Tree("2*3+1").Top().constant->value.integer, 7);
    EXPECT_DOUBLE_EQ(Tree("7/2.0").Top().constant->value.real, 3.5);
    EXPECT_FALSE(Tree("I*2").Top().constant);
    EXPECT_FALSE(Tree("1/0").Top().constant);
    EXPECT_FALSE(Tree("1?2:3").Top().constant);
}

TEST(ProgramTree, TellsDivisionsOfIntegers) {
    const auto divides = [](const std::string& formula) {
        const Tree tree(formula);
        return divides_integers(*tree, tree.Top());
    };
    EXPECT_TRUE(divides("I/10"));
    EXPECT_TRUE(divides("7/2"));
    EXPECT_FALSE(divides("I/10.0"));
    EXPECT_FALSE(divides("X/10"));
    EXPECT_FALSE(divides("I%10"));
    EXPECT_FALSE(divides("I*10"));
}

TEST(ProgramTree, TellsWhatMayFault) {
    const auto may = [](const std::string& formula) {
        const Tree tree(formula);
        return may_divide_integers(*tree, tree.Top());
    };
    EXPECT_TRUE(may("I/I"));
    EXPECT_TRUE(may("X/I"));
    EXPECT_FALSE(may("F/I"));
    EXPECT_TRUE(may("F%F"));
    EXPECT_FALSE(may("I+I"));
    EXPECT_FALSE(may("-I"));
}

TEST(ProgramTree, WritesItselfWithParentheses) {
    EXPECT_EQ(Tree("1000/(I+1)").Text(), "1000 / (I + 1)");
    EXPECT_EQ(Tree("I>0?F:-I").Text(), "(I > 0) ? F : - I");
    EXPECT_EQ(Tree("ROUND(F,2)").Text(), "F ROUND 2");
    EXPECT_EQ(Tree("SIN(1.0)").Text(), "SIN 1.0");
    EXPECT_EQ(Tree("1+(1+(1+(1+(1+(1+I)))))").Text(), "1 + (1 + (1 + (1 + (... + ...))))");
}

TEST(ProgramTree, GivesUpOnProgramsThatAreBrokenOrTooLong) {
    EXPECT_TRUE((*Tree("I ? 1 :")).nodes().empty());
    std::string sum = "1";
    for (int at = 0; at < 2100; ++at) sum += "+1";
    EXPECT_TRUE((*Tree(sum)).nodes().empty());
}

}  // namespace
