#include "genicam/genicam_doc.h"

#include "genicam/core/log.h"
#include "tests/support/small_stack.h"
#include "tests/support/test_document.h"

#include <algorithm>
#include <cstdio>
#include <fstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace GenICam;
using test_support::TestDocument;
using testing::ElementsAre;
using testing::HasSubstr;

TestDocument whole(std::string_view text) { return TestDocument(TestDocument::WholeText{text}); }

std::vector<std::string> names_of(IGenICamDoc& doc) {
    std::vector<std::string> names;
    doc.for_each_node([&names](INode* node) { names.emplace_back(node->get_name()); });
    return names;
}

TEST(Document, HeaderAttributes) {
    TestDocument doc = whole(
        R"(<RegisterDescription ModelName="M1" VendorName="V &amp; W" ToolTip="Tip" StandardNameSpace="U3V"
            MajorVersion="1" MinorVersion="0x10" SubMinorVersion="2"/>)");
    EXPECT_EQ(doc->get_model_name(), "M1");
    EXPECT_EQ(doc->get_vendor_name(), "V & W");
    EXPECT_EQ(doc->get_tooltip(), "Tip");
    EXPECT_EQ(doc->get_standard_name_space(), StandardNameSpace::U3V);
    EXPECT_EQ(doc->get_major_version(), 1U);
    EXPECT_EQ(doc->get_minor_version(), 16U);
    EXPECT_EQ(doc->get_subminor_version(), 2U);
}

TEST(Document, HeaderAttributesThatAreAbsentOrBad) {
    TestDocument none = whole("<AnyName/>");
    EXPECT_EQ(none->get_model_name(), "");
    EXPECT_EQ(none->get_vendor_name(), "");
    EXPECT_EQ(none->get_tooltip(), "");
    EXPECT_EQ(none->get_standard_name_space(), StandardNameSpace::None);
    EXPECT_EQ(none->get_major_version(), 0U);
    TestDocument bad =
        whole(R"(<R MajorVersion="-1" MinorVersion="x" SubMinorVersion="" StandardNameSpace="gev"/>)");
    EXPECT_EQ(bad->get_major_version(), 0U);
    EXPECT_EQ(bad->get_minor_version(), 0U);
    EXPECT_EQ(bad->get_subminor_version(), 0U);
    EXPECT_EQ(bad->get_standard_name_space(), StandardNameSpace::None);
}

TEST(Document, EveryStandardNameSpace) {
    const char* const words[] = {"None", "IIDC", "GEV", "CL", "U3V", "CXP", "CLHS"};
    for (int value = 0; value < 7; ++value) {
        const std::string text = std::string("<R StandardNameSpace=\"") + words[value] + "\"/>";
        EXPECT_EQ(static_cast<int>(whole(text)->get_standard_name_space()), value);
    }
}

