// Which elements are read where.

#include "apps/inspect/lint/known_elements.h"
#include "genicam/document/node_factory.h"

#include <algorithm>
#include <iterator>
#include <string>

#include <gtest/gtest.h>

namespace {

using selvane_inspect::element_use;
using selvane_inspect::use_among_nodes;
using selvane_inspect::use_in_node;
using selvane_inspect::use_in_struct;

struct reader {
    const char* made_as;
    const char* reads;
    const char* leaves;
};

// One child that the class reads, and one that only others read.
constexpr reader readers[] = {
    {"integer_constant_value_type", "Value", "pValue"},
    {"integer_floating_value_type", "Max", "pValueCopy"},
    {"integer_pValue_type", "pValue", "Value"},
    {"integer_pValueCopy_type", "pValueCopy", "Value"},
    {"integer_pIndex_type", "ValueIndexed", "pValue"},
    {"float_constant_value_type", "DisplayNotation", "pSelected"},
    {"float_floating_value_type", "Value", "pIndex"},
    {"float_pValue_type", "Inc", "pValueCopy"},
    {"float_pIndex_type", "pValueDefault", "Value"},
    {"boolean_Value_type", "OnValue", "pValue"},
    {"boolean_pValue_type", "OffValue", "Value"},
    {"command_Value_type", "CommandValue", "pValue"},
    {"command_pValue_type", "pCommandValue", "Value"},
    {"enumeration_Value_type", "EnumEntry", "pValue"},
    {"enumeration_pValue_type", "PollingTime", "Value"},
    {"string_type", "pValue", "Unit"},
    {"int_reg_type_const_address", "Sign", "PollingTime"},
    {"int_reg_type_dyn", "pLength", "Min"},
    {"float_reg_type_const_address", "Endianess", "Sign"},
    {"float_reg_type_dyn", "pAddress", "pSelected"},
    {"masked_int_reg_type_const_address", "LSB", "Cachable"},
    {"masked_int_reg_type_dyn_address", "MSB", "pLength"},
    {"register_type", "PollingTime", "Cachable"},
    {"string_reg_type", "Cachable", "Endianess"},
    {"struct_entry_type", "Bit", "Address"},
    {"int_swissknife_type", "Formula", "FormulaTo"},
    {"float_swissknife_type", "Expression", "pValue"},
    {"int_converter_type", "FormulaFrom", "Formula"},
    {"float_converter_type", "pVariable", "Slope"},
    {"category_type", "pFeature", "pSelected"},
    {"port_device_type", "Extension", "pPort"},
    {"port_chunk_type", "ChunkID", "CacheChunkData"},
    {"", "NumericValue", "pValue"},  // an entry of an enumeration
};

TEST(KnownElements, ChildrenBelongToTheClassesThatReadThem) {
    for (const reader& one : readers) {
        EXPECT_EQ(use_in_node(one.made_as, one.reads), element_use::read) << one.made_as << " " << one.reads;
        EXPECT_EQ(use_in_node(one.made_as, one.leaves), element_use::unread)
            << one.made_as << " " << one.leaves;
        EXPECT_EQ(use_in_node(one.made_as, "DisplayName"), element_use::read) << one.made_as;
        EXPECT_EQ(use_in_node(one.made_as, "Disply"), element_use::unknown) << one.made_as;
    }
}

TEST(KnownElements, EveryClassOfTheEngineIsAmongThem) {
    for (const GenICam::node_class& known : GenICam::all_node_classes()) {
        const bool listed = std::any_of(std::begin(readers), std::end(readers), [&](const reader& one) {
            return one.made_as == std::string(known.name);
        });
        EXPECT_TRUE(listed) << known.name;
    }
}

TEST(KnownElements, StructuresShareSomeAndHoldNodes) {
    for (const char* read : {"Address", "Length", "pLength", "pPort", "Endianess", "AccessMode", "Cachable",
                             "StructEntry", "Group", "Integer"})
        EXPECT_EQ(use_in_struct(read), element_use::read) << read;
    for (const char* unread : {"Sign", "Visibility", "pInvalidator", "DisplayName"})
        EXPECT_EQ(use_in_struct(unread), element_use::unread) << unread;
    EXPECT_EQ(use_in_struct("Lenght"), element_use::unknown);
}

TEST(KnownElements, AmongNodes) {
    EXPECT_EQ(use_among_nodes("MaskedIntReg"), element_use::read);
    EXPECT_EQ(use_among_nodes("ConfRom"), element_use::unread);
    EXPECT_EQ(use_among_nodes("maskedIntReg"), element_use::unknown);
    EXPECT_EQ(use_among_nodes("EnumEntry"), element_use::unknown);
}

}  // namespace
