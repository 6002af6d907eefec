// Whoever watches computes the formulas of all nodes.

#include "genicam/nodes/formula_watch.h"

#include "genicam/base/node_base.h"
#include "tests/support/test_document.h"

#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace GenICam;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* elements = R"(<Integer Name="A"><Value>6</Value></Integer>
<IntSwissKnife Name="K"><pVariable Name="X">A</pVariable><Formula>X*2</Formula></IntSwissKnife>
<IntConverter Name="C"><pVariable Name="X">K</pVariable><FormulaTo>FROM+X</FormulaTo><FormulaFrom>TO-X</FormulaFrom>
<pValue>A</pValue></IntConverter>)";

class Watch final : public formula_watch {
public:
    Watch() { present_formula_watch = this; }
    ~Watch() { present_formula_watch = nullptr; }
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;

    result<eval_value> compute(const formula_view& program, const variable_map_impl& variables,
                               pugi::xml_node element, child formula) override {
        seen.push_back(std::string(element.attribute("Name").value()) + " " + name_of(formula) + " " +
                       std::to_string(variables(first_source_id)->value.integer));
        if (throws) throw std::runtime_error("stopped");
        if (answer) return *answer;
        return evaluate_formula(program, variables);
    }

    std::vector<std::string> seen;
    bool throws = false;
    std::optional<eval_value> answer;
};

class FormulaWatch : public testing::Test {
protected:
    [[nodiscard]] IInteger& Node(const char* name) { return static_cast<IInteger&>(doc_.Node(name)); }

    test_support::TestDocument doc_{elements};
};

TEST_F(FormulaWatch, SeesEachFormulaWithItsNodeAndItsVariables) {
    Watch watch;
    EXPECT_EQ(Node("C").get_val(0).value(), -6);
    EXPECT_THAT(watch.seen, ElementsAre("K Formula 6", "C FormulaFrom 12"));
    watch.seen.clear();
    EXPECT_FALSE(Node("C").set_val(1, 0));
    EXPECT_THAT(watch.seen, ElementsAre("K Formula 6", "C FormulaTo 12"));
    EXPECT_EQ(Node("A").get_val(0).value(), 13);
}

TEST_F(FormulaWatch, GivesTheResult) {
    Watch watch;
    watch.answer = eval_value::of(std::int64_t{5});
    EXPECT_EQ(Node("K").get_val(0).value(), 5);
}

TEST_F(FormulaWatch, WhatItThrowsLeavesNodesThatCanBeAskedAgain) {
    {
        Watch watch;
        watch.throws = true;
        EXPECT_THROW(static_cast<void>(Node("C").get_val(0)), std::runtime_error);
        EXPECT_THROW(static_cast<void>(Node("C").set_val(1, 0)), std::runtime_error);
    }
    EXPECT_EQ(Node("A").get_val(0).value(), 6) << "nothing was written";
    EXPECT_EQ(Node("C").get_val(0).value(), -6);
}

TEST_F(FormulaWatch, NobodyWatchesAtFirst) {
    EXPECT_EQ(present_formula_watch, nullptr);
    Watch watch;
    EXPECT_EQ(Node("A").get_val(0).value(), 6);
    EXPECT_THAT(watch.seen, IsEmpty()) << "no formula there";
}

}  // namespace
