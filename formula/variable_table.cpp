#include "formula/variable_table.h"

#include "genicam/core/children.h"
#include "genicam/core/messages.h"
#include "genicam/core/number_parser.h"
#include "genicam/genicam_doc.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <optional>
#include <utility>

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

}  // namespace

std::string_view binding_name(pugi::xml_node element) noexcept { return element.attribute("Name").value(); }

void variable_table::build_formula_name_lookup(IGenICamDoc* doc, const described_element& xml,
                                               bool is_integer) {
    reserve(xml);
    if (xml.has(child::Constant)) {
        for (const known_child& found : xml.known_children()) {
            if (found.name == child::Constant) add_constant(found, is_integer);
        }
    }
    for (const known_child& found : xml.known_children()) {
        if (found.name != child::pVariable) continue;
        const std::string_view name = binding_name(found.element);
        if (name.find(entry_specifier) != std::string_view::npos) {
            add_enumeration_entry(doc, name, found, is_integer);
        }
    }
}

void variable_table::reserve(const described_element& xml) {
    constexpr std::size_t from_and_to = 2;
    std::size_t rows = from_and_to;
    std::size_t expressions = 0;
    for (const known_child& found : xml.known_children()) {
        if (found.name == child::Expression) ++expressions;
        if (found.name == child::Constant || found.name == child::pVariable) ++rows;
    }
    rows_.reserve(rows + expressions);
    expressions_.reserve(expressions);
}

void variable_table::add_constant(const known_child& found, bool is_integer) {
    const std::string_view name = binding_name(found.element);
    const std::string_view text = found.text();
    if (const std::optional<eval_value> constant = parse_constant(text, is_integer)) {
        add_constant(name, *constant);
    } else {
        report(messages::constant_invalid, {found.element.parent(), found.element}, name, text);
    }
}

// The entry becomes a number now and is no variable.
void variable_table::add_enumeration_entry(IGenICamDoc* doc, std::string_view name, const known_child& found,
                                           bool is_integer) {
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
    add_constant(name, number_of_entry(*entry, is_integer));
}

void variable_table::add_expression(std::string_view name, formula_program program) {
    expressions_.push_back(std::move(program));
    rows_.push_back({name, 0, &expressions_.back(), {}});
}

resolved_name variable_table::operator()(std::string_view name) const {
    const resolved_name resolved = names()(name);
    const auto* expression = std::get_if<const formula_program*>(&resolved);
    if (expression != nullptr && !budget_.take((*expression)->instructions.size()))
        return exhausted_expression();
    return resolved;
}

resolved_name name_scope::operator()(std::string_view name) const {
    if (!no_from_to && (name == "TO" || name == "FROM")) return current_value_id;
    const variable_row* row = find(name);
    if (row == nullptr) return {};
    if (row->id != 0) return row->id;
    if (row->expression != nullptr) return row->expression;
    return row->constant;
}

const variable_row* name_scope::find(std::string_view name) const noexcept {
    const auto* const end = rows.data() + rows.size();
    const auto* const found =
        std::find_if(rows.data(), end, [name](const variable_row& row) { return row.name == name; });
    return found == end ? nullptr : found;
}

}  // namespace GenICam
