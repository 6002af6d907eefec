// The descriptions of real cameras load whole: every element in its class, and nothing to complain of but
// what each file deserves.

#include "data_paths.h"
#include "tests/support/test_document.h"

#include <fstream>
#include <iterator>
#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using test_support::TestDocument;

struct real_description {
    const char* file;
    std::size_t nodes;
    const char* classes;
    std::vector<std::string> messages;
};

void PrintTo(const real_description& description, std::ostream* out) { *out << description.file; }

std::vector<std::string> refused_formula(const std::string& name, const std::string& formula) {
    return {
        "km_parse_tree failed with result=Failed to map a function identifier to a actual function.. Last "
        "token "
        "view:\n.\n",
        "GenICam::converter::converter_impl::resolve_converter_references, Converter (\"" + name +
            "\"). failed to evaluate \"" + formula + "\"\n"};
}

// ROUND with one argument is no function of the language.
std::vector<std::string> make_flir_messages() {
    std::vector<std::string> messages;
    for (const char* name : {"AeImageLumaMaxPct_Val", "AeImageLumaMinPct_Val", "AeUserTargetMeanPct_Val"}) {
        for (std::string& message : refused_formula(name, "ROUND(FROM*SCALE/100)"))
            messages.push_back(message);
    }
    for (std::string& message : refused_formula("EvCompFloat_Val", "ROUND(FROM*SCALE)"))
        messages.push_back(message);
    return messages;
}

const std::vector<std::string> flir_messages = make_flir_messages();

// The index of both is an enumeration.
const std::vector<std::string> euresys_messages = {
    "GenICam::resolve_pIndex, Integer (\"node_61\"). Invalid or no IInteger base \"pIndex\" element.\n",
    "GenICam::resolve_pIndex, Integer (\"node_62\"). Invalid or no IInteger base \"pIndex\" element.\n"};

