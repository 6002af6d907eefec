#pragma once

#include "formula/expansion_budget.h"
#include "formula/formula_parser.h"
#include "formula/formula_program.h"
#include "genicam/core/eval_value.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <string_view>

#include <boost/container/small_vector.hpp>
#include <gsl/span>

namespace GenICam {

// What `FROM` and `TO` read, and the first number of the sources of a node.
constexpr identifier_id current_value_id = 512;
constexpr identifier_id first_source_id = 1000;

/// One name: a variable if it has an id, an expression if it has a program, else a constant.
struct variable_row {
    std::string_view name;
    identifier_id id = 0;
    const formula_program* expression = nullptr;
    eval_value constant;
};

/// The index of the first row of each name.
using name_positions = std::map<std::string_view, std::uint64_t>;

/// Names of formulas as they stand in memory.
struct name_scope {
    gsl::span<const variable_row> rows;
    bool no_from_to = false;                    ///< whether `FROM` and `TO` are names like any other
    const name_positions* positions = nullptr;  ///< where the rows are too many to be searched

    /// The first row of that name, or null.
    [[nodiscard]] const variable_row* find(std::string_view name) const noexcept;
    /// What a name stands for.
    [[nodiscard]] resolved_name operator()(std::string_view name) const;
};

/// The names that the formulas of one node know. Lives while its references are resolved.
class variable_table {
public:
    /// `no_from_to`: whether `FROM` and `TO` are names like any other. Each use of an expression is taken
    /// from the budget.
    variable_table(bool no_from_to, expansion_budget& budget) : budget_(budget), no_from_to_(no_from_to) {}
    variable_table(const variable_table&) = delete;
    variable_table& operator=(const variable_table&) = delete;

    /// Room for so many names, and for the expressions among them: more may not come.
    void reserve(std::size_t names, std::size_t expressions);

    [[nodiscard]] bool has(std::string_view name) const noexcept { return names().find(name) != nullptr; }
    [[nodiscard]] bool has_expressions() const noexcept { return !expressions_.empty(); }
    /// Whether there are so many that they are to be searched here, and not in a copy of the rows.
    [[nodiscard]] bool is_large() const noexcept { return is_large_; }
    [[nodiscard]] name_scope names() const noexcept {
        return {{rows_.data(), rows_.size()}, no_from_to_, is_large_ ? &positions_ : nullptr};
    }
    void add_variable(std::string_view name, identifier_id id) { add({name, id, nullptr, {}}); }
    void add_constant(std::string_view name, const eval_value& constant) {
        add({name, 0, nullptr, constant});
    }
    void add_expression(std::string_view name, formula_program program);

    /// What a name stands for in a formula.
    [[nodiscard]] resolved_name operator()(std::string_view name) const;

private:
    void add(const variable_row& row);

    expansion_budget& budget_;
    boost::container::small_vector<variable_row, 10> rows_;
    name_positions positions_;                                        // of a large table
    boost::container::small_vector<formula_program, 3> expressions_;  // rows point into it: it never moves
    bool no_from_to_;
    bool is_large_ = false;
};

}  // namespace GenICam
