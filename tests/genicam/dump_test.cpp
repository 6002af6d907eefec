#include "tests/support/test_document.h"

#include <algorithm>
#include <sstream>
#include <string_view>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace GenICam;
using test_support::TestDocument;

std::vector<std::string> lines_of(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
}

constexpr std::string_view small_description =
    "<R><Group><Port Name='Device'/><Integer Name='A'><Value>1</Value></Integer></Group>"
    "<Integer Name='B'><pValue>A</pValue></Integer><Enumeration Name='E'><Value>1</Value><EnumEntry "
    "Name='x'/>"
    "</Enumeration><Foo/><Port "
    "Name='D2'><Extension><ZELIsDebugProperty>1</ZELIsDebugProperty></Extension></Port></R>";

TEST(Dump, OtherModesAreEmpty) {
    TestDocument doc(TestDocument::WholeText{small_description});
    EXPECT_EQ(doc->dump(2), "");
    EXPECT_EQ(doc->dump(-1), "");
}

TEST(Dump, NodesWithTheirDependents) {
    TestDocument doc(TestDocument::WholeText{small_description});
    EXPECT_EQ(doc->dump(1),
              "    A                                  1\n"
              "    B                                  0\n"
              "    Device                            -1\n"
              "    E                                  0\n");
}

TEST(Dump, StatisticsBeginWithElements) {
    TestDocument doc(TestDocument::WholeText{small_description});
    const std::vector<std::string> lines = lines_of(doc->dump(0));
    ASSERT_GE(lines.size(), 5U);
    EXPECT_EQ(lines[0], "doc type                          cnt");
    EXPECT_EQ(lines[1], "    Enumeration                        1");
    EXPECT_EQ(lines[2], "    Integer                            2");
    EXPECT_EQ(lines[3], "    Port                               1");
    EXPECT_EQ(lines[4], "stats Release                          cnt  size     dtor ");
}

constexpr const char* all_classes[] = {
    "boolean_Value_type yes",
    "boolean_pValue_type no",
    "category_type no",
    "command_Value_type yes",
    "command_pValue_type no",
    "enumeration_Value_type yes",
    "enumeration_pValue_type no",
    "float_constant_value_type no",
    "float_converter_type yes",
    "float_floating_value_type yes",
    "float_pIndex_type yes",
    "float_pValue_type no",
    "float_reg_type_const_address yes",
    "float_reg_type_dyn yes",
    "float_swissknife_type yes",
    "int_converter_type yes",
    "int_reg_type_const_address yes",
    "int_reg_type_dyn yes",
    "int_swissknife_type yes",
    "integer_constant_value_type no",
    "integer_floating_value_type yes",
    "integer_pIndex_type yes",
    "integer_pValueCopy_type yes",
    "integer_pValue_type no",
    "masked_int_reg_type_const_address yes",
    "masked_int_reg_type_dyn_address yes",
    "port_chunk_type no",
    "port_device_type no",
    "register_type yes",
    "string_reg_type yes",
    "string_type yes",
    "struct_entry_type yes",
};

// The fields of a line that has them at these columns, behind an indent; empty if it does not.
std::vector<std::string> fields_of(const std::string& line, const std::string& indent,
                                   const std::vector<std::size_t>& widths) {
    std::vector<std::string> fields;
    if (line.rfind(indent, 0) != 0) return {};
    std::size_t at = indent.size();
    for (const std::size_t width : widths) {
        if (at + width > line.size()) return {};
        std::istringstream field(line.substr(at, width));
        fields.emplace_back();
        field >> fields.back();
        at += width + 1;
    }
    return at == line.size() + 1 ? fields : std::vector<std::string>();
}

TEST(Dump, EveryClassHasARowWithSizeAndDestructor) {
    TestDocument doc(TestDocument::WholeText{small_description});
    const std::vector<std::string> lines = lines_of(doc->dump(0));
    ASSERT_EQ(lines.size(), 5 + std::size(all_classes) + 1);
    std::uint64_t count = 0;
    std::uint64_t bytes = 0;
    std::uint64_t with_destructor = 0;
    for (std::size_t at = 0; at < std::size(all_classes); ++at) {
        const std::size_t name_size = std::string_view(all_classes[at]).find(' ');
        const std::vector<std::string> fields =
            fields_of(lines[5 + at], "      ", {std::max<std::size_t>(32, name_size), 4, 8, 5});
        ASSERT_EQ(fields.size(), 4U) << lines[5 + at];
        EXPECT_EQ(fields[0] + (fields[3] == "true" ? " yes" : " no"), all_classes[at]);
        EXPECT_TRUE(fields[3] == "true" || fields[3] == "false");
        const std::uint64_t here = std::stoull(fields[1]);
        const std::uint64_t size = std::stoull(fields[2]);
        EXPECT_GE(size, 64U);
        count += here;
        bytes += here * size;
        if (fields[3] == "true") with_destructor += here;
    }
    EXPECT_EQ(count, 4U);
    EXPECT_EQ(with_destructor, 2U);
    const std::vector<std::string> sum = fields_of(lines.back(), "sum   ", {32, 4, 8, 5});
    ASSERT_EQ(sum.size(), 4U) << lines.back();
    EXPECT_EQ(sum[0], "");
    EXPECT_EQ(std::stoull(sum[1]), count);
    EXPECT_EQ(std::stoull(sum[2]), bytes);
    EXPECT_EQ(std::stoull(sum[3]), with_destructor);
}

TEST(Dump, CountsWhatTheDebugFilterKeeps) {
    TestDocument doc(TestDocument::WholeText{small_description}, {true, true});
    EXPECT_THAT(doc->dump(0), testing::HasSubstr("    Port                               2\n"));
}

}  // namespace
