#include "genicam/nodes/formula_names.h"

#include "formula/variable_table.h"
#include "genicam/core/children.h"
#include "genicam/core/messages.h"
#include "genicam/core/number_parser.h"
#include "genicam/genicam_doc.h"

#include <cstddef>
#include <cstdint>
#include <optional>

namespace GenICam {
namespace {

constexpr std::string_view entry_specifier = ".Entry";

std::optional<eval_value> parse_constant(std::string_view text, bool is_integer) {
    if (is_integer) {
        std::int64_t number = 0;
        if (parse_int(text, number) == 0) return std::nullopt;
        return eval_value::of(number);
    }
    double number = 0;
    if (parse_double(text, number) == 0) return std::nullopt;
    return eval_value::of(number);
}

eval_value number_of_entry(const IEnumEntry& entry, bool is_integer) {
    const std::optional<double> numeric = entry.get_numeric_value();
    if (is_integer) return eval_value::of(numeric ? round_to_int(*numeric) : entry.get_value());
    return eval_value::of(numeric ? *numeric : static_cast<double>(entry.get_value()));
}

void reserve(variable_table& table, const described_element& xml) {
    std::size_t names = 0;
    std::size_t expressions = 0;
    for (const known_child& found : xml.known_children()) {
        if (found.name == child::Expression) ++expressions;
        if (found.name == child::Constant || found.name == child::pVariable) ++names;
    }
    table.reserve(names + expressions, expressions);
}

void add_constant(variable_table& table, const known_child& found, bool is_integer) {
    const std::string_view name = binding_name(found.element);
    const std::string_view text = found.text();
    if (const std::optional<eval_value> constant = parse_constant(text, is_integer)) {
        table.add_constant(name, *constant);
    } else {
        report(messages::constant_invalid, {found.element.parent(), found.element}, name, text);
    }
}

// The entry becomes a number now and is no variable.
void add_enumeration_entry(variable_table& table, IGenICamDoc* doc, std::string_view name,
                           const known_child& found, bool is_integer) {
    INode* node = doc->find_node(found.text());
    if (node == nullptr || node->get_node_type() != node_type::enumeration) {
        report(messages::enumeration_of_variable_unresolved, {found.element.parent(), found.element});
        return;
    }
    // A name that ends in the specifier has no entry name, and the exception of substr leaves the load.
    constexpr std::size_t point = 1;
    const std::string_view entry_name =
        name.substr(name.find(entry_specifier) + entry_specifier.size() + point);
    const IEnumEntry* entry = static_cast<IEnumeration*>(node)->find_entry(entry_name);
    if (entry == nullptr) {
        report(messages::entry_of_variable_unresolved, {found.element.parent(), found.element});
        return;
    }
    table.add_constant(name, number_of_entry(*entry, is_integer));
}

}  // namespace

std::string_view binding_name(pugi::xml_node element) noexcept { return element.attribute("Name").value(); }

void build_formula_name_lookup(variable_table& table, IGenICamDoc* doc, const described_element& xml,
                               bool is_integer) {
    reserve(table, xml);
    if (xml.has(child::Constant)) {
        for (const known_child& found : xml.known_children()) {
            if (found.name == child::Constant) add_constant(table, found, is_integer);
        }
    }
    for (const known_child& found : xml.known_children()) {
        if (found.name != child::pVariable) continue;
        const std::string_view name = binding_name(found.element);
        if (name.find(entry_specifier) != std::string_view::npos) {
            add_enumeration_entry(table, doc, name, found, is_integer);
        }
    }
}

}  // namespace GenICam
