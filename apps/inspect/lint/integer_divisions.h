#pragma once

#include "formula/formula_tree.h"
#include "formula/known_numbers.h"

#include <map>
#include <optional>

namespace selvane_inspect {

/// A formula and what is known of its numbers.
struct analysed_formula {
    const GenICam::formula_tree* tree;
    GenICam::known_numbers numbers;
};

/// Nothing for a formula that fails, and for one of more than 4096 instructions. The tree must outlive it.
[[nodiscard]] std::optional<analysed_formula> analyse(const GenICam::formula_tree& tree,
                                                      GenICam::variable_kinds kinds);

using kinds_of_variables = std::map<GenICam::identifier_id, GenICam::known_kind>;
/// The variables of a part of a formula.
[[nodiscard]] kinds_of_variables variables_of(const analysed_formula& formula,
                                              GenICam::formula_tree::index node);

/// Whether a node may turn out to be a division or a remainder of integers.
[[nodiscard]] bool may_divide_integers(const analysed_formula& formula, GenICam::formula_tree::index node);
/// A `/` of two numbers that are surely integers.
[[nodiscard]] bool divides_integers(const analysed_formula& formula, GenICam::formula_tree::index node);

/// Whether a part of a formula comes out as 0 for some values of its variables. Told by trying small numbers,
/// powers of two and what the formula itself compares and computes with, each with its neighbours: enough for
/// the divisors that people write.
[[nodiscard]] bool can_be_zero(const analysed_formula& formula, GenICam::formula_tree::index node);

}  // namespace selvane_inspect
