// What every node tells of itself from the description.

#include "tests/support/node_test.h"

namespace node_test {
namespace {

using testing::Pair;

TestDocument with_children(const std::string& children, const std::string& attributes = "Name='n'") {
    return TestDocument("<Integer " + attributes + "><Value>1</Value>" + children +
                        "</Integer>"
                        "<Integer Name='other'><Value>2</Value></Integer>");
}

TEST(CommonElements, DefaultsOfAnElementThatStatesNothing) {
    TestDocument doc = with_children("");
    const INode& node = doc.Node("n");
    EXPECT_EQ(node.get_name(), "n");
    EXPECT_EQ(node.get_display_name(), "n");
    for (const std::string_view text : {node.get_tooltip(), node.get_description(), node.get_docu_url()}) {
        EXPECT_EQ(text, "");
    }
    EXPECT_EQ(node.get_visibility(), Visibility::Beginner);
    EXPECT_FALSE(node.is_deprecated());
    EXPECT_FALSE(node.get_streamable());
    EXPECT_EQ(node.get_event_id(), std::nullopt);
    EXPECT_THAT(node.get_extensions(), ElementsAre());
    EXPECT_EQ(node.get_extension("key"), "");
    EXPECT_EQ(node.get_alias(), nullptr);
    EXPECT_EQ(node.get_cast_alias(), nullptr);
    EXPECT_EQ(node.get_block_polling(), nullptr);
    EXPECT_EQ(node.get_name_space(), NameSpace::Custom);
    EXPECT_EQ(node.get_merge_priority(), MergePriority::normal);
    EXPECT_EQ(node.get_expose_static(), std::nullopt);
    EXPECT_EQ(doc.Node("n").get_access_mode(), AccessMode::RW);
    EXPECT_EQ(doc.Node("n").get_eval()->describe(), "");
    EXPECT_EQ(doc.Node("n").get_eval()->get_node(), &doc.Node("n"));
    EXPECT_THAT(doc.log.Take(), ElementsAre());
}

TEST(CommonElements, StatedTexts) {
    TestDocument doc = with_children(
        "<DisplayName>Exposure &lt;1&gt;</DisplayName><ToolTip><![CDATA[a tip]]></ToolTip>"
        "<Description>first<!-- c -->second</Description><DocuURL>u</DocuURL>");
    const INode& node = doc.Node("n");
    EXPECT_EQ(node.get_display_name(), "Exposure <1>");
    EXPECT_EQ(node.get_tooltip(), "a tip");
    EXPECT_EQ(node.get_description(), "first");
    EXPECT_EQ(node.get_docu_url(), "u");
}

TEST(CommonElements, AnEmptyDisplayNameGivesTheName) {
    TestDocument doc = with_children("<DisplayName></DisplayName>");
    EXPECT_EQ(doc.Node("n").get_display_name(), "n");
}

TEST(CommonElements, TheFirstOfTwoNamesCounts) {
    TestDocument doc = with_children("", "Name='first' Name='second'");
    EXPECT_EQ(doc.Node("first").get_name(), "first");
    EXPECT_EQ(doc->find_node("second"), nullptr);
}

TEST(CommonElements, Visibilities) {
    const char* const words[] = {"Beginner", "Expert", "Guru", "Invisible"};
    for (int value = 0; value < 4; ++value) {
        TestDocument doc = with_children(std::string("<Visibility>") + words[value] + "</Visibility>");
        EXPECT_EQ(static_cast<int>(doc.Node("n").get_visibility()), value);
    }
    TestDocument bad = with_children("<Visibility> Guru</Visibility>");
    EXPECT_EQ(bad.Node("n").get_visibility(), Visibility::Beginner);
    EXPECT_THAT(
        bad.log.Take(),
        ElementsAre("GenICam::node_base_data::getVisibility, Integer (\"n\"). Failed to parse \"Visibility\" "
                    "xml node contents (\" Guru\").\n"));
}

TEST(CommonElements, StreamableWords) {
    EXPECT_TRUE(with_children("<Streamable>Yes</Streamable>").Node("n").get_streamable());
    EXPECT_FALSE(with_children("<Streamable>No</Streamable>").Node("n").get_streamable());
    EXPECT_FALSE(with_children("<Streamable/>").Node("n").get_streamable());
    TestDocument bad = with_children("<Streamable>true</Streamable>");
    EXPECT_THAT(
        bad.load_messages,
        ElementsAre(
            "GenICam::node_base_data::get_streamable, Integer (\"n\"). Failed to parse \"Streamable\" "
            "xml node contents (\"true\").\n"));
    EXPECT_FALSE(bad.Node("n").get_streamable());
}

TEST(CommonElements, DeprecatedOnlyByYes) {
    EXPECT_TRUE(with_children("<IsDeprecated>Yes</IsDeprecated>").Node("n").is_deprecated());
    for (const char* text : {"yes", "No", "true", ""}) {
        TestDocument doc = with_children(std::string("<IsDeprecated>") + text + "</IsDeprecated>");
        EXPECT_FALSE(doc.Node("n").is_deprecated()) << text;
        EXPECT_THAT(doc.log.Take(), ElementsAre());
    }
}

TEST(CommonElements, EventIds) {
    EXPECT_EQ(with_children("<EventID>1A2B</EventID>").Node("n").get_event_id(), 0x1A2BU);
    EXPECT_EQ(with_children("<EventID>0x10</EventID>").Node("n").get_event_id(), 0U);
    EXPECT_EQ(with_children("<EventID>xyz</EventID>").Node("n").get_event_id(), std::nullopt);
    EXPECT_EQ(with_children("<EventID/>").Node("n").get_event_id(), std::nullopt);
}

TEST(CommonElements, ExtensionsInDocumentOrder) {
    TestDocument doc = with_children(
        "<Extension>words<b>2</b><!-- c "
        "--><a/><b>3</b><c><d>4</d></c></Extension><Extension><e>5</e></Extension>");
    EXPECT_THAT(doc.Node("n").get_extensions(),
                ElementsAre(Pair("b", "2"), Pair("a", ""), Pair("b", "3"), Pair("c", "")));
    EXPECT_EQ(doc.Node("n").get_extension("b"), "2");
    EXPECT_EQ(doc.Node("n").get_extension("e"), "");
    EXPECT_EQ(doc.Node("n").get_extension(""), "");
}

TEST(CommonElements, Attributes) {
    EXPECT_EQ(with_children("", "Name='n' NameSpace='Standard'").Node("n").get_name_space(),
              NameSpace::Standard);
    EXPECT_EQ(with_children("", "Name='n' NameSpace='Custom'").Node("n").get_name_space(), NameSpace::Custom);
    EXPECT_EQ(with_children("", "Name='n' NameSpace='standard'").Node("n").get_name_space(),
              NameSpace::Custom);
    const struct {
        const char* text;
        int value;
    } priorities[] = {{"-1", 0}, {"0", 1}, {"+1", 2}, {"1", 1}, {"", 1}, {"x", 1}};
    for (const auto& row : priorities) {
        TestDocument doc = with_children("", std::string("Name='n' MergePriority='") + row.text + "'");
        EXPECT_EQ(static_cast<int>(doc.Node("n").get_merge_priority()), row.value) << row.text;
    }
    EXPECT_EQ(with_children("", "Name='n' ExposeStatic='Yes'").Node("n").get_expose_static(), true);
    EXPECT_EQ(with_children("", "Name='n' ExposeStatic='No'").Node("n").get_expose_static(), false);
    for (const char* text : {"", "yes", "1"}) {
        TestDocument doc = with_children("", std::string("Name='n' ExposeStatic='") + text + "'");
        EXPECT_EQ(doc.Node("n").get_expose_static(), std::nullopt);
        EXPECT_THAT(doc.log.Take(), ElementsAre());
    }
}

TEST(CommonElements, NodesNamedByAliases) {
    TestDocument doc = with_children(
        "<pAlias>other</pAlias><pCastAlias>unknown</pCastAlias><pBlockPolling></pBlockPolling>");
    EXPECT_EQ(doc.Node("n").get_alias(), &doc.Node("other"));
    EXPECT_EQ(doc.Node("n").get_block_polling(), nullptr);
    EXPECT_THAT(doc.log.Take(), ElementsAre()) << "an empty element counts as absent";
    constexpr const char* message =
        "GenICam::node_base_data::resolve_node, Integer (\"n\"). Failed to resolve \"pCastAlias\" xml node "
        "contents "
        "(\"unknown\").\n";
    EXPECT_EQ(doc.Node("n").get_cast_alias(), nullptr);
    EXPECT_EQ(doc.Node("n").get_cast_alias(), nullptr);
    EXPECT_THAT(doc.log.Take(), ElementsAre(message, message)) << "looked up at each call";
}

TEST(CommonElements, SelectedNodes) {
    TestDocument doc =
        with_children("<pSelected>other</pSelected><pSelected>gone</pSelected><pSelected>n</pSelected>");
    EXPECT_THAT(doc.Integer("n").get_selected(), ElementsAre(&doc.Node("other"), &doc.Node("n")));
    EXPECT_THAT(doc.log.Take(),
                ElementsAre("GenICam::node_base_data::resolve_node_list, Integer (\"n\"). Failed to resolve "
                            "\"pSelected\" xml node contents (\"gone\").\n"));
    EXPECT_EQ(doc.Node("other").get_eval()->get_dependent_count(), 0) << "takes no part in invalidation";
}

TEST(CommonElements, NodeTypesHaveTheirNumbers) {
    TestDocument doc(R"(
        <Integer Name='i'><Value>1</Value></Integer><Float Name='f'><Value>1</Value></Float>
        <Enumeration Name='e'><Value>1</Value><EnumEntry Name='x'><Value>1</Value></EnumEntry></Enumeration>
        <Boolean Name='b'><Value>1</Value></Boolean><String Name='s'/><Command Name='c'><Value>1</Value></Command>
        <Category Name='g'/><Register Name='r'><Address>0</Address><Length>4</Length></Register>)");
    const struct {
        const char* name;
        int type;
    } rows[] = {{"i", 0}, {"f", 1}, {"e", 2}, {"b", 3},     {"s", 4},
                {"c", 5}, {"g", 6}, {"r", 7}, {"Device", 8}};
    for (const auto& row : rows)
        EXPECT_EQ(static_cast<int>(doc.Node(row.name).get_node_type()), row.type) << row.name;
    EXPECT_EQ(static_cast<int>(doc.Enumeration("e").get_entries().at(0)->get_node_type()), 9);
}

}  // namespace
}  // namespace node_test
