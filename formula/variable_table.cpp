#include "formula/variable_table.h"

#include <algorithm>
#include <utility>
#include <variant>

namespace GenICam {

void variable_table::reserve(std::size_t names, std::size_t expressions) {
    constexpr std::size_t from_and_to = 2;
    constexpr std::size_t most_searched = 64;
    is_large_ = names > most_searched;
    rows_.reserve(from_and_to + names);
    expressions_.reserve(expressions);
}

void variable_table::add_expression(std::string_view name, formula_program program) {
    expressions_.push_back(std::move(program));
    add({name, 0, &expressions_.back(), {}});
}

void variable_table::add(const variable_row& row) {
    if (is_large_) positions_.emplace(row.name, rows_.size());
    rows_.push_back(row);
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
    if (positions != nullptr) {
        const auto found = positions->find(name);
        return found != positions->end() ? rows.data() + found->second : nullptr;
    }
    const auto* const end = rows.data() + rows.size();
    const auto* const found =
        std::find_if(rows.data(), end, [name](const variable_row& row) { return row.name == name; });
    return found == end ? nullptr : found;
}

}  // namespace GenICam
