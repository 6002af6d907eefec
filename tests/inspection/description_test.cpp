// A description as the inspector holds it: elements with their positions, beside the nodes of the engine.

#include "inspection/description.h"

#include "inspection/inspect_error.h"
#include "tests/support/description_files.h"

#include <map>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using selvane_inspect::description;
using selvane_inspect::element_index;
using selvane_inspect::inspect_error;
using test_support::AroundElements;
using testing::HasSubstr;

class DescriptionTest : public test_support::DescriptionFiles {};

constexpr const char* some_elements =
    "<Integer Name=\"A\"><Value>1</Value></Integer>\n"
    "  <Group>\n"
    "    <StructReg><Address>0</Address><Length>4</Length>\n"
    "      <StructEntry Name=\"B\"><Bit>1</Bit></StructEntry>\n"
    "    </StructReg>\n"
    "  </Group>\n"
    "<Enumeration Name=\"C\"><Value>0</Value><EnumEntry "
    "Name=\"E\"><Value>0</Value></EnumEntry></Enumeration>";

void ExpectPositions(const description& opened, std::size_t first_line) {
    std::map<std::string, std::pair<std::size_t, std::size_t>> positions;
    for (element_index at = 0; at < opened.tree().elements().size(); ++at) {
        const auto position = opened.tree().position_of(opened.tree().at(at).xml);
        positions[std::string(opened.tree().at(at).name)] = {position.line, position.column};
    }
    using Position = std::pair<std::size_t, std::size_t>;
    EXPECT_EQ(positions["A"], Position(first_line, 1));
    EXPECT_EQ(positions["B"], Position(first_line + 3, 7));
    EXPECT_EQ(positions["C"], Position(first_line + 6, 1));
    EXPECT_EQ(positions["E"], Position(first_line + 6, 39));
}

TEST_F(DescriptionTest, KnowsWhereElementsStand) {
    const auto opened = description::open(WriteElements(some_elements));
    ExpectPositions(*opened, 2);
}

TEST_F(DescriptionTest, KnowsItInEveryEncoding) {
    const std::string text = AroundElements(some_elements);
    std::string wide = "\xFF\xFE";
    for (const char c : text) wide += {c, '\0'};
    ExpectPositions(*description::open(Write("utf16.xml", wide)), 2);
    ExpectPositions(*description::open(Write("marked.xml", "\xEF\xBB\xBF" + text)), 2);
    ExpectPositions(
        *description::open(
            Write("latin1.xml", "<?xml version=\"1.0\" encoding=\"iso-8859-1\"?><!-- \xB0 -->\n" + text)),
        3);
    std::string windows;
    for (const char c : text) windows += c == '\n' ? std::string("\r\n") : std::string(1, c);
    ExpectPositions(*description::open(Write("windows.xml", windows)), 2);
}

TEST_F(DescriptionTest, PutsNodesOfTheEngineBesideTheirElements) {
    const auto opened = description::open(WriteElements(
        "<Integer Name=\"A\"><Value>1</Value></Integer>\n<Float Name=\"A\"><Value>2</Value></Float>\n"
        "<Enumeration Name=\"C\"><Value>0</Value><EnumEntry "
        "Name=\"E\"><Value>0</Value></EnumEntry></Enumeration>"));
    ASSERT_EQ(opened->tree().find("A").size(), 2U);
    for (element_index at = 0; at < opened->tree().elements().size(); ++at) {
        GenICam::INode* node = opened->node_of(at);
        ASSERT_NE(node, nullptr) << at;
        EXPECT_EQ(node->get_name(), opened->tree().at(at).name);
        EXPECT_EQ(opened->tree().find(*node), at);
    }
    const element_index first = opened->tree().find("A")[0];
    EXPECT_EQ(opened->node_of(first)->get_node_type(), GenICam::node_type::integer);
    EXPECT_EQ(opened->node_of(first + 1)->get_node_type(), GenICam::node_type::floating);
}

TEST_F(DescriptionTest, KnowsWhereAttributesStand) {
    const auto opened = description::open(WriteElements("<Integer  Name=\"A\"><Value>1</Value></Integer>"));
    const pugi::xml_node xml = opened->tree().at(0).xml;
    const auto position = opened->tree().position_of(xml, xml.attribute("Name"));
    EXPECT_EQ(position.line, 2U);
    EXPECT_EQ(position.column, 11U);
}

TEST_F(DescriptionTest, CountsTheMemoryThatTheEngineTakes) {
    const auto one = description::open(WriteElements("<Integer Name=\"A\"><Value>1</Value></Integer>"));
    const auto two = description::open(WriteElements(
        "<Integer Name=\"A\"><Value>1</Value></Integer><Integer Name=\"B\"><Value>1</Value></Integer>"));
    const std::uint64_t size = one->tree().at(0).made->size;
    EXPECT_EQ(two->tree().arena_bytes() - one->tree().arena_bytes(), (size + 7) / 8 * 8);
}

TEST_F(DescriptionTest, TellsWhereXmlIsMalformed) {
    try {
        const auto opened = description::open(Write("bad.xml", "<a>\n  <b></c>\n</a>"));
        FAIL() << "opened";
    } catch (const inspect_error& failure) {
        EXPECT_EQ(failure.code(), 2);
        EXPECT_THAT(failure.what(), HasSubstr("bad.xml:2:"));
        EXPECT_THAT(failure.what(), HasSubstr("not well-formed"));
    }
}

TEST_F(DescriptionTest, TellsWhichFileCannotBeRead) {
    for (const std::string& path : {PathOf("absent.xml"), PathOf("")}) {
        try {
            const auto opened = description::open(path);
            FAIL() << "opened " << path;
        } catch (const inspect_error& failure) {
            EXPECT_EQ(failure.code(), 2);
            EXPECT_THAT(failure.what(), HasSubstr("cannot read " + path));
        }
    }
}

TEST_F(DescriptionTest, TellsWhyTheEngineRefusesOne) {
    const auto opened = description::open(WriteElements(test_support::RefusedElements()));
    EXPECT_EQ(opened->document(), nullptr);
    EXPECT_TRUE(opened->load_failure().empty());
    EXPECT_THAT(opened->why_not_loaded(), HasSubstr("the engine refuses it: GenICam::genicam_doc::"));
}

TEST_F(DescriptionTest, SurvivesAnExceptionThatLeavesTheLoad) {
    const std::string path = WriteElements(
        "<Enumeration Name=\"C\"><Value>0</Value></Enumeration>\n"
        "<IntSwissKnife Name=\"K\"><pVariable "
        "Name=\"X.Entry\">C</pVariable><Formula>1</Formula></IntSwissKnife>");
    const auto opened = description::open(path);
    EXPECT_EQ(opened->document(), nullptr);
    EXPECT_FALSE(opened->load_failure().empty());
    EXPECT_THROW(static_cast<void>(selvane_inspect::open_loaded(path)), inspect_error);
}

}  // namespace
