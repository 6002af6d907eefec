#include "tests/support/test_document.h"

#include <map>
#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace GenICam;
using test_support::TestDocument;
using testing::ElementsAre;

// The classes with a count in a statistics dump.
std::map<std::string, int> classes_of(IGenICamDoc& doc) {
    std::map<std::string, int> classes;
    std::istringstream dump(doc.dump(0));
    std::string line;
    bool in_classes = false;
    while (std::getline(dump, line)) {
        if (line.rfind("stats", 0) == 0) {
            in_classes = true;
        } else if (line.rfind("sum", 0) == 0) {
            in_classes = false;
        } else if (in_classes) {
            std::istringstream fields(line);
            std::string name;
            int count = 0;
            fields >> name >> count;
            if (count != 0) classes[name] = count;
        }
    }
    return classes;
}

std::string class_of(const std::string& element, bool keep_debug_properties = false) {
    const std::string text = "<R>" + element + "</R>";
    TestDocument doc(TestDocument::WholeText{text}, {true, keep_debug_properties});
    std::string found;
    for (const auto& [name, count] : classes_of(*doc)) found += (found.empty() ? "" : " ") + name;
    return found;
}

struct rule_row {
    const char* element;
    const char* made;
};

class Rules : public testing::TestWithParam<rule_row> {};

TEST_P(Rules, DecideTheClass) {
    EXPECT_EQ(class_of(GetParam().element), GetParam().made) << GetParam().element;
}