const real_description descriptions[] = {
    {"real/adimec-q12a180cxp",
     992,
     "boolean_pValue_type=15 category_type=17 command_pValue_type=28 "
     "enumeration_pValue_type=24 float_converter_type=4 float_pValue_type=8 "
     "float_swissknife_type=1 int_reg_type_const_address=138 int_swissknife_type=39 "
     "integer_floating_value_type=623 integer_pValue_type=76 port_device_type=1 "
     "string_reg_type=9 string_type=9",
     {}},
    {"real/alliedvision-gt1930",
     648,
     "boolean_pValue_type=6 category_type=42 command_pValue_type=15 "
     "enumeration_Value_type=4 enumeration_pValue_type=45 float_converter_type=10 "
     "float_pValue_type=16 float_reg_type_const_address=12 float_reg_type_dyn=2 "
     "float_swissknife_type=9 int_converter_type=5 int_reg_type_const_address=151 "
     "int_reg_type_dyn=8 int_swissknife_type=28 integer_constant_value_type=17 "
     "integer_floating_value_type=8 integer_pValue_type=93 "
     "masked_int_reg_type_const_address=145 masked_int_reg_type_dyn_address=24 "
     "port_device_type=1 string_reg_type=7",
     {}},
    {"real/basler-a2a2600_20gmbas",
     2916,
     "boolean_pValue_type=25 category_type=41 command_pValue_type=41 "
     "enumeration_pValue_type=99 float_converter_type=18 float_pValue_type=95 "
     "float_swissknife_type=22 int_converter_type=2 int_reg_type_const_address=796 "
     "int_reg_type_dyn=2 int_swissknife_type=65 integer_constant_value_type=951 "
     "integer_floating_value_type=32 integer_pIndex_type=301 integer_pValue_type=356 "
     "masked_int_reg_type_const_address=2 port_chunk_type=10 port_device_type=9 "
     "register_type=2 string_reg_type=14 string_type=13 struct_entry_type=20",
     {}},
    {"real/euresys-coaxlink_tlinterface", 1940,
     "boolean_Value_type=1 boolean_pValue_type=33 category_type=28 command_pValue_type=24 "
     "enumeration_Value_type=20 enumeration_pValue_type=63 float_pValue_type=4 "
     "float_reg_type_dyn=4 float_swissknife_type=2 int_converter_type=31 "
     "int_reg_type_const_address=554 int_reg_type_dyn=82 int_swissknife_type=1001 "
     "integer_constant_value_type=2 integer_floating_value_type=8 integer_pIndex_type=2 "
     "integer_pValueCopy_type=2 integer_pValue_type=32 port_device_type=1 "
     "string_reg_type=15 string_type=14 struct_entry_type=17",
     euresys_messages},
    {"real/flir-bfs_u3_161s7m", 2327,
     "boolean_Value_type=1 boolean_pValue_type=27 category_type=26 command_pValue_type=20 "
     "enumeration_Value_type=23 enumeration_pValue_type=69 float_converter_type=27 "
     "float_pValue_type=33 float_swissknife_type=60 int_converter_type=2 "
     "int_reg_type_const_address=538 int_reg_type_dyn=115 int_swissknife_type=109 "
     "integer_constant_value_type=8 integer_floating_value_type=8 integer_pValue_type=120 "
     "masked_int_reg_type_const_address=643 masked_int_reg_type_dyn_address=443 "
     "port_chunk_type=15 port_device_type=6 register_type=3 string_reg_type=11 "
     "struct_entry_type=20",
     flir_messages},
    {"real/flir-sc6700",
     150,
     "boolean_pValue_type=17 category_type=6 command_pValue_type=4 "
     "enumeration_pValue_type=8 int_reg_type_const_address=32 int_swissknife_type=6 "
     "integer_floating_value_type=7 integer_pValue_type=36 "
     "masked_int_reg_type_const_address=25 port_device_type=1 string_reg_type=8",
     {}},
    {"real/hamamatsu-c16240_20up",
     30,
     "category_type=4 command_pValue_type=2 enumeration_Value_type=4 "
     "enumeration_pValue_type=1 float_converter_type=1 float_pValue_type=1 "
     "float_swissknife_type=3 int_reg_type_const_address=10 integer_floating_value_type=1 "
     "integer_pValue_type=2 port_device_type=1",
     {}},
    {"real/pointgrey-blackfly_50s5c-leading-line",
     950,
     "boolean_pValue_type=32 category_type=18 command_pValue_type=11 "
     "enumeration_Value_type=2 enumeration_pValue_type=55 float_converter_type=9 "
     "float_pValue_type=27 float_reg_type_const_address=3 float_reg_type_dyn=48 "
     "float_swissknife_type=10 int_converter_type=34 int_reg_type_const_address=39 "
     "int_reg_type_dyn=58 int_swissknife_type=150 integer_floating_value_type=16 "
     "integer_pValue_type=90 masked_int_reg_type_const_address=11 "
     "masked_int_reg_type_dyn_address=68 port_chunk_type=15 port_device_type=5 "
     "register_type=1 string_reg_type=11 struct_entry_type=237",
     {}},
    {"real/pointgrey-gs3_u3_51s5c",
     889,
     "boolean_pValue_type=29 category_type=20 command_pValue_type=11 "
     "enumeration_Value_type=2 enumeration_pValue_type=49 float_converter_type=9 "
     "float_pValue_type=27 float_reg_type_const_address=3 float_reg_type_dyn=48 "
     "float_swissknife_type=10 int_converter_type=34 int_reg_type_const_address=33 "
     "int_reg_type_dyn=55 int_swissknife_type=146 integer_constant_value_type=1 "
     "integer_floating_value_type=14 integer_pValue_type=86 "
     "masked_int_reg_type_dyn_address=58 port_chunk_type=14 port_device_type=6 "
     "register_type=1 string_reg_type=10 struct_entry_type=223",
     {}},
    {"real/vieworks-vnp604",
     553,
     "boolean_pValue_type=9 category_type=18 command_pValue_type=16 "
     "enumeration_pValue_type=45 float_pValue_type=15 float_reg_type_dyn=36 "
     "int_reg_type_const_address=8 int_reg_type_dyn=155 int_swissknife_type=27 "
     "integer_constant_value_type=6 integer_floating_value_type=2 integer_pValue_type=39 "
     "masked_int_reg_type_const_address=7 masked_int_reg_type_dyn_address=11 "
     "port_device_type=1 string_reg_type=7 string_type=7 struct_entry_type=144",
     {}},
    {"marked/basler-a2a2600-marked",
     2927,
     "boolean_pValue_type=25 category_type=52 command_pValue_type=41 "
     "enumeration_pValue_type=99 float_converter_type=18 float_pValue_type=95 "
     "float_swissknife_type=22 int_converter_type=2 int_reg_type_const_address=796 "
     "int_reg_type_dyn=2 int_swissknife_type=65 integer_constant_value_type=951 "
     "integer_floating_value_type=32 integer_pIndex_type=301 integer_pValue_type=356 "
     "masked_int_reg_type_const_address=2 port_chunk_type=10 port_device_type=9 "
     "register_type=2 string_reg_type=14 string_type=13 struct_entry_type=20",
     {}},
    {"marked/flir-bfs_u3-marked", 2337,
     "boolean_Value_type=1 boolean_pValue_type=27 category_type=36 command_pValue_type=20 "
     "enumeration_Value_type=23 enumeration_pValue_type=69 float_converter_type=27 "
     "float_pValue_type=33 float_swissknife_type=60 int_converter_type=2 "
     "int_reg_type_const_address=538 int_reg_type_dyn=115 int_swissknife_type=109 "
     "integer_constant_value_type=8 integer_floating_value_type=8 integer_pValue_type=120 "
     "masked_int_reg_type_const_address=643 masked_int_reg_type_dyn_address=443 "
     "port_chunk_type=15 port_device_type=6 register_type=3 string_reg_type=11 "
     "struct_entry_type=20",
     flir_messages},
};

std::string classes_of(const std::string& dump) {
    std::istringstream lines(dump.substr(dump.find("stats")));
    std::string line;
    std::getline(lines, line);
    std::string classes;
    while (std::getline(lines, line) && line.rfind("sum", 0) != 0) {
        std::istringstream fields(line);
        std::string name;
        int count = 0;
        fields >> name >> count;
        if (count != 0) classes += name + "=" + std::to_string(count) + " ";
    }
    if (!classes.empty()) classes.pop_back();
    return classes;
}

class RealDescriptions : public testing::TestWithParam<real_description> {};

TEST_P(RealDescriptions, LoadWhole) {
    const std::string path = std::string(SELVANE_SHARED_DESCRIPTIONS) + "/" + GetParam().file + ".xml";
    std::ifstream file(path, std::ios::binary);
    if (!file) GTEST_SKIP() << "the real descriptions are not on this machine";
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    TestDocument doc(TestDocument::WholeText{text}, {true, true});
    ASSERT_TRUE(doc.IsLoaded());
    std::size_t nodes = 0;
    doc->for_each_node([&nodes](GenICam::INode*) { ++nodes; });
    EXPECT_EQ(nodes, GetParam().nodes);
    EXPECT_EQ(classes_of(doc->dump(0)), GetParam().classes);
    EXPECT_EQ(doc.load_messages, GetParam().messages);
}

INSTANTIATE_TEST_SUITE_P(All, RealDescriptions, testing::ValuesIn(descriptions));

}  // namespace
