// The tree that a formula is read into: what is computed from what, and where it stands in the text.

#include "formula/formula_tree.h"

#include "tests/formula/formula_test_support.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace GenICam;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

formula_tree Read(std::string_view text) {
    return read_formula(text, [](std::string_view name) -> resolved_name {
        if (name == "unknown") return {};
        return identifier_id{1};
    });
}

std::string TextOf(const formula_tree& tree, const formula_node& node) {
    return std::string(tree.text().substr(node.start, node.end - node.start));
}

// The text of each node with everything that belongs to it.
std::vector<std::string> Texts(std::string_view text) {
    const formula_tree tree = Read(text);
    std::vector<std::string> texts;
    for (const formula_node& node : tree.nodes()) texts.push_back(TextOf(tree, node));
    return texts;
}

std::vector<std::size_t> Offsets(std::string_view text) {
    const formula_tree tree = Read(text);
    std::vector<std::size_t> offsets;
    for (const formula_node& node : tree.nodes()) offsets.push_back(node.offset);
    return offsets;
}

std::vector<std::string> OperandsOfRoot(std::string_view text) {
    const formula_tree tree = Read(text);
    std::vector<std::string> texts;
    for (const formula_tree::index operand : tree.operands(tree.root()))
        texts.push_back(TextOf(tree, tree[operand]));
    return texts;
}

TEST(FormulaTree, NodesKnowTheirText) {
    EXPECT_THAT(Texts("a + 2*b"), ElementsAre("a", "2", "b", "2*b", "a + 2*b"));
    EXPECT_THAT(Texts("( a+1 ) * b"), ElementsAre("a", "1", "( a+1 )", "b", "( a+1 ) * b"));
    EXPECT_THAT(Texts("-a**2"), ElementsAre("a", "-a", "2", "-a**2"));
    EXPECT_THAT(Texts("2-(+ +a)"), ElementsAre("2", "(+ +a)", "2-(+ +a)"));
    EXPECT_THAT(Texts("SIN( a ) ?ROUND(b,1):c"),
                ElementsAre("a", "SIN( a )", "b", "1", "ROUND(b,1)", "c", "SIN( a ) ?ROUND(b,1):c"));
}

TEST(FormulaTree, NodesKnowWhereTheirOperatorStands) {
    EXPECT_THAT(Offsets("a + 2*b"), ElementsAre(0, 4, 6, 5, 2));
    EXPECT_THAT(Offsets("SIN( a ) ?b:-c"), ElementsAre(5, 0, 10, 13, 12, 9));
}

TEST(FormulaTree, NodesFindTheirOperands) {
    EXPECT_THAT(OperandsOfRoot("a*b + (c-d)*2"), ElementsAre("a*b", "(c-d)*2"));
    EXPECT_THAT(OperandsOfRoot("a>1 ? b+1 : -c"), ElementsAre("a>1", "b+1", "-c"));
    EXPECT_THAT(OperandsOfRoot("-(a+b)"), ElementsAre("(a+b)"));
    EXPECT_THAT(OperandsOfRoot("ROUND(a*2, b)"), ElementsAre("a*2", "b"));
    EXPECT_THAT(OperandsOfRoot("a"), IsEmpty());
}

TEST(FormulaTree, TellsWhatIsEnclosed) {
    const formula_tree tree = Read("(a+b)+c");
    EXPECT_FALSE(tree[0].is_enclosed);
    EXPECT_TRUE(tree[2].is_enclosed);
    EXPECT_FALSE(tree[tree.root()].is_enclosed);
}

TEST(FormulaTree, TellsWhatIsComplete) {
    EXPECT_TRUE(Read("a+1").is_complete());
    EXPECT_FALSE(Read("").is_complete());
    EXPECT_FALSE(Read("a ? b").is_complete()) << "two numbers";
    EXPECT_FALSE(Read("a ? b").lacks_operands());
    EXPECT_TRUE(Read("a ? b :").lacks_operands());
    EXPECT_TRUE(Read("-SIN(").lacks_operands());
}

TEST(FormulaTree, KeepsWhatTheTextBreaksOff) {
    const formula_tree tree = Read("1 + SIN(a ? b *");
    ASSERT_TRUE(tree.is_accepted());
    EXPECT_EQ(tree.dropped, 14U);
    ASSERT_EQ(tree.unfinished.size(), 2U);
    EXPECT_EQ(tree.unfinished[0].symbol, token_kind::question);
    EXPECT_EQ(tree.unfinished[0].offset, 10U);
    EXPECT_EQ(tree.unfinished[1].symbol, token_kind::function);
    EXPECT_EQ(tree.unfinished[1].offset, 4U);
    EXPECT_FALSE(Read("1 + 2").dropped);
    EXPECT_THAT(Read("1 + 2").unfinished, IsEmpty());
}

TEST(FormulaTree, GoesOnBehindNamesAndCallsThatNobodyKnows) {
    const formula_tree tree = Read("unknown + (ROUND(a) - 1)");
    EXPECT_FALSE(tree.is_accepted());
    EXPECT_EQ(tree.end.status, parse_status::unknown_name);
    EXPECT_EQ(tree.end.rest, "+ (ROUND(a) - 1)");
    EXPECT_EQ(TextOf(tree, tree[tree.root()]), "unknown + (ROUND(a) - 1)");
    const formula_tree call = Read("ROUND(a) + 1 $");
    EXPECT_EQ(call.end.status, parse_status::unknown_function) << "the first refusal counts";
    EXPECT_EQ(call.end.rest, " + 1 $");
}

TEST(FormulaTree, AsksForNoNameBehindARefusal) {
    std::vector<std::string> asked;
    static_cast<void>(read_formula("a + ROUND(b) + c + d", [&](std::string_view name) -> resolved_name {
        asked.emplace_back(name);
        return identifier_id{1};
    }));
    EXPECT_THAT(asked, ElementsAre("a", "b"));
}

TEST(FormulaTree, ExpressionsStandWhereTheirNameStands) {
    const auto inner = parse_instructions("1+2*3", formula_test::formula_names());
    ASSERT_TRUE(inner);
    const formula_tree tree =
        read_formula("4 - X", [&](std::string_view) -> resolved_name { return &inner.value(); });
    ASSERT_EQ(tree.size(), 7U);
    for (formula_tree::index node = 1; node < 6; ++node) EXPECT_EQ(tree[node].offset, 4U);
    EXPECT_EQ(tree[5].first, 1U);
    EXPECT_EQ(tree[tree.root()].first, 0U);
    EXPECT_EQ(tree.operand_before(5), 0U);
}

}  // namespace
