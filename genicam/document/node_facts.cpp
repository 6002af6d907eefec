#include "genicam/document/node_facts.h"

#include "genicam/base/node_base.h"
#include "genicam/base/xml_words.h"
#include "genicam/nodes/bit_field.h"
#include "genicam/nodes/struct_entry_node.h"

#include <algorithm>
#include <iterator>

namespace GenICam {
namespace {

constexpr const char* common =
    "Extension ToolTip Description DisplayName Visibility DocuURL IsDeprecated EventID pIsImplemented "
    "pIsAvailable pIsLocked pBlockPolling ImposedAccessMode pAlias pCastAlias pInvalidator Streamable";
constexpr const char* range = "Min pMin Max pMax Inc pInc";
constexpr const char* integer_words = "Representation Unit pSelected";
constexpr const char* float_words = "Representation Unit DisplayNotation DisplayPrecision";
constexpr const char* indexed = "pIndex ValueIndexed pValueIndexed ValueDefault pValueDefault";
constexpr const char* command_words = "CommandValue pCommandValue PollingTime";
constexpr const char* enumeration_words = "pSelected PollingTime EnumEntry";
constexpr const char* formula_words = "pVariable Constant Expression";
constexpr const char* placed = "Address IntSwissKnife pAddress pIndex Length pPort AccessMode";
constexpr const char* bits = "Sign Bit LSB MSB";
constexpr const char* address = "pAddress IntSwissKnife pIndex pOffset pLength";

#define NODE(element, condition, type, owns_memory, has_address_formulas, checks_access, has_limits, \
             computes, evaluated, targets, ...)                                                      \
    {element, #type, checks_access, has_limits, computes, evaluated, targets, {__VA_ARGS__}},
constexpr node_facts facts_of_classes[] = {
#include "genicam/nodes/node_rows.inc"
};
#undef NODE

const node_base_data& data_of(INode& node) { return static_cast<const node_base_data&>(*node.get_eval()); }

}  // namespace

const node_facts enum_entry_facts = {"EnumEntry", "enum_entry_type",
                                     false,       false,
                                     false,       "",
                                     "",          {common, "Value NumericValue IsSelfClearing"}};
const node_facts struct_reg_facts = {
    "StructReg", "", false, false, false, "", "", {placed, "pLength Cachable Endianess StructEntry"}};

bool name_list::contains(std::string_view name) const noexcept {
    bool found = false;
    for_each([&](std::string_view one) { found = found || one == name; });
    return found;
}

bool node_facts::reads(std::string_view child) const noexcept {
    return std::any_of(std::begin(children), std::end(children),
                       [&](const name_list& names) { return names.contains(child); });
}

gsl::span<const node_facts> all_node_facts() noexcept { return facts_of_classes; }

const node_facts* find_node_facts(std::string_view class_name) noexcept {
    const auto* found = std::find_if(std::begin(facts_of_classes), std::end(facts_of_classes),
                                     [&](const node_facts& facts) { return facts.name == class_name; });
    return found != std::end(facts_of_classes) ? found : nullptr;
}

pugi::xml_node element_of(INode& node) { return data_of(node).xml(); }

INode* linked_node(INode& node, const char* child) { return data_of(node).resolve_node(child); }

pugi::xml_node register_element_of(pugi::xml_node element) {
    return element.name() == std::string_view("StructEntry") ? find_struct_reg(element) : element;
}

Endianess byte_order_of(pugi::xml_node element) {
    const pugi::xml_node stating = register_element_of(element);
    return parse_endianess(stating, stating.child_value("Endianess"));
}

std::uint64_t field_bits_of(pugi::xml_node element, std::int64_t length) {
    const scanned_element scanned(element);
    return bit_field(*scanned).put(0, -1, length, byte_order_of(element));
}

}  // namespace GenICam
