#include "apps/inspect/lint/known_elements.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>

namespace selvane_inspect {
namespace {

// Classes that read the same children form a family.
enum family : std::uint32_t {
    integer_value = 1U << 0,
    integer_link = 1U << 1,
    integer_copy = 1U << 2,
    integer_index = 1U << 3,
    float_value = 1U << 4,
    float_link = 1U << 5,
    float_index = 1U << 6,
    boolean_value = 1U << 7,
    boolean_link = 1U << 8,
    command_value = 1U << 9,
    command_link = 1U << 10,
    enumeration_value = 1U << 11,
    enumeration_link = 1U << 12,
    text = 1U << 13,
    int_register = 1U << 14,
    float_register = 1U << 15,
    masked_register = 1U << 16,
    raw_register = 1U << 17,
    text_register = 1U << 18,
    struct_entry = 1U << 19,
    int_knife = 1U << 20,
    float_knife = 1U << 21,
    int_converter = 1U << 22,
    float_converter = 1U << 23,
    category = 1U << 24,
    device_port = 1U << 25,
    chunk_port = 1U << 26,
    entry = 1U << 27,
    struct_frame = 1U << 28,
};
using families = std::uint32_t;

constexpr families integers = integer_value | integer_link | integer_copy | integer_index;
constexpr families floats = float_value | float_link | float_index;
constexpr families booleans = boolean_value | boolean_link;
constexpr families commands = command_value | command_link;
constexpr families enumerations = enumeration_value | enumeration_link;
constexpr families indexed = integer_index | float_index;
constexpr families knives = int_knife | float_knife;
constexpr families converters = int_converter | float_converter;
constexpr families formulas = knives | converters;
constexpr families placed =
    int_register | float_register | masked_register | raw_register | text_register | struct_frame;
constexpr families fields = masked_register | struct_entry;
constexpr families integer_like = integers | int_register | fields | int_knife | int_converter;
constexpr families float_like = floats | float_register | float_knife | float_converter;
constexpr families everything = ~families{struct_frame} & ((1U << 29) - 1);

struct class_family {
    std::string_view name;
    family in;
};

constexpr class_family families_of_classes[] = {
    {"integer_constant_value_type", integer_value},
    {"integer_floating_value_type", integer_value},
    {"integer_pValue_type", integer_link},
    {"integer_pValueCopy_type", integer_copy},
    {"integer_pIndex_type", integer_index},
    {"float_constant_value_type", float_value},
    {"float_floating_value_type", float_value},
    {"float_pValue_type", float_link},
    {"float_pIndex_type", float_index},
    {"boolean_Value_type", boolean_value},
    {"boolean_pValue_type", boolean_link},
    {"command_Value_type", command_value},
    {"command_pValue_type", command_link},
    {"enumeration_Value_type", enumeration_value},
    {"enumeration_pValue_type", enumeration_link},
    {"string_type", text},
    {"int_reg_type_const_address", int_register},
    {"int_reg_type_dyn", int_register},
    {"float_reg_type_const_address", float_register},
    {"float_reg_type_dyn", float_register},
    {"masked_int_reg_type_const_address", masked_register},
    {"masked_int_reg_type_dyn_address", masked_register},
    {"register_type", raw_register},
    {"string_reg_type", text_register},
    {"struct_entry_type", struct_entry},
    {"int_swissknife_type", int_knife},
    {"float_swissknife_type", float_knife},
    {"int_converter_type", int_converter},
    {"float_converter_type", float_converter},
    {"category_type", category},
    {"port_device_type", device_port},
    {"port_chunk_type", chunk_port},
};

struct known_element {
    std::string_view name;
    families read_by;
};

constexpr known_element known_elements[] = {
    {"Extension", everything},
    {"ToolTip", everything},
    {"Description", everything},
    {"DisplayName", everything},
    {"Visibility", everything},
    {"DocuURL", everything},
    {"IsDeprecated", everything},
    {"EventID", everything},
    {"pIsImplemented", everything},
    {"pIsAvailable", everything},
    {"pIsLocked", everything},
    {"pBlockPolling", everything},
    {"ImposedAccessMode", everything},
    {"pAlias", everything},
    {"pCastAlias", everything},
    {"pInvalidator", everything},
    {"Streamable", everything},
    {"Value", integer_value | float_value | boolean_value | command_value | enumeration_value | text | entry},
    {"pValue", integer_link | integer_copy | float_link | boolean_link | command_link | enumeration_link |
                   text | converters},
    {"pValueCopy", integer_copy},
    {"pIndex", indexed | placed},
    {"ValueIndexed", indexed},
    {"pValueIndexed", indexed},
    {"ValueDefault", indexed},
    {"pValueDefault", indexed},
    {"Min", integers | floats},
    {"pMin", integers | floats},
    {"Max", integers | floats},
    {"pMax", integers | floats},
    {"Inc", integers | floats},
    {"pInc", integers | floats},
    {"Representation", integer_like | float_like},
    {"Unit", integer_like | float_like},
    {"DisplayNotation", float_like},
    {"DisplayPrecision", float_like},
    {"pSelected", integer_like | booleans | enumerations},
    {"OnValue", booleans},
    {"OffValue", booleans},
    {"CommandValue", commands},
    {"pCommandValue", commands},
    {"PollingTime", commands | enumerations | raw_register},
    {"EnumEntry", enumerations},
    {"NumericValue", entry},
    {"IsSelfClearing", entry},
    {"Address", placed},
    {"IntSwissKnife", placed},
    {"pAddress", placed},
    {"Length", placed},
    {"pLength", placed & ~families{masked_register}},
    {"pPort", placed},
    {"AccessMode", placed | struct_entry},
    {"Cachable", int_register | float_register | text_register | struct_entry | struct_frame},
    {"Endianess", int_register | float_register | masked_register | struct_frame},
    {"Sign", int_register | fields},
    {"Bit", fields},
    {"LSB", fields},
    {"MSB", fields},
    {"StructEntry", struct_frame},
    {"pVariable", formulas},
    {"Constant", formulas},
    {"Expression", formulas},
    {"Formula", knives},
    {"FormulaTo", converters},
    {"FormulaFrom", converters},
    {"pFeature", category},
    {"ChunkID", chunk_port},
    {"pChunkID", chunk_port},
    // What other programs read.
    {"Slope", 0},
    {"IsLinear", 0},
    {"pError", 0},
    {"pTerminal", 0},
    {"pDependent", 0},
    {"Symbolic", 0},
    {"SwapEndianess", 0},
    {"CacheChunkData", 0},
};

constexpr std::string_view node_elements[] = {
    "Category",      "Integer",    "Float",        "Boolean",   "Command",      "Enumeration", "String",
    "IntReg",        "FloatReg",   "Register",     "StringReg", "MaskedIntReg", "StructEntry", "StructReg",
    "IntSwissKnife", "SwissKnife", "IntConverter", "Converter", "Port",         "Group",
};

constexpr std::string_view foreign_node_elements[] = {"Node",           "ConfRom",      "TextDesc", "IntKey",
                                                      "AdvFeatureLock", "SmartFeature", "DcamLock"};

template <class List>
bool contains(const List& list, std::string_view name) noexcept {
    return std::find(std::begin(list), std::end(list), name) != std::end(list);
}

element_use use_in(families by, std::string_view child) noexcept {
    for (const known_element& known : known_elements) {
        if (known.name == child) return (known.read_by & by) != 0 ? element_use::read : element_use::unread;
    }
    return element_use::unknown;
}

families family_of(std::string_view made_as) noexcept {
    for (const class_family& known : families_of_classes) {
        if (known.name == made_as) return known.in;
    }
    return everything;
}

}  // namespace

element_use use_in_node(std::string_view made_as, std::string_view child) noexcept {
    return use_in(!made_as.empty() ? family_of(made_as) : families{entry}, child);
}

element_use use_in_struct(std::string_view child) noexcept {
    if (contains(node_elements, child)) return element_use::read;
    return use_in(struct_frame, child);
}

element_use use_among_nodes(std::string_view element) noexcept {
    if (contains(node_elements, element)) return element_use::read;
    return contains(foreign_node_elements, element) ? element_use::unread : element_use::unknown;
}

const std::vector<std::string_view>& names_in_nodes() {
    static const std::vector<std::string_view> names = [] {
        std::vector<std::string_view> read;
        for (const known_element& known : known_elements) {
            if (known.read_by != 0) read.push_back(known.name);
        }
        return read;
    }();
    return names;
}

const std::vector<std::string_view>& names_among_nodes() {
    static const std::vector<std::string_view> names(std::begin(node_elements), std::end(node_elements));
    return names;
}

const std::vector<std::string_view>& extension_keys() {
    static const std::vector<std::string_view> keys = {
        "ZELItemGUID", "ZELElementGUID", "ZELIsDebugProperty", "DoNotSerialize", "Default", "pDefault"};
    return keys;
}

}  // namespace selvane_inspect
