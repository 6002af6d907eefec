// Which class an element becomes, against a second reading of the rules, written for people: on every
// combination of the children that decide.

#include "genicam/document/node_factory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace decision_list_test {
namespace {

using pugi::xml_node;

constexpr const char* element_names[] = {
    "IntConverter", "IntSwissKnife", "Converter",    "SwissKnife",  "Category",    "Integer",
    "Float",        "Boolean",       "Command",      "Enumeration", "String",      "FloatReg",
    "IntReg",       "Register",      "MaskedIntReg", "StringReg",   "StructEntry", "Port",
    "EnumEntry",    "Group",         "StructReg",    "integer",     "Unknown",
};

// What decides, whatever the element.
constexpr const char* deciding[] = {"Value",  "pValue",  "pValueCopy", "pIndex",   "Address",      "pAddress",
                                    "Length", "pLength", "ChunkID",    "pChunkID", "IntSwissKnife"};
constexpr unsigned combinations = 1U << std::size(deciding);

bool has(xml_node element, const char* name) { return !element.child(name).empty(); }

bool has_constant_address(xml_node element) {
    return has(element, "Address") && !has(element, "pAddress") && !has(element, "IntSwissKnife") &&
           !has(element, "pIndex");
}

bool has_constant_length(xml_node element) { return has(element, "Length") && !has(element, "pLength"); }

bool is_read_only_value(xml_node element) {
    return has(element, "Value") && std::string_view(element.child_value("ImposedAccessMode")) == "RO";
}

std::string integer_class(xml_node element) {
    if (is_read_only_value(element)) return "integer_constant_value_type";
    if (has(element, "Value")) return "integer_floating_value_type";
    if (has(element, "pValue") && has(element, "pValueCopy")) return "integer_pValueCopy_type";
    if (has(element, "pIndex")) return "integer_pIndex_type";
    if (has(element, "pValue") && !has(element, "pValueCopy")) return "integer_pValue_type";
    return {};
}

std::string float_class(xml_node element) {
    if (is_read_only_value(element)) return "float_constant_value_type";
    if (has(element, "Value")) return "float_floating_value_type";
    if (has(element, "pIndex")) return "float_pIndex_type";
    if (has(element, "pValue")) return "float_pValue_type";
    return {};
}

std::string first_of(xml_node element, const char* prefix, const char* first, const char* second) {
    for (const char* name : {first, second}) {
        if (has(element, name)) return std::string(prefix) + "_" + name + "_type";
    }
    return {};
}

std::string register_class(xml_node element, const std::string& prefix) {
    const bool is_fixed = has_constant_address(element) && has_constant_length(element);
    return prefix + (is_fixed ? "_const_address" : "_dyn");
}

// Empty for none.
std::string class_of(xml_node element) {
    const std::string_view name = element.name();
    if (name == "IntConverter") return "int_converter_type";
    if (name == "IntSwissKnife") return "int_swissknife_type";
    if (name == "Converter") return "float_converter_type";
    if (name == "SwissKnife") return "float_swissknife_type";
    if (name == "Category") return "category_type";
    if (name == "Integer") return integer_class(element);
    if (name == "Float") return float_class(element);
    if (name == "Boolean") return first_of(element, "boolean", "pValue", "Value");
    if (name == "Command") return first_of(element, "command", "Value", "pValue");
    if (name == "Enumeration") return first_of(element, "enumeration", "Value", "pValue");
    if (name == "String") return "string_type";
    if (name == "FloatReg") return register_class(element, "float_reg_type");
    if (name == "IntReg") return register_class(element, "int_reg_type");
    if (name == "Register") return "register_type";
    if (name == "MaskedIntReg")
        return has_constant_address(element) ? "masked_int_reg_type_const_address"
                                             : "masked_int_reg_type_dyn_address";
    if (name == "StringReg") return "string_reg_type";
    if (name == "StructEntry") return "struct_entry_type";
    if (name == "Port")
        return has(element, "ChunkID") || has(element, "pChunkID") ? "port_chunk_type" : "port_device_type";
    return {};
}

bool is_dropped(xml_node element, bool keeps_debug_properties) {
    // Numbers as the texts below spell them.
    const std::string_view text = element.child("Extension").child_value("ZELIsDebugProperty");
    return !keeps_debug_properties && (text == "1" || text == "-2");
}

// The nodes of one element: itself, and the address formulas inside it.
void append_classes(xml_node element, bool keeps_debug_properties, std::vector<std::string>& classes) {
    const std::string made = class_of(element);
    if (!made.empty() && !is_dropped(element, keeps_debug_properties)) classes.push_back(made);
    const std::string_view name = element.name();
    const bool is_register = name == "FloatReg" || name == "IntReg" || name == "Register" ||
                             name == "MaskedIntReg" || name == "StringReg" || name == "StructEntry";
    if (!is_register) return;
    for (const xml_node formula : element.children("IntSwissKnife"))
        append_classes(formula, keeps_debug_properties, classes);
}

std::vector<std::string> read_literally(xml_node root, bool keeps_debug_properties) {
    std::vector<std::string> classes;
    for (const xml_node element : root.children()) {
        const std::string_view name = element.name();
        if (name == "Group" || name == "StructReg") {
            for (const std::string& one : read_literally(element, keeps_debug_properties))
                classes.push_back(one);
        } else {
            append_classes(element, keeps_debug_properties, classes);
        }
    }
    return classes;
}

std::vector<std::string> read_by_walk(xml_node root, bool keeps_debug_properties) {
    std::vector<std::string> classes;
    GenICam::element_walk walk(root, {true, keeps_debug_properties});
    while (walk.next()) classes.emplace_back(walk.taken().chosen->name);
    return classes;
}

std::string child_text(const std::string& name, const std::string& text = "1") {
    return "<" + name + ">" + text + "</" + name + ">";
}

std::string element_text(const std::string& name, std::vector<std::string> children, bool is_reversed) {
    if (is_reversed) std::reverse(children.begin(), children.end());
    std::string text = "<" + name + " Name='n'>";
    for (const std::string& one : children) text += one;
    return text + "</" + name + ">";
}

// One child that is given, and those of the combination.
std::vector<std::string> chosen_children(unsigned chosen, const std::string& given) {
    std::vector<std::string> children = {given};
    for (std::size_t at = 0; at < std::size(deciding); ++at) {
        if ((chosen >> at & 1U) != 0) children.push_back(child_text(deciding[at]));
    }
    return children;
}

void compare(const std::string& text, bool keeps_debug_properties = false) {
    pugi::xml_document document;
    EXPECT_TRUE(document.load_string(("<R>" + text + "</R>").c_str())) << text;
    EXPECT_EQ(read_by_walk(document.first_child(), keeps_debug_properties),
              read_literally(document.first_child(), keeps_debug_properties))
        << text;
}

class EveryElement : public testing::TestWithParam<const char*> {};

TEST_P(EveryElement, IsWhatItsChildrenMakeOfIt) {
    const std::vector<std::string> access_modes = {"", child_text("ImposedAccessMode", "RO"),
                                                   child_text("ImposedAccessMode", "RW"),
                                                   child_text("ImposedAccessMode", "ro")};
    for (unsigned chosen = 0; chosen < combinations; ++chosen) {
        std::string all;
        for (std::size_t mode = 0; mode < access_modes.size(); ++mode) {
            all += element_text(GetParam(), chosen_children(chosen, access_modes[mode]),
                                (chosen + mode) % 2 == 1);
        }
        compare(all);
        if (HasFailure()) return;
    }
}

// A word that is empty, or there twice, is there.
TEST_P(EveryElement, CountsChildrenWhateverTheyHold) {
    for (const char* first : deciding) {
        for (const char* second : deciding) {
            compare(element_text(GetParam(), {child_text(first, ""), child_text(second, "text")}, false));
            compare(
                element_text(GetParam(), {child_text(first), child_text(second), child_text(first)}, true));
        }
    }
}

TEST_P(EveryElement, IsDroppedAsADebugPropertyByItself) {
    std::vector<std::string> marks = {"", "<Extension/>"};
    for (const char* text : {"", "0", "x", "1", "-2"})
        marks.push_back(child_text("Extension", child_text("ZELIsDebugProperty", text)));
    for (const bool keeps : {false, true}) {
        for (const std::string& own : marks) {
            for (const std::string& inner : marks) {
                for (const char* name : deciding) {
                    compare(element_text(GetParam(),
                                         {own, child_text(name), child_text("IntSwissKnife", inner),
                                          child_text("IntSwissKnife", own)},
                                         false),
                            keeps);
                }
            }
        }
    }
}

std::string name_of_case(const testing::TestParamInfo<const char*>& info) {
    return std::to_string(info.index) + info.param;
}

INSTANTIATE_TEST_SUITE_P(DecisionList, EveryElement, testing::ValuesIn(element_names), name_of_case);

// Otherwise the comparison above would have missed a rule.
TEST(DecisionList, HasNoClassThatNoCombinationReaches) {
    std::set<std::string> reached;
    for (const char* name : element_names) {
        for (unsigned chosen = 0; chosen < combinations; ++chosen) {
            pugi::xml_document document;
            ASSERT_TRUE(document.load_string(
                element_text(name, chosen_children(chosen, child_text("ImposedAccessMode", "RO")), false)
                    .c_str()));
            reached.insert(class_of(document.first_child()));
            document.first_child().remove_child("ImposedAccessMode");
            reached.insert(class_of(document.first_child()));
        }
    }
    reached.erase("");
    std::set<std::string> known;
    for (const GenICam::node_class& one : GenICam::all_node_classes()) known.emplace(one.name);
    EXPECT_EQ(reached, known);
    EXPECT_EQ(known.size(), 32U);
}

// Each entry goes through this anew: with more than it reads, entries and other children would cost their
// product.
TEST(ElementWalk, HandsEntriesOnlyWhatTheyReadOfTheirStructReg) {
    std::string children;
    for (const char* time : {"1", "2"}) {
        for (const char* name : {"pInvalidator", "pPort", "pIndex", "Address", "Bit", "pLength", "Length",
                                 "Endianess", "pAddress", "Cachable", "IntSwissKnife", "AccessMode"}) {
            children += std::string("<") + name + ">" + time + "</" + name + ">";
        }
    }
    pugi::xml_document document;
    ASSERT_TRUE(document.load_string(("<R><StructReg>" + children +
                                      "<StructEntry Name='e'><pInvalidator>c</pInvalidator></StructEntry>" +
                                      "</StructReg></R>")
                                         .c_str()));
    GenICam::element_walk walk(document.first_child(), {});
    do {
        ASSERT_TRUE(walk.next());
    } while (walk.taken().element.name() != std::string_view("StructEntry"));
    const GenICam::described_element& entry = walk.taken().element;
    EXPECT_TRUE(entry.has(GenICam::child::pInvalidator));
    ASSERT_NE(entry.struct_reg(), nullptr);
    const GenICam::described_element& shared = entry.struct_reg()->xml();
    std::vector<std::string> handed;
    for (const GenICam::known_child& one : shared.known_children()) {
        EXPECT_TRUE(shared.has(one.name));
        handed.push_back(one.element.name() + std::string(one.text()));
    }
    EXPECT_EQ(handed,
              (std::vector<std::string>{"pPort1", "pLength1", "Length1", "Endianess1", "Cachable1",
                                        "AccessMode1", "pIndex1", "Address1", "pAddress1", "IntSwissKnife1",
                                        "pIndex2", "Address2", "pAddress2", "IntSwissKnife2"}));
    EXPECT_FALSE(shared.has(GenICam::child::pInvalidator));
}

}  // namespace
}  // namespace decision_list_test