const rule_row rule_rows[] = {
    {"<IntConverter Name='n'/>", "int_converter_type"},
    {"<IntSwissKnife Name='n'/>", "int_swissknife_type"},
    {"<Converter Name='n'/>", "float_converter_type"},
    {"<SwissKnife Name='n'/>", "float_swissknife_type"},
    {"<Category Name='n'/>", "category_type"},
    {"<Integer Name='n'><Value>1</Value><ImposedAccessMode>RO</ImposedAccessMode></Integer>",
     "integer_constant_value_type"},
    {"<Integer Name='n'><Value>1</Value></Integer>", "integer_floating_value_type"},
    {"<Integer Name='n'><Value>1</Value><ImposedAccessMode>ro</ImposedAccessMode></Integer>",
     "integer_floating_value_type"},
    {"<Integer Name='n'><Value>1</Value><ImposedAccessMode/></Integer>", "integer_floating_value_type"},
    {"<Integer Name='n'><pValue>a</pValue><pValueCopy>b</pValueCopy></Integer>", "integer_pValueCopy_type"},
    {"<Integer Name='n'><pIndex>i</pIndex><pValue>a</pValue><pValueCopy>b</pValueCopy></Integer>",
     "integer_pValueCopy_type"},
    {"<Integer Name='n'><pIndex>a</pIndex></Integer>", "integer_pIndex_type"},
    {"<Integer Name='n'><pIndex>a</pIndex><pValue>b</pValue></Integer>", "integer_pIndex_type"},
    {"<Integer Name='n'><pIndex>a</pIndex><pValueCopy>b</pValueCopy></Integer>", "integer_pIndex_type"},
    {"<Integer Name='n'><pValue>a</pValue></Integer>", "integer_pValue_type"},
    {"<Integer Name='n'><pValue>a</pValue><ImposedAccessMode>RO</ImposedAccessMode></Integer>",
     "integer_pValue_type"},
    {"<Integer Name='n'><Value>1</Value><pValue>a</pValue></Integer>", "integer_floating_value_type"},
    {"<Integer Name='n'><pValueCopy>b</pValueCopy></Integer>", ""},
    {"<Integer Name='n'/>", ""},
    {"<Float Name='n'><Value>1</Value><ImposedAccessMode>RO</ImposedAccessMode></Float>",
     "float_constant_value_type"},
    {"<Float Name='n'><Value>1</Value></Float>", "float_floating_value_type"},
    {"<Float Name='n'><Value>1</Value><pIndex>i</pIndex><pValue>a</pValue></Float>",
     "float_floating_value_type"},
    {"<Float Name='n'><pIndex>i</pIndex><pValue>a</pValue></Float>", "float_pIndex_type"},
    {"<Float Name='n'><pValue>a</pValue><pValueCopy>b</pValueCopy></Float>", "float_pValue_type"},
    {"<Float Name='n'/>", ""},
    {"<Boolean Name='n'><pValue>a</pValue><Value>1</Value></Boolean>", "boolean_pValue_type"},
    {"<Boolean Name='n'><Value>1</Value></Boolean>", "boolean_Value_type"},
    {"<Boolean Name='n'/>", ""},
    {"<Command Name='n'><pValue>a</pValue><Value>1</Value></Command>", "command_Value_type"},
    {"<Command Name='n'><pValue>a</pValue></Command>", "command_pValue_type"},
    {"<Command Name='n'/>", ""},
    {"<Enumeration Name='n'><pValue>a</pValue><Value>1</Value></Enumeration>", "enumeration_Value_type"},
    {"<Enumeration Name='n'><pValue>a</pValue></Enumeration>", "enumeration_pValue_type"},
    {"<Enumeration Name='n'><EnumEntry Name='e'/></Enumeration>", ""},
    {"<String Name='n'/>", "string_type"},
    {"<FloatReg Name='n'><Address>0</Address><Length>4</Length></FloatReg>", "float_reg_type_const_address"},
    {"<FloatReg Name='n'><Address>0</Address><pLength>a</pLength></FloatReg>", "float_reg_type_dyn"},
    {"<FloatReg Name='n'/>", "float_reg_type_dyn"},
    {"<IntReg Name='n'><Address>0</Address><Length>4</Length></IntReg>", "int_reg_type_const_address"},
    {"<IntReg Name='n'><Address>0</Address><Length>4</Length><pLength>a</pLength></IntReg>",
     "int_reg_type_dyn"},
    {"<IntReg Name='n'><Address>0</Address><Length>4</Length><pIndex>a</pIndex></IntReg>",
     "int_reg_type_dyn"},
    {"<IntReg Name='n'><Address>0</Address><Length>4</Length><pAddress>a</pAddress></IntReg>",
     "int_reg_type_dyn"},
    {"<IntReg Name='n'><pAddress>a</pAddress><Length>4</Length></IntReg>", "int_reg_type_dyn"},
    {"<IntReg Name='n'><Address>0</Address></IntReg>", "int_reg_type_dyn"},
    {"<Register Name='n'/>", "register_type"},
    {"<MaskedIntReg Name='n'><Address>0</Address></MaskedIntReg>", "masked_int_reg_type_const_address"},
    {"<MaskedIntReg Name='n'><Address>0</Address><pLength>a</pLength></MaskedIntReg>",
     "masked_int_reg_type_const_address"},
    {"<MaskedIntReg Name='n'><Address>0</Address><pIndex>a</pIndex></MaskedIntReg>",
     "masked_int_reg_type_dyn_address"},
    {"<MaskedIntReg Name='n'/>", "masked_int_reg_type_dyn_address"},
    {"<StringReg Name='n'/>", "string_reg_type"},
    {"<StructEntry Name='n'/>", "struct_entry_type"},
    {"<Port Name='n'/>", "port_device_type"},
    {"<Port Name='n'><ChunkID/></Port>", "port_chunk_type"},
    {"<Port Name='n'><pChunkID>a</pChunkID></Port>", "port_chunk_type"},
    {"<EnumEntry Name='n'><Value>1</Value></EnumEntry>", ""},
    {"<integer Name='n'><Value>1</Value></integer>", ""},
    {"<Foo Name='n'/>", ""},
    {"<Group/>", ""},
    {"<StructReg><Address>0</Address><Length>4</Length><pPort>Device</pPort></StructReg>", ""},
};

INSTANTIATE_TEST_SUITE_P(Elements, Rules, testing::ValuesIn(rule_rows));

TEST(NodeFactory, UnknownElementsLogNothing) {
    TestDocument doc("<Foo Name='a'/><EnumEntry Name='b'/>");
    EXPECT_THAT(doc.load_messages, ElementsAre());
    EXPECT_EQ(doc->find_node("a"), nullptr);
    EXPECT_EQ(doc->find_node("b"), nullptr);
}

TEST(NodeFactory, ContainersAreWalkedThroughAtAnyDepth) {
    TestDocument doc(
        "<Group><StructReg><Group><Port Name='a'/></Group><StructEntry Name='s'/></StructReg></Group><Group/>"
        "<Port Name='b'/>");
    for (const char* name : {"a", "s", "b"}) EXPECT_NE(doc->find_node(name), nullptr) << name;
}