TEST(Document, NodesAreSortedByBytesAndFoundByName) {
    TestDocument doc = whole(
        R"(<R><Port Name="b"/><Port Name="a"/><Port Name="B"/><Port Name="ab"/><Port/><Port Name="&#xE4;"/></R>)");
    EXPECT_THAT(names_of(*doc), ElementsAre("", "B", "a", "ab", "b", "\xC3\xA4"));
    EXPECT_EQ(doc->find_node("ab")->get_name(), "ab");
    EXPECT_EQ(doc->find_node("a")->get_name(), "a");
    EXPECT_EQ(doc->find_node("abc"), nullptr);
    EXPECT_EQ(doc->find_node("zz"), nullptr);
    EXPECT_EQ(doc->find_node(""), nullptr) << "although a node without a name is there";
}

TEST(Document, NodesOfOneNameAllStay) {
    TestDocument doc = whole(
        R"(<R><Integer Name="A" MergePriority="+1"><Value>1</Value></Integer>
              <Integer Name="A"><Value>2</Value></Integer></R>)");
    EXPECT_THAT(names_of(*doc), ElementsAre("A", "A"));
    std::vector<std::int64_t> values;
    doc->for_each_node(
        [&values](INode* node) { values.push_back(static_cast<IInteger*>(node)->get_val(0).value()); });
    std::sort(values.begin(), values.end());
    EXPECT_THAT(values, ElementsAre(1, 2)) << "both are resolved";
}

TEST(Document, FindPort) {
    TestDocument doc = whole(
        R"(<R><Integer Name="Device"><Value>1</Value></Integer><Port Name="Z"/><Port Name="P"/><Port Name="Device"/>
              <Integer Name="I"><Value>1</Value></Integer></R>)");
    ASSERT_NE(doc->find_port("Device"), nullptr);
    EXPECT_EQ(doc->find_port("Device")->get_node_type(), node_type::port)
        << "the other node of that name is passed over";
    EXPECT_EQ(doc->find_port(""), doc->find_port("Device"));
    for (const char* name : {"P", "Z"}) EXPECT_EQ(doc->find_port(name)->get_name(), name);
    EXPECT_EQ(doc->find_port("I"), nullptr);
    EXPECT_EQ(doc->find_port("X"), nullptr);
    EXPECT_EQ(whole("<R/>")->find_port(""), nullptr);
}

TEST(Document, StreamableNodesInNameOrder) {
    TestDocument doc = whole(
        R"(<R><Port Name="c"><Streamable>Yes</Streamable></Port><Port Name="b"><Streamable>No</Streamable></Port>
              <Port Name="a"><Streamable>Yes</Streamable></Port></R>)");
    std::vector<std::string> streamable;
    for (INode* node : doc->get_streamable_nodes()) streamable.emplace_back(node->get_name());
    EXPECT_THAT(streamable, ElementsAre("a", "c"));
    std::vector<std::string> visited;
    doc->for_each_streamable_node([&visited](INode* node) { visited.emplace_back(node->get_name()); });
    EXPECT_EQ(visited, streamable);
}

TEST(Document, AnEmptyFunctionThrowsOnceThereIsANode) {
    TestDocument empty = whole("<R/>");
    EXPECT_NO_THROW(empty->for_each_node({}));
    EXPECT_NO_THROW(empty->for_each_streamable_node({}));
    TestDocument one = whole(R"(<R><Port Name="a"><Streamable>Yes</Streamable></Port></R>)");
    EXPECT_THROW(one->for_each_node({}), std::bad_function_call);
    EXPECT_THROW(one->for_each_streamable_node({}), std::bad_function_call);
}

TEST(Document, ACircleLoadsWithoutAMessage) {
    TestDocument doc(
        R"(<Integer Name="A"><pValue>B</pValue></Integer><Integer Name="B"><pValue>A</pValue></Integer>)");
    EXPECT_TRUE(doc.IsLoaded());
    EXPECT_THAT(doc.load_messages, ElementsAre());
}

class MalformedXml : public testing::TestWithParam<std::pair<const char*, const char*>> {};

TEST_P(MalformedXml, IsRefusedWithTheParsersWords) {
    TestDocument doc = whole(GetParam().first);
    EXPECT_FALSE(doc.IsLoaded());
    ASSERT_EQ(doc.load_messages.size(), 1U);
    EXPECT_THAT(doc.load_messages[0], HasSubstr(std::string("The XML file does contain errors : \"") +
                                                GetParam().second + "\" @ offset="));
    EXPECT_EQ(doc.load_messages[0].substr(doc.load_messages[0].size() - 2), ".\n");
}

INSTANTIATE_TEST_SUITE_P(Texts, MalformedXml,
                         testing::Values(std::pair("", "No document element found"),
                                         std::pair("   \n", "No document element found"),
                                         std::pair("only words", "No document element found"),
                                         std::pair("<R><Integer></R>", "Start-end tags mismatch"),
                                         std::pair("<R><Integer", "Error parsing start element tag"),
                                         std::pair("<R><![CDATA[ open", "Error parsing CDATA section"),
                                         std::pair("<R", "Could not determine tag type"),
                                         std::pair("<R><!-- open", "Error parsing comment"),
                                         std::pair("<R>", "Start-end tags mismatch")));

TEST(Document, TheOffsetOfTheErrorIsTold) {
    TestDocument doc = whole("<R><Integer></R>");
    ASSERT_EQ(doc.load_messages.size(), 1U);
    EXPECT_EQ(doc.load_messages[0],
              "The XML file does contain errors : \"Start-end tags mismatch\" @ offset=14.\n");
}

TEST(Document, JunkAroundTheRootIsNoError) {
    constexpr std::string_view root = R"(<R ModelName="M"><Port Name="Device"/></R>)";
    const std::string texts[] = {"a line of a tool\n" + std::string(root), "\xEF\xBB\xBF" + std::string(root),
                                 "<?xml version=\"1.0\"?><!-- c --><!DOCTYPE R>" + std::string(root),
                                 std::string(root) + " trailing words",
                                 std::string(root) + "<R ModelName=\"second\"/>"};
    for (const std::string& text : texts) {
        TestDocument doc = whole(text);
        ASSERT_TRUE(doc.IsLoaded()) << text;
        EXPECT_NE(doc->find_node("Device"), nullptr) << text;
        EXPECT_EQ(doc->get_model_name(), "M") << text;
    }
}

// A description comes out of a camera: it names no file and no address that anybody follows, and nothing in
// it unfolds.
TEST(Document, EntitiesAndReferencesToOtherFilesAreLeftAsTheyStand) {
    const std::string file = testing::TempDir() + "entities.xml";
    std::ofstream(file) << "<Port Name='Followed'/>";
    std::string text = "<!DOCTYPE R SYSTEM '" + file + "' [<!ENTITY word 'Followed'><!ENTITY file SYSTEM '" +
                       file + "'><!ENTITY % parameter SYSTEM '" + file +
                       "'> %parameter;<!ENTITY a0 'Followed'>";
    for (int level = 1; level < 10; ++level) {
        const std::string name = "&a" + std::to_string(level - 1) + ";";
        text += "<!ENTITY a" + std::to_string(level) + " '" + name + name + name + name + "'>";
    }
    text += "]><?xml-stylesheet href='" + file +
            "'?><R ModelName='&word;' ToolTip='&a9;' xmlns:xi='http://www.w3.org/2001/XInclude'><xi:include "
            "href='" +
            file +
            "'/>&file;<Port Name='&word;'/><String Name='s'><Value>&file; &amp; &#65;</Value></String></R>";
    TestDocument doc = whole(text);
    std::remove(file.c_str());
    ASSERT_TRUE(doc.IsLoaded());
    EXPECT_EQ(doc->get_model_name(), "&word;");
    EXPECT_EQ(doc->get_tooltip(), "&a9;");
    EXPECT_THAT(names_of(*doc), ElementsAre("&word;", "s"));
    EXPECT_EQ(doc.String("s").get_val(0).value(), "&file; & A");
}

TEST(Document, WideTextIsRead) {
    std::string text;
    for (const char c : std::string_view(R"(<R ModelName="M"><Port Name="Device"/></R>)")) {
        text += c;
        text += '\0';
    }
    TestDocument doc = whole(text);
    ASSERT_TRUE(doc.IsLoaded());
    EXPECT_EQ(doc->get_model_name(), "M");
    EXPECT_NE(doc->find_port(""), nullptr);
}

// A driver may announce more than it fills: what stands behind the text is the same as nothing.
TEST(Document, ZerosBehindTheTextChangeNothing) {
    const std::string_view ascii = "<R ModelName='Zeros'><Integer Name='n'><Value>1</Value></Integer></R>";
    for (const std::size_t width : {1U, 2U, 4U}) {
        for (const bool is_big_endian : {false, true}) {
            for (std::size_t zeros = 0; zeros < 70; ++zeros) {
                std::string text;
                for (const char c : ascii) {
                    std::string unit(width, '\0');
                    (is_big_endian ? unit.back() : unit.front()) = c;
                    text += unit;
                }
                text.append(zeros, '\0');
                TestDocument doc = whole(text);
                ASSERT_TRUE(doc.IsLoaded()) << width << ' ' << zeros;
                EXPECT_EQ(doc->get_model_name(), "Zeros");
                EXPECT_NE(doc->find_node("n"), nullptr);
            }
        }
    }
    EXPECT_FALSE(whole(std::string("<R><Integer>\0\0\0\0\0\0\0\0</Integer></R>", 35)).IsLoaded());
    EXPECT_FALSE(whole(std::string(1000, '\0')).IsLoaded());
}

// Letters of four bytes bring up to five zeros in a row, wherever they stand.
TEST(Document, ZerosInsideWideLettersAreNoEnd) {
    for (std::size_t before = 0; before < 12; ++before) {
        const std::u32string wide =
            U"<R ModelName='" + std::u32string(before, U'a') + U"\U00010000'><Port Name='Device'/></R>";
        std::string text;
        for (const char32_t c : wide) {
            for (const int shift : {0, 8, 16, 24}) text += static_cast<char>(c >> shift & 0xFF);
        }
        TestDocument doc = whole(text);
        ASSERT_TRUE(doc.IsLoaded()) << before;
        EXPECT_EQ(doc->get_model_name(), std::string(before, 'a') + "\xF0\x90\x80\x80");
    }
}

TEST(Document, EveryTruncationOfADescriptionIsRefusedOrLoads) {
    constexpr std::string_view text =
        R"(<R><Integer Name="A"><Value>1</Value><pInvalidator>B</pInvalidator></Integer><Port Name="B"/></R>)";
    for (std::size_t size = 0; size < text.size(); ++size) {
        EXPECT_FALSE(whole(text.substr(0, size)).IsLoaded()) << text.substr(0, size);
    }
    EXPECT_TRUE(whole(text).IsLoaded());
}

TEST(Document, KeepsItsOwnCopyOfTheText) {
    std::string text = R"(<R ModelName="Before"><Port Name="Device"/></R>)";
    TestDocument doc = whole(text);
    std::fill(text.begin(), text.end(), 'x');
    EXPECT_EQ(doc->get_model_name(), "Before");
    EXPECT_NE(doc->find_node("Device"), nullptr);
}

TEST(Document, TwoHundredThousandNestedGroupsLoadOnASmallStack) {
    constexpr int depth = 200000;
    std::string text = "<R>";
    for (int level = 0; level < depth; ++level) text += "<Group>";
    text += R"(<Port Name="Deep"/>)";
    for (int level = 0; level < depth; ++level) text += "</Group>";
    text += R"(<Port Name="Behind"/></R>)";
    bool found = false;
    test_support::RunOnSmallStack([&] {
        const std::unique_ptr<IGenICamDoc> doc(load_genicam_doc(text.data(), text.size(), {}));
        found = doc != nullptr && doc->find_node("Deep") != nullptr && doc->find_node("Behind") != nullptr &&
                !doc->dump(0).empty();
    });
    EXPECT_TRUE(found);
}

}  // namespace
