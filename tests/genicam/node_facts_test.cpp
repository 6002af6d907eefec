// What is told of each class of nodes.

#include "genicam/document/node_facts.h"

#include "genicam/document/node_factory.h"

#include <string>

#include <gtest/gtest.h>

namespace {

using namespace GenICam;

TEST(NodeFacts, EveryClassHasThem) {
    const auto classes = all_node_classes();
    const auto facts = all_node_facts();
    ASSERT_EQ(facts.size(), classes.size());
    for (std::size_t at = 0; at < classes.size(); ++at) {
        EXPECT_EQ(facts[at].name, classes[at].name);
        EXPECT_EQ(find_node_facts(classes[at].name), &facts[at]);
        EXPECT_TRUE(facts[at].reads("Extension")) << facts[at].name;
    }
    EXPECT_EQ(find_node_facts("class_type"), nullptr);
}

TEST(NodeFacts, LinksAreChildrenThatAreRead) {
    std::size_t links = 0;
    for (const node_facts& facts : all_node_facts()) {
        const auto look_at = [&](std::string_view role) {
            const bool is_no_child = role == "pOffset" || (role == "pLength" && !facts.reads("Length"));
            if (is_no_child || facts.element == "MaskedIntReg" || facts.element == "StructEntry") return;
            EXPECT_TRUE(facts.reads(role)) << facts.name << " " << role;
            ++links;
        };
        facts.evaluated.for_each(look_at);
        facts.targets.for_each(look_at);
    }
    EXPECT_GT(links, 30U);
}

TEST(NodeFacts, NamesAreFoundWhole) {
    const name_list names = "pValue pValueCopy";
    EXPECT_TRUE(names.contains("pValue"));
    EXPECT_TRUE(names.contains("pValueCopy"));
    EXPECT_FALSE(names.contains("Value"));
    EXPECT_FALSE(names.contains("pValue pValueCopy"));
    EXPECT_FALSE(name_list().contains(""));
    EXPECT_TRUE(name_list().empty());
}

TEST(NodeFacts, OnlyClassesWithFormulasCompute) {
    for (const node_facts& facts : all_node_facts()) {
        const std::string element(facts.element);
        const bool has_formula =
            element.find("Converter") != std::string::npos || element.find("SwissKnife") != std::string::npos;
        EXPECT_EQ(facts.computes, has_formula) << facts.name;
    }
}

}  // namespace