TEST(NodeFactory, ElementsInsideOtherElementsAreNoNodes) {
    TestDocument doc(
        "<Integer Name='i'><Value>1</Value><Port Name='p'/><Group><Port Name='q'/></Group></Integer>");
    EXPECT_EQ(doc->find_node("p"), nullptr);
    EXPECT_EQ(doc->find_node("q"), nullptr);
}

TEST(NodeFactory, AddressFormulasAreNodesOfTheirOwn) {
    for (const char* element :
         {"FloatReg", "IntReg", "Register", "MaskedIntReg", "StringReg", "StructEntry"}) {
        const std::string text =
            std::string("<") + element +
            " Name='r'><IntSwissKnife Name='k1'><Formula>1</Formula></IntSwissKnife><Length>4"
            "</Length><IntSwissKnife Name='k2'><Formula>2</Formula></IntSwissKnife></" +
            element + "><Port Name='behind'/>";
        TestDocument doc(text);
        for (const char* name : {"k1", "k2", "r", "behind"})
            EXPECT_NE(doc->find_node(name), nullptr) << element;
    }
    TestDocument other("<Integer Name='i'><Value>1</Value><IntSwissKnife Name='k'/></Integer>");
    EXPECT_EQ(other->find_node("k"), nullptr);
}

TEST(NodeFactory, DebugProperties) {
    const struct {
        const char* extension;
        bool dropped;
    } rows[] = {
        {"", false},
        {"<Extension/>", false},
        {"<Extension><ZELIsDebugProperty/></Extension>", false},
        {"<Extension><ZELIsDebugProperty>0</ZELIsDebugProperty></Extension>", false},
        {"<Extension><ZELIsDebugProperty>x</ZELIsDebugProperty></Extension>", false},
        {"<Extension><ZELIsDebugProperty>1</ZELIsDebugProperty></Extension>", true},
        {"<Extension><Other/><ZELIsDebugProperty>-0x2</ZELIsDebugProperty></Extension>", true},
    };
    for (const auto& row : rows) {
        const std::string element = std::string("<Port Name='p'>") + row.extension + "</Port>";
        EXPECT_EQ(class_of(element, false), row.dropped ? "" : "port_device_type") << row.extension;
        EXPECT_EQ(class_of(element, true), "port_device_type") << row.extension;
    }
}

TEST(NodeFactory, DebugPropertiesOfAddressFormulasCountByThemselves) {
    constexpr const char* debug = "<Extension><ZELIsDebugProperty>1</ZELIsDebugProperty></Extension>";
    const std::string dropped_parent =
        std::string("<R><IntReg Name='r'>") + debug +
        "<IntSwissKnife Name='k'><Formula>1</Formula></IntSwissKnife></IntReg></R>";
    TestDocument child_stays(TestDocument::WholeText{dropped_parent}, {true, false});
    EXPECT_EQ(child_stays->find_node("r"), nullptr);
    EXPECT_NE(child_stays->find_node("k"), nullptr);
    const std::string dropped_child = std::string("<R><IntReg Name='r'><IntSwissKnife Name='k'>") + debug +
                                      "<Formula>1</Formula></IntSwissKnife></IntReg></R>";
    TestDocument parent_stays(TestDocument::WholeText{dropped_child}, {true, false});
    EXPECT_NE(parent_stays->find_node("r"), nullptr);
    EXPECT_EQ(parent_stays->find_node("k"), nullptr);
}

TEST(NodeFactory, FormulaNodesAreReadOnlyByConstruction) {
    TestDocument doc(
        "<IntSwissKnife Name='i'><Formula>1</Formula></IntSwissKnife><SwissKnife "
        "Name='f'><Formula>1</Formula>"
        "</SwissKnife><SwissKnife "
        "Name='w'><ImposedAccessMode>WO</ImposedAccessMode><Formula>1</Formula></SwissKnife>"
        "<IntSwissKnife "
        "Name='r'><ImposedAccessMode>RO</ImposedAccessMode><Formula>1</Formula></IntSwissKnife>");
    for (const char* name : {"i", "f", "r"})
        EXPECT_EQ(doc.Node(name).get_access_mode(), AccessMode::RO) << name;
    EXPECT_EQ(doc.Node("w").get_access_mode(), AccessMode::WO);
    EXPECT_THAT(
        doc.load_messages,
        ElementsAre("GenICam::node_base_data::set_actual_access_mode, SwissKnife (\"w\"). Trying to change "
                    "access mode from ImposedAccessMode == WO to RO.\n"));
}

}  // namespace
